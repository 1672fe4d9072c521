// Fuzzes KEZVisRepFactory::CreateFilledPolygonPrimitive on rings decoded from
// any bytes: any doubles (NaN, infinities, denormals, huge and tiny values),
// and points on a small grid, where duplicates, collinear runs, touching and
// crossing edges and holes outside or across the outline are the rule.
//
// Input: one byte of layout, then the rings. Bit 0 of the layout picks raw
// doubles (set) or the grid (clear); bits 1 to 3 give the number of rings less
// one. Each ring is one byte of point count, then its points: x, y and z as
// three doubles in the machine's byte order for raw doubles; for the grid, x
// and y as signed bytes and z = 0. The rings end where the bytes end.
//
// Checked: a result that is not null has lists that agree with its counts, and
// every index names a vertex.

#include "FuzzSupport.h"

#include "KEZVisOptions.h"
#include "KEZVisRepFactory.h"
#include "KEZVisSurfacePrimitive.h"

#include <KEZMathBoundingBox.h>
#include <KEZMathPoint.h>
#include <KEZMathSetOfPoints.h>

#include <QList>

#include <cstring>
#include <memory>

namespace {

class Reader
{
public:
    Reader(const std::uint8_t *data, std::size_t size)
        : m_data(data)
        , m_size(size)
    {
    }

    bool Byte(std::uint8_t &value)
    {
        if (m_offset + 1 > m_size)
            return false;
        value = m_data[m_offset++];
        return true;
    }

    bool Double(double &value)
    {
        if (m_offset + sizeof(double) > m_size)
            return false;
        std::memcpy(&value, m_data + m_offset, sizeof(double));
        m_offset += sizeof(double);
        return true;
    }

private:
    const std::uint8_t *m_data;
    std::size_t m_size;
    std::size_t m_offset = 0;
};

QList<KEZMathSetOfPoints> DecodeRings(const std::uint8_t *data, std::size_t size)
{
    QList<KEZMathSetOfPoints> rings;
    Reader reader(data, size);
    std::uint8_t layout = 0;
    if (!reader.Byte(layout))
        return rings;
    const bool raw = layout & 1;
    const int ringCount = ((layout >> 1) & 7) + 1;
    for (int r = 0; r < ringCount; ++r) {
        std::uint8_t count = 0;
        if (!reader.Byte(count))
            break;
        KEZMathSetOfPoints ring;
        for (int i = 0; i < count; ++i) {
            if (raw) {
                double x = 0.0;
                double y = 0.0;
                double z = 0.0;
                if (!reader.Double(x) || !reader.Double(y) || !reader.Double(z))
                    break;
                ring.append(KEZMathPoint(x, y, z));
            } else {
                std::uint8_t x = 0;
                std::uint8_t y = 0;
                if (!reader.Byte(x) || !reader.Byte(y))
                    break;
                ring.append(KEZMathPoint(double(std::int8_t(x)), double(std::int8_t(y)), 0.0));
            }
        }
        rings.append(ring);
    }
    return rings;
}

void Check(const KEZVisSurfacePrimitive &surface)
{
    const int vertexes = surface.GetNumVertexes();
    const int triangles = surface.GetNumTriangles();
    if (vertexes < 0 || triangles < 0)
        __builtin_trap();
    if (surface.GetVertexCoordinatesAsDouble().size() != qsizetype(vertexes) * 3)
        __builtin_trap();
    const QList<long> indexes = surface.GetTriangleVertexIndexes();
    if (indexes.size() != qsizetype(triangles) * 3)
        __builtin_trap();
    for (long index : indexes) {
        if (index < 0 || index >= vertexes)
            __builtin_trap();
    }
    if (surface.GetTriangleNormalCoordsAsDouble().size() != qsizetype(triangles) * 3)
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
    const QList<KEZMathSetOfPoints> rings = DecodeRings(data, size);
    std::unique_ptr<KEZVisSurfacePrimitive> surface(KEZVisRepFactory::CreateFilledPolygonPrimitive(rings));
    if (surface)
        Check(*surface);
    return 0;
}
