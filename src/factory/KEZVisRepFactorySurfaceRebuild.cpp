// Surface rebuild for the filled polygons of KEZVisRepFactory: the mesh points and the corners of the
// triangles are indexed again by vertex keys of three decimals, and become a surface primitive.

#include "factory/KEZVisRepFactorySurfaceRebuild_p.h"
#include "factory/KEZVisRepFactory_p.h"
#include "primitives/KEZVisFlatArrays_p.h"

#include <KEZMathPoint.h>

#include <QByteArray>
#include <QHash>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace KEZVisFilledPolygon {

namespace {

// ---------------------------------------------------------------------------
// Vertex keys
//
// A vertex key is QByteArray::number(x, 'f', 3), a comma, the same of y, a comma, the same of z. The keys
// are not built as text: each coordinate is reduced to what its text says, a whole number of thousandths
// with a flag for "-0.000", which is what the text of a negative value that rounds to zero reads. Where
// the rounding of v * 1000 can't be told safely (near a half, or beyond 1e9) the text itself is made and
// read back, and beyond 2^53 or for NaN and infinities the text is kept as it is. Equal texts thus give
// equal parts and different texts different parts, as the text keys would.

// One coordinate of a key: a value and its kind, 0 for a number of thousandths, 1 for "-0.000" and 2 for
// the number of a kept text.
struct KeyPart
{
    std::int64_t value;
    std::uint8_t kind;
};

struct VertexKey
{
    std::int64_t value[3];
    std::uint8_t kind[3];
    bool operator==(const VertexKey &other) const
    {
        return value[0] == other.value[0] && value[1] == other.value[1] && value[2] == other.value[2]
            && kind[0] == other.kind[0] && kind[1] == other.kind[1] && kind[2] == other.kind[2];
    }
};

class KeyMaker
{
public:
    VertexKey Make(double x, double y, double z)
    {
        const KeyPart px = Part(x), py = Part(y), pz = Part(z);
        return VertexKey{{px.value, py.value, pz.value}, {px.kind, py.kind, pz.kind}};
    }

private:
    KeyPart Part(double v)
    {
        if (std::abs(v) < 1e9) {
            const double thousandths = v * 1000.0; // off by at most 2^-13 here
            const double whole = std::floor(thousandths);
            const double fraction = thousandths - whole;
            if (std::abs(fraction - 0.5) > 1e-3) {
                const std::int64_t value = std::int64_t(whole) + (fraction > 0.5 ? 1 : 0);
                return KeyPart{value, std::uint8_t(value == 0 && v < 0 ? 1 : 0)};
            }
        }
        return FromText(v);
    }

    KeyPart FromText(double v)
    {
        const QByteArray text = QByteArray::number(v, 'f', 3);
        if (std::abs(v) < 0x1p53) {
            // "[-]digits.ddd": at most 16 digits before the point, so the thousandths fit 64 bits.
            std::int64_t value = 0;
            for (char c : text) {
                if (c >= '0' && c <= '9')
                    value = value * 10 + (c - '0');
            }
            const bool negative = text.startsWith('-');
            if (value == 0)
                return KeyPart{0, std::uint8_t(negative ? 1 : 0)};
            return KeyPart{negative ? -value : value, 0};
        }
        const auto known = m_texts.constFind(text);
        if (known != m_texts.constEnd())
            return KeyPart{*known, 2};
        const std::int64_t number = m_texts.size();
        m_texts.insert(text, number);
        return KeyPart{number, 2};
    }

    QHash<QByteArray, std::int64_t> m_texts;
};

inline std::uint64_t HashOf(const VertexKey &key)
{
    std::uint64_t h = 0x84222325CBF29CE4ull;
    for (int i = 0; i < 3; ++i) {
        h ^= std::uint64_t(key.value[i]) + 0x9E3779B97F4A7C15ull + std::uint64_t(key.kind[i]) * 0x100000001B3ull;
        h *= 0xBF58476D1CE4E5B9ull;
        h ^= h >> 29;
    }
    h *= 0x94D049BB133111EBull;
    h ^= h >> 32;
    return h;
}

// The keys of the vertex positions, worked out again when they are asked for rather than kept: a key
// takes 32 bytes, a mesh point of a million-point outline would need 32 MB of them, and the map asks for
// a key only where the upper half of its hash matches, which for distinct keys is rare. The mesh points
// come first, then the corners that became new vertices, which stand at z 0.0.
class VertexKeys
{
public:
    VertexKeys(const MeshPoints &meshPoints, KeyMaker &keyMaker) : m_meshPoints(meshPoints), m_keyMaker(keyMaker) { }

    VertexKey MeshKey(std::size_t i) const
    {
        const KEZMathPoint &point = *m_meshPoints[i];
        return m_keyMaker.Make(point.GetX(), point.GetY(), point.GetZ());
    }

    VertexKey At(std::size_t position) const
    {
        if (position < m_meshPoints.size())
            return MeshKey(position);
        const p2t::Point *corner = m_added[position - m_meshPoints.size()];
        return m_keyMaker.Make(corner->x, corner->y, 0.0);
    }

    void Add(const p2t::Point *corner) { m_added.push_back(corner); }
    const std::vector<const p2t::Point *> &Added() const { return m_added; }

private:
    const MeshPoints &m_meshPoints;
    KeyMaker &m_keyMaker;
    std::vector<const p2t::Point *> m_added; // the corners that became new vertices
};

// An open-addressing map from vertex keys to vertex positions. A slot holds a position and the upper
// half of the key's hash, which also chooses the slot; the keys themselves come from `keys`.
class VertexMap
{
public:
    VertexMap(const VertexKeys &keys, std::size_t expected) : m_keys(keys)
    {
        std::size_t capacity = 16;
        while (capacity < 2 * expected)
            capacity *= 2;
        m_slots.assign(capacity, Slot{0, -1});
        m_mask = capacity - 1;
    }

    // Asks the processor to fetch the first slot of a hash that is going to be looked up soon.
    void Prefetch(std::uint64_t hash) const
    {
#if defined(__GNUC__) || defined(__clang__)
        const Slot *slot = m_slots.data() + (std::size_t(hash >> 32) & m_mask);
        asm volatile("" : "+r"(slot)); // keeps GCC from dropping the prefetch
        __builtin_prefetch(slot);
#else
        Q_UNUSED(hash);
#endif
    }

    // The position of the key if it is there; otherwise enters it with `position` (the key of that
    // position must be `key`) and gives -1.
    int InsertIfAbsent(const VertexKey &key, std::uint64_t hash, int position)
    {
        if (2 * (m_used + 1) > m_slots.size())
            Grow();
        const std::uint32_t tag = std::uint32_t(hash >> 32);
        std::size_t index = tag & m_mask;
        while (m_slots[index].position >= 0) {
            if (m_slots[index].tag == tag && m_keys.At(std::size_t(m_slots[index].position)) == key)
                return m_slots[index].position;
            index = (index + 1) & m_mask;
        }
        ++m_used;
        m_slots[index] = Slot{tag, position};
        return -1;
    }

private:
    struct Slot
    {
        std::uint32_t tag;
        int position;
    };

    // The keys in the map are distinct, so the slots move without their keys.
    void Grow()
    {
        std::vector<Slot> old;
        old.swap(m_slots);
        m_slots.assign(old.size() * 2, Slot{0, -1});
        m_mask = m_slots.size() - 1;
        for (const Slot &slot : old) {
            if (slot.position < 0)
                continue;
            std::size_t index = slot.tag & m_mask;
            while (m_slots[index].position >= 0)
                index = (index + 1) & m_mask;
            m_slots[index] = slot;
        }
    }

    const VertexKeys &m_keys;
    std::vector<Slot> m_slots;
    std::size_t m_mask = 0;
    std::size_t m_used = 0;
};

} // namespace

// ---------------------------------------------------------------------------
// Mesh points

MeshPoints CollectMeshPoints(const CleanedRings &rings, const std::vector<const WalkedRing *> &insideHoles,
                             std::vector<int> &meshPointOfArena)
{
    const WalkedRing &outline = rings.outline;
    std::size_t count = outline.points.size();
    for (const WalkedRing *hole : insideHoles)
        count += hole->points.size();

    MeshPoints meshPoints;
    meshPoints.reserve(count);
    meshPointOfArena.assign(rings.arena.Size(), -1);
    for (std::size_t i = 0; i < outline.points.size(); ++i) {
        meshPointOfArena[std::size_t(rings.arena.IndexOf(outline.points[i]))] = int(i);
        meshPoints.push_back(&outline.Kept(i));
    }
    for (const WalkedRing *hole : insideHoles) {
        for (std::size_t k = 0; k < hole->points.size(); ++k) {
            meshPointOfArena[std::size_t(rings.arena.IndexOf(hole->points[k]))] = int(meshPoints.size());
            meshPoints.push_back(&hole->Kept(k));
        }
    }
    return meshPoints;
}

// ---------------------------------------------------------------------------
// BuildSurfaceFromTriangles

KEZVisSurfacePrimitive *BuildSurfaceFromTriangles(const MeshPoints &meshPoints, TriangleCorners &triangleCorners)
{
    CornerPositions &corners = triangleCorners.corners;
    const PointArena &arena = *triangleCorners.arena;
    const std::size_t triangleCount = corners.count / 3;
    const std::size_t meshCount = std::size_t(meshPoints.size());
    constexpr std::size_t kMaxCount = std::size_t(INT_MAX) / 3;
    if (triangleCount > kMaxCount || meshCount > kMaxCount)
        return nullptr;

    KeyMaker keyMaker;
    VertexKeys keys(meshPoints, keyMaker);
    VertexMap map(keys, meshCount);
    const VertexKey zero = keyMaker.Make(0.0, 0.0, 0.0);

    // The mesh points enter from the last to the first, each with the key and hash made kAhead points
    // before its turn, when its slot is prefetched. lastOfKey[i] is the last mesh point of the key of
    // mesh point i where that key reads "0.000" in z, and -1 elsewhere.
    std::vector<int> lastOfKey(meshCount);
    const auto enterMeshKeys = [&]() {
        constexpr std::size_t kAhead = 16;
        struct Ahead
        {
            VertexKey key;
            std::uint64_t hash;
        };
        Ahead ahead[kAhead];
        const auto prepare = [&](std::size_t i) {
            Ahead &entry = ahead[i % kAhead];
            entry.key = keys.MeshKey(i);
            entry.hash = HashOf(entry.key);
            map.Prefetch(entry.hash);
        };
        for (std::size_t k = 0; k < std::min(kAhead, meshCount); ++k)
            prepare(meshCount - 1 - k);
        for (std::size_t i = meshCount; i-- > 0;) {
            const Ahead entry = ahead[i % kAhead];
            if (i >= kAhead)
                prepare(i - kAhead);
            const int later = map.InsertIfAbsent(entry.key, entry.hash, int(i));
            const bool zeroZ = entry.key.value[2] == zero.value[2] && entry.key.kind[2] == zero.kind[2];
            lastOfKey[i] = !zeroZ ? -1 : later >= 0 ? later : int(i);
        }
    };
    // Where no two mesh points share a key, each is the last of its own, and only the z of its key is
    // asked; the mesh keys enter the map before the first corner that is looked up, which then finds
    // the map as it would have been.
    bool meshKeysEntered = false;
    if (triangleCorners.meshKeysDistinct) {
        for (std::size_t i = 0; i < meshCount; ++i) {
            const VertexKey key = keyMaker.Make(0.0, 0.0, meshPoints[i]->GetZ());
            const bool zeroZ = key.value[2] == zero.value[2] && key.kind[2] == zero.kind[2];
            lastOfKey[i] = zeroZ ? int(i) : -1;
        }
    } else {
        enterMeshKeys();
        meshKeysEntered = true;
    }

    // The vertex of each point of the triangulator, where it follows from its mesh point; -1 where it is
    // still to be looked up. It takes the place of the mesh point of each arena point, which it needs no
    // more.
    std::vector<int> vertexOfArena = std::move(triangleCorners.meshPointOfArena);
    for (int &entry : vertexOfArena)
        entry = entry >= 0 ? lastOfKey[std::size_t(entry)] : -1;

    // The positions of the corners become their vertices in place.
    std::unique_ptr<int[]> indexes = std::move(corners.positions);
    std::size_t vertexCount = meshCount;
    for (std::size_t c = 0; c < 3 * triangleCount; ++c) {
        const int position = indexes[c];
        const p2t::Point *corner;
        if (position >= 0) {
            const int known = vertexOfArena[std::size_t(position)];
            if (known >= 0) {
                indexes[c] = known;
                continue;
            }
            corner = &arena.At(std::size_t(position));
        } else {
            corner = corners.foreign[std::size_t(-1 - position)];
        }
        if (!meshKeysEntered) {
            enterMeshKeys();
            meshKeysEntered = true;
        }
        const VertexKey key = keyMaker.Make(corner->x, corner->y, 0.0);
        int vertex = map.InsertIfAbsent(key, HashOf(key), int(vertexCount));
        if (vertex < 0) {
            if (vertexCount >= kMaxCount)
                return nullptr;
            vertex = int(vertexCount++);
            keys.Add(corner);
        }
        if (position >= 0)
            vertexOfArena[std::size_t(position)] = vertex;
        indexes[c] = vertex;
    }

    const std::vector<const p2t::Point *> &added = keys.Added();
    std::unique_ptr<double[]> coords(new double[3 * vertexCount]);
    KEZVisFlatArrays::AdviseHugePages(coords.get(), 3 * vertexCount * sizeof(double));
    for (std::size_t i = 0; i < meshCount; ++i) {
        double *v = coords.get() + 3 * i;
        meshPoints[i]->GetCoord(v[0], v[1], v[2]);
    }
    for (std::size_t i = 0; i < added.size(); ++i) {
        double *v = coords.get() + 3 * (meshCount + i);
        v[0] = added[i]->x;
        v[1] = added[i]->y;
        v[2] = 0.0;
    }
    return KEZVisRepFactoryPrivate::CreateSurface(qint64(vertexCount), std::move(coords), qint64(triangleCount),
                                                  std::move(indexes), nullptr);
}

} // namespace KEZVisFilledPolygon
