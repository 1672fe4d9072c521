// Fuzzes the stream reader of KEZVisPolylinePrimitive on any bytes.
//
// Input: one byte of stream settings (see FuzzSupport.h), then the stream.
// Checked: the lists agree with the number of points, a failed read leaves no
// points, and the box is safe to ask.

#include "FuzzSupport.h"

#include "KEZVisOptions.h"
#include "KEZVisPolylinePrimitive.h"

#include <KEZMathBoundingBox.h>
#include <KEZMathSetOfPoints.h>

namespace {

void Check(const KEZVisPolylinePrimitive &polyline, bool good)
{
    const int points = polyline.GetNumPoints();
    if (points < 0 || polyline.GetCoordsAsDouble().size() != size_t(points) * 3 ||
        polyline.GetCoordsAsFloat().size() != size_t(points) * 3)
        __builtin_trap();
    if (!good && points != 0)
        __builtin_trap();
    (void)polyline.GetStructure();
    (void)polyline.GetBoundingBox(KEZVisOptions());
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    KEZFuzz::SetUpApplication();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < 1)
        return 0;
    const KEZFuzz::StreamSettings settings = KEZFuzz::StreamSettings::FromByte(data[0]);
    const QByteArray bytes = KEZFuzz::Rest(data, size);

    KEZVisPolylinePrimitive polyline(KEZMathSetOfPoints(), KEZVisPolylinePrimitive::StructureConnected);
    QDataStream in(bytes);
    settings.ApplyTo(in);
    in >> polyline;
    Check(polyline, in.status() == QDataStream::Ok);

    // What was read writes out, and a second read from the rest of the bytes
    // replaces it; the reader sets an earlier failure again, so the second
    // read starts from a good stream to be judged alone.
    QByteArray written;
    {
        QDataStream out(&written, QIODevice::WriteOnly);
        settings.ApplyTo(out);
        out << polyline;
    }
    in.resetStatus();
    in >> polyline;
    Check(polyline, in.status() == QDataStream::Ok);
    return 0;
}
