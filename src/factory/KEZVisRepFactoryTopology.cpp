// The reps of topology: the vertices, edges and faces of a body as one rep set,
// and a list of vertices as a point rep.

#include "KEZVisRepFactory.h"

#include "KEZVisPointPrimitive.h"
#include "KEZVisPolylinePrimitive.h"
#include "KEZVisRepGraphics.h"
#include "KEZVisRepSet.h"
#include "KEZVisSurfacePrimitive.h"

#include <KEZGeoComboCurve.h>
#include <KEZGeoComboPoint.h>
#include <KEZGeoRangeOfCurve.h>
#include <KEZGeoSurface.h>
#include <KEZTopBody.h>
#include <KEZTopEdge.h>
#include <KEZTopFace.h>
#include <KEZTopVertex.h>

#include <QLoggingCategory>

#include <limits>
#include <memory>
#include <new>
#include <vector>

namespace {

// Only warnings are written here, about input that cannot be shown.
Q_LOGGING_CATEGORY(lcKezTopology, "kez.visualization.topology", QtWarningMsg)

enum Dimension { DimensionVertices = 0, DimensionEdges = 1, DimensionFaces = 2 };

// Counts the entries of one list that are left out for one reason, and the
// index of the first, so that a call writes one warning per reason however
// many entries share it.
class SkipCounter
{
public:
    void Skip(qsizetype index)
    {
        if (m_count == 0)
            m_first = index;
        ++m_count;
    }

    // Writes "<what>" with the count and the first index, if anything was
    // skipped. `what` holds %1 for the count and %2 for the index.
    void Warn(const char *what) const
    {
        if (m_count > 0)
            qCWarning(lcKezTopology).noquote() << QString::fromLatin1(what).arg(m_count).arg(m_first);
    }

private:
    qsizetype m_count = 0;
    qsizetype m_first = -1;
};

using OwnedPrimitives = std::vector<std::unique_ptr<const KEZVisPrimitive>>;
using OwnedReps = std::vector<std::unique_ptr<const KEZVisRep>>;

// A graphics rep that takes over the primitives, drawn with `options`. Until
// the rep exists the primitives stay with `primitives`, so a failure frees them.
std::unique_ptr<KEZVisRep> TakeIntoRep(OwnedPrimitives &primitives, const KEZVisOptions &options)
{
    QList<const KEZVisPrimitive *> list;
    list.reserve(qsizetype(primitives.size()));
    for (const std::unique_ptr<const KEZVisPrimitive> &primitive : primitives)
        list.append(primitive.get());
    std::unique_ptr<KEZVisRep> rep(new KEZVisRepGraphics(list, options));
    for (std::unique_ptr<const KEZVisPrimitive> &primitive : primitives)
        primitive.release(); // the rep owns it now
    primitives.clear();
    return rep;
}

// The vertices that a body lists, those of another class left out silently,
// null entries and vertices without a point left out with a warning.
QList<const KEZTopVertex *> VerticesOf(const KEZTopBody *body)
{
    const QList<QObject *> entities = body->GetEntitiesOfDimension(DimensionVertices);
    QList<const KEZTopVertex *> vertices;
    vertices.reserve(entities.size());
    SkipCounter nulls;
    SkipCounter pointless;
    for (qsizetype i = 0; i < entities.size(); ++i) {
        const QObject *entity = entities.at(i);
        if (!entity) {
            nulls.Skip(i);
            continue;
        }
        // Entries of another class are not ours to show.
        const auto *vertex = static_cast<const KEZTopVertex *>(KEZTopVertex::staticMetaObject.cast(entity));
        if (!vertex)
            continue;
        if (!vertex->GetPoint()) {
            pointless.Skip(i);
            continue;
        }
        vertices.append(vertex);
    }
    nulls.Warn("KEZVisRepFactory::CreateRep: skipped %1 null entries of dimension 0, the first at index %2");
    pointless.Warn("KEZVisRepFactory::CreateRep: skipped %1 vertices without a point, the first at index %2");
    return vertices;
}

// One polyline along the whole curve of each edge that the body lists.
OwnedPrimitives EdgePrimitivesOf(const KEZTopBody *body)
{
    const QList<QObject *> entities = body->GetEntitiesOfDimension(DimensionEdges);
    OwnedPrimitives primitives;
    primitives.reserve(size_t(entities.size()));
    SkipCounter nulls;
    SkipCounter curveless;
    for (qsizetype i = 0; i < entities.size(); ++i) {
        const QObject *entity = entities.at(i);
        if (!entity) {
            nulls.Skip(i);
            continue;
        }
        // Entries of another class are not ours to show.
        const auto *edge = static_cast<const KEZTopEdge *>(KEZTopEdge::staticMetaObject.cast(entity));
        if (!edge)
            continue;
        const KEZGeoComboCurve *curve = edge->GetCurve();
        if (!curve) {
            curveless.Skip(i);
            continue;
        }
        // An invalid (default) range stands for the whole curve.
        primitives.push_back(std::make_unique<KEZVisPolylinePrimitive>(curve, KEZGeoRangeOfCurve()));
    }
    nulls.Warn("KEZVisRepFactory::CreateRep: skipped %1 null entries of dimension 1, the first at index %2");
    curveless.Warn("KEZVisRepFactory::CreateRep: skipped %1 edges without a curve, the first at index %2");
    return primitives;
}

// One surface primitive for each face that the body lists.
OwnedPrimitives FacePrimitivesOf(const KEZTopBody *body)
{
    const QList<QObject *> entities = body->GetEntitiesOfDimension(DimensionFaces);
    OwnedPrimitives primitives;
    primitives.reserve(size_t(entities.size()));
    SkipCounter nulls;
    for (qsizetype i = 0; i < entities.size(); ++i) {
        const QObject *entity = entities.at(i);
        if (!entity) {
            nulls.Skip(i);
            continue;
        }
        // Entries of another class are not ours to show.
        const auto *face = static_cast<const KEZTopFace *>(KEZTopFace::staticMetaObject.cast(entity));
        if (!face)
            continue;
        // Every face gives its primitive; one without a surface an empty one.
        primitives.push_back(std::make_unique<KEZVisSurfacePrimitive>(face->GetSurface()));
    }
    nulls.Warn("KEZVisRepFactory::CreateRep: skipped %1 null entries of dimension 2, the first at index %2");
    return primitives;
}

// A set that takes over the children; until it exists they stay with
// `children`, so a failure frees them.
KEZVisRep *TakeIntoSet(OwnedReps &children)
{
    QList<const KEZVisRep *> list;
    list.reserve(qsizetype(children.size()));
    for (const std::unique_ptr<const KEZVisRep> &child : children)
        list.append(child.get());
    auto *set = new KEZVisRepSet(list);
    for (std::unique_ptr<const KEZVisRep> &child : children)
        child.release(); // the set owns it now
    children.clear();
    return set;
}

} // namespace

KEZVisRep *KEZVisRepFactory::CreateRep(QList<KEZTopVertex const *> const &vertices, KEZVisOptions const &options)
{
    // Only vertices with a point can be shown; the others are counted out
    // first so that the array has its final size from the start.
    SkipCounter nulls;
    SkipCounter pointless;
    std::vector<const KEZGeoComboPoint *> points;
    points.reserve(size_t(vertices.size()));
    for (qsizetype i = 0; i < vertices.size(); ++i) {
        const KEZTopVertex *vertex = vertices.at(i);
        if (!vertex) {
            nulls.Skip(i);
            continue;
        }
        const KEZGeoComboPoint *point = vertex->GetPoint();
        if (!point) {
            pointless.Skip(i);
            continue;
        }
        points.push_back(point);
    }
    nulls.Warn("KEZVisRepFactory::CreateRep: skipped %1 null vertices, the first at index %2");
    pointless.Warn("KEZVisRepFactory::CreateRep: skipped %1 vertices without a point, the first at index %2");

    const size_t count = points.size();
    if (count > size_t(std::numeric_limits<int>::max()))
        throw std::bad_array_new_length(); // the primitive counts its points with an int
    std::unique_ptr<double[]> coords(new double[3 * count]);
    for (size_t i = 0; i < count; ++i) {
        double *xyz = coords.get() + 3 * i;
        points[i]->GetMathPoint().GetCoord(xyz[0], xyz[1], xyz[2]);
    }

    // The allocation of the primitive comes before its arguments are
    // evaluated, so the array is released only once there is a primitive to
    // take it.
    std::unique_ptr<const KEZVisPrimitive> primitive(new KEZVisPointPrimitive(coords.release(), int(count)));
    OwnedPrimitives primitives;
    primitives.push_back(std::move(primitive));
    return TakeIntoRep(primitives, options).release();
}

KEZVisRep *KEZVisRepFactory::CreateRep(KEZTopBody const *body, KEZVisOptions const &vertexOptions,
                                       KEZVisOptions const &edgeOptions, KEZVisOptions const &faceOptions,
                                       QFlags<KEZVisOptions::VisibleGeometry> const &visible)
{
    OwnedReps children;
    children.reserve(3);
    if (!body) {
        qCWarning(lcKezTopology, "KEZVisRepFactory::CreateRep: no body given, the result is an empty rep set");
        return TakeIntoSet(children);
    }

    if (visible.testFlag(KEZVisOptions::VisibleVertices)) {
        const QList<const KEZTopVertex *> vertices = VerticesOf(body);
        if (!vertices.isEmpty()) {
            std::unique_ptr<const KEZVisRep> child(CreateRep(vertices, vertexOptions));
            children.push_back(std::move(child));
        }
    }
    if (visible.testFlag(KEZVisOptions::VisibleEdges)) {
        OwnedPrimitives edges = EdgePrimitivesOf(body);
        if (!edges.empty())
            children.push_back(TakeIntoRep(edges, edgeOptions));
    }
    if (visible.testFlag(KEZVisOptions::VisibleFaces)) {
        OwnedPrimitives faces = FacePrimitivesOf(body);
        if (!faces.empty())
            children.push_back(TakeIntoRep(faces, faceOptions));
    }
    return TakeIntoSet(children);
}
