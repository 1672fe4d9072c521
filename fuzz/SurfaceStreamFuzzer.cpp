// Fuzzes the stream reader of KEZVisSurfacePrimitive on any bytes.
//
// Input: one byte of stream settings (see FuzzSupport.h), then the stream.
// Checked: the lists agree with the counts, every index names a vertex, a
// failed read leaves the primitive empty, and what was read writes and reads
// back good.

#include "FuzzSupport.h"

#include "KEZVisOptions.h"
#include "KEZVisSurfacePrimitive.h"

#include <KEZMathBoundingBox.h>

namespace {

void Check(const KEZVisSurfacePrimitive &surface, bool good)
{
    const int vertexes = surface.GetNumVertexes();
    const int triangles = surface.GetNumTriangles();
    if (vertexes < 0 || triangles < 0)
        __builtin_trap();
    if (!good && (vertexes != 0 || triangles != 0))
        __builtin_trap();
    if (surface.GetVertexCoordinatesAsDouble().size() != qsizetype(vertexes) * 3 ||
        surface.GetVertexCoordinatesAsFloat().size() != qsizetype(vertexes) * 3)
        __builtin_trap();
    const QList<long> indexes = surface.GetTriangleVertexIndexes();
    if (indexes.size() != qsizetype(triangles) * 3)
        __builtin_trap();
    for (long index : indexes) {
        if (index < 0 || index >= vertexes)
            __builtin_trap();
    }
    if (surface.GetTriangleNormalCoordsAsDouble().size() != qsizetype(triangles) * 3 ||
        surface.GetTriangleNormalCoordsAsFloat().size() != qsizetype(triangles) * 3)
        __builtin_trap();
    (void)surface.GetBoundingBox(KEZVisOptions());
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

    KEZVisSurfacePrimitive surface;
    QDataStream in(bytes);
    settings.ApplyTo(in);
    in >> surface;
    const bool good = in.status() == QDataStream::Ok;
    Check(surface, good);
    if (!good)
        return 0;

    QByteArray written;
    {
        QDataStream out(&written, QIODevice::WriteOnly);
        settings.ApplyTo(out);
        out << surface;
    }
    KEZVisSurfacePrimitive again;
    QDataStream back(written);
    settings.ApplyTo(back);
    back >> again;
    if (back.status() != QDataStream::Ok || !back.atEnd())
        __builtin_trap();
    Check(again, true);
    if (again.GetNumVertexes() != surface.GetNumVertexes() || again.GetNumTriangles() != surface.GetNumTriangles())
        __builtin_trap();
    return 0;
}
