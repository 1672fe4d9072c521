#include "FilledPolygonTestSupport.h"

#include <KEZVisSurfacePrimitive.h>

#include <KEZMathLine2D.h>
#include <KEZMathPoint2D.h>
#include <KEZMathVector.h>
#include <KEZMathVector2D.h>

#include <QDir>
#include <QFile>
#include <QHash>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <set>

namespace filled_polygon_test {

KEZMathSetOfPoints MakeRing(std::initializer_list<std::pair<double, double>> points, double z)
{
    KEZMathSetOfPoints ring;
    for (const auto &[x, y] : points)
        ring.append(KEZMathPoint(x, y, z));
    return ring;
}

KEZMathSetOfPoints MakeRing(const Ring2D &points, double z)
{
    KEZMathSetOfPoints ring;
    ring.reserve(qsizetype(points.size()));
    for (const Pt &p : points)
        ring.append(KEZMathPoint(p.x, p.y, z));
    return ring;
}

QList<KEZMathSetOfPoints> ToRings(const std::vector<Ring2D> &rings, double z)
{
    QList<KEZMathSetOfPoints> result;
    for (const Ring2D &ring : rings)
        result.append(MakeRing(ring, z));
    return result;
}

Mesh MeshOf(const KEZVisSurfacePrimitive &surface)
{
    Mesh mesh;
    const QList<double> coords = surface.GetVertexCoordinatesAsDouble();
    for (qsizetype i = 0; i + 2 < coords.size(); i += 3)
        mesh.vertices.push_back({coords[i], coords[i + 1], coords[i + 2]});
    const QList<long> indexes = surface.GetTriangleVertexIndexes();
    for (qsizetype i = 0; i + 2 < indexes.size(); i += 3)
        mesh.triangles.push_back({int(indexes[i]), int(indexes[i + 1]), int(indexes[i + 2])});
    return mesh;
}

QByteArray KeyOf(double x, double y, double z)
{
    return QByteArray::number(x, 'f', 3) + ',' + QByteArray::number(y, 'f', 3) + ',' + QByteArray::number(z, 'f', 3);
}

// ---------------------------------------------------------------------------
// The model, every rule as a plain loop.

namespace {

KEZMathVector2D Unit(double x, double y)
{
    KEZMathVector2D v(x, y);
    v.Normalize();
    return v;
}

double Squared(const Pt &a, const Pt &b)
{
    return (a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y);
}

bool Touches(const Pt &x, const Pt &a, const Pt &b)
{
    return Squared(x, a) < 1e-6 || Squared(x, b) < 1e-6 || Unit(b.x - x.x, b.y - x.y) == Unit(x.x - a.x, x.y - a.y);
}

bool BoxesOverlap(const Pt &a, const Pt &b, const Pt &c, const Pt &d)
{
    return !(std::min(a.x, b.x) > std::max(c.x, d.x) || std::min(c.x, d.x) > std::max(a.x, b.x)
             || std::min(a.y, b.y) > std::max(c.y, d.y) || std::min(c.y, d.y) > std::max(a.y, b.y));
}

double Cross(const Pt &from, const Pt &to, const Pt &x)
{
    return (KEZMathVector(to.x - from.x, to.y - from.y, 0.0) ^ KEZMathVector(x.x - from.x, x.y - from.y, 0.0)).GetZ();
}

bool InsideOutline(const Ring2D &outline, const Ring2D &hole)
{
    const std::size_t n = outline.size();
    for (const Pt &p : hole) {
        int count = 0;
        bool onBoundary = false;
        for (std::size_t i = 0; i < n && !onBoundary; ++i) {
            const Pt &a = outline[i];
            const Pt &b = outline[(i + 1) % n];
            if (Touches(p, a, b)) {
                onBoundary = true;
                continue;
            }
            if (std::abs(a.y - b.y) < 0.001)
                continue;
            if (std::min(a.y, b.y) <= p.y && p.y < std::max(a.y, b.y)
                && (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x > p.x)
                ++count;
        }
        if (!onBoundary && count % 2 == 0)
            return false;
    }
    const std::size_t m = hole.size();
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t k = 0; k < m; ++k) {
            const Pt &a = outline[i];
            const Pt &b = outline[(i + 1) % n];
            const Pt &c = hole[k];
            const Pt &d = hole[(k + 1) % m];
            if (!BoxesOverlap(a, b, c, d))
                continue;
            if (!(Cross(a, b, c) * Cross(a, b, d) > 0) && !(Cross(c, d, a) * Cross(c, d, b) > 0))
                return false;
        }
    }
    return true;
}

KEZMathVector2D Perpendicular(const Pt &a, const Pt &b, const Pt &x)
{
    KEZMathLine2D line;
    line.SetOrigin(KEZMathPoint2D(a.x, a.y));
    line.SetVector(KEZMathVector2D(b.x - a.x, b.y - a.y));
    return KEZMathPoint2D(x.x, x.y) - line.ProjectPoint(KEZMathPoint2D(x.x, x.y));
}

bool Cross(const Pt &p, const Pt &q, const Pt &r, const Pt &s, const Pt &beforeP, const Pt &afterQ,
           const Pt &beforeR, const Pt &afterS)
{
    if (!BoxesOverlap(p, q, r, s))
        return false;
    if (Cross(p, q, r) * Cross(p, q, s) > 0 || Cross(r, s, p) * Cross(r, s, q) > 0)
        return false;
    const struct
    {
        const Pt &x, &a, &b, &n1, &n2;
    } checks[] = {{r, p, q, s, beforeR}, {s, p, q, r, afterS}, {p, r, s, q, beforeP}, {q, r, s, p, afterQ}};
    for (const auto &check : checks) {
        if (Touches(check.x, check.a, check.b)
            && Perpendicular(check.a, check.b, check.n1).GetAngleTo(Perpendicular(check.a, check.b, check.n2)) < 0.001)
            return false;
    }
    return true;
}

std::vector<int> IntersectingHoles(const std::vector<Ring2D> &holes)
{
    std::vector<int> listed;
    const auto isListed = [&listed](int h) { return std::find(listed.begin(), listed.end(), h) != listed.end(); };
    for (int i = 0; i < int(holes.size()); ++i) {
        for (int j = i + 1; j < int(holes.size()); ++j) {
            if (isListed(i) && isListed(j))
                continue;
            const Ring2D &a = holes[std::size_t(i)];
            const Ring2D &b = holes[std::size_t(j)];
            const std::size_t m = a.size(), n = b.size();
            bool found = false;
            for (std::size_t k = 0; k < m && !found; ++k) {
                for (std::size_t l = 0; l < n && !found; ++l) {
                    found = Cross(a[k], a[(k + 1) % m], b[l], b[(l + 1) % n], a[(k + m - 1) % m], a[(k + 2) % m],
                                  b[(l + n - 1) % n], b[(l + 2) % n]);
                }
            }
            if (found) {
                if (!isListed(i))
                    listed.push_back(i);
                if (!isListed(j))
                    listed.push_back(j);
            }
        }
    }
    return listed;
}

// The repeat walk: the length of the accepted prefix.
int WalkedLength(const KEZMathSetOfPoints &ring)
{
    for (int k = 0; k < int(ring.size()); ++k) {
        for (int i = 0; i < k; ++i) {
            if (std::abs(ring[k].GetX() - ring[i].GetX()) < 0.001 && std::abs(ring[k].GetY() - ring[i].GetY()) < 0.001)
                return k;
        }
    }
    return int(ring.size());
}

Ring2D Prefix2D(const KEZMathSetOfPoints &ring, int length)
{
    Ring2D result;
    for (int i = 0; i < length; ++i)
        result.push_back(Pt{ring[i].GetX(), ring[i].GetY()});
    return result;
}

} // namespace

KEZMathSetOfPoints SimplifiedRing(const KEZMathSetOfPoints &input)
{
    KEZMathSetOfPoints ring;
    for (const KEZMathPoint &p : input) {
        if (ring.size() < 2) {
            bool present = false;
            for (const KEZMathPoint &q : ring)
                present = present || q == p;
            if (!present)
                ring.append(p);
            continue;
        }
        const KEZMathPoint a = ring[ring.size() - 2];
        const KEZMathPoint b = ring[ring.size() - 1];
        if (a == p) {
            ring.removeLast();
        } else if (p == b) {
        } else {
            const KEZMathVector2D u = Unit(a.GetX() - p.GetX(), a.GetY() - p.GetY());
            const KEZMathVector2D v = Unit(p.GetX() - b.GetX(), p.GetY() - b.GetY());
            if (u == v) {
            } else if (u == v * -1.0) {
                ring.removeLast();
                ring.append(p);
            } else {
                ring.append(p);
            }
        }
    }
    return ring;
}

std::vector<Ring2D> Model::TriangulatedHoles() const
{
    std::vector<Ring2D> result;
    for (std::size_t h = 0; h < insideHoles.size(); ++h) {
        if (!crossing[h])
            result.push_back(insideHoles[h]);
    }
    return result;
}

Model ModelOf(const QList<KEZMathSetOfPoints> &rings)
{
    Model model;
    model.null = true;
    std::vector<KEZMathPoint> all;
    for (const KEZMathSetOfPoints &ring : rings)
        all.insert(all.end(), ring.begin(), ring.end());
    if (rings.isEmpty() || all.size() < 3)
        return model;
    for (const KEZMathPoint &p : all) {
        if (std::abs(all.front().GetZ() - p.GetZ()) > 0.001)
            return model;
    }
    const KEZMathSetOfPoints outline = SimplifiedRing(rings[0]);
    const int outlineLength = WalkedLength(outline);
    if (outlineLength < 3)
        return model;
    model.null = false;
    model.outline = Prefix2D(outline, outlineLength);
    model.meshPoints = outline.mid(0, outlineLength);
    for (qsizetype i = 1; i < rings.size(); ++i) {
        if (rings[i].size() < 3)
            continue;
        const KEZMathSetOfPoints hole = SimplifiedRing(rings[i]);
        const int length = WalkedLength(hole);
        const Ring2D hole2D = Prefix2D(hole, length);
        if (!InsideOutline(model.outline, hole2D))
            continue;
        model.insideHoles.push_back(hole2D);
        model.meshPoints.append(hole.mid(0, length));
    }
    model.crossing.assign(model.insideHoles.size(), false);
    for (int h : IntersectingHoles(model.insideHoles))
        model.crossing[std::size_t(h)] = true;
    return model;
}

// ---------------------------------------------------------------------------
// Validity

long double RingArea(const Ring2D &ring)
{
    // Relative to the first point, so that far from the origin the products stay small.
    long double twice = 0;
    for (std::size_t i = 1; i + 1 < ring.size(); ++i) {
        const long double ax = (long double)ring[i].x - ring[0].x, ay = (long double)ring[i].y - ring[0].y;
        const long double bx = (long double)ring[i + 1].x - ring[0].x, by = (long double)ring[i + 1].y - ring[0].y;
        twice += ax * by - bx * ay;
    }
    return std::abs(twice) / 2;
}

namespace {

using Key2D = std::pair<double, double>;

long double Orient(const std::array<double, 3> &a, const std::array<double, 3> &b, const std::array<double, 3> &c)
{
    return ((long double)b[0] - a[0]) * ((long double)c[1] - a[1]) - ((long double)b[1] - a[1]) * ((long double)c[0] - a[0]);
}

} // namespace

::testing::AssertionResult IsValidTriangulation(const Mesh &mesh, const Ring2D &outline,
                                                const std::vector<Ring2D> &holes)
{
    const auto &v = mesh.vertices;
    for (const auto &t : mesh.triangles) {
        for (int corner : t) {
            if (corner < 0 || corner >= int(v.size()))
                return ::testing::AssertionFailure() << "index " << corner << " out of range";
        }
    }

    // Counter-clockwise triangles and their total area.
    long double area = 0;
    for (const auto &t : mesh.triangles) {
        const long double twice = Orient(v[std::size_t(t[0])], v[std::size_t(t[1])], v[std::size_t(t[2])]);
        if (!(twice > 0))
            return ::testing::AssertionFailure() << "triangle " << t[0] << " " << t[1] << " " << t[2]
                                                 << " is not counter-clockwise";
        area += twice / 2;
    }
    long double expected = RingArea(outline);
    for (const Ring2D &hole : holes)
        expected -= RingArea(hole);
    if (std::abs(area - expected) > 1e-9L * RingArea(outline))
        return ::testing::AssertionFailure() << "area " << double(area) << " instead of " << double(expected);

    // Edges: each directed edge once, the opposite corner of each.
    std::map<std::pair<int, int>, int> opposite;
    for (const auto &t : mesh.triangles) {
        for (int k = 0; k < 3; ++k) {
            const std::pair<int, int> edge(t[std::size_t(k)], t[std::size_t((k + 1) % 3)]);
            if (!opposite.emplace(edge, t[std::size_t((k + 2) % 3)]).second)
                return ::testing::AssertionFailure() << "edge " << edge.first << "-" << edge.second << " twice";
        }
    }
    std::map<Key2D, int> vertexAt;
    std::map<int, std::set<int>> neighbours;
    for (const auto &[edge, third] : opposite) {
        vertexAt[Key2D(v[std::size_t(edge.first)][0], v[std::size_t(edge.first)][1])] = edge.first;
        neighbours[edge.first].insert(edge.second);
        neighbours[edge.second].insert(edge.first);
    }

    // Every ring edge is in the mesh, possibly split at points that lie on it.
    std::set<std::pair<int, int>> constrained;
    std::vector<const Ring2D *> rings{&outline};
    for (const Ring2D &hole : holes)
        rings.push_back(&hole);
    for (const Ring2D *ring : rings) {
        for (std::size_t i = 0; i < ring->size(); ++i) {
            const Pt &a = (*ring)[i];
            const Pt &b = (*ring)[(i + 1) % ring->size()];
            const auto from = vertexAt.find(Key2D(a.x, a.y));
            const auto to = vertexAt.find(Key2D(b.x, b.y));
            if (from == vertexAt.end() || to == vertexAt.end())
                return ::testing::AssertionFailure() << "ring point (" << a.x << ", " << a.y << ") or (" << b.x << ", "
                                                     << b.y << ") is no corner";
            int at = from->second;
            while (at != to->second) {
                // The neighbour that lies on the segment and closest to its end.
                int next = -1;
                long double best = 0;
                const auto &pa = v[std::size_t(at)];
                const auto &pb = v[std::size_t(to->second)];
                const long double remaining = ((long double)pb[0] - pa[0]) * ((long double)pb[0] - pa[0])
                    + ((long double)pb[1] - pa[1]) * ((long double)pb[1] - pa[1]);
                for (int w : neighbours[at]) {
                    const auto &pw = v[std::size_t(w)];
                    const long double scale = std::sqrt(remaining);
                    if (std::abs(Orient(pa, pb, pw)) > 1e-12L * remaining)
                        continue;
                    const long double along = (((long double)pw[0] - pa[0]) * ((long double)pb[0] - pa[0])
                                               + ((long double)pw[1] - pa[1]) * ((long double)pb[1] - pa[1]))
                        / scale;
                    if (along > 0 && along <= scale * (1 + 1e-12L) && along > best) {
                        best = along;
                        next = w;
                    }
                }
                if (next < 0)
                    return ::testing::AssertionFailure() << "ring edge (" << a.x << ", " << a.y << ")-(" << b.x << ", "
                                                         << b.y << ") is missing";
                constrained.insert({std::min(at, next), std::max(at, next)});
                at = next;
            }
        }
    }

    // Every other edge between two triangles is locally Delaunay.
    for (const auto &[edge, third] : opposite) {
        if (edge.first > edge.second)
            continue;
        const auto other = opposite.find({edge.second, edge.first});
        if (other == opposite.end() || constrained.count(edge) != 0)
            continue;
        const auto &a = v[std::size_t(edge.first)];
        const auto &b = v[std::size_t(edge.second)];
        const auto &c = v[std::size_t(third)];
        const auto &d = v[std::size_t(other->second)];
        const long double adx = (long double)a[0] - d[0], ady = (long double)a[1] - d[1];
        const long double bdx = (long double)b[0] - d[0], bdy = (long double)b[1] - d[1];
        const long double cdx = (long double)c[0] - d[0], cdy = (long double)c[1] - d[1];
        const long double alift = adx * adx + ady * ady, blift = bdx * bdx + bdy * bdy, clift = cdx * cdx + cdy * cdy;
        const long double det = alift * (bdx * cdy - bdy * cdx) + blift * (cdx * ady - cdy * adx)
            + clift * (adx * bdy - ady * bdx);
        const long double bound = alift * (std::abs(bdx * cdy) + std::abs(bdy * cdx))
            + blift * (std::abs(cdx * ady) + std::abs(cdy * adx)) + clift * (std::abs(adx * bdy) + std::abs(ady * bdx));
        if (det > 1e-10L * bound)
            return ::testing::AssertionFailure() << "edge " << edge.first << "-" << edge.second << " is not Delaunay";
    }
    return ::testing::AssertionSuccess();
}

::testing::AssertionResult IsConsistentIndex(const Mesh &mesh, const Model &model)
{
    const std::size_t m = std::size_t(model.meshPoints.size());
    if (mesh.vertices.size() < m)
        return ::testing::AssertionFailure() << mesh.vertices.size() << " vertices, fewer than " << m << " mesh points";
    QHash<QByteArray, std::size_t> lastOfKey;
    for (std::size_t i = 0; i < m; ++i) {
        const KEZMathPoint &p = model.meshPoints[qsizetype(i)];
        const auto &vertex = mesh.vertices[i];
        const auto same = [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); };
        if (!same(vertex[0], p.GetX()) || !same(vertex[1], p.GetY()) || !same(vertex[2], p.GetZ()))
            return ::testing::AssertionFailure() << "vertex " << i << " is not mesh point " << i;
        lastOfKey.insert(KeyOf(p.GetX(), p.GetY(), p.GetZ()), i);
    }
    QHash<QByteArray, std::size_t> keys;
    for (std::size_t i = m; i < mesh.vertices.size(); ++i) {
        const auto &vertex = mesh.vertices[i];
        if (vertex[2] != 0.0 || std::signbit(vertex[2]))
            return ::testing::AssertionFailure() << "added vertex " << i << " is not at z = 0.0";
        const QByteArray key = KeyOf(vertex[0], vertex[1], vertex[2]);
        if (lastOfKey.contains(key) || keys.contains(key))
            return ::testing::AssertionFailure() << "added vertex " << i << " repeats the key " << key.constData();
        keys.insert(key, i);
    }
    for (const auto &t : mesh.triangles) {
        for (int corner : t) {
            if (corner < 0 || std::size_t(corner) >= mesh.vertices.size())
                return ::testing::AssertionFailure() << "index " << corner << " out of range";
            if (std::size_t(corner) >= m)
                continue;
            const auto &vertex = mesh.vertices[std::size_t(corner)];
            const QByteArray key = KeyOf(vertex[0], vertex[1], vertex[2]);
            if (!key.endsWith(",0.000"))
                return ::testing::AssertionFailure() << "corner " << corner << " has the key " << key.constData();
            if (lastOfKey.value(key) != std::size_t(corner))
                return ::testing::AssertionFailure() << "corner " << corner << " is not the last of its key";
        }
    }
    return ::testing::AssertionSuccess();
}

// ---------------------------------------------------------------------------
// Files and generators

std::vector<std::string> PolygonFileNames()
{
    std::vector<std::string> names;
    const QDir dir(QStringLiteral(KEZ_POLYGON_DATA_DIR));
    for (const QString &name : dir.entryList({QStringLiteral("*.dat")}, QDir::Files, QDir::Name))
        names.push_back(name.toStdString());
    return names;
}

std::vector<Ring2D> ReadPolygonFile(const std::string &name)
{
    std::vector<Ring2D> rings(1);
    bool steiner = false;
    QFile file(QDir(QStringLiteral(KEZ_POLYGON_DATA_DIR)).filePath(QString::fromStdString(name)));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().simplified();
        if (line == "HOLE") {
            rings.emplace_back();
            steiner = false;
            continue;
        }
        if (line == "STEINER") {
            steiner = true;
            continue;
        }
        const QList<QByteArray> words = line.split(' ');
        if (steiner || words.size() < 2)
            continue;
        bool okX = false, okY = false;
        const double x = words[0].toDouble(&okX);
        const double y = words[1].toDouble(&okY);
        if (okX && okY)
            rings.back().push_back(Pt{x, y});
    }
    return rings;
}

Ring2D Star(int points, std::uint32_t seed, double r, double cx, double cy)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> factor(0.6, 1.0);
    Ring2D ring;
    const double pi = std::acos(-1.0);
    for (int k = 0; k < points; ++k) {
        const double angle = 2.0 * pi * k / points;
        const double radius = (k % 2 == 0 ? r : r / 2) * factor(random);
        ring.push_back(Pt{cx + radius * std::cos(angle), cy + radius * std::sin(angle)});
    }
    return ring;
}

std::vector<Ring2D> HoleGrid(int rows, double size)
{
    std::vector<Ring2D> rings{{{0, 0}, {size, 0}, {size, size}, {0, size}}};
    const double cell = size / rows;
    const double half = cell / 4;
    for (int i = 0; i < rows; ++i) {
        for (int j = 0; j < rows; ++j) {
            const double cx = (i + 0.5) * cell, cy = (j + 0.5) * cell;
            rings.push_back({{cx - half, cy - half}, {cx + half, cy - half}, {cx + half, cy + half}, {cx - half, cy + half}});
        }
    }
    return rings;
}

Ring2D Scaled(const Ring2D &ring, double scale, double offsetX, double offsetY)
{
    Ring2D result;
    for (const Pt &p : ring)
        result.push_back(Pt{p.x * scale + offsetX, p.y * scale + offsetY});
    return result;
}

} // namespace filled_polygon_test
