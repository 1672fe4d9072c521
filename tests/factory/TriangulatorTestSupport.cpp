#include "TriangulatorTestSupport.h"

#include "triangulation/CDT.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <fstream>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <unordered_map>

namespace triangulator_test {

namespace {

struct PtHash
{
    std::size_t operator()(const Pt &p) const
    {
        std::uint64_t a, b;
        std::memcpy(&a, &p.x, sizeof a);
        std::memcpy(&b, &p.y, sizeof b);
        return std::hash<std::uint64_t>()(a * 0x9E3779B97F4A7C15ull ^ b);
    }
};

long double Cross(const Pt &a, const Pt &b, const Pt &c)
{
    return (static_cast<long double>(b.x) - a.x) * (static_cast<long double>(c.y) - a.y)
           - (static_cast<long double>(b.y) - a.y) * (static_cast<long double>(c.x) - a.x);
}

// In-circle value of d against counter-clockwise (a, b, c) and the magnitude of its terms.
void InCircle(const Pt &a, const Pt &b, const Pt &c, const Pt &d, long double &value, long double &magnitude)
{
    const long double adx = a.x - static_cast<long double>(d.x), ady = a.y - static_cast<long double>(d.y);
    const long double bdx = b.x - static_cast<long double>(d.x), bdy = b.y - static_cast<long double>(d.y);
    const long double cdx = c.x - static_cast<long double>(d.x), cdy = c.y - static_cast<long double>(d.y);
    const long double al = adx * adx + ady * ady, bl = bdx * bdx + bdy * bdy, cl = cdx * cdx + cdy * cdy;
    value = al * (bdx * cdy - cdx * bdy) + bl * (cdx * ady - adx * cdy) + cl * (adx * bdy - bdx * ady);
    magnitude = al * (std::fabs(bdx * cdy) + std::fabs(cdx * bdy)) + bl * (std::fabs(cdx * ady) + std::fabs(adx * cdy))
                + cl * (std::fabs(adx * bdy) + std::fabs(bdx * ady));
}

using Edge = std::pair<Pt, Pt>;
Edge MakeEdge(const Pt &a, const Pt &b) { return b < a ? Edge(b, a) : Edge(a, b); }

bool SegmentsIntersect(const Pt &a, const Pt &b, const Pt &c, const Pt &d)
{
    const long double d1 = Cross(a, b, c), d2 = Cross(a, b, d), d3 = Cross(c, d, a), d4 = Cross(c, d, b);
    if (((d1 > 0 && d2 < 0) || (d1 < 0 && d2 > 0)) && ((d3 > 0 && d4 < 0) || (d3 < 0 && d4 > 0)))
        return true;
    auto onSegment = [](const Pt &p, const Pt &q, const Pt &r) {
        return std::min(p.x, q.x) <= r.x && r.x <= std::max(p.x, q.x) && std::min(p.y, q.y) <= r.y
               && r.y <= std::max(p.y, q.y);
    };
    if (d1 == 0 && onSegment(a, b, c))
        return true;
    if (d2 == 0 && onSegment(a, b, d))
        return true;
    if (d3 == 0 && onSegment(c, d, a))
        return true;
    if (d4 == 0 && onSegment(c, d, b))
        return true;
    return false;
}

bool InsideRing(const Ring &ring, const Pt &p)
{
    bool inside = false;
    for (std::size_t i = 0, j = ring.size() - 1; i < ring.size(); j = i++) {
        const Pt &a = ring[i], &b = ring[j];
        if ((a.y > p.y) != (b.y > p.y)) {
            const long double x = a.x + (static_cast<long double>(p.y) - a.y) * (b.x - static_cast<long double>(a.x))
                                             / (static_cast<long double>(b.y) - a.y);
            if (p.x < x)
                inside = !inside;
        }
    }
    return inside;
}

} // namespace

std::size_t Polygon::PointCount() const
{
    std::size_t count = outline.size();
    for (const Ring &hole : holes)
        count += hole.size();
    return count;
}

Result Triangulate(const Polygon &polygon)
{
    std::vector<std::unique_ptr<p2t::Point>> owned;
    auto makeRing = [&owned](const Ring &ring) {
        std::vector<p2t::Point *> points;
        for (const Pt &p : ring) {
            owned.push_back(std::make_unique<p2t::Point>(p.x, p.y));
            points.push_back(owned.back().get());
        }
        return points;
    };
    Result result;
    std::set<const p2t::Point *> inputs;
    p2t::CDT cdt(makeRing(polygon.outline));
    for (const Ring &hole : polygon.holes)
        cdt.AddHole(makeRing(hole));
    for (const auto &p : owned)
        inputs.insert(p.get());
    cdt.Triangulate();
    for (p2t::Triangle *triangle : cdt.GetTriangles()) {
        Tri tri;
        for (int k = 0; k < 3; ++k) {
            const p2t::Point *p = triangle->GetPoint(k);
            if (!p || !inputs.count(p)) {
                result.cornersAreInputPoints = false;
                return result;
            }
            tri[static_cast<std::size_t>(k)] = Pt{p->x, p->y};
        }
        result.triangles.push_back(tri);
    }
    return result;
}

long double SignedArea(const Ring &ring)
{
    long double area = 0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const Pt &a = ring[i], &b = ring[(i + 1) % ring.size()];
        area += (static_cast<long double>(a.x) - ring[0].x) * (static_cast<long double>(b.y) - ring[0].y)
                - (static_cast<long double>(b.x) - ring[0].x) * (static_cast<long double>(a.y) - ring[0].y);
    }
    return area / 2;
}

::testing::AssertionResult IsValidTriangulation(const Polygon &polygon, const std::vector<Tri> &triangles)
{
    if (triangles.empty())
        return ::testing::AssertionFailure() << "no triangles";

    // Counter-clockwise triangles and their area.
    long double area = 0;
    for (std::size_t t = 0; t < triangles.size(); ++t) {
        const Tri &tri = triangles[t];
        const long double doubled = Cross(tri[0], tri[1], tri[2]);
        if (!(doubled > 0))
            return ::testing::AssertionFailure() << "triangle " << t << " is not counter-clockwise";
        area += doubled / 2;
    }
    long double expected = std::fabs(SignedArea(polygon.outline));
    for (const Ring &hole : polygon.holes)
        expected -= std::fabs(SignedArea(hole));
    if (std::fabs(area - expected) > 1e-9L * std::fabs(SignedArea(polygon.outline)))
        return ::testing::AssertionFailure() << "area " << static_cast<double>(area) << " instead of "
                                             << static_cast<double>(expected);

    // Edges with the triangles on their sides.
    std::map<Edge, std::vector<std::pair<std::size_t, int>>> edges;
    std::unordered_map<Pt, std::vector<Pt>, PtHash> adjacent;
    for (std::size_t t = 0; t < triangles.size(); ++t) {
        for (int k = 0; k < 3; ++k) {
            const Pt &a = triangles[t][static_cast<std::size_t>((k + 1) % 3)];
            const Pt &b = triangles[t][static_cast<std::size_t>((k + 2) % 3)];
            auto &sides = edges[MakeEdge(a, b)];
            sides.emplace_back(t, k);
            if (sides.size() == 1) {
                adjacent[a].push_back(b);
                adjacent[b].push_back(a);
            }
            if (sides.size() > 2)
                return ::testing::AssertionFailure() << "an edge has more than two triangles";
        }
    }

    // Ring edges, followed through the points that split them.
    std::set<Edge> constrained;
    std::vector<const Ring *> rings{&polygon.outline};
    for (const Ring &hole : polygon.holes)
        rings.push_back(&hole);
    for (const Ring *ring : rings) {
        for (std::size_t i = 0; i < ring->size(); ++i) {
            const Pt a = (*ring)[i], b = (*ring)[(i + 1) % ring->size()];
            if (a == b)
                continue;
            const long double lx = b.x - static_cast<long double>(a.x), ly = b.y - static_cast<long double>(a.y);
            const long double length2 = lx * lx + ly * ly;
            Pt current = a;
            for (std::size_t guard = 0; !(current == b); ++guard) {
                const auto it = adjacent.find(current);
                if (it == adjacent.end() || guard > triangles.size())
                    return ::testing::AssertionFailure() << "ring edge (" << a.x << ", " << a.y << ") - (" << b.x
                                                         << ", " << b.y << ") is missing";
                bool moved = false;
                for (const Pt &c : it->second) {
                    if (c == b) {
                        constrained.insert(MakeEdge(current, c));
                        current = b;
                        moved = true;
                        break;
                    }
                    const long double cx = c.x - static_cast<long double>(a.x), cy = c.y - static_cast<long double>(a.y);
                    const long double along = cx * lx + cy * ly;
                    const long double off = std::fabs(cx * ly - cy * lx);
                    const long double here = (current.x - static_cast<long double>(a.x)) * lx
                                             + (current.y - static_cast<long double>(a.y)) * ly;
                    if (off <= 1e-12L * length2 && along > here && along < length2) {
                        constrained.insert(MakeEdge(current, c));
                        current = c;
                        moved = true;
                        break;
                    }
                }
                if (!moved)
                    return ::testing::AssertionFailure() << "ring edge (" << a.x << ", " << a.y << ") - (" << b.x
                                                         << ", " << b.y << ") is missing";
            }
        }
    }

    // Every other edge between two triangles is locally Delaunay.
    for (const auto &[edge, sides] : edges) {
        if (sides.size() != 2 || constrained.count(edge))
            continue;
        const Tri &t = triangles[sides[0].first];
        const Pt &opposite = triangles[sides[1].first][static_cast<std::size_t>(sides[1].second)];
        long double value, magnitude;
        InCircle(t[0], t[1], t[2], opposite, value, magnitude);
        if (value > 1e-15L * magnitude)
            return ::testing::AssertionFailure() << "edge (" << edge.first.x << ", " << edge.first.y << ") - ("
                                                 << edge.second.x << ", " << edge.second.y
                                                 << ") is not locally Delaunay";
    }
    return ::testing::AssertionSuccess();
}

bool IsCleanPolygon(const Polygon &polygon)
{
    std::vector<const Ring *> rings{&polygon.outline};
    for (const Ring &hole : polygon.holes)
        rings.push_back(&hole);
    std::set<Pt> seen;
    struct Segment
    {
        Pt a, b;
        std::size_t ring, index, size;
    };
    std::vector<Segment> segments;
    for (std::size_t r = 0; r < rings.size(); ++r) {
        const Ring &ring = *rings[r];
        if (ring.size() < 3)
            return false;
        for (std::size_t i = 0; i < ring.size(); ++i) {
            if (!seen.insert(ring[i]).second)
                return false;
            segments.push_back({ring[i], ring[(i + 1) % ring.size()], r, i, ring.size()});
        }
    }
    // Segments that share no end point must not meet; neighbours in a ring only share their point.
    std::sort(segments.begin(), segments.end(),
              [](const Segment &s, const Segment &t) { return std::min(s.a.x, s.b.x) < std::min(t.a.x, t.b.x); });
    for (std::size_t i = 0; i < segments.size(); ++i) {
        const Segment &s = segments[i];
        const double maxX = std::max(s.a.x, s.b.x);
        for (std::size_t j = i + 1; j < segments.size() && std::min(segments[j].a.x, segments[j].b.x) <= maxX; ++j) {
            const Segment &t = segments[j];
            const bool neighbours = s.ring == t.ring
                                    && ((s.index + 1) % s.size == t.index || (t.index + 1) % t.size == s.index);
            if (neighbours) {
                // Only the shared point: the far ends must not lie on the other segment.
                if (Cross(s.a, s.b, t.a) == 0 && Cross(s.a, s.b, t.b) == 0) {
                    const Pt &shared = (s.b == t.a) ? s.b : s.a;
                    const Pt &far1 = (s.a == shared) ? s.b : s.a;
                    const Pt &far2 = (t.a == shared) ? t.b : t.a;
                    const long double dot = (far1.x - static_cast<long double>(shared.x)) * (far2.x - shared.x)
                                            + (far1.y - static_cast<long double>(shared.y)) * (far2.y - shared.y);
                    if (dot > 0)
                        return false;
                }
                continue;
            }
            if (SegmentsIntersect(s.a, s.b, t.a, t.b))
                return false;
        }
    }
    for (const Ring &hole : polygon.holes) {
        if (!InsideRing(polygon.outline, hole[0]))
            return false;
        for (const Ring &other : polygon.holes)
            if (&other != &hole && InsideRing(other, hole[0]))
                return false;
    }
    return true;
}

Ring ReadPolygonFile(const std::string &path)
{
    std::ifstream in(path);
    Ring ring;
    std::string line;
    while (std::getline(in, line)) {
        std::replace(line.begin(), line.end(), '\r', ' ');
        std::istringstream fields(line);
        Pt p;
        if (fields >> p.x >> p.y)
            ring.push_back(p);
    }
    return ring;
}

std::vector<std::string> PolygonFileNames()
{
    return {"2.dat",         "bird.dat",           "custom.dat",          "deadly_quad.dat",
            "debug.dat",     "debug2.dat",         "diamond.dat",         "dude.dat",
            "funny.dat",     "kzer-za.dat",        "nazca_heron.dat",     "nazca_monkey.dat",
            "polygon_test_01.dat", "polygon_test_02.dat", "polygon_test_03.dat", "sketchup.dat",
            "stalactite.dat", "star.dat",          "steiner.dat",         "strange.dat",
            "tank.dat",      "test.dat"};
}

std::string PolygonFilePath(const std::string &name)
{
    return std::string(KEZ_POLYGON_DATA_DIR) + "/" + name;
}

Polygon Star(int points, std::uint32_t seed, double scale, double offsetX, double offsetY)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> radius(0.35, 1.0);
    Polygon polygon;
    const double pi = std::acos(-1.0);
    for (int k = 0; k < points; ++k) {
        const double angle = 2.0 * pi * k / points;
        const double r = (k % 2 == 0 ? 1.0 : 0.5) * radius(random);
        polygon.outline.push_back({offsetX + scale * r * std::cos(angle), offsetY + scale * r * std::sin(angle)});
    }
    return polygon;
}

Polygon Rosette(int points, double lobes, double amplitude)
{
    Polygon polygon;
    const double pi = std::acos(-1.0);
    for (int k = 0; k < points; ++k) {
        const double angle = 2.0 * pi * k / points;
        const double r = 1.0 + amplitude * std::sin(lobes * angle);
        polygon.outline.push_back({r * std::cos(angle), r * std::sin(angle)});
    }
    return polygon;
}

Polygon RegularHoleGrid(int rows, double size)
{
    Polygon polygon;
    polygon.outline = {{0, 0}, {size, 0}, {size, size}, {0, size}};
    const double cell = size / (rows + 1);
    const double half = cell / 4;
    for (int i = 1; i <= rows; ++i) {
        for (int j = 1; j <= rows; ++j) {
            const double cx = i * cell, cy = j * cell;
            polygon.holes.push_back({{cx - half, cy - half}, {cx - half, cy + half}, {cx + half, cy + half}, {cx + half, cy - half}});
        }
    }
    return polygon;
}

Polygon JitteredHoleGrid(int rows, std::uint32_t seed, double size)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    Polygon polygon;
    polygon.outline = {{0, 0}, {size, 0}, {size, size}, {0, size}};
    const double cell = size / rows;
    for (int i = 0; i < rows; ++i) {
        for (int j = 0; j < rows; ++j) {
            const double x0 = i * cell, y0 = j * cell;
            auto at = [&](double lo, double hi) { return lo + (hi - lo) * unit(random); };
            // One corner in each quarter of the cell's inner part, counter-clockwise.
            polygon.holes.push_back({{x0 + cell * at(0.15, 0.45), y0 + cell * at(0.15, 0.45)},
                                     {x0 + cell * at(0.55, 0.85), y0 + cell * at(0.15, 0.45)},
                                     {x0 + cell * at(0.55, 0.85), y0 + cell * at(0.55, 0.85)},
                                     {x0 + cell * at(0.15, 0.45), y0 + cell * at(0.55, 0.85)}});
        }
    }
    return polygon;
}

Polygon Transformed(const Polygon &polygon, double scale, double offsetX, double offsetY)
{
    auto map = [&](const Ring &ring) {
        Ring out;
        for (const Pt &p : ring)
            out.push_back({offsetX + scale * p.x, offsetY + scale * p.y});
        return out;
    };
    Polygon out;
    out.outline = map(polygon.outline);
    for (const Ring &hole : polygon.holes)
        out.holes.push_back(map(hole));
    return out;
}

} // namespace triangulator_test
