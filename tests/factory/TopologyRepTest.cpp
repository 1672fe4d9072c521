// KEZVisRepFactory::CreateRep for topology: a list of vertices as a point rep,
// and a body's vertices, edges and faces as a rep set of up to three children.

#include "KEZVisOptions.h"
#include "KEZVisPointPrimitive.h"
#include "KEZVisPolylinePrimitive.h"
#include "KEZVisRepFactory.h"
#include "KEZVisRepGraphics.h"
#include "KEZVisRepSet.h"
#include "KEZVisSurfacePrimitive.h"

#include <KEZGeoComboCurve.h>
#include <KEZGeoComboPoint.h>
#include <KEZGeoSurface.h>
#include <KEZSysException.h>
#include <KEZTopBody.h>
#include <KEZTopEdge.h>
#include <KEZTopFace.h>
#include <KEZTopVertex.h>

#include "KEZTestHelpers.h"

#include <QColor>
#include <QHash>
#include <QStringList>

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <optional>
#include <vector>

using namespace KEZTest;

namespace {

using Flags = QFlags<KEZVisOptions::VisibleGeometry>;
const Flags AllFlags = Flags(KEZVisOptions::VisibleVertices) | KEZVisOptions::VisibleEdges | KEZVisOptions::VisibleFaces;

// A body that writes down every dimension it is asked for, in order.
class CountingBody : public KEZTopBody
{
public:
    QList<QObject *> GetEntitiesOfDimension(int dimension) const override
    {
        queries.append(dimension);
        return KEZTopBody::GetEntitiesOfDimension(dimension);
    }

    mutable QList<int> queries;
};

// A counting body that answers lists set by the test, null entries and
// objects of any class included; dimensions without a list answer empty. The
// listed objects belong to the test.
class ListingBody : public CountingBody
{
public:
    QList<QObject *> GetEntitiesOfDimension(int dimension) const override
    {
        queries.append(dimension);
        return lists.value(dimension);
    }

    QHash<int, QList<QObject *>> lists;
};

// A surface that cannot tell how many triangles it has: the surface primitive
// asks for the count when it is made, and so throws.
class UnreadableSurface : public KEZGeoSurface
{
public:
    using KEZGeoSurface::KEZGeoSurface;
    int GetNumTriangles() const override { throw KEZSysException(QStringLiteral("surface cannot be evaluated")); }
};

// A curve that cannot tell its box; the polyline asks for it when it is made.
class UnreadableCurve : public KEZGeoComboCurve
{
public:
    using KEZGeoComboCurve::KEZGeoComboCurve;
    KEZMathBoundingBox GetBoundingBox() const override
    {
        throw KEZSysException(QStringLiteral("curve cannot be evaluated"));
    }
};

// Collects the messages of the topology category while alive.
class TopologyLog
{
public:
    TopologyLog()
    {
        s_lines.clear();
        s_types.clear();
        m_previous = qInstallMessageHandler(&TopologyLog::Handle);
    }
    ~TopologyLog() { qInstallMessageHandler(m_previous); }
    const QStringList &Lines() const { return s_lines; }
    const QList<QtMsgType> &Types() const { return s_types; }

private:
    static void Handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        if (context.category && QString::fromLatin1(context.category) == QLatin1String("kez.visualization.topology")) {
            s_lines.append(message);
            s_types.append(type);
        }
    }
    static QStringList s_lines;
    static QList<QtMsgType> s_types;
    QtMessageHandler m_previous;
};
QStringList TopologyLog::s_lines;
QList<QtMsgType> TopologyLog::s_types;

KEZVisOptions OptionsOfColor(Qt::GlobalColor color, int priority)
{
    KEZVisOptions options;
    options.SetColor(QColor(color));
    options.SetPriority(priority);
    return options;
}

const KEZVisOptions VertexOptions = OptionsOfColor(Qt::red, 3);
const KEZVisOptions EdgeOptions = OptionsOfColor(Qt::green, 5);
const KEZVisOptions FaceOptions = OptionsOfColor(Qt::blue, 7);

std::unique_ptr<KEZVisRep> RepOf(const KEZTopBody *body, Flags visible)
{
    return std::unique_ptr<KEZVisRep>(KEZVisRepFactory::CreateRep(body, VertexOptions, EdgeOptions, FaceOptions, visible));
}

QList<const KEZVisRep *> ChildrenOf(const KEZVisRep *rep)
{
    const auto *set = qobject_cast<const KEZVisRepSet *>(rep);
    EXPECT_NE(set, nullptr);
    return set ? set->GetChildVisReps() : QList<const KEZVisRep *>();
}

struct Answer
{
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
};

Answer PrimitivesOf(const KEZVisRep *rep)
{
    Answer answer;
    rep->GetPrimitives(answer.primitives, answer.options);
    return answer;
}

template <typename Primitive>
const Primitive *As(const KEZVisPrimitive *primitive)
{
    return qobject_cast<const Primitive *>(primitive);
}

std::vector<double> Flat(std::initializer_list<KEZMathPoint> points)
{
    std::vector<double> flat;
    for (const KEZMathPoint &point : points) {
        flat.push_back(point.GetX());
        flat.push_back(point.GetY());
        flat.push_back(point.GetZ());
    }
    return flat;
}

// Geometry and the topology on it, kept alive for a whole test: the geometry
// is made first and so goes last, after the body and after the reps that read
// it.
struct Model
{
    std::vector<std::unique_ptr<KEZGeoGeometry>> geometry;
    CountingBody body;

    const KEZGeoComboPoint *Point(const KEZMathPoint &at)
    {
        geometry.push_back(std::make_unique<KEZGeoComboPoint>(at));
        return static_cast<const KEZGeoComboPoint *>(geometry.back().get());
    }
    KEZTopVertex *AddVertex(const KEZMathPoint &at)
    {
        auto *vertex = new KEZTopVertex(Point(at));
        body.AddEntity(0, vertex);
        return vertex;
    }
    KEZTopEdge *AddEdge(const KEZMathSetOfPoints &points, bool closed)
    {
        geometry.push_back(std::make_unique<KEZGeoComboCurve>(points, closed));
        auto *edge = new KEZTopEdge(static_cast<const KEZGeoComboCurve *>(geometry.back().get()));
        body.AddEntity(1, edge);
        return edge;
    }
    KEZTopFace *AddFace(const KEZMathSetOfPoints &points, const QList<int> &triangles)
    {
        geometry.push_back(std::make_unique<KEZGeoSurface>(points, triangles));
        auto *face = new KEZTopFace(static_cast<const KEZGeoSurface *>(geometry.back().get()));
        body.AddEntity(2, face);
        return face;
    }
};

// A body of one of each kind.
void FillOneOfEach(Model &model)
{
    model.AddVertex(KEZMathPoint(1.0, 2.0, 3.0));
    model.AddEdge(Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(4.0, 0.0, 0.0)}), false);
    model.AddFace(Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(1.0, 0.0, 0.0), KEZMathPoint(0.0, 1.0, 0.0)}),
                  {0, 1, 2});
}

// The kind of the single primitive class of a graphics child: 'P' points,
// 'L' polylines, 'S' surfaces, '?' anything else or a mixture.
char KindOf(const KEZVisRep *child)
{
    const Answer answer = PrimitivesOf(child);
    char kind = 0;
    for (const KEZVisPrimitive *primitive : answer.primitives) {
        char mine = '?';
        if (As<KEZVisPointPrimitive>(primitive))
            mine = 'P';
        else if (As<KEZVisPolylinePrimitive>(primitive))
            mine = 'L';
        else if (As<KEZVisSurfacePrimitive>(primitive))
            mine = 'S';
        if (kind != 0 && kind != mine)
            return '?';
        kind = mine;
    }
    return kind == 0 ? '?' : kind;
}

std::string KindsOf(const KEZVisRep *rep)
{
    std::string kinds;
    for (const KEZVisRep *child : ChildrenOf(rep))
        kinds += KindOf(child);
    return kinds;
}

} // namespace

// ---------------------------------------------------------------------------
// A list of vertices

TEST(TopologyVertexRep, VerticesGiveOnePointPrimitiveWithTheirPointsInOrder)
{
    Model model;
    const KEZTopVertex *a = model.AddVertex(KEZMathPoint(1.0, 2.0, 3.0));
    const KEZTopVertex *b = model.AddVertex(KEZMathPoint(-4.5, 0.25, 6.0));
    const KEZTopVertex *c = model.AddVertex(KEZMathPoint(7.0, -8.0, -9.5));

    const std::unique_ptr<KEZVisRep> rep(KEZVisRepFactory::CreateRep({c, a, b}, VertexOptions));

    ASSERT_NE(qobject_cast<KEZVisRepGraphics *>(rep.get()), nullptr);
    const Answer answer = PrimitivesOf(rep.get());
    ASSERT_EQ(answer.primitives.size(), 1);
    const auto *points = As<KEZVisPointPrimitive>(answer.primitives.at(0));
    ASSERT_NE(points, nullptr);
    EXPECT_EQ(points->GetNumPoints(), 3);
    EXPECT_EQ(points->GetCoordsAsDouble(),
              Flat({KEZMathPoint(7.0, -8.0, -9.5), KEZMathPoint(1.0, 2.0, 3.0), KEZMathPoint(-4.5, 0.25, 6.0)}));
    EXPECT_TRUE(answer.options.at(0) == VertexOptions);
}

TEST(TopologyVertexRep, EmptyListGivesARepWithAPointPrimitiveOfNoPoints)
{
    TopologyLog log;
    const std::unique_ptr<KEZVisRep> rep(KEZVisRepFactory::CreateRep(QList<const KEZTopVertex *>(), VertexOptions));

    ASSERT_NE(qobject_cast<KEZVisRepGraphics *>(rep.get()), nullptr);
    const Answer answer = PrimitivesOf(rep.get());
    ASSERT_EQ(answer.primitives.size(), 1);
    const auto *points = As<KEZVisPointPrimitive>(answer.primitives.at(0));
    ASSERT_NE(points, nullptr);
    EXPECT_EQ(points->GetNumPoints(), 0);
    EXPECT_TRUE(points->GetCoordsAsDouble().empty());
    EXPECT_TRUE(answer.options.at(0) == VertexOptions);
    EXPECT_TRUE(log.Lines().isEmpty());
}

TEST(TopologyVertexRep, NullVerticesAreLeftOutWithOneWarning)
{
    Model model;
    const KEZTopVertex *a = model.AddVertex(KEZMathPoint(1.0, 2.0, 3.0));
    const KEZTopVertex *b = model.AddVertex(KEZMathPoint(4.0, 5.0, 6.0));
    TopologyLog log;

    const std::unique_ptr<KEZVisRep> rep(KEZVisRepFactory::CreateRep({a, nullptr, b, nullptr}, VertexOptions));

    const auto *points = As<KEZVisPointPrimitive>(PrimitivesOf(rep.get()).primitives.value(0));
    ASSERT_NE(points, nullptr);
    EXPECT_EQ(points->GetCoordsAsDouble(), Flat({KEZMathPoint(1.0, 2.0, 3.0), KEZMathPoint(4.0, 5.0, 6.0)}));
    EXPECT_EQ(log.Lines(),
              QStringList{"KEZVisRepFactory::CreateRep: skipped 2 null vertices, the first at index 1"});
    EXPECT_EQ(log.Types(), QList<QtMsgType>{QtWarningMsg});
}

TEST(TopologyVertexRep, VertexWhosePointIsGoneIsLeftOutWithAWarning)
{
    Model model;
    const KEZTopVertex *kept = model.AddVertex(KEZMathPoint(1.0, 2.0, 3.0));
    const auto *without = new KEZTopVertex(nullptr, &model.body);
    auto *point = new KEZGeoComboPoint(KEZMathPoint(9.0, 9.0, 9.0));
    const auto *orphaned = new KEZTopVertex(point, &model.body);
    delete point;
    ASSERT_EQ(orphaned->GetPoint(), nullptr);
    TopologyLog log;

    const std::unique_ptr<KEZVisRep> rep(KEZVisRepFactory::CreateRep({without, kept, orphaned}, VertexOptions));

    const auto *points = As<KEZVisPointPrimitive>(PrimitivesOf(rep.get()).primitives.value(0));
    ASSERT_NE(points, nullptr);
    EXPECT_EQ(points->GetCoordsAsDouble(), Flat({KEZMathPoint(1.0, 2.0, 3.0)}));
    EXPECT_EQ(log.Lines(),
              QStringList{"KEZVisRepFactory::CreateRep: skipped 2 vertices without a point, the first at index 0"});
}

// ---------------------------------------------------------------------------
// A body: what is asked for, and the order of the children

TEST(TopologyBodyRep, AllFlagsClearGiveAnEmptySetWithoutQueryingTheBody)
{
    Model model;
    FillOneOfEach(model);

    const std::unique_ptr<KEZVisRep> rep = RepOf(&model.body, Flags());

    ASSERT_NE(qobject_cast<KEZVisRepSet *>(rep.get()), nullptr);
    EXPECT_TRUE(ChildrenOf(rep.get()).isEmpty());
    EXPECT_TRUE(PrimitivesOf(rep.get()).primitives.isEmpty());
    EXPECT_TRUE(model.body.queries.isEmpty());
}

TEST(TopologyBodyRep, VerticesFlagAloneQueriesDimensionZeroOnly)
{
    Model model;
    FillOneOfEach(model);

    const std::unique_ptr<KEZVisRep> rep = RepOf(&model.body, KEZVisOptions::VisibleVertices);

    EXPECT_EQ(model.body.queries, QList<int>{0});
    EXPECT_EQ(KindsOf(rep.get()), "P");
}

TEST(TopologyBodyRep, EdgesFlagAloneQueriesDimensionOneOnly)
{
    Model model;
    FillOneOfEach(model);

    const std::unique_ptr<KEZVisRep> rep = RepOf(&model.body, KEZVisOptions::VisibleEdges);

    EXPECT_EQ(model.body.queries, QList<int>{1});
    EXPECT_EQ(KindsOf(rep.get()), "L");
}

TEST(TopologyBodyRep, FacesFlagAloneQueriesDimensionTwoOnly)
{
    Model model;
    FillOneOfEach(model);

    const std::unique_ptr<KEZVisRep> rep = RepOf(&model.body, KEZVisOptions::VisibleFaces);

    EXPECT_EQ(model.body.queries, QList<int>{2});
    EXPECT_EQ(KindsOf(rep.get()), "S");
}

TEST(TopologyBodyRep, AllFlagsQueryEachDimensionOnceInOrder)
{
    Model model;
    FillOneOfEach(model);

    const std::unique_ptr<KEZVisRep> rep = RepOf(&model.body, AllFlags);

    EXPECT_EQ(model.body.queries, (QList<int>{0, 1, 2}));
}

TEST(TopologyBodyRep, BitsBeyondTheThreeFlagsQueryNothing)
{
    Model model;
    FillOneOfEach(model);

    const std::unique_ptr<KEZVisRep> rep =
        RepOf(&model.body, Flags::fromInt(8 | 16 | 32 | 64 | 128 | 0x40000000));

    EXPECT_TRUE(model.body.queries.isEmpty());
    EXPECT_TRUE(ChildrenOf(rep.get()).isEmpty());
}

TEST(TopologyBodyRep, ChildrenComeAsVerticesEdgesFacesWhateverTheOrderOfTheFlags)
{
    Model model;
    FillOneOfEach(model);

    const std::unique_ptr<KEZVisRep> rep = RepOf(
        &model.body, Flags(KEZVisOptions::VisibleFaces) | KEZVisOptions::VisibleVertices | KEZVisOptions::VisibleEdges);

    EXPECT_EQ(KindsOf(rep.get()), "PLS");
}

TEST(TopologyBodyRep, EdgeChildComesBeforeFaceChildWhateverTheOrderOfTheFlags)
{
    Model model;
    FillOneOfEach(model);

    const std::unique_ptr<KEZVisRep> facesFirst =
        RepOf(&model.body, Flags(KEZVisOptions::VisibleFaces) | KEZVisOptions::VisibleEdges);
    const std::unique_ptr<KEZVisRep> edgesFirst =
        RepOf(&model.body, Flags(KEZVisOptions::VisibleEdges) | KEZVisOptions::VisibleFaces);

    EXPECT_EQ(KindsOf(facesFirst.get()), "LS");
    EXPECT_EQ(KindsOf(edgesFirst.get()), "LS");
    const QList<const KEZVisRep *> children = ChildrenOf(facesFirst.get());
    ASSERT_EQ(children.size(), 2);
    EXPECT_TRUE(PrimitivesOf(children.at(0)).options.value(0) == EdgeOptions);
    EXPECT_TRUE(PrimitivesOf(children.at(1)).options.value(0) == FaceOptions);
}

// ---------------------------------------------------------------------------
// A body: kinds with nothing to show

TEST(TopologyBodyRep, BodyWithoutVerticesGivesNoVertexChild)
{
    Model model;
    model.AddEdge(Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(1.0, 0.0, 0.0)}), false);

    const std::unique_ptr<KEZVisRep> rep = RepOf(&model.body, AllFlags);

    EXPECT_EQ(KindsOf(rep.get()), "L");
    EXPECT_EQ(model.body.queries, (QList<int>{0, 1, 2}));
}

TEST(TopologyBodyRep, BodyWithoutEdgesGivesNoEdgeChild)
{
    Model model;
    model.AddVertex(KEZMathPoint(1.0, 1.0, 1.0));
    model.AddFace(Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(1.0, 0.0, 0.0), KEZMathPoint(0.0, 1.0, 0.0)}),
                  {0, 1, 2});

    const std::unique_ptr<KEZVisRep> rep = RepOf(&model.body, AllFlags);

    EXPECT_EQ(KindsOf(rep.get()), "PS");
}

TEST(TopologyBodyRep, BodyWithoutFacesGivesNoFaceChild)
{
    Model model;
    model.AddVertex(KEZMathPoint(1.0, 1.0, 1.0));
    model.AddEdge(Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(1.0, 0.0, 0.0)}), false);

    const std::unique_ptr<KEZVisRep> rep = RepOf(&model.body, AllFlags);

    EXPECT_EQ(KindsOf(rep.get()), "PL");
}

TEST(TopologyBodyRep, EmptyBodyWithAllFlagsGivesAnEmptySetNotNull)
{
    CountingBody body;

    const std::unique_ptr<KEZVisRep> rep = RepOf(&body, AllFlags);

    ASSERT_NE(qobject_cast<KEZVisRepSet *>(rep.get()), nullptr);
    EXPECT_TRUE(ChildrenOf(rep.get()).isEmpty());
}

// ---------------------------------------------------------------------------
// A body: what each entity gives

TEST(TopologyBodyRep, FaceGivesExactlyOnePrimitiveWhateverTheLoopsOfItsSurface)
{
    // A square frame: an outer and an inner loop of four points, joined by
    // eight triangles, and a separate triangle beside it.
    Model model;
    const KEZMathSetOfPoints frame = Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(4.0, 0.0, 0.0),
                                             KEZMathPoint(4.0, 4.0, 0.0), KEZMathPoint(0.0, 4.0, 0.0),
                                             KEZMathPoint(1.0, 1.0, 0.0), KEZMathPoint(3.0, 1.0, 0.0),
                                             KEZMathPoint(3.0, 3.0, 0.0), KEZMathPoint(1.0, 3.0, 0.0),
                                             KEZMathPoint(6.0, 0.0, 0.0), KEZMathPoint(7.0, 0.0, 0.0),
                                             KEZMathPoint(6.0, 1.0, 0.0)});
    const QList<int> triangles = {0, 1, 5, 0, 5, 4, 1, 2, 6, 1, 6, 5, 2, 3, 7, 2, 7, 6, 3, 0, 4, 3, 4, 7, 8, 9, 10};
    model.AddFace(frame, triangles);

    const std::unique_ptr<KEZVisRep> rep = RepOf(&model.body, KEZVisOptions::VisibleFaces);

    const QList<const KEZVisRep *> children = ChildrenOf(rep.get());
    ASSERT_EQ(children.size(), 1);
    const Answer answer = PrimitivesOf(children.at(0));
    ASSERT_EQ(answer.primitives.size(), 1);
    const auto *surface = As<KEZVisSurfacePrimitive>(answer.primitives.at(0));
    ASSERT_NE(surface, nullptr);
    EXPECT_EQ(surface->GetNumVertexes(), 11);
    EXPECT_EQ(surface->GetNumTriangles(), 9);
    const QList<long> expected(triangles.begin(), triangles.end());
    EXPECT_EQ(surface->GetTriangleVertexIndexes(), expected);
}

TEST(TopologyBodyRep, EachFaceGivesOneSurfacePrimitiveInTheBodysOrder)
{
    Model model;
    model.AddFace(Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(1.0, 0.0, 0.0), KEZMathPoint(0.0, 1.0, 0.0)}),
                  {0, 1, 2});
    model.AddFace(Points({KEZMathPoint(0.0, 0.0, 2.0), KEZMathPoint(1.0, 0.0, 2.0), KEZMathPoint(1.0, 1.0, 2.0),
                          KEZMathPoint(0.0, 1.0, 2.0)}),
                  {0, 1, 2, 0, 2, 3});

    const std::unique_ptr<KEZVisRep> rep = RepOf(&model.body, KEZVisOptions::VisibleFaces);

    const Answer answer = PrimitivesOf(rep.get());
    ASSERT_EQ(answer.primitives.size(), 2);
    const auto *first = As<KEZVisSurfacePrimitive>(answer.primitives.at(0));
    const auto *second = As<KEZVisSurfacePrimitive>(answer.primitives.at(1));
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(first->GetNumTriangles(), 1);
    EXPECT_EQ(second->GetNumTriangles(), 2);
    EXPECT_EQ(second->GetVertexCoordinatesAsDouble().value(2), 2.0);
}

TEST(TopologyBodyRep, OpenEdgeGivesThePolylineThroughAllItsVertices)
{
    Model model;
    model.AddEdge(Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(2.0, 1.0, 0.0), KEZMathPoint(3.0, 5.0, -1.0)}),
                  false);

    const std::unique_ptr<KEZVisRep> rep = RepOf(&model.body, KEZVisOptions::VisibleEdges);

    const auto *polyline = As<KEZVisPolylinePrimitive>(PrimitivesOf(rep.get()).primitives.value(0));
    ASSERT_NE(polyline, nullptr);
    EXPECT_EQ(polyline->GetNumPoints(), 3);
    EXPECT_EQ(polyline->GetStructure(), KEZVisPolylinePrimitive::StructureConnected);
    EXPECT_EQ(polyline->GetCoordsAsDouble(),
              Flat({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(2.0, 1.0, 0.0), KEZMathPoint(3.0, 5.0, -1.0)}));
}

TEST(TopologyBodyRep, ClosedEdgeGivesTheWholeCurveBackToItsFirstVertex)
{
    Model model;
    model.AddEdge(Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(1.0, 0.0, 0.0), KEZMathPoint(1.0, 1.0, 0.0),
                          KEZMathPoint(0.0, 1.0, 0.0)}),
                  true);

    const std::unique_ptr<KEZVisRep> rep = RepOf(&model.body, KEZVisOptions::VisibleEdges);

    const auto *polyline = As<KEZVisPolylinePrimitive>(PrimitivesOf(rep.get()).primitives.value(0));
    ASSERT_NE(polyline, nullptr);
    EXPECT_EQ(polyline->GetNumPoints(), 5);
    EXPECT_EQ(polyline->GetCoordsAsDouble(),
              Flat({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(1.0, 0.0, 0.0), KEZMathPoint(1.0, 1.0, 0.0),
                    KEZMathPoint(0.0, 1.0, 0.0), KEZMathPoint(0.0, 0.0, 0.0)}));
}

TEST(TopologyBodyRep, EachPolylineHoldsAReferenceOnItsCurveWhileTheRepLives)
{
    Model model;
    const KEZTopEdge *edge =
        model.AddEdge(Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(1.0, 0.0, 0.0)}), false);
    const KEZGeoComboCurve *curve = edge->GetCurve();
    ASSERT_EQ(curve->GetReferenceCount(), 0);

    std::unique_ptr<KEZVisRep> rep = RepOf(&model.body, AllFlags);
    EXPECT_EQ(curve->GetReferenceCount(), 1);
    rep.reset();
    EXPECT_EQ(curve->GetReferenceCount(), 0);
}

TEST(TopologyBodyRep, BodyVerticesGiveOnePointPrimitiveInTheBodysOrder)
{
    Model model;
    model.AddVertex(KEZMathPoint(3.0, 2.0, 1.0));
    model.AddVertex(KEZMathPoint(-1.0, -2.0, -3.0));

    const std::unique_ptr<KEZVisRep> rep = RepOf(&model.body, KEZVisOptions::VisibleVertices);

    const Answer answer = PrimitivesOf(rep.get());
    ASSERT_EQ(answer.primitives.size(), 1);
    const auto *points = As<KEZVisPointPrimitive>(answer.primitives.at(0));
    ASSERT_NE(points, nullptr);
    EXPECT_EQ(points->GetCoordsAsDouble(), Flat({KEZMathPoint(3.0, 2.0, 1.0), KEZMathPoint(-1.0, -2.0, -3.0)}));
    EXPECT_TRUE(answer.options.at(0) == VertexOptions);
}

// ---------------------------------------------------------------------------
// A body: entries of other classes, null entries and missing geometry

TEST(TopologyBodyRep, EntriesOfOtherClassesAmongVerticesAreSkippedSilently)
{
    Model model;
    const KEZTopVertex *vertex = model.AddVertex(KEZMathPoint(1.0, 2.0, 3.0));
    QObject stranger;
    KEZTopEdge edge(nullptr);
    ListingBody body;
    body.lists[0] = {&stranger, const_cast<KEZTopVertex *>(vertex), &edge};
    TopologyLog log;

    const std::unique_ptr<KEZVisRep> rep = RepOf(&body, KEZVisOptions::VisibleVertices);

    const auto *points = As<KEZVisPointPrimitive>(PrimitivesOf(rep.get()).primitives.value(0));
    ASSERT_NE(points, nullptr);
    EXPECT_EQ(points->GetCoordsAsDouble(), Flat({KEZMathPoint(1.0, 2.0, 3.0)}));
    EXPECT_TRUE(log.Lines().isEmpty());
}

TEST(TopologyBodyRep, EntriesOfOtherClassesAmongEdgesAreSkippedSilently)
{
    Model model;
    KEZTopEdge *edge = model.AddEdge(Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(1.0, 0.0, 0.0)}), false);
    KEZTopVertex vertex(model.Point(KEZMathPoint(5.0, 5.0, 5.0)));
    KEZTopFace face(nullptr);
    ListingBody body;
    body.lists[1] = {&vertex, edge, &face};
    TopologyLog log;

    const std::unique_ptr<KEZVisRep> rep = RepOf(&body, KEZVisOptions::VisibleEdges);

    EXPECT_EQ(KindsOf(rep.get()), "L");
    EXPECT_EQ(PrimitivesOf(rep.get()).primitives.size(), 1);
    EXPECT_TRUE(log.Lines().isEmpty());
}

TEST(TopologyBodyRep, EntriesOfOtherClassesAmongFacesAreSkippedSilently)
{
    Model model;
    KEZTopFace *face =
        model.AddFace(Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(1.0, 0.0, 0.0), KEZMathPoint(0.0, 1.0, 0.0)}),
                      {0, 1, 2});
    KEZTopVertex vertex(model.Point(KEZMathPoint(5.0, 5.0, 5.0)));
    QObject stranger;
    ListingBody body;
    body.lists[2] = {&vertex, &stranger, face};
    TopologyLog log;

    const std::unique_ptr<KEZVisRep> rep = RepOf(&body, KEZVisOptions::VisibleFaces);

    EXPECT_EQ(KindsOf(rep.get()), "S");
    EXPECT_EQ(PrimitivesOf(rep.get()).primitives.size(), 1);
    EXPECT_TRUE(log.Lines().isEmpty());
}

TEST(TopologyBodyRep, ADimensionOfOnlyOtherClassesGivesNoChild)
{
    QObject stranger;
    KEZTopFace face(nullptr);
    ListingBody body;
    body.lists[0] = {&stranger, &face};
    body.lists[1] = {&stranger};
    body.lists[2] = {&stranger};

    const std::unique_ptr<KEZVisRep> rep = RepOf(&body, AllFlags);

    EXPECT_TRUE(ChildrenOf(rep.get()).isEmpty());
    EXPECT_EQ(body.queries, (QList<int>{0, 1, 2}));
}

TEST(TopologyBodyRep, NullBodyGivesAnEmptySetAndAWarning)
{
    TopologyLog log;

    const std::unique_ptr<KEZVisRep> rep = RepOf(nullptr, AllFlags);

    ASSERT_NE(qobject_cast<KEZVisRepSet *>(rep.get()), nullptr);
    EXPECT_TRUE(ChildrenOf(rep.get()).isEmpty());
    EXPECT_EQ(log.Lines(),
              QStringList{"KEZVisRepFactory::CreateRep: no body given, the result is an empty rep set"});
    EXPECT_EQ(log.Types(), QList<QtMsgType>{QtWarningMsg});
}

TEST(TopologyBodyRep, NullEntriesAreSkippedWithOneWarningPerDimension)
{
    Model model;
    KEZTopVertex *vertex = model.AddVertex(KEZMathPoint(1.0, 2.0, 3.0));
    KEZTopEdge *edge = model.AddEdge(Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(1.0, 0.0, 0.0)}), false);
    KEZTopFace *face =
        model.AddFace(Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(1.0, 0.0, 0.0), KEZMathPoint(0.0, 1.0, 0.0)}),
                      {0, 1, 2});
    ListingBody body;
    body.lists[0] = {vertex, nullptr};
    body.lists[1] = {nullptr, nullptr, edge, nullptr};
    body.lists[2] = {nullptr, face};
    TopologyLog log;

    const std::unique_ptr<KEZVisRep> rep = RepOf(&body, AllFlags);

    EXPECT_EQ(KindsOf(rep.get()), "PLS");
    EXPECT_EQ(PrimitivesOf(rep.get()).primitives.size(), 3);
    EXPECT_EQ(log.Lines(),
              (QStringList{"KEZVisRepFactory::CreateRep: skipped 1 null entries of dimension 0, the first at index 1",
                           "KEZVisRepFactory::CreateRep: skipped 3 null entries of dimension 1, the first at index 0",
                           "KEZVisRepFactory::CreateRep: skipped 1 null entries of dimension 2, the first at index 0"}));
    EXPECT_EQ(log.Types(), (QList<QtMsgType>{QtWarningMsg, QtWarningMsg, QtWarningMsg}));
}

TEST(TopologyBodyRep, VertexWithoutAPointIsSkippedWithAWarning)
{
    Model model;
    model.body.AddEntity(0, new KEZTopVertex(nullptr));
    model.AddVertex(KEZMathPoint(1.0, 2.0, 3.0));
    TopologyLog log;

    const std::unique_ptr<KEZVisRep> rep = RepOf(&model.body, KEZVisOptions::VisibleVertices);

    const auto *points = As<KEZVisPointPrimitive>(PrimitivesOf(rep.get()).primitives.value(0));
    ASSERT_NE(points, nullptr);
    EXPECT_EQ(points->GetCoordsAsDouble(), Flat({KEZMathPoint(1.0, 2.0, 3.0)}));
    EXPECT_EQ(log.Lines(),
              QStringList{"KEZVisRepFactory::CreateRep: skipped 1 vertices without a point, the first at index 0"});
}

TEST(TopologyBodyRep, VerticesThatAllLackAPointGiveNoVertexChild)
{
    Model model;
    model.body.AddEntity(0, new KEZTopVertex(nullptr));

    const std::unique_ptr<KEZVisRep> rep = RepOf(&model.body, KEZVisOptions::VisibleVertices);

    EXPECT_TRUE(ChildrenOf(rep.get()).isEmpty());
}

TEST(TopologyBodyRep, EdgeWhoseCurveIsGoneIsSkippedWithAWarning)
{
    Model model;
    model.AddEdge(Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(1.0, 0.0, 0.0)}), false);
    auto *curve = new KEZGeoComboCurve(Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(0.0, 1.0, 0.0)}), false);
    model.body.AddEntity(1, new KEZTopEdge(curve));
    model.body.AddEntity(1, new KEZTopEdge(nullptr));
    delete curve;
    TopologyLog log;

    const std::unique_ptr<KEZVisRep> rep = RepOf(&model.body, KEZVisOptions::VisibleEdges);

    const Answer answer = PrimitivesOf(rep.get());
    ASSERT_EQ(answer.primitives.size(), 1);
    const auto *polyline = As<KEZVisPolylinePrimitive>(answer.primitives.at(0));
    ASSERT_NE(polyline, nullptr);
    EXPECT_EQ(polyline->GetCoordsAsDouble(), Flat({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(1.0, 0.0, 0.0)}));
    EXPECT_EQ(log.Lines(),
              QStringList{"KEZVisRepFactory::CreateRep: skipped 2 edges without a curve, the first at index 1"});
}

TEST(TopologyBodyRep, NullEntriesAndEdgesWithoutACurveGiveOneWarningForEachReason)
{
    Model model;
    KEZTopEdge *edge = model.AddEdge(Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(1.0, 0.0, 0.0)}), false);
    KEZTopEdge bare(nullptr);
    KEZTopEdge alsoBare(nullptr);
    ListingBody body;
    body.lists[1] = {&bare, nullptr, edge, nullptr, &alsoBare, nullptr};
    TopologyLog log;

    const std::unique_ptr<KEZVisRep> rep = RepOf(&body, KEZVisOptions::VisibleEdges);

    EXPECT_EQ(PrimitivesOf(rep.get()).primitives.size(), 1);
    EXPECT_EQ(log.Lines(),
              (QStringList{"KEZVisRepFactory::CreateRep: skipped 3 null entries of dimension 1, the first at index 1",
                           "KEZVisRepFactory::CreateRep: skipped 2 edges without a curve, the first at index 0"}));
}

TEST(TopologyBodyRep, FaceWithoutASurfaceGivesAnEmptySurfacePrimitiveWithoutAWarning)
{
    Model model;
    model.body.AddEntity(2, new KEZTopFace(nullptr));
    model.AddFace(Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(1.0, 0.0, 0.0), KEZMathPoint(0.0, 1.0, 0.0)}),
                  {0, 1, 2});
    TopologyLog log;

    const std::unique_ptr<KEZVisRep> rep = RepOf(&model.body, KEZVisOptions::VisibleFaces);

    const Answer answer = PrimitivesOf(rep.get());
    ASSERT_EQ(answer.primitives.size(), 2);
    const auto *empty = As<KEZVisSurfacePrimitive>(answer.primitives.at(0));
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(empty->GetNumTriangles(), 0);
    EXPECT_EQ(empty->GetNumVertexes(), 0);
    const auto *surface = As<KEZVisSurfacePrimitive>(answer.primitives.at(1));
    ASSERT_NE(surface, nullptr);
    EXPECT_EQ(surface->GetNumTriangles(), 1);
    EXPECT_TRUE(log.Lines().isEmpty());
}

TEST(TopologyBodyRep, WellFormedBodyWritesNoWarning)
{
    Model model;
    FillOneOfEach(model);
    TopologyLog log;

    const std::unique_ptr<KEZVisRep> rep = RepOf(&model.body, AllFlags);

    EXPECT_EQ(KindsOf(rep.get()), "PLS");
    EXPECT_TRUE(log.Lines().isEmpty());
}

// ---------------------------------------------------------------------------
// A body: exceptions of the primitives

TEST(TopologyBodyRep, ExceptionOfAFacesSurfaceReachesTheCallerUnchanged)
{
    // The vertex and edge children and the first face are made before the
    // second face throws; all of them must be freed again, which the
    // sanitizer build checks for leaks.
    Model model;
    FillOneOfEach(model);
    model.AddVertex(KEZMathPoint(4.0, 4.0, 4.0));
    model.geometry.push_back(std::make_unique<UnreadableSurface>(
        Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(1.0, 0.0, 0.0), KEZMathPoint(0.0, 1.0, 0.0)}),
        QList<int>{0, 1, 2}));
    model.body.AddEntity(2, new KEZTopFace(static_cast<const KEZGeoSurface *>(model.geometry.back().get())));
    model.AddFace(Points({KEZMathPoint(0.0, 0.0, 1.0), KEZMathPoint(1.0, 0.0, 1.0), KEZMathPoint(0.0, 1.0, 1.0)}),
                  {0, 1, 2});

    const std::optional<KEZSysException> thrown =
        ThrownBy<KEZSysException>([&model] { RepOf(&model.body, AllFlags); });

    ASSERT_TRUE(thrown.has_value());
    EXPECT_EQ(thrown->GetMessage(), QStringLiteral("surface cannot be evaluated"));
}

TEST(TopologyBodyRep, ExceptionOfAnEdgesCurveReachesTheCallerUnchanged)
{
    Model model;
    FillOneOfEach(model);
    model.geometry.push_back(std::make_unique<UnreadableCurve>(
        Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(0.0, 2.0, 0.0)}), false));
    const auto *curve = static_cast<const KEZGeoComboCurve *>(model.geometry.back().get());
    model.body.AddEntity(1, new KEZTopEdge(curve));
    const KEZGeoComboCurve *firstCurve =
        qobject_cast<KEZTopEdge *>(model.body.GetEntitiesOfDimension(1).at(0))->GetCurve();

    const std::optional<KEZSysException> thrown =
        ThrownBy<KEZSysException>([&model] { RepOf(&model.body, AllFlags); });

    ASSERT_TRUE(thrown.has_value());
    EXPECT_EQ(thrown->GetMessage(), QStringLiteral("curve cannot be evaluated"));
    // The polyline made for the first edge went again, and with it its reference.
    EXPECT_EQ(firstCurve->GetReferenceCount(), 0);
    EXPECT_EQ(curve->GetReferenceCount(), 0);
}

// ---------------------------------------------------------------------------
// A cube

namespace {

// Corner i of the box [-1, 2] x [0, 3] x [1, 5]: bit 0 picks x, bit 1 y, bit 2 z.
KEZMathPoint CubeCorner(int i)
{
    return KEZMathPoint((i & 1) ? 2.0 : -1.0, (i & 2) ? 3.0 : 0.0, (i & 4) ? 5.0 : 1.0);
}

// The twelve edges as pairs of corners: four along x, four along y, four along z.
const std::array<std::array<int, 2>, 12> CubeEdges = {{{0, 1}, {2, 3}, {4, 5}, {6, 7},
                                                       {0, 2}, {1, 3}, {4, 6}, {5, 7},
                                                       {0, 4}, {1, 5}, {2, 6}, {3, 7}}};

// The six faces as four corners each, going round; each is split into the
// triangles (0, 1, 2) and (0, 2, 3) of its own four points.
const std::array<std::array<int, 4>, 6> CubeFaces = {{{0, 2, 3, 1}, {4, 5, 7, 6},
                                                      {0, 1, 5, 4}, {2, 6, 7, 3},
                                                      {0, 4, 6, 2}, {1, 3, 7, 5}}};

void FillCube(Model &model)
{
    for (int i = 0; i < 8; ++i)
        model.AddVertex(CubeCorner(i));
    for (const std::array<int, 2> &edge : CubeEdges)
        model.AddEdge(Points({CubeCorner(edge[0]), CubeCorner(edge[1])}), false);
    for (const std::array<int, 4> &face : CubeFaces) {
        model.AddFace(Points({CubeCorner(face[0]), CubeCorner(face[1]), CubeCorner(face[2]), CubeCorner(face[3])}),
                      {0, 1, 2, 0, 2, 3});
    }
}

std::vector<double> FlatCorners(std::initializer_list<int> corners)
{
    std::vector<double> flat;
    for (int corner : corners) {
        const KEZMathPoint point = CubeCorner(corner);
        flat.insert(flat.end(), {point.GetX(), point.GetY(), point.GetZ()});
    }
    return flat;
}

} // namespace

TEST(TopologyBodyRep, CubeGivesItsEightPointsTwelveSegmentsAndTwelveTriangles)
{
    Model model;
    FillCube(model);
    TopologyLog log;

    const std::unique_ptr<KEZVisRep> rep = RepOf(&model.body, AllFlags);

    const QList<const KEZVisRep *> children = ChildrenOf(rep.get());
    ASSERT_EQ(children.size(), 3);
    for (const KEZVisRep *child : children)
        EXPECT_NE(qobject_cast<const KEZVisRepGraphics *>(child), nullptr);

    // Vertices: one point primitive with the corners 0 to 7, vertex options.
    const Answer vertices = PrimitivesOf(children.at(0));
    ASSERT_EQ(vertices.primitives.size(), 1);
    const auto *points = As<KEZVisPointPrimitive>(vertices.primitives.at(0));
    ASSERT_NE(points, nullptr);
    EXPECT_EQ(points->GetNumPoints(), 8);
    EXPECT_EQ(points->GetCoordsAsDouble(), FlatCorners({0, 1, 2, 3, 4, 5, 6, 7}));
    ASSERT_EQ(vertices.options.size(), 1);
    EXPECT_TRUE(vertices.options.at(0) == VertexOptions);

    // Edges: twelve connected polylines of two points, edge options on each.
    const Answer edges = PrimitivesOf(children.at(1));
    ASSERT_EQ(edges.primitives.size(), 12);
    ASSERT_EQ(edges.options.size(), 12);
    for (int e = 0; e < 12; ++e) {
        SCOPED_TRACE(e);
        const auto *polyline = As<KEZVisPolylinePrimitive>(edges.primitives.at(e));
        ASSERT_NE(polyline, nullptr);
        EXPECT_EQ(polyline->GetNumPoints(), 2);
        EXPECT_EQ(polyline->GetStructure(), KEZVisPolylinePrimitive::StructureConnected);
        EXPECT_EQ(polyline->GetCoordsAsDouble(), FlatCorners({CubeEdges[e][0], CubeEdges[e][1]}));
        EXPECT_TRUE(edges.options.at(e) == EdgeOptions);
    }

    // Faces: six surfaces of four vertices and two triangles, face options.
    const Answer faces = PrimitivesOf(children.at(2));
    ASSERT_EQ(faces.primitives.size(), 6);
    ASSERT_EQ(faces.options.size(), 6);
    for (int f = 0; f < 6; ++f) {
        SCOPED_TRACE(f);
        const auto *surface = As<KEZVisSurfacePrimitive>(faces.primitives.at(f));
        ASSERT_NE(surface, nullptr);
        EXPECT_EQ(surface->GetNumVertexes(), 4);
        EXPECT_EQ(surface->GetNumTriangles(), 2);
        const std::vector<double> corners =
            FlatCorners({CubeFaces[f][0], CubeFaces[f][1], CubeFaces[f][2], CubeFaces[f][3]});
        EXPECT_EQ(surface->GetVertexCoordinatesAsDouble(), QList<double>(corners.begin(), corners.end()));
        EXPECT_EQ(surface->GetTriangleVertexIndexes(), (QList<long>{0, 1, 2, 0, 2, 3}));
        EXPECT_TRUE(faces.options.at(f) == FaceOptions);
    }

    // The set answers the same, flattened: 1 + 12 + 6 primitives in order.
    const Answer whole = PrimitivesOf(rep.get());
    ASSERT_EQ(whole.primitives.size(), 19);
    EXPECT_EQ(whole.primitives.at(0), vertices.primitives.at(0));
    EXPECT_EQ(whole.primitives.at(1), edges.primitives.at(0));
    EXPECT_EQ(whole.primitives.at(13), faces.primitives.at(0));
    EXPECT_TRUE(log.Lines().isEmpty());
}

TEST(TopologyBodyRep, CubeFacesReadTheirTrianglesTurnedAsTheSurfaceGivesThem)
{
    // The triangles of a face come from its surface on demand: the unit
    // normals are those of (b - a) ^ (c - a), normalised. The bottom face
    // (z = 1) goes round 0, 2, 3, 1, which is clockwise seen from +z.
    Model model;
    FillCube(model);

    const std::unique_ptr<KEZVisRep> rep = RepOf(&model.body, KEZVisOptions::VisibleFaces);

    const auto *bottom = As<KEZVisSurfacePrimitive>(PrimitivesOf(rep.get()).primitives.value(0));
    ASSERT_NE(bottom, nullptr);
    EXPECT_EQ(bottom->GetTriangleNormalCoordsAsDouble(), (QList<double>{0.0, 0.0, -1.0, 0.0, 0.0, -1.0}));
    const KEZMathBoundingBox box = bottom->GetBoundingBox(FaceOptions);
    ExpectPoint(box.GetLowerPoint(), -1.0, 0.0, 1.0);
    ExpectPoint(box.GetUpperPoint(), 2.0, 3.0, 1.0);
}
