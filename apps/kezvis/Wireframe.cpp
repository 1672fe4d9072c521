#include "Wireframe.h"

#include <KEZVisPolylinePrimitive.h>
#include <KEZVisRepGraphics.h>
#include <KEZVisSurfacePrimitive.h>

#include <KEZMathPoint.h>
#include <KEZMathSetOfPoints.h>

#include <algorithm>
#include <set>
#include <utility>

namespace {

KEZMathPoint Oblique(const QList<double> &coords, long index)
{
    const double x = coords[3 * index];
    const double y = coords[3 * index + 1];
    const double z = coords[3 * index + 2];
    return KEZMathPoint(x + 0.35 * z, y + 0.25 * z, 0.0);
}

void AppendEdges(const KEZVisSurfacePrimitive &surface, KEZMathSetOfPoints &segments)
{
    const QList<double> coords = surface.GetVertexCoordinatesAsDouble();
    const QList<long> indexes = surface.GetTriangleVertexIndexes();
    const long vertexes = long(coords.size() / 3);
    std::set<std::pair<long, long>> seen;
    for (qsizetype t = 0; t + 2 < indexes.size(); t += 3)
        for (int corner = 0; corner < 3; ++corner) {
            const long a = indexes[t + corner];
            const long b = indexes[t + (corner + 1) % 3];
            if (a < 0 || b < 0 || a >= vertexes || b >= vertexes)
                continue;
            if (!seen.insert({std::min(a, b), std::max(a, b)}).second)
                continue;
            segments.append(Oblique(coords, a));
            segments.append(Oblique(coords, b));
        }
}

} // namespace

KEZVisRep *WireframeOf(const KEZVisRep &rep, const KEZVisOptions &options)
{
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> optionsOfPrimitives;
    rep.GetPrimitives(primitives, optionsOfPrimitives);
    KEZMathSetOfPoints segments;
    for (const KEZVisPrimitive *primitive : primitives)
        if (const auto *surface = qobject_cast<const KEZVisSurfacePrimitive *>(primitive))
            AppendEdges(*surface, segments);
    if (segments.isEmpty())
        return new KEZVisRepGraphics();
    return new KEZVisRepGraphics(
        QList<const KEZVisPrimitive *>{
            new KEZVisPolylinePrimitive(segments, KEZVisPolylinePrimitive::StructureSeparateSegments)},
        options);
}
