// Inputs of the rep stream that fuzzing found to fail, each checked in with the
// fuzz regressions and loaded here as RepLoadFuzzer loads it: its first byte
// gives the stream settings, its second picks the rep, the rest is the stream.

#include "KEZVisRepGraphics.h"

#include "KEZVisOptions.h"
#include "KEZVisPrimitive.h"

#include <QByteArray>
#include <QDataStream>
#include <QFile>
#include <QList>

#include <gtest/gtest.h>

namespace {

QByteArray FuzzRegression(const char *target, const char *name)
{
    QFile file(QStringLiteral(KEZ_FUZZ_REGRESSIONS_DIR "/%1/%2").arg(QLatin1String(target), QLatin1String(name)));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
    return file.readAll();
}

} // namespace

TEST(RepFuzzRegression, FontWithoutFamiliesEndsTheOptionsAndTheRepSavesAgain)
{
    // Found by RepLoadFuzzer: the second options entry held a font whose list
    // of families was empty. Qt's reader made a font without any family of it,
    // and saving the rep then crashed in Qt's writer, which takes the first.
    const QByteArray input = FuzzRegression("RepLoadFuzzer", "font-without-families");
    // Single precision, big-endian, the current version; an empty graphics rep.
    ASSERT_EQ(input.left(2).toHex(), QByteArray("1000"));
    QDataStream in(input.mid(2));
    in.setFloatingPointPrecision(QDataStream::SinglePrecision);
    KEZVisRepGraphics rep;
    rep.Load(in);
    EXPECT_EQ(in.status(), QDataStream::ReadCorruptData);

    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    rep.GetPrimitives(primitives, options);
    // A failing entry leaves the options empty, and the primitive stage reads
    // nothing from a failed stream.
    EXPECT_TRUE(primitives.isEmpty());

    QByteArray saved;
    QDataStream out(&saved, QIODevice::WriteOnly);
    out.setFloatingPointPrecision(QDataStream::SinglePrecision);
    rep.Save(out);
    EXPECT_EQ(out.status(), QDataStream::Ok);
    // Two zero counts: no primitives, no options.
    EXPECT_EQ(saved.toHex(), QByteArray("0000000000000000"));
}
