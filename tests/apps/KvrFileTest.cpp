// The .kvr reader of kezvis on devices that tell nothing of their size, and
// the inputs of it that fuzzing found to fail, each checked in with the fuzz
// regressions and read as KvrFileFuzzer reads it: its first byte picks the
// device (bit 0 set: a sequential one), the rest is the file.

#include "KEZPipeLikeDevice.h"
#include "KvrFile.h"

#include <KEZVisPointPrimitive.h>
#include <KEZVisPolylinePrimitive.h>
#include <KEZVisPrimitive.h>
#include <KEZVisRepGraphics.h>

#include <KEZMathPoint.h>
#include <KEZMathSetOfPoints.h>

#include <QBuffer>
#include <QByteArray>
#include <QDataStream>
#include <QFile>
#include <QIODevice>

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <memory>

namespace {

QByteArray FuzzRegression(const char *target, const char *name)
{
    QFile file(QStringLiteral(KEZ_FUZZ_REGRESSIONS_DIR "/%1/%2").arg(QLatin1String(target), QLatin1String(name)));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
    return file.readAll();
}

// The largest resident size of the process so far, in kilobytes.
long PeakResidentKilobytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

QByteArray FileOf(const QList<const KEZVisRep *> &reps)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QString error;
    EXPECT_TRUE(Kvr::Write(buffer, reps, &error)) << error.toStdString();
    return bytes;
}

// The offset of the first polyline's point count in \a file: the count, a
// qint64, follows the polyline's tag and its structure.
qsizetype PolylineCountOffset(const QByteArray &file)
{
    const QString tag = QStringLiteral("KEZVisPolylinePrimitive");
    QByteArray utf16;
    for (QChar c : tag)
        utf16.append(char(c.unicode() >> 8)).append(char(c.unicode() & 0xff));
    const qsizetype at = file.indexOf(utf16);
    EXPECT_GE(at, 0);
    return at + utf16.size() + 4;
}

void PutBigEndian64(QByteArray &bytes, qsizetype offset, qint64 value)
{
    for (int i = 0; i < 8; ++i)
        bytes[offset + i] = char(quint64(value) >> (56 - 8 * i));
}

} // namespace

TEST(KvrFile, ReadsAWholeFileFromASequentialDevice)
{
    KEZMathSetOfPoints square;
    for (const auto &[x, y] : {std::pair{0.0, 0.0}, {2.0, 0.0}, {2.0, 2.0}, {0.0, 2.0}})
        square.append(KEZMathPoint(x, y, 1.0));
    const KEZVisRepGraphics lines({new KEZVisPolylinePrimitive(square, KEZVisPolylinePrimitive::StructureConnected)},
                                  KEZVisOptions());
    const KEZVisRepGraphics points({new KEZVisPointPrimitive(square)}, KEZVisOptions());
    KEZTest::PipeLikeDevice device(FileOf({&lines, &points}));

    const Kvr::ReadResult result = Kvr::Read(device);
    EXPECT_TRUE(result.error.isEmpty()) << result.error.toStdString();
    ASSERT_EQ(result.reps.size(), 2u);
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    result.reps.at(0)->GetPrimitives(primitives, options);
    ASSERT_EQ(primitives.size(), 1);
    const auto *polyline = qobject_cast<const KEZVisPolylinePrimitive *>(primitives.at(0));
    ASSERT_NE(polyline, nullptr);
    EXPECT_EQ(polyline->GetNumPoints(), 4);
    EXPECT_EQ(polyline->GetCoordsAsDouble().at(6), 2.0);
}

TEST(KvrFile, RefusesAPointCountBeyondTheBytesOfASequentialDeviceWithoutMakingRoomForIt)
{
    KEZMathSetOfPoints one;
    one.append(KEZMathPoint(1, 2, 3));
    const KEZVisRepGraphics points({new KEZVisPointPrimitive(one)}, KEZVisOptions());
    QByteArray file = FileOf({&points});
    // The point count, a qint32 of value 1, is followed by the 24 bytes of the
    // point at the end of the file; 2^31 - 1 points would take 48 GB.
    const qsizetype countAt = file.size() - 24 - 4;
    ASSERT_EQ(file.mid(countAt, 4), QByteArray::fromHex("00000001"));
    file.replace(countAt, 4, QByteArray::fromHex("7fffffff"));

    const long before = PeakResidentKilobytes();
    KEZTest::PipeLikeDevice device(file);
    const Kvr::ReadResult result = Kvr::Read(device);
    EXPECT_EQ(result.error, QStringLiteral("truncated or corrupt rep stream at rep 1 of 1"));
    EXPECT_TRUE(result.reps.empty());
    EXPECT_LT(PeakResidentKilobytes() - before, 256 * 1024);
}

TEST(KvrFuzzRegression, APolylineCountBeyondTheBytesOfASequentialDeviceIsRefusedWithoutMakingRoomForIt)
{
    // Found by KvrFileFuzzer: a polyline that announced 10^8 points on a
    // sequential device, where the bytes left cannot be known. The reader
    // allocated 2.4 GB for the count before it found the bytes missing.
    const QByteArray input = FuzzRegression("KvrFileFuzzer", "sequential-polyline-count-beyond-the-bytes");
    ASSERT_EQ(input.at(0) & 1, 1); // the sequential device
    const QByteArray file = input.mid(1);
    const qsizetype countAt = PolylineCountOffset(file);
    ASSERT_EQ(file.mid(countAt, 8), QByteArray::fromHex("0000000005f5e100")); // 10^8

    const long before = PeakResidentKilobytes();
    KEZTest::PipeLikeDevice device(file);
    const Kvr::ReadResult result = Kvr::Read(device);
    EXPECT_EQ(result.error, QStringLiteral("truncated or corrupt rep stream at rep 1 of 1"));
    EXPECT_TRUE(result.reps.empty());
    EXPECT_LT(PeakResidentKilobytes() - before, 256 * 1024);

    // The same file from a buffer, whose size the reader checks the count against.
    QBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadOnly);
    EXPECT_EQ(Kvr::Read(buffer).error, QStringLiteral("truncated or corrupt rep stream at rep 1 of 1"));
}

TEST(KvrFile, ReadsAPolylineWithThePointCountOfAFileRewrittenByHandFromASequentialDevice)
{
    KEZMathSetOfPoints three;
    for (double x : {0.0, 1.0, 2.0})
        three.append(KEZMathPoint(x, 0.0, 0.0));
    const KEZVisRepGraphics lines({new KEZVisPolylinePrimitive(three, KEZVisPolylinePrimitive::StructureConnected)},
                                  KEZVisOptions());
    QByteArray file = FileOf({&lines});
    // Announcing 2 of the 3 points leaves the third point's 24 bytes after the
    // last rep.
    PutBigEndian64(file, PolylineCountOffset(file), 2);
    KEZTest::PipeLikeDevice device(file);
    EXPECT_EQ(Kvr::Read(device).error, QStringLiteral("unexpected data after the last of 1 reps"));
}
