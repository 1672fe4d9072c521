// Fuzzes the rep stream: Load() of every rep class on any bytes, then every
// question a client or the painter asks of the loaded rep, and a second round
// through Save() and Load().
//
// Input: one byte of stream settings (see FuzzSupport.h), one byte that picks
// the rep (its value modulo 5: an empty graphics rep, a graphics rep that holds
// a primitive and options already, a rep set, a rep set with extra options, an
// arrow rep), then the stream.

#include "FuzzSupport.h"

#include "KEZVisArrowRep.h"
#include "KEZVisOptions.h"
#include "KEZVisPointPrimitive.h"
#include "KEZVisPrimitive.h"
#include "KEZVisRepExtraSet.h"
#include "KEZVisRepGraphics.h"
#include "KEZVisRepSet.h"

#include <KEZMathBoundingBox.h>
#include <KEZMathPoint.h>
#include <KEZMathSetOfPoints.h>
#include <KEZMathVector.h>

#include <QBuffer>
#include <QList>

#include <memory>

namespace {

std::unique_ptr<KEZVisRep> MakeRep(std::uint8_t pick)
{
    switch (pick % 5) {
    case 0:
        return std::make_unique<KEZVisRepGraphics>();
    case 1: {
        KEZMathSetOfPoints points;
        points.append(KEZMathPoint(1.0, 2.0, 3.0));
        KEZVisOptions options;
        options.SetPriority(3);
        return std::make_unique<KEZVisRepGraphics>(QList<const KEZVisPrimitive *>{new KEZVisPointPrimitive(points)},
                                                   options);
    }
    case 2:
        return std::make_unique<KEZVisRepSet>(QList<const KEZVisRep *>{new KEZVisRepGraphics()});
    case 3:
        return std::make_unique<KEZVisRepExtraSet>(QList<const KEZVisRep *>{new KEZVisRepGraphics()}, KEZVisOptions());
    default:
        return std::make_unique<KEZVisArrowRep>(KEZMathPoint(0, 0, 0), KEZMathVector(0, 0, 1), 10.0, KEZVisOptions(),
                                                 6, 0.05, 0.1, 0.8);
    }
}

// Asks everything a client asks; the answers themselves are not judged here,
// only that asking is safe.
void AskEverything(const KEZVisRep &rep)
{
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    rep.GetPrimitives(primitives, options);
    if (primitives.size() != options.size())
        __builtin_trap();
    for (qsizetype i = 0; i < primitives.size(); ++i) {
        if (primitives.at(i))
            (void)primitives.at(i)->GetBoundingBox(options.at(i));
        (void)qHash(options.at(i));
        (void)options.at(i).ToJson();
    }
    (void)rep.GetBoundingBox();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    KEZFuzz::SetUpApplication();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < 2)
        return 0;
    const KEZFuzz::StreamSettings settings = KEZFuzz::StreamSettings::FromByte(data[0]);
    const QByteArray bytes = KEZFuzz::Rest(data, size, 2);

    std::unique_ptr<KEZVisRep> rep = MakeRep(data[1]);
    {
        QDataStream in(bytes);
        settings.ApplyTo(in);
        rep->Load(in);
    }
    AskEverything(*rep);

    // What was loaded saves, and the saved form loads again.
    QByteArray saved;
    {
        QDataStream out(&saved, QIODevice::WriteOnly);
        settings.ApplyTo(out);
        rep->Save(out);
    }
    std::unique_ptr<KEZVisRep> again = MakeRep(data[1]);
    {
        QDataStream in(saved);
        settings.ApplyTo(in);
        again->Load(in);
    }
    AskEverything(*again);

    // The same bytes from a device, inside a transaction as a reader of data
    // that arrives in pieces would use.
    {
        QBuffer buffer;
        buffer.setData(bytes);
        buffer.open(QIODevice::ReadOnly);
        QDataStream in(&buffer);
        settings.ApplyTo(in);
        in.startTransaction();
        std::unique_ptr<KEZVisRep> transacted = MakeRep(data[1]);
        transacted->Load(in);
        in.rollbackTransaction();
        AskEverything(*transacted);
    }
    return 0;
}
