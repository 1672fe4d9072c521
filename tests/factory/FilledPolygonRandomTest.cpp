// Randomized input for KEZVisRepFactory::CreateFilledPolygonPrimitive and CreateFilledPolygonRep, with fixed
// seeds. Dirty input must never crash or hang and must give null, partial or whole geometry; the cleaning,
// the cutting of rings and the choice of holes must agree with the plain model of the rules in every
// case, also where the factory answers through its indexes.
#include "FilledPolygonTestSupport.h"

#include <KEZVisOptions.h>
#include <KEZVisRepFactory.h>
#include <KEZVisSurfacePrimitive.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <memory>
#include <random>

using namespace filled_polygon_test;

namespace {

class Dirt
{
public:
    explicit Dirt(std::uint32_t seed) : m_random(seed) { }

    double Uniform(double low, double high) { return std::uniform_real_distribution<double>(low, high)(m_random); }
    int Int(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_random); }
    bool Chance(double p) { return Uniform(0.0, 1.0) < p; }

    double Scale()
    {
        static const double scales[] = {1e-4, 1e-2, 1.0, 1.0, 10.0, 1e3, 1e8, 1e15, 1e150};
        return scales[Int(0, int(std::size(scales)) - 1)];
    }

    // A ring with its dirt: duplicates, near-duplicates at the repeat distance, collinear runs, spikes,
    // slivers, a closing repeat, non-finite coordinates.
    Ring2D MakeDirty(Ring2D ring, double scale)
    {
        Ring2D out;
        const double nan = std::numeric_limits<double>::quiet_NaN();
        const double inf = std::numeric_limits<double>::infinity();
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const Pt p = ring[i];
            const Pt next = ring[(i + 1) % ring.size()];
            out.push_back(p);
            if (Chance(0.05))
                out.push_back(p); // duplicate
            if (Chance(0.04))
                out.push_back(Pt{p.x + Uniform(-0.0011, 0.0011), p.y + Uniform(-0.0011, 0.0011)}); // near repeat
            if (Chance(0.05)) { // collinear run
                const int run = Int(1, 4);
                for (int k = 1; k <= run; ++k)
                    out.push_back(Pt{p.x + (next.x - p.x) * k / (run + 1), p.y + (next.y - p.y) * k / (run + 1)});
            }
            if (Chance(0.03)) { // spike out and back
                out.push_back(Pt{p.x + Uniform(-scale, scale), p.y + Uniform(-scale, scale)});
                out.push_back(p);
            }
            if (Chance(0.03)) // sliver: almost back on the last edge
                out.push_back(Pt{(p.x + next.x) / 2 + scale * 1e-10, (p.y + next.y) / 2});
            if (Chance(0.01))
                out.push_back(Pt{Chance(0.5) ? nan : (Chance(0.5) ? inf : -inf), p.y});
            if (Chance(0.01))
                out.push_back(Pt{p.x, Chance(0.5) ? nan : -inf});
        }
        if (Chance(0.3) && !out.empty())
            out.push_back(out.front()); // closed ring
        return out;
    }

    std::mt19937 &Engine() { return m_random; }

private:
    std::mt19937 m_random;
};

// Every wall ring gives two vertices a point and two triangles a point from two points on.
void CheckSolid(const QList<KEZMathSetOfPoints> &rings, const KEZVisSurfacePrimitive &base, double extrusion)
{
    std::unique_ptr<KEZVisRep> rep(KEZVisRepFactory::CreateFilledPolygonRep(rings, KEZVisOptions(), extrusion, true));
    ASSERT_NE(rep, nullptr);
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    rep->GetPrimitives(primitives, options);
    ASSERT_EQ(primitives.size(), 3);
    const auto *top = qobject_cast<const KEZVisSurfacePrimitive *>(primitives[1]);
    const auto *walls = qobject_cast<const KEZVisSurfacePrimitive *>(primitives[2]);
    ASSERT_NE(top, nullptr);
    ASSERT_NE(walls, nullptr);
    EXPECT_EQ(top->GetNumVertexes(), base.GetNumVertexes());
    EXPECT_EQ(top->GetTriangleVertexIndexes(), base.GetTriangleVertexIndexes());
    int points = 0, triangles = 0;
    for (const KEZMathSetOfPoints &ring : rings) {
        const int n = int(SimplifiedRing(ring).size());
        points += n;
        triangles += n >= 2 ? 2 * n : 0;
    }
    EXPECT_EQ(walls->GetNumVertexes(), 2 * points);
    EXPECT_EQ(walls->GetNumTriangles(), triangles);
    for (long index : walls->GetTriangleVertexIndexes())
        EXPECT_TRUE(index >= 0 && index < 2 * points);
}

// What came out of one call, for the tally of a test.
struct Outcome
{
    bool null = false;
    bool triangles = false;
    bool holes = false;
};

Outcome CheckAgainstModel(const QList<KEZMathSetOfPoints> &rings, bool alsoSolid)
{
    Outcome outcome;
    const Model model = ModelOf(rings);
    std::unique_ptr<KEZVisSurfacePrimitive> surface(KEZVisRepFactory::CreateFilledPolygonPrimitive(rings));
    EXPECT_EQ(surface == nullptr, model.null);
    outcome.null = surface == nullptr;
    if (!surface || model.null)
        return outcome;
    const Mesh mesh = MeshOf(*surface);
    EXPECT_TRUE(IsConsistentIndex(mesh, model));
    outcome.triangles = !mesh.triangles.empty();
    outcome.holes = !model.insideHoles.empty();
    if (alsoSolid)
        CheckSolid(rings, *surface, 1.5);
    return outcome;
}

} // namespace

TEST(FilledPolygonRandom, DirtyInputGivesNullPartialOrWholeGeometryAsTheModelSays)
{
    int nulls = 0, withoutTriangles = 0, withTriangles = 0, withHoles = 0;
    for (std::uint32_t seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE(seed);
        Dirt dirt(seed);
        const double scale = dirt.Scale();
        const double offset = dirt.Chance(0.3) ? dirt.Uniform(-1e6, 1e6) * scale : 0.0;
        std::vector<Ring2D> rings;
        rings.push_back(dirt.MakeDirty(Scaled(Star(dirt.Int(3, 40), seed), scale, offset, -offset), scale));
        const int holes = dirt.Int(0, 6);
        for (int h = 0; h < holes; ++h) {
            Ring2D hole;
            switch (dirt.Int(0, 4)) {
            case 0: // somewhere, maybe inside, outside or across
                hole = Scaled(Star(dirt.Int(3, 12), seed * 31u + std::uint32_t(h), dirt.Uniform(0.05, 0.6),
                                   dirt.Uniform(-1, 1), dirt.Uniform(-1, 1)),
                              scale, offset, -offset);
                break;
            case 1: // a copy of an earlier hole, moved a little: crossing or touching
                if (!rings.empty()) {
                    hole = rings[std::size_t(dirt.Int(0, int(rings.size()) - 1))];
                    const double shift = dirt.Chance(0.5) ? 0.0 : dirt.Uniform(-0.1, 0.1) * scale;
                    for (Pt &p : hole)
                        p.x += shift;
                }
                break;
            case 2: // a small triangle with a corner on an outline point
                if (!rings[0].empty()) {
                    const Pt corner = rings[0][std::size_t(dirt.Int(0, int(rings[0].size()) - 1))];
                    hole = {corner, Pt{corner.x * 0.9, corner.y * 0.9}, Pt{corner.x * 0.9 + 0.05 * scale, corner.y * 0.8}};
                }
                break;
            case 3: // fewer than three points
                hole = {Pt{0, 0}, Pt{0.1 * scale, 0}};
                break;
            default: // two triangles that meet in one corner
                hole = {Pt{0, 0}, Pt{0.1 * scale, 0.02 * scale}, Pt{0.1 * scale, -0.02 * scale}};
                rings.push_back(dirt.MakeDirty(hole, scale * 0.1));
                hole = {Pt{0, 0}, Pt{-0.1 * scale, 0.02 * scale}, Pt{-0.1 * scale, -0.02 * scale}};
                break;
            }
            rings.push_back(dirt.MakeDirty(hole, scale * 0.1));
        }
        QList<KEZMathSetOfPoints> input = ToRings(rings, dirt.Chance(0.2) ? dirt.Uniform(-0.01, 0.01) : 0.0);
        if (dirt.Chance(0.1) && input[0].size() > 1)
            input[0][input[0].size() - 1].SetZ(input[0][0].GetZ() + dirt.Uniform(-0.002, 0.002)); // z spread
        const Outcome outcome = CheckAgainstModel(input, seed % 3 == 0);
        nulls += outcome.null ? 1 : 0;
        withoutTriangles += !outcome.null && !outcome.triangles ? 1 : 0;
        withTriangles += outcome.triangles ? 1 : 0;
        withHoles += outcome.holes ? 1 : 0;
    }
    // The generator reaches every kind of result.
    EXPECT_GE(nulls, 10);
    EXPECT_GE(withoutTriangles, 10);
    EXPECT_GE(withTriangles, 100);
    EXPECT_GE(withHoles, 30);
    std::printf("[ tally ] %d null, %d without triangles, %d with triangles, %d with holes inside\n", nulls,
                withoutTriangles, withTriangles, withHoles);
}

TEST(FilledPolygonRandom, RingsAreCutAtRepeatsAsTheModelSaysAtEveryMagnitude)
{
    // Long rings, so that the walk runs through its grid, with near repeats placed at the repeat distance
    // in every direction and at coordinates where rounding of the grid's cells is coarse.
    for (std::uint32_t seed = 1; seed <= 120; ++seed) {
        SCOPED_TRACE(seed);
        Dirt dirt(seed);
        static const double magnitudes[] = {0.0, 1.0, 1e3, 1e9, 4.4e12, 8.8e12, 2e13, 1e16, -5e14};
        const double base = magnitudes[seed % std::size(magnitudes)];
        Ring2D ring;
        const int n = dirt.Int(40, 200);
        for (int k = 0; k < n; ++k) {
            if (k > 3 && dirt.Chance(0.02)) {
                // Close to an earlier point: just inside or just outside the repeat distance.
                const Pt earlier = ring[std::size_t(dirt.Int(0, k - 1))];
                const double dx = dirt.Uniform(0.0009, 0.0011) * (dirt.Chance(0.5) ? 1 : -1);
                const double dy = dirt.Uniform(-0.0011, 0.0011);
                ring.push_back(dirt.Chance(0.5) ? Pt{earlier.x + dx, earlier.y + dy} : Pt{earlier.x + dy, earlier.y + dx});
            } else {
                const double angle = 2.0 * std::acos(-1.0) * k / n;
                const double r = base == 0.0 ? 0.5 : std::max(1.0, std::abs(base) * 1e-3);
                ring.push_back(Pt{base + r * std::cos(angle) + dirt.Uniform(-0.002, 0.002), base + r * std::sin(angle)});
            }
        }
        const Ring2D hole = Scaled(ring, 0.25, base * 0.75, base * 0.75);
        CheckAgainstModel(ToRings({ring, hole}), false);
    }
}

TEST(FilledPolygonRandom, ManyHolesAroundALargeOutlineAreChosenAsTheModelSays)
{
    // A star of 1500 points and 400 small holes: inside, outside, across the outline, on its vertices and
    // on its edges, and near its horizontal-looking edges.
    for (std::uint32_t seed : {11u, 12u}) {
        SCOPED_TRACE(seed);
        Dirt dirt(seed);
        const Ring2D outline = Star(1500, seed, 100.0);
        std::vector<Ring2D> rings{outline};
        for (int h = 0; h < 400; ++h) {
            const double size = dirt.Uniform(0.2, 3.0);
            Pt centre{dirt.Uniform(-100, 100), dirt.Uniform(-100, 100)};
            switch (dirt.Int(0, 3)) {
            case 0:
                centre = outline[std::size_t(dirt.Int(0, 1499))];
                break;
            case 1: {
                const std::size_t i = std::size_t(dirt.Int(0, 1499));
                const Pt &a = outline[i], &b = outline[(i + 1) % outline.size()];
                const double t = dirt.Uniform(0, 1);
                centre = Pt{a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
                break;
            }
            default:
                break;
            }
            if (dirt.Chance(0.5))
                rings.push_back({centre, Pt{centre.x + size, centre.y + size * 0.3}, Pt{centre.x + size * 0.2, centre.y + size}});
            else
                rings.push_back(Star(dirt.Int(3, 9), seed * 1000u + std::uint32_t(h), size, centre.x - size * 1.2, centre.y));
        }
        const QList<KEZMathSetOfPoints> input = ToRings(rings);
        const Model model = ModelOf(input);
        EXPECT_GT(model.insideHoles.size(), 20u);
        EXPECT_LT(model.insideHoles.size(), 400u);
        CheckAgainstModel(input, false);
    }
}

TEST(FilledPolygonRandom, CrossingHolesAreDroppedAsTheModelSaysAndTheRestIsTriangulated)
{
    // Squares of one size at random places and angles: two of them can't nest, so a pair either crosses
    // or lies apart, and what is kept is a clean polygon.
    for (std::uint32_t seed : {1u, 2u, 3u, 4u, 5u}) {
        SCOPED_TRACE(seed);
        Dirt dirt(seed);
        std::vector<Ring2D> rings{{{0, 0}, {100, 0}, {100, 100}, {0, 100}}};
        for (int h = 0; h < 150; ++h) {
            const double cx = dirt.Uniform(5, 95), cy = dirt.Uniform(5, 95), angle = dirt.Uniform(0, 2);
            Ring2D square;
            for (int k = 0; k < 4; ++k) {
                const double a = angle + k * std::acos(-1.0) / 2;
                square.push_back(Pt{cx + 2.5 * std::cos(a), cy + 2.5 * std::sin(a)});
            }
            rings.push_back(square);
        }
        const QList<KEZMathSetOfPoints> input = ToRings(rings);
        const Model model = ModelOf(input);
        const auto dropped = std::count(model.crossing.begin(), model.crossing.end(), true);
        EXPECT_GT(dropped, 10);
        EXPECT_LT(dropped, 140);
        std::unique_ptr<KEZVisSurfacePrimitive> surface(KEZVisRepFactory::CreateFilledPolygonPrimitive(input));
        ASSERT_NE(surface, nullptr);
        const Mesh mesh = MeshOf(*surface);
        EXPECT_TRUE(IsConsistentIndex(mesh, model));
        EXPECT_TRUE(IsValidTriangulation(mesh, model.outline, model.TriangulatedHoles()));
    }
}

TEST(FilledPolygonRandom, HoleGridsWithTouchingAndCrossingNeighboursAreChosenAsTheModelSays)
{
    // Squares on a grid, each moved so that it lies apart from, touches or overlaps its neighbours.
    for (std::uint32_t seed : {7u, 8u, 9u}) {
        SCOPED_TRACE(seed);
        Dirt dirt(seed);
        std::vector<Ring2D> rings{{{0, 0}, {40, 0}, {40, 40}, {0, 40}}};
        for (int i = 1; i < 19; ++i) {
            for (int j = 1; j < 19; ++j) {
                const double shift = dirt.Chance(0.7) ? 0.0 : dirt.Uniform(-0.5, 0.5);
                const double half = dirt.Chance(0.5) ? 1.0 : dirt.Uniform(0.5, 1.2);
                const double x = 2.0 * i + shift, y = 2.0 * j;
                rings.push_back({{x - half, y - half}, {x + half, y - half}, {x + half, y + half}, {x - half, y + half}});
            }
        }
        CheckAgainstModel(ToRings(rings), seed == 7u);
    }
}
