// The sweep-line constrained Delaunay triangulation (after Domiter and Zalik).
//
// Outline of one run:
// 1. Prepare: merge points with identical coordinates, reject input that cannot be triangulated,
//    scale the cloud by a power of two so that its extent lies in [0.5, 1), place the two artificial
//    points below it, and list every constrained edge under its upper end in sweep order.
// 2. Sweep the points in order of y, then x. A point event puts a triangle on the front edge right
//    below the new point and legalises it by flips; then small holes of the front next to the point
//    (angles under 90 degrees) and a basin to its right are filled, each new triangle legalised in
//    turn. Then an edge event inserts each constrained edge that ends at the point: it walks from
//    the point along the edge through the triangles it crosses; where the walk leaves the mesh
//    through the front, the pocket of the front below the edge is filled first; the crossed edges
//    are then flipped away until the constrained edge is an edge of the mesh, and the edges made by
//    those flips are legalised. A point lying on the constrained edge splits it there.
//    The advancing front is a doubly linked list over the vertices; the front edge above which a new
//    point lies is found through an index of the front vertices by their rank in x.
// 3. Finalize: starting from the triangle on the inner side of the outline's first edge, collect the
//    triangles reachable without crossing a constrained edge and hand them out with the caller's
//    points. When the sweep left some legalisation undone (it failed, or gave up an edge part-way),
//    a closing Delaunay pass over the collected triangles restores the property first; after a sweep
//    that ran through, every flip was legalised and the pass would find nothing.
//
// 4. When the sweep's work (flips and steps along the front) outgrows a budget linear in the points
//    swept, the sweep gives way to incremental insertion, which builds the same triangulation: the
//    points go into an enclosing triangle in a random order sorted along a Hilbert curve within
//    rounds of doubling size, each found by a walk from the one before and legalised by flips, and
//    the constrained edges are then inserted by the edge events' own insertion. If that fails, the
//    sweep runs again without a budget, so its own failure handling decides the result.
//
// Deterministic: no hashing of pointers, and the random order comes from a fixed seed; ties in the
// in-circle test (co-circular points) never flip.
#include "Sweep_p.h"

#include "Predicates_p.h"
#include "TestHooks_p.h"
#include "TriangulationLogging_p.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <numeric>
#include <stdexcept>
#include <utility>
#include <vector>

namespace p2t {
namespace detail {

namespace {

TestHooks *g_testHooks = nullptr;

constexpr double kArtificialMargin = 0.3;

const char *const kCollinearError = "EdgeEvent - collinear points not supported";
const char *const kMissingTriangleError = "[BUG:FIXME] FLIP failed due to missing triangle";
const char *const kMissingOppositeError = "[BUG:FIXME] FLIP failed due to missing opposite point";
} // namespace

const char *const kFanBrokenError = "[BUG:FIXME] FLIP failed due to missing triangle";

namespace {

const char *const kConstrainedCrossingError = "[Unsupported] Opposing point on constrained edge";
const char *const kEndlessLoopMessage = "[BUG:FIXME] Endless loop";

// The sweep keeps the mesh Delaunay after every point. On outlines along long smooth or straight
// stretches, the Delaunay triangulation of the points below the sweep line differs from that of all
// points in a part that grows with the input, and the flips per point grow with it; the front there
// also forms long slopes that the basin test walks again for every point. Both cost quadratic time.
// Once the sweep's work (flips and steps along the front) exceeds this budget, linear in the points
// swept, the mesh is built again by incremental insertion in a spatially sorted random order, whose
// expected work per point is constant. Sweeps of outlines with many features and of polygons with
// many holes stay well below it.
constexpr std::uint64_t kSweepWorkPerPoint = 32;
constexpr std::uint64_t kSweepWorkAllowance = 8192;
// Rings that the sweep handles worst are built by incremental insertion from the start: those whose
// boundary turns away from the region at fewer than this share of their vertices (smooth convex
// curves, densely sampled straight edges, outlines refined along their edges)...
constexpr double kReflexShareOfSweptBoundaries = 0.2;
// ...and those whose vertices lie, on average, in runs this long that turn one way (densely sampled
// lobes and arcs). Outlines with many features (spikes, small lobes) and polygons with many holes of
// modest sampling are swept.
constexpr double kSmoothRunOfSweptBoundaries = 192.0;
// Flips a vertex that building a strictly convex outline may make on average before incremental
// insertion with point location takes over.
constexpr std::uint64_t kConvexOutlineWorkPerPoint = 16;
// A step along the front is a comparison of two neighbours' y, far cheaper than a flip.
constexpr std::uint64_t kFrontStepsPerWorkUnit = 8;

// Thrown out of the sweep when it outgrows its work budget; not a std::runtime_error, so that the
// sweep's own failure handling does not catch it.
struct SweepOverBudget
{
};
constexpr std::uint64_t kNoWorkBudget = ~std::uint64_t(0);

// InsertSegment's answer when the front must be filled below the segment first.
constexpr int kPocketAhead = -2;

inline int Next3(int i) { return i == 2 ? 0 : i + 1; }
inline int Prev3(int i) { return i == 0 ? 2 : i - 1; }

inline void Prefetch(const void *address)
{
#if defined(__GNUC__) || defined(__clang__)
    __builtin_prefetch(address);
#else
    (void)address;
#endif
}

// An unsigned key that orders like the finite double d (with -0 and +0 equal).
inline std::uint64_t OrderedKey(double d)
{
    if (d == 0.0)
        d = 0.0;
    std::uint64_t bits;
    std::memcpy(&bits, &d, sizeof bits);
    return (bits >> 63) ? ~bits : bits | (std::uint64_t(1) << 63);
}

struct KeyedInput
{
    std::uint64_t x, y;
    int order;
    std::uint32_t bucket; // of x, see Quantizer
};

struct PositionedKey
{
    std::uint64_t key;
    int position;
    std::uint32_t bucket; // of the coordinate behind the key, see Quantizer
};

// Maps the doubles of [lo, hi] onto the buckets 0 to 2^bits - 1, never to a smaller bucket for a larger
// value: each operation below rounds monotonically. The halves keep hi - lo finite.
class Quantizer
{
public:
    Quantizer(double lo, double hi, int bits) : m_lowHalf(lo / 2), m_top((std::uint32_t(1) << bits) - 1)
    {
        const double span = hi / 2 - lo / 2;
        m_scale = span > 0 ? double(m_top) / span : 0.0;
    }

    std::uint32_t operator()(double v) const
    {
        const double q = (v / 2 - m_lowHalf) * m_scale; // NaN only for 0 * infinity, at v = lo
        return q >= double(m_top) ? m_top : q > 0 ? std::uint32_t(q) : 0;
    }

private:
    double m_lowHalf;
    double m_scale = 0.0;
    std::uint32_t m_top;
};

// The lowest and highest value of a coordinate of the items.
template <typename Item>
std::pair<double, double> RangeOf(const LargeVector<Item> &items, double Item::*coordinate)
{
    double low = items.front().*coordinate, high = low;
    for (const Item &item : items) {
        low = std::min(low, item.*coordinate);
        high = std::max(high, item.*coordinate);
    }
    return {low, high};
}

// Buckets for n items: about four a point, and at least 2^11, at most 2^22, so that sorting by bucket
// takes two passes of the radix sort.
int BucketBits(std::size_t n)
{
    int bits = 2;
    while (bits < 22 && (std::size_t(1) << bits) < 4 * n)
        ++bits;
    return std::max(bits, 11);
}

// Sorts items stably by key(item), an unsigned key of at most `keyBits` bits: a least significant digit
// radix sort with 11-bit digits, skipping digits that all items share; small arrays go to
// std::stable_sort.
template <typename Item, typename Key>
void SortByKey(LargeVector<Item> &items, Key key, int keyBits = 64)
{
    const std::size_t size = items.size();
    if (size < 512) {
        std::stable_sort(items.begin(), items.end(),
                         [&key](const Item &a, const Item &b) { return key(a) < key(b); });
        return;
    }
    constexpr int kBits = 11;
    constexpr std::size_t kBuckets = std::size_t(1) << kBits;
    // Only the digits that a key can have: counting a digit that is zero in every key would add one to
    // the same counter for every item, a chain of dependent writes.
    const int passes = (keyBits + kBits - 1) / kBits;
    std::vector<std::uint32_t> counts(kBuckets * static_cast<std::size_t>(passes), 0);
    for (const Item &item : items) {
        const std::uint64_t k = key(item);
        for (int pass = 0; pass < passes; ++pass)
            ++counts[static_cast<std::size_t>(pass) * kBuckets + ((k >> (pass * kBits)) & (kBuckets - 1))];
    }
    LargeVector<Item> buffer(size);
    for (int pass = 0; pass < passes; ++pass) {
        std::uint32_t *count = counts.data() + static_cast<std::size_t>(pass) * kBuckets;
        const int shift = pass * kBits;
        if (count[(key(items[0]) >> shift) & (kBuckets - 1)] == size)
            continue; // every item has this digit
        std::uint32_t offset = 0;
        for (std::size_t b = 0; b < kBuckets; ++b) {
            const std::uint32_t c = count[b];
            count[b] = offset;
            offset += c;
        }
        for (const Item &item : items)
            buffer[count[(key(item) >> shift) & (kBuckets - 1)]++] = item;
        items.swap(buffer);
    }
}

// Sorts items by `less`, a strict total order whose first criterion is `primary`, an unsigned 64-bit key.
// Where `bucket` (a map into at most 22 bits that never decreases along `less`) spreads the items, a
// radix sort by bucket takes two passes instead of one for each 11 bits in which the primary keys
// differ, and the few items that share a bucket are sorted by `less`. Where some bucket holds more than
// a few thousand items, as where many points share a coordinate, the items are sorted by their primary
// keys instead, and the runs of equal primary keys by `less`. Either way the result is the one order.
template <typename Item, typename Primary, typename Bucket, typename Less>
void SortByPrimaryKey(LargeVector<Item> &items, Primary primary, Bucket bucket, Less less)
{
    constexpr std::ptrdiff_t kLongRun = 4096;
    const auto sortRuns = [&items, &less](auto same, std::ptrdiff_t longest) {
        for (auto run = items.begin(); run != items.end();) {
            auto runEnd = run + 1;
            while (runEnd != items.end() && same(*run, *runEnd))
                ++runEnd;
            if (runEnd - run > longest)
                return false;
            if (runEnd - run > 1)
                std::sort(run, runEnd, less);
            run = runEnd;
        }
        return true;
    };
    SortByKey(items, [&bucket](const Item &item) { return std::uint64_t(bucket(item)); }, 22);
    if (sortRuns([&bucket](const Item &a, const Item &b) { return bucket(a) == bucket(b); }, kLongRun))
        return;
    SortByKey(items, primary);
    sortRuns([&primary](const Item &a, const Item &b) { return primary(a) == primary(b); },
             std::numeric_limits<std::ptrdiff_t>::max());
}

} // namespace

void SetTestHooks(TestHooks *hooks)
{
    g_testHooks = hooks;
}

Sweep::Sweep(const std::vector<std::vector<Point *>> &rings) : m_rings(rings), m_hooks(g_testHooks)
{
}


// ---------------------------------------------------------------------------------------------
// Preparation

bool Sweep::Prepare()
{
    // All non-null points, each with its ring.
    struct Input
    {
        double x, y;
        Point *point;
    };
    // The points of ring r are inputs[ringBegin[r]] up to inputs[ringBegin[r + 1]].
    LargeVector<Input> inputs;
    std::vector<int> ringBegin(m_rings.size() + 1, 0);
    std::size_t pointCount = 0;
    for (const auto &ring : m_rings)
        pointCount += ring.size();
    inputs.reserve(pointCount);
    for (std::size_t r = 0; r < m_rings.size(); ++r) {
        for (Point *point : m_rings[r]) {
            if (!point)
                continue;
            if (!std::isfinite(point->x) || !std::isfinite(point->y))
                return false;
            inputs.push_back({point->x, point->y, point});
        }
        ringBegin[r + 1] = static_cast<int>(inputs.size());
    }
    if (inputs.size() < 3 || m_rings.empty() || ringBegin[1] < 3)
        return false;

    // Merge identical coordinates. The first input point of a group represents it. The points are
    // sorted by (x, y, input order) as integer keys that order like the coordinates, in a contiguous
    // array.
    const auto [lowX, highX] = RangeOf(inputs, &Input::x);
    const Quantizer bucketOfX(lowX, highX, BucketBits(inputs.size()));
    LargeVector<KeyedInput> byX(inputs.size());
    for (std::size_t k = 0; k < inputs.size(); ++k) {
        const Input &in = inputs[k];
        byX[k] = {OrderedKey(in.x), OrderedKey(in.y), static_cast<int>(k), bucketOfX(in.x)};
    }
    SortByPrimaryKey(
        byX, [](const KeyedInput &in) { return in.x; }, [](const KeyedInput &in) { return in.bucket; },
        [](const KeyedInput &a, const KeyedInput &b) {
            return a.x != b.x ? a.x < b.x : a.y != b.y ? a.y < b.y : a.order < b.order;
        });
    LargeVector<int> xPositionOfInput(inputs.size());
    LargeVector<Input> unique; // one per position in x order, with its representative input point
    LargeVector<std::uint64_t> uniqueYKeys;
    unique.reserve(byX.size());
    uniqueYKeys.reserve(byX.size());
    for (std::size_t k = 0; k < byX.size(); ++k) {
        const KeyedInput &in = byX[k];
        if (k == 0 || in.x != byX[k - 1].x || in.y != byX[k - 1].y) {
            unique.push_back(inputs[static_cast<std::size_t>(in.order)]);
            uniqueYKeys.push_back(in.y);
        }
        xPositionOfInput[static_cast<std::size_t>(in.order)] = static_cast<int>(unique.size()) - 1;
    }
    LargeVector<KeyedInput>().swap(byX);
    m_count = static_cast<int>(unique.size());
    if (m_count < 3)
        return false;
    auto rawX = [&unique](int position) { return unique[static_cast<std::size_t>(position)].x; };
    auto rawY = [&unique](int position) { return unique[static_cast<std::size_t>(position)].y; };

    // Vertices are numbered in sweep order (y, then x), which keeps the mesh's neighbours close in
    // memory; the front index works on the rank in x (then y). The positions are in x order already,
    // so the order of (y, position) is the sweep order.
    const auto [lowY, highY] = RangeOf(unique, &Input::y);
    const Quantizer bucketOfY(lowY, highY, BucketBits(unique.size()));
    LargeVector<PositionedKey> swept(static_cast<std::size_t>(m_count));
    for (int k = 0; k < m_count; ++k)
        swept[static_cast<std::size_t>(k)] = {uniqueYKeys[static_cast<std::size_t>(k)], k,
                                              bucketOfY(unique[static_cast<std::size_t>(k)].y)};
    LargeVector<std::uint64_t>().swap(uniqueYKeys);
    SortByPrimaryKey(
        swept, [](const PositionedKey &s) { return s.key; }, [](const PositionedKey &s) { return s.bucket; },
        [](const PositionedKey &a, const PositionedKey &b) {
            return a.key != b.key ? a.key < b.key : a.position < b.position;
        });
    LargeVector<int> sweepOrder(static_cast<std::size_t>(m_count));
    for (int v = 0; v < m_count; ++v)
        sweepOrder[static_cast<std::size_t>(v)] = swept[static_cast<std::size_t>(v)].position;
    LargeVector<PositionedKey>().swap(swept);
    LargeVector<int> vertexAtX(static_cast<std::size_t>(m_count));
    for (int v = 0; v < m_count; ++v)
        vertexAtX[static_cast<std::size_t>(sweepOrder[static_cast<std::size_t>(v)])] = v;

    // Outline without repeated neighbours.
    auto vertexOfInput = [&](int input) {
        return vertexAtX[static_cast<std::size_t>(xPositionOfInput[static_cast<std::size_t>(input)])];
    };
    m_outline.clear();
    for (int in = 0; in < ringBegin[1]; ++in) {
        const int v = vertexOfInput(in);
        if (m_outline.empty() || m_outline.back() != v)
            m_outline.push_back(v);
    }
    while (m_outline.size() > 1 && m_outline.back() == m_outline.front())
        m_outline.pop_back();
    if (m_outline.size() < 3)
        return false;

    // Extent and scale. Halves keep the differences finite for any finite input.
    const double minX = rawX(0), maxX = rawX(m_count - 1);
    const double minY = rawY(sweepOrder.front()), maxY = rawY(sweepOrder.back());
    if (!(maxX > minX) || !(maxY > minY))
        return false;
    const double halfExtent = std::max(maxX / 2 - minX / 2, maxY / 2 - minY / 2);
    int exponent = 0;
    std::frexp(halfExtent, &exponent);
    const int shift = -(exponent + 1);

    const std::size_t total = static_cast<std::size_t>(m_count) + 2;
    // Room for the three corners that incremental insertion adds, so that adding them moves nothing.
    m_xy.reserve(total + 3);
    m_links.reserve(total + 3);
    m_xy.assign(total, Coordinates{0.0, 0.0});
    m_links.assign(total, Links{});
    m_points.resize(static_cast<std::size_t>(m_count));
    m_rank.resize(total);
    m_vertexOfRank.resize(total);
    // Scaling by a power of two in the range of normal doubles is one exact (or, below the normal
    // range, correctly rounded) multiplication, the same as ldexp.
    // Scaling back by the inverse power is exact as well, so it tells whether a coordinate rounded.
    const bool scaleIsNormal = shift >= -1022 && shift <= 1022;
    const double scale = scaleIsNormal ? std::ldexp(1.0, shift) : 0.0;
    const double inverse = scaleIsNormal ? std::ldexp(1.0, -shift) : 0.0;
    auto scaled = [&](double value) { return scaleIsNormal ? value * scale : std::ldexp(value, shift); };
    auto unscaled = [&](double value) { return scaleIsNormal ? value * inverse : std::ldexp(value, -shift); };
    bool rounded = false;
    for (int position = 0; position < m_count; ++position) {
        const Input &in = unique[static_cast<std::size_t>(position)];
        const int v = vertexAtX[static_cast<std::size_t>(position)];
        const Coordinates xy{scaled(in.x), scaled(in.y)};
        rounded = rounded || unscaled(xy.x) != in.x || unscaled(xy.y) != in.y;
        m_xy[static_cast<std::size_t>(v)] = xy;
        m_points[static_cast<std::size_t>(v)] = in.point;
        m_rank[static_cast<std::size_t>(v)] = position + 1;
        m_vertexOfRank[static_cast<std::size_t>(position) + 1] = v;
    }
    m_rank[static_cast<std::size_t>(Tail())] = 0;
    m_vertexOfRank[0] = Tail();
    m_rank[static_cast<std::size_t>(Head())] = m_count + 1;
    m_vertexOfRank[static_cast<std::size_t>(m_count) + 1] = Head();
    const double sMinX = std::ldexp(minX, shift), sMaxX = std::ldexp(maxX, shift);
    const double sMinY = std::ldexp(minY, shift), sMaxY = std::ldexp(maxY, shift);
    const double marginX = kArtificialMargin * (sMaxX - sMinX);
    const double marginY = kArtificialMargin * (sMaxY - sMinY);
    m_xy[static_cast<std::size_t>(Tail())].x = sMinX - marginX;
    m_xy[static_cast<std::size_t>(Tail())].y = sMinY - marginY;
    m_xy[static_cast<std::size_t>(Head())].x = sMaxX + marginX;
    m_xy[static_cast<std::size_t>(Head())].y = sMinY - marginY;

    // Scaling by a power of two is exact while the results stay normal doubles. Where the extent of
    // the cloud in one direction dwarfs the coordinates in the other by more than the range of
    // doubles, scaled coordinates become subnormal and round: the cloud may turn flat in a direction
    // (the artificial points then fall onto it, and a front vertex lacks a neighbour where the sweep
    // expects one), or distinct points may meet. Such input cannot be triangulated either. Only when
    // some coordinate did round are the points compared, so sound input pays one pass.
    if (!(X(VertexOfRank(m_count)) > X(VertexOfRank(1))) || !(Y(m_count - 1) > Y(0)))
        return false;
    if (!(X(Tail()) < X(VertexOfRank(1))) || !(X(Head()) > X(VertexOfRank(m_count))) || !(Y(Tail()) < Y(0)))
        return false;
    if (rounded) {
        std::vector<std::pair<double, double>> scaledPoints(static_cast<std::size_t>(m_count));
        for (int v = 0; v < m_count; ++v)
            scaledPoints[static_cast<std::size_t>(v)] = {X(v), Y(v)};
        std::sort(scaledPoints.begin(), scaledPoints.end());
        if (std::adjacent_find(scaledPoints.begin(), scaledPoints.end()) != scaledPoints.end())
            return false;
    }
    if (m_hooks) {
        m_hooks->tailX = std::ldexp(X(Tail()), -shift);
        m_hooks->tailY = std::ldexp(Y(Tail()), -shift);
        m_hooks->headX = std::ldexp(X(Head()), -shift);
        m_hooks->headY = std::ldexp(Y(Head()), -shift);
    }

    // The rings' vertices in input order; the constrained edges follow from them (ForEachRingEdge).
    m_ringVertices.resize(inputs.size());
    for (std::size_t in = 0; in < inputs.size(); ++in)
        m_ringVertices[in] = vertexOfInput(static_cast<int>(in));
    m_ringBegin = ringBegin;
    m_edgeOffsets.clear();
    m_edgeStarts.clear();

    std::vector<int> ring;
    RingShape shape;
    std::size_t vertices = 0;
    for (std::size_t r = 0; r < m_rings.size(); ++r) {
        ring.clear();
        for (int in = ringBegin[r]; in < ringBegin[r + 1]; ++in) {
            const int v = m_ringVertices[static_cast<std::size_t>(in)];
            if (ring.empty() || ring.back() != v)
                ring.push_back(v);
        }
        while (ring.size() > 1 && ring.back() == ring.front())
            ring.pop_back();
        vertices += ring.size();
        MeasureRing(ring, r == 0, shape);
    }
    const double count = static_cast<double>(vertices);
    m_smoothRings = static_cast<double>(shape.reflex) < kReflexShareOfSweptBoundaries * count
                    || shape.squaredRuns >= kSmoothRunOfSweptBoundaries * count;
    return true;
}

// Calls visit(upper, lower) for every constrained edge, ring by ring and along each ring: from each
// vertex to the next, and from the last back to the first (a ring of two points is one edge), leaving
// out edges whose ends coincide.
template <typename Visit>
void Sweep::ForEachRingEdge(Visit visit) const
{
    for (std::size_t r = 0; r + 1 < m_ringBegin.size(); ++r) {
        const int first = m_ringBegin[r];
        const int size = m_ringBegin[r + 1] - first;
        if (size < 2)
            continue;
        const int count = size == 2 ? 1 : size;
        for (int k = 0; k < count; ++k) {
            const int a = m_ringVertices[static_cast<std::size_t>(first + k)];
            const int b = m_ringVertices[static_cast<std::size_t>(first + (k + 1) % size)];
            if (a != b)
                visit(std::max(a, b), std::min(a, b));
        }
    }
}

// Files the constrained edges under their upper ends for the sweep's edge events, in the rings'
// order within each vertex; once, when the first sweep starts.
void Sweep::FileEdgesByUpperEnd()
{
    if (!m_edgeOffsets.empty())
        return;
    m_edgeOffsets.assign(static_cast<std::size_t>(m_count) + 1, 0);
    std::size_t edges = 0;
    ForEachRingEdge([&](int upper, int) {
        ++m_edgeOffsets[static_cast<std::size_t>(upper) + 1];
        ++edges;
    });
    for (int v = 0; v < m_count; ++v)
        m_edgeOffsets[static_cast<std::size_t>(v) + 1] += m_edgeOffsets[static_cast<std::size_t>(v)];
    m_edgeStarts.resize(edges);
    LargeVector<int> fill(m_edgeOffsets.begin(), m_edgeOffsets.end() - 1);
    ForEachRingEdge([&](int upper, int lower) {
        m_edgeStarts[static_cast<std::size_t>(fill[static_cast<std::size_t>(upper)]++)] = lower;
    });
}

// Adds to shape what ring contributes. Reflex vertices are those at which the triangulated region's
// boundary turns away from the region: on the outline, turns against its orientation; on a hole,
// whose inside is cut out, turns with the hole's orientation. Runs are the maximal stretches of
// vertices that turn one way (straight vertices, within the collinearity tolerance, join either);
// each adds its length squared, so that the sum over the vertices' count is the mean length of the
// run a vertex lies in.
void Sweep::MeasureRing(const std::vector<int> &ring, bool outline, RingShape &shape) const
{
    const std::size_t n = ring.size();
    if (n < 3) {
        shape.squaredRuns += static_cast<double>(n);
        return;
    }
    double doubledArea = 0.0;
    for (std::size_t k = 0; k < n; ++k) {
        const int a = ring[k], b = ring[k + 1 == n ? 0 : k + 1];
        doubledArea += X(a) * Y(b) - X(b) * Y(a);
    }
    const int orientation = doubledArea > 0.0 ? 1 : -1;
    const int reflexTurn = outline ? -orientation : orientation;
    double run = 0.0;
    int runTurn = 0;
    for (std::size_t k = 0; k < n; ++k) {
        const int turn = Orient(ring[k == 0 ? n - 1 : k - 1], ring[k], ring[k + 1 == n ? 0 : k + 1]);
        if (turn == reflexTurn)
            ++shape.reflex;
        if (turn != 0 && runTurn != 0 && turn != runTurn) {
            shape.squaredRuns += run * run;
            run = 0.0;
        }
        if (turn != 0)
            runTurn = turn;
        ++run;
    }
    shape.squaredRuns += run * run;
}

// ---------------------------------------------------------------------------------------------
// Triangle pool

int Sweep::NewTriangle(int a, int b, int c)
{
    const int t = static_cast<int>(m_tris.size());
    m_tris.push_back(Tri{{a, b, c}, {-1, -1, -1}, 0});
    TriangleOf(a) = t;
    TriangleOf(b) = t;
    TriangleOf(c) = t;
    return t;
}

// Makes other, an existing triangle, the neighbour of t across t's edge; t takes over the edge's
// constrained mark.
void Sweep::LinkToExisting(int t, int edge, int other)
{
    Tri &tri = m_tris[static_cast<std::size_t>(t)];
    tri.n[edge] = other;
    if (other < 0)
        return;
    const int k = IndexOfThird(other, tri.v[Next3(edge)], tri.v[Prev3(edge)]);
    Tri &o = m_tris[static_cast<std::size_t>(other)];
    o.n[k] = t;
    if (o.constrained & (1u << k))
        tri.constrained = static_cast<std::uint8_t>(tri.constrained | (1u << edge));
}

// Marks the edge from a to b of t, and of t's neighbour across it, as constrained. A neighbour that
// does not have the edge (a mesh that rounding in coordinates beyond the predicates' exact range has
// tangled) is the neighbour that does not point back: the same error ends the step.
void Sweep::MarkConstrained(int t, int a, int b)
{
    const int k = IndexOfThird(t, a, b);
    const int other = k < 0 ? -1 : m_tris[static_cast<std::size_t>(t)].n[k];
    const int j = other < 0 ? -1 : IndexOfThird(other, a, b);
    if (k < 0 || (other >= 0 && (j < 0 || IndexOf(other, a) < 0 || IndexOf(other, b) < 0)))
        throw std::runtime_error(kMissingOppositeError);
    Tri &tri = m_tris[static_cast<std::size_t>(t)];
    tri.constrained = static_cast<std::uint8_t>(tri.constrained | (1u << k));
    if (other >= 0) {
        Tri &o = m_tris[static_cast<std::size_t>(other)];
        o.constrained = static_cast<std::uint8_t>(o.constrained | (1u << j));
    }
}

// Keeps the front triangles right for every front edge of t. A front edge runs left to right with its
// triangle below, so t walks it from right to left.
void Sweep::MapFront(int t)
{
    const Tri &tri = m_tris[static_cast<std::size_t>(t)];
    for (int i = 0; i < 3; ++i) {
        if (tri.n[i] >= 0)
            continue;
        const int right = tri.v[Next3(i)];
        const int left = tri.v[Prev3(i)];
        if (NextOf(left) == right)
            FrontTriangleOf(left) = t;
    }
}

void Sweep::RemoveFromFront(int v)
{
    const int left = PrevOf(v);
    const int right = NextOf(v);
    NextOf(left) = right;
    PrevOf(right) = left;
    NextOf(v) = -1;
    PrevOf(v) = -1;
    FrontTriangleOf(v) = -1;
    m_front.Erase(Rank(v));
}

// Replaces the edge across from vertex i of t by the other diagonal of the quadrilateral that t
// forms with its neighbour o (whose vertex j faces the same edge). With t = (a, b, c) and o's far
// vertex q, t becomes (a, b, q) and o becomes (a, q, c); a is vertex 0 of both.
void Sweep::Flip(int t, int i, int o, int j)
{
    Tri &T = m_tris[static_cast<std::size_t>(t)];
    Tri &O = m_tris[static_cast<std::size_t>(o)];
    const int a = T.v[i], b = T.v[Next3(i)], c = T.v[Prev3(i)];
    const int q = O.v[j];
    Charge(1);
    const int nCA = T.n[Next3(i)], nAB = T.n[Prev3(i)];
    const bool cCA = T.constrained & (1u << Next3(i)), cAB = T.constrained & (1u << Prev3(i));
    const int nBQ = O.n[Next3(j)], nQC = O.n[Prev3(j)];
    const bool cBQ = O.constrained & (1u << Next3(j)), cQC = O.constrained & (1u << Prev3(j));

    T = Tri{{a, b, q}, {nBQ, o, nAB}, static_cast<std::uint8_t>((cBQ ? 1u : 0u) | (cAB ? 4u : 0u))};
    O = Tri{{a, q, c}, {nQC, nCA, t}, static_cast<std::uint8_t>((cQC ? 1u : 0u) | (cCA ? 2u : 0u))};
    Repoint(nBQ, o, t);
    Repoint(nCA, t, o);
    // b and c each lose one of the two triangles; a and q keep theirs and gain the other. Incremental
    // insertion only needs some triangle around each vertex, so it writes no more than that; the
    // sweep's loop detection compares these links, so it keeps writing all four.
    TriangleOf(b) = t;
    TriangleOf(c) = o;
    if (!m_incremental) {
        TriangleOf(a) = t;
        TriangleOf(q) = t;
    }
    if (nBQ < 0 || nAB < 0)
        MapFront(t);
    if (nQC < 0 || nCA < 0)
        MapFront(o);
}

// Makes neighbor, if there is one, point to replacement where it pointed to previous.
void Sweep::Repoint(int neighbor, int previous, int replacement)
{
    if (neighbor < 0)
        return;
    const int k = IndexOfNeighbor(neighbor, previous);
    if (k >= 0)
        m_tris[static_cast<std::size_t>(neighbor)].n[k] = replacement;
}

void Sweep::Charge(std::uint64_t work)
{
    m_work += work;
    if (m_work > m_workBudget)
        throw SweepOverBudget{};
}

// Works off m_legalize: each entry names an edge that may fail the in-circle test; failing
// unconstrained edges are flipped. Unless general is set, the edges that a flip exposes are only the
// two across from the vertex that caused the flip (a new point, or the apex of a filled triangle);
// with general set, all four outer edges of the flipped quadrilateral are checked again. Answers false
// when a flip step finds no opposite point; the pending work is then dropped.
bool Sweep::Legalize(bool general)
{
    if (m_hooks && m_hooks->skipSweepLegalization) {
        m_legalize.clear();
        m_legalizationComplete = false;
        return true;
    }
    while (!m_legalize.empty()) {
        const auto [t, i] = m_legalize.back();
        m_legalize.pop_back();
        const Tri &T = m_tris[static_cast<std::size_t>(t)];
        if (T.constrained & (1u << i))
            continue;
        const int o = T.n[i];
        if (o < 0)
            continue;
        int j = IndexOfNeighbor(o, t);
        if (j < 0) {
            if (m_incremental)
                throw std::runtime_error(kMissingOppositeError);
            qCDebug(lcKezTriangulation)
                    << "Sweep::FlipEdgeEvent() FLIP failed due to missing triangle opposite point.";
            m_legalize.clear();
            m_legalizationComplete = false;
            return false;
        }
        const int a = T.v[i], b = T.v[Next3(i)], c = T.v[Prev3(i)];
        const int q = m_tris[static_cast<std::size_t>(o)].v[j];
        if (InCircleSign(X(a), Y(a), X(b), Y(b), X(c), Y(c), X(q), Y(q)) <= 0)
            continue;
        Flip(t, i, o, j);
        m_legalize.emplace_back(t, 0);
        m_legalize.emplace_back(o, 0);
        if (general) {
            m_legalize.emplace_back(t, 2);
            m_legalize.emplace_back(o, 1);
        }
    }
    return true;
}

// ---------------------------------------------------------------------------------------------
// The sweep

void Sweep::SweepPoints()
{
    FileEdgesByUpperEnd();
    const int first = 0;
    const int t0 = NewTriangle(Tail(), Head(), first);
    NextOf(Tail()) = first;
    PrevOf(first) = Tail();
    NextOf(first) = Head();
    PrevOf(Head()) = first;
    FrontTriangleOf(Tail()) = t0;
    FrontTriangleOf(first) = t0;
    m_front.Insert(Rank(Tail()));
    m_front.Insert(Rank(first));
    m_front.Insert(Rank(Head()));
    if (m_hooks)
        m_hooks->sweptPoints = 1;

    for (int k = 1; k < m_count; ++k) {
        if (m_mayInsertIncrementally)
            m_workBudget = kSweepWorkPerPoint * static_cast<std::uint64_t>(k + 1) + kSweepWorkAllowance;
        if (m_hooks && m_hooks->throwBeforeSweepIndex == k)
            throw std::runtime_error(m_hooks->throwMessage);
        const int p = k;
        PointEvent(p);
        Verify("point event", p);
        EdgeEvents(p);
        Verify("edge events", p);
        if (m_hooks)
            m_hooks->sweptPoints = k + 1;
    }
}

void Sweep::PointEvent(int p)
{
    // The front edge from node to its successor lies right below p: node.x <= p.x < next.x.
    const int node = VertexOfRank(m_front.Predecessor(Rank(p)));
    const int next = NextOf(node);
    const int t = NewTriangle(node, next, p);
    LinkToExisting(t, 2, FrontTriangleOf(node));
    NextOf(node) = p;
    PrevOf(p) = node;
    NextOf(p) = next;
    PrevOf(next) = p;
    FrontTriangleOf(node) = t;
    FrontTriangleOf(p) = t;
    m_front.Insert(Rank(p));
    m_legalize.emplace_back(t, 2);
    Legalize(false);

    // A point right above a front vertex leaves that vertex in a valley; filling it keeps the front
    // strictly increasing in x.
    if (X(node) == X(p))
        FillVertex(node);

    FillSmallHoles(p);
    FillBasin(p);
}

// Closes the valley at front vertex n with the triangle (n, next, previous) and takes n off the
// front. The caller makes sure that n lies strictly below the line through its front neighbours.
void Sweep::FillVertex(int n)
{
    const int left = PrevOf(n);
    const int right = NextOf(n);
    const int t = NewTriangle(n, right, left);
    LinkToExisting(t, 1, FrontTriangleOf(left));
    LinkToExisting(t, 2, FrontTriangleOf(n));
    RemoveFromFront(n);
    FrontTriangleOf(left) = t;
    // The apex is no new point, so the edges next to it may fail too: general legalisation.
    m_legalize.emplace_back(t, 1);
    m_legalize.emplace_back(t, 2);
    Legalize(true);
}

// Fills the front vertices next to p whose valley is narrower than a right angle.
void Sweep::FillSmallHoles(int p)
{
    auto smallHole = [this](int left, int n, int right) {
        if (OrientExact(left, right, n) >= 0)
            return false;
        const double lx = X(left) - X(n), ly = Y(left) - Y(n);
        const double rx = X(right) - X(n), ry = Y(right) - Y(n);
        return lx * rx + ly * ry > 0.0;
    };
    for (;;) {
        const int n = NextOf(p);
        if (n == Head() || !smallHole(p, n, NextOf(n)))
            break;
        FillVertex(n);
    }
    for (;;) {
        const int n = PrevOf(p);
        if (n == Tail() || !smallHole(PrevOf(n), n, p))
            break;
        FillVertex(n);
    }
}

// A basin is a stretch of the front right of p that drops steeply and rises again. It is filled by
// closing its valleys until the front from p to the basin's right rim has none left.
void Sweep::FillBasin(int p)
{
    const int first = NextOf(p);
    if (first == Head())
        return;
    if (!(Y(p) - Y(first) > X(first) - X(p)))
        return;
    std::uint64_t steps = 0;
    int bottom = first;
    while (NextOf(bottom) != Head()
           && Y(NextOf(bottom)) <= Y(bottom)) {
        bottom = NextOf(bottom);
        ++steps;
    }
    int rim = bottom;
    while (NextOf(rim) != Head()
           && Y(NextOf(rim)) > Y(rim)) {
        rim = NextOf(rim);
        ++steps;
    }
    Charge(steps / kFrontStepsPerWorkUnit);
    if (rim == bottom)
        return;
    int n = first;
    while (n != rim) {
        const int left = PrevOf(n);
        const int right = NextOf(n);
        if (OrientExact(left, right, n) < 0) {
            FillVertex(n);
            n = left == p ? NextOf(p) : left;
        } else {
            n = right;
        }
    }
}

void Sweep::EdgeEvents(int p)
{
    const int begin = m_edgeOffsets[static_cast<std::size_t>(p)];
    const int end = m_edgeOffsets[static_cast<std::size_t>(p) + 1];
    for (int k = begin; k < end; ++k)
        EdgeEvent(m_edgeStarts[static_cast<std::size_t>(k)], p);
}

// Inserts the constrained edge from start up to the swept point p. Each round inserts the part from
// the current end towards start, up to the first vertex that lies on it, which becomes the end of the
// next round. Where that part leaves the triangulated region through the front, the pocket of the
// front below it is filled first and the round tries again. A round that finds itself exactly where
// an earlier round of this edge was would repeat forever; the edge is given up then.
void Sweep::EdgeEvent(int start, int p)
{
    m_visited.clear();
    int end = p;
    for (;;) {
        const EdgeEntry entry{this, start, end, TriangleOf(end), end};
        if (std::find(m_visited.begin(), m_visited.end(), entry) != m_visited.end()) {
            if (m_incremental)
                throw std::runtime_error(kEndlessLoopMessage);
            qCDebug(lcKezTriangulation) << kEndlessLoopMessage;
            m_legalizationComplete = false;
            return;
        }
        m_visited.push_back(entry);
        if (m_hooks && m_hooks->stallEdgeEvents)
            continue;

        int target = start;
        int reached = -1;
        for (;;) {
            int pocket = -1;
            reached = InsertSegment(end, target, pocket);
            if (reached != kPocketAhead)
                break;
            const int split = FillPocket(end, target, pocket);
            Verify("front fill below a constrained edge", end);
            if (split >= 0)
                target = split;
        }
        Verify("constrained edge insertion", end);
        if (reached < 0 || reached == start)
            return;
        end = reached;
    }
}

// Fills a pocket of the front below the segment from `from` to `to`: the stretch of front vertices
// below the segment that follows `boundary` (a front vertex on or above the segment, or `from`
// itself) in the direction of `to`. Closes valleys below the segment while walking towards `to`,
// stepping back after each fill to the vertex whose valley may just have formed; some vertex of a
// pocket is always a valley (the lowest corner of its hull), so the pocket empties. Answers a front
// vertex that lies on the segment, where the caller splits the edge, or -1.
int Sweep::FillPocket(int from, int to, int boundary)
{
    const bool leftward = X(to) < X(from);
    auto toward = [this, leftward](int v) {
        return leftward ? PrevOf(v) : NextOf(v);
    };
    bool filled = false;
    int n = toward(boundary);
    for (;;) {
        if (n == to || n < 0 || IsArtificial(n))
            break;
        if (leftward ? X(n) <= X(to) : X(n) >= X(to))
            break;
        const int side = Orient(from, to, n);
        if (side == 0)
            return n;
        // Heading left, the region below the segment is on its left side; heading right, on its right.
        if (leftward ? side < 0 : side > 0)
            break;
        if (OrientExact(PrevOf(n), NextOf(n), n) < 0) {
            const int back = leftward ? NextOf(n) : PrevOf(n);
            FillVertex(n);
            filled = true;
            n = back == boundary ? toward(boundary) : back;
            continue;
        }
        n = toward(n);
    }
    if (!filled)
        throw std::runtime_error(kMissingTriangleError);
    return -1;
}

// Makes the segment from `from` to `to` an edge of the triangulation and marks it constrained, or
// the part of it up to the first vertex that lies on it. Answers the vertex where the inserted part
// ends, -1 when the edge was given up, or kPocketAhead when the segment leaves the triangulated
// region through the front; pocket is then the front vertex after which the front dips below it.
int Sweep::InsertSegment(int from, int to, int &pocket)
{
    // Most constrained edges of smooth or densely sampled outlines are edges of the mesh already. A
    // first turn that compares vertex numbers only finds them without reading any coordinates, which
    // on large inputs lie far apart in memory.
    int existing = -1;
    TurnAround(from, [&](int candidate, int i) {
        const Tri &T = m_tris[static_cast<std::size_t>(candidate)];
        if (T.v[Next3(i)] != to && T.v[Prev3(i)] != to)
            return false;
        existing = candidate;
        return true;
    });
    if (existing >= 0) {
        MarkConstrained(existing, from, to);
        return to;
    }
    // The full turn around `from`, over the same triangles in the same order, none of which has the
    // edge: a neighbour on the segment splits it; otherwise some triangle's far edge runs from a vertex
    // right of the segment to one left of it, and the segment leaves `from` through that triangle.
    // Only the first case can put a vertex on the segment's line ahead, so the turn ends as soon as a
    // triangle of the second shows up.
    const double dx = X(to) - X(from), dy = Y(to) - Y(from);
    const double length2 = dx * dx + dy * dy;
    int onSegment = -1, onSegmentTriangle = -1;
    int t = -1, right = -1, left = -1;
    double nearest = 0.0;
    bool beyond = false;
    TurnAround(from, [&](int candidate, int i) {
        const Tri &T = m_tris[static_cast<std::size_t>(candidate)];
        const int u = T.v[Next3(i)], w = T.v[Prev3(i)];
        const int su = Orient(from, to, u), sw = Orient(from, to, w);
        if (su < 0 && sw > 0) {
            t = candidate;
            right = u;
            left = w;
            return true;
        }
        for (const int x : {u, w}) {
            if ((x == u ? su : sw) != 0)
                continue;
            const double along = (X(x) - X(from)) * dx + (Y(x) - Y(from)) * dy;
            if (along <= 0.0)
                continue;
            if (along >= length2) {
                beyond = true;
            } else if (onSegment < 0 || along < nearest) {
                onSegment = x;
                onSegmentTriangle = candidate;
                nearest = along;
            }
        }
        return false;
    });
    if (t < 0 && onSegment >= 0) {
        MarkConstrained(onSegmentTriangle, from, onSegment);
        return onSegment;
    }
    if (t < 0 && beyond)
        throw std::runtime_error(kCollinearError);
    if (t < 0) {
        if (NextOf(from) < 0 || X(from) == X(to))
            throw std::runtime_error(kMissingTriangleError);
        pocket = from; // the segment leaves `from` above the front
        return kPocketAhead;
    }

    // Walk along the segment through the triangles it crosses and queue every crossed edge, up to
    // `to` or to the first vertex on the segment.
    m_crossed.clear();
    m_crossed.push_back({right, left, t});
    int current = t;
    int stop = -1;
    for (std::size_t steps = 0;; ++steps) {
        const Tri &T = m_tris[static_cast<std::size_t>(current)];
        const int k = IndexOfThird(current, right, left);
        if (T.constrained & (1u << k))
            throw std::runtime_error(kConstrainedCrossingError);
        const int next = T.n[k];
        if (next < 0) {
            // Leaving through a front edge: heading left, the front vertex before the dip is the one
            // on the right of the segment, heading right the one on its left.
            const bool leftward = X(to) < X(from);
            const int before = leftward ? right : left;
            const int after = leftward ? left : right;
            const bool frontEdge = leftward ? PrevOf(before) == after
                                            : NextOf(before) == after;
            if (!frontEdge || X(to) == X(from))
                throw std::runtime_error(kMissingTriangleError);
            pocket = before;
            return kPocketAhead;
        }
        const int j = IndexOfNeighbor(next, current);
        if (j < 0 || steps > m_tris.size())
            throw std::runtime_error(kMissingOppositeError);
        const Tri &N = m_tris[static_cast<std::size_t>(next)];
        const int x = N.v[j];
        if (x == to) {
            stop = x;
            break;
        }
        // The walk chases pointers through memory that the sweep wrote long ago. While the far
        // vertex's coordinates arrive, look one triangle further: for both triangles the walk may
        // enter next, start loading their far vertices and the triangles beyond them.
        Prefetch(&m_xy[static_cast<std::size_t>(x)]);
        for (const int child : {N.n[Next3(j)], N.n[Prev3(j)]}) {
            if (child < 0)
                continue;
            const Tri &C = m_tris[static_cast<std::size_t>(child)];
            for (int e = 0; e < 3; ++e) {
                if (C.n[e] == next)
                    Prefetch(&m_xy[static_cast<std::size_t>(C.v[e])]);
                else if (C.n[e] >= 0)
                    Prefetch(&m_tris[static_cast<std::size_t>(C.n[e])]);
            }
        }
        const int side = Orient(from, to, x);
        if (side == 0) {
            const double along = (X(x) - X(from)) * dx + (Y(x) - Y(from)) * dy;
            if (along <= 0.0 || along >= length2)
                throw std::runtime_error(kCollinearError);
            stop = x;
            break;
        }
        if (side < 0)
            right = x;
        else
            left = x;
        m_crossed.push_back({right, left, next});
        current = next;
    }

    // Flip crossed edges away. An edge whose quadrilateral is not convex waits for its neighbours;
    // some crossed edge always has a convex one, so the queue drains. A new diagonal that still
    // crosses goes back into the queue; the others are kept for the Delaunay pass below.
    m_newEdges.clear();
    std::size_t head = 0;
    const std::size_t crossedCount = m_crossed.size();
    const std::size_t budget = 16 * crossedCount * crossedCount + 1024;
    for (std::size_t round = 0; head < m_crossed.size(); ++round) {
        if (round > budget) {
            if (m_incremental)
                throw std::runtime_error(kEndlessLoopMessage);
            qCDebug(lcKezTriangulation) << kEndlessLoopMessage;
            m_legalizationComplete = false;
            return -1;
        }
        const EdgeRef edge = m_crossed[head++];
        int ft = -1, fi = -1;
        if (!FindEdge(edge, ft, fi))
            throw std::runtime_error(kMissingTriangleError);
        const int o = m_tris[static_cast<std::size_t>(ft)].n[fi];
        if (o < 0)
            throw std::runtime_error(kMissingTriangleError);
        int j = IndexOfNeighbor(o, ft);
        if (m_hooks && m_hooks->loseOppositePoints > 0) {
            --m_hooks->loseOppositePoints;
            j = -1;
        }
        if (j < 0) {
            if (m_incremental)
                throw std::runtime_error(kMissingOppositeError);
            qCDebug(lcKezTriangulation)
                    << "Sweep::FlipEdgeEvent() FLIP failed due to missing triangle opposite point.";
            m_legalizationComplete = false;
            return -1;
        }
        const int a = m_tris[static_cast<std::size_t>(ft)].v[fi];
        const int q = m_tris[static_cast<std::size_t>(o)].v[j];
        const int b = m_tris[static_cast<std::size_t>(ft)].v[Next3(fi)];
        const int c = m_tris[static_cast<std::size_t>(ft)].v[Prev3(fi)];
        if (OrientExact(a, q, b) * OrientExact(a, q, c) >= 0) {
            m_crossed.push_back({edge.u, edge.w, ft}); // not convex yet
            continue;
        }
        Flip(ft, fi, o, j);
        const bool aOnLine = a == from || a == stop;
        const bool qOnLine = q == from || q == stop;
        // The new diagonal (a, q) is edge 1 of ft.
        if (!aOnLine && !qOnLine && Orient(from, to, a) != Orient(from, to, q))
            m_crossed.push_back({a, q, ft});
        else
            m_newEdges.push_back({a, q, ft});
        if (head > 4096 && head * 2 > m_crossed.size()) {
            m_crossed.erase(m_crossed.begin(), m_crossed.begin() + static_cast<std::ptrdiff_t>(head));
            head = 0;
        }
    }

    // The segment is an edge now.
    int st = -1, si = -1;
    const int lastHint = m_newEdges.empty() ? -1 : m_newEdges.back().hint;
    if (!FindEdge({from, stop, lastHint}, st, si))
        throw std::runtime_error(kMissingTriangleError);
    MarkConstrained(st, from, stop);

    // Restore the Delaunay property around the new edges.
    for (const EdgeRef &edge : m_newEdges) {
        int et = -1, ei = -1;
        if (FindEdge(edge, et, ei))
            m_legalize.emplace_back(et, ei);
    }
    return Legalize(true) ? stop : -1;
}

// Finds a triangle t with the edge and the index i of its vertex facing that edge: the hint if it
// still has the edge, else one of the hint's neighbours (a flip moves an edge to the other triangle of
// the flipped pair), else a triangle around the edge's first vertex.
bool Sweep::FindEdge(const EdgeRef &edge, int &t, int &i)
{
    auto has = [this, &edge](int candidate) {
        return candidate >= 0 && IndexOf(candidate, edge.u) >= 0 && IndexOf(candidate, edge.w) >= 0;
    };
    int found = -1;
    if (has(edge.hint)) {
        found = edge.hint;
    } else if (edge.hint >= 0) {
        for (const int n : m_tris[static_cast<std::size_t>(edge.hint)].n)
            if (has(n))
                found = n;
    }
    if (found < 0) {
        TurnAround(edge.u, [&](int candidate, int) {
            if (IndexOf(candidate, edge.w) < 0)
                return false;
            found = candidate;
            return true;
        });
    }
    if (found < 0)
        return false;
    t = found;
    i = IndexOfThird(t, edge.u, edge.w);
    return true;
}

// ---------------------------------------------------------------------------------------------
// Self-check for tests

std::string Sweep::FindInconsistency() const
{
    const int count = static_cast<int>(m_tris.size());
    for (int t = 0; t < count; ++t) {
        const Tri &T = m_tris[static_cast<std::size_t>(t)];
        if (OrientExact(T.v[0], T.v[1], T.v[2]) <= 0)
            return "triangle " + std::to_string(t) + " is not counter-clockwise";
        for (int k = 0; k < 3; ++k) {
            const int o = T.n[k];
            if (o < 0)
                continue;
            const int j = IndexOfNeighbor(o, t);
            if (j < 0)
                return "triangle " + std::to_string(o) + " does not point back to " + std::to_string(t);
            const Tri &O = m_tris[static_cast<std::size_t>(o)];
            if (O.v[Next3(j)] != T.v[Prev3(k)] || O.v[Prev3(j)] != T.v[Next3(k)])
                return "triangles " + std::to_string(t) + " and " + std::to_string(o) + " share no edge";
            if (((T.constrained >> k) & 1u) != ((O.constrained >> j) & 1u))
                return "constrained marks differ between " + std::to_string(t) + " and " + std::to_string(o);
        }
        for (int k = 0; k < 3; ++k)
            if (IndexOf(TriangleOf(T.v[k]), T.v[k]) < 0)
                return "vertex " + std::to_string(T.v[k]) + " has a stale triangle";
    }
    if (m_incremental)
        return std::string(); // no front
    for (int v = Tail(); v != Head(); v = NextOf(v)) {
        const int next = NextOf(v);
        if (next < 0 || PrevOf(next) != v)
            return "front broken after vertex " + std::to_string(v);
        if (!(X(v) < X(next)))
            return "front not increasing in x at vertex " + std::to_string(v);
        const int t = FrontTriangleOf(v);
        const int i = t < 0 ? -1 : IndexOf(t, next);
        if (i < 0 || m_tris[static_cast<std::size_t>(t)].v[Next3(i)] != v
            || m_tris[static_cast<std::size_t>(t)].n[Prev3(i)] >= 0)
            return "front edge from vertex " + std::to_string(v) + " has a wrong triangle";
    }
    return std::string();
}

void Sweep::Verify(const char *where, int p)
{
    if (!m_hooks || !m_hooks->verifyEveryStep || !m_hooks->inconsistency.empty())
        return;
    const std::string problem = FindInconsistency();
    if (!problem.empty())
        m_hooks->inconsistency = std::string(where) + " of vertex " + std::to_string(p) + ": " + problem;
}

// ---------------------------------------------------------------------------------------------
// Incremental insertion

namespace {

// A small deterministic generator (splitmix64) for the insertion order.
std::uint64_t NextRandom(std::uint64_t &state)
{
    std::uint64_t z = (state += 0x9e3779b97f4a7c15ULL);
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ULL;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebULL;
    return z ^ (z >> 31);
}

// Positions along a Hilbert curve over a 65536 x 65536 grid. Each level of the curve picks the
// quadrant of a cell (in the curve's order for the current frame) and turns the frame of the levels
// below: mirrored in both axes in the lower right quadrant, and then transposed in both lower ones.
// Both turns are their own inverses and commute, so the frame of a level is the exclusive or of the
// turns above it, and four levels go at once: for each of the 16 x 16 cells of a block, its position
// inside the block and the turn it passes on (bit 0 mirrored, bit 1 transposed), worked out here
// level by level once.
struct HilbertStep
{
    std::uint8_t position;
    std::uint8_t turn;
};

constexpr std::array<HilbertStep, 256> MakeHilbertSteps()
{
    std::array<HilbertStep, 256> steps{};
    for (std::uint32_t cell = 0; cell < 256; ++cell) {
        std::uint32_t x = cell >> 4, y = cell & 15u;
        std::uint32_t position = 0, turn = 0;
        for (int level = 3; level >= 0; --level) {
            const std::uint32_t right = (x >> level) & 1u;
            const std::uint32_t up = (y >> level) & 1u;
            position += ((3u * right) ^ up) << (2 * level);
            if (right == 1u && up == 0u) {
                x ^= 15u;
                y ^= 15u;
                turn ^= 1u;
            }
            if (up == 0u) {
                const std::uint32_t swapped = x;
                x = y;
                y = swapped;
                turn ^= 2u;
            }
        }
        steps[cell] = HilbertStep{static_cast<std::uint8_t>(position), static_cast<std::uint8_t>(turn)};
    }
    return steps;
}

constexpr std::array<HilbertStep, 256> kHilbertSteps = MakeHilbertSteps();

// Position of the cell (x, y), both below 65536, along the curve. The frame turns with masks rather
// than branches: which way a block turns is as good as random, and mispredicted branches cost more.
std::uint64_t HilbertPosition(std::uint32_t x, std::uint32_t y)
{
    std::uint64_t position = 0;
    std::uint32_t turn = 0;
    for (int shift = 12; shift >= 0; shift -= 4) {
        const std::uint32_t mirror = 15u & (0u - (turn & 1u));
        std::uint32_t cx = ((x >> shift) & 15u) ^ mirror;
        std::uint32_t cy = ((y >> shift) & 15u) ^ mirror;
        const std::uint32_t transpose = (cx ^ cy) & (0u - (turn >> 1));
        cx ^= transpose;
        cy ^= transpose;
        const HilbertStep step = kHilbertSteps[cx << 4 | cy];
        position = position << 8 | step.position;
        turn ^= step.turn;
    }
    return position;
}

} // namespace

// Clears what a previous attempt built and sets up the sweep's start.
void Sweep::StartSweep()
{
    const std::size_t vertices = static_cast<std::size_t>(m_count) + 2;
    m_xy.resize(vertices);
    m_links.assign(vertices, Links{});
    m_tris.clear();
    // Room for the triangles of either way: incremental insertion adds three corners to the vertices.
    m_tris.reserve(2 * (vertices + 3) + 16);
    m_front.Reset(m_count + 2);
    m_legalize.clear();
    m_legalizationComplete = true;
    m_incremental = false;
    m_aroundConvexOutline = false;
    m_workBudget = kNoWorkBudget;
}

// Builds the constrained Delaunay triangulation by inserting the points one by one into a triangle
// that encloses them all, in a random order that is sorted along a Hilbert curve within rounds of
// doubling size (so each point is found by a short walk from the one before), and then inserting
// every constrained edge, lower ends first, as the sweep's edge events do. Answers false, with the
// mesh left for the caller to clear, when any step fails: the sweep then runs instead.
bool Sweep::InsertIncrementally()
{
    StartSweep();
    m_incremental = true;
    try {
        InsertPointsIncrementally();
        // The edges go in along the rings, from their upper ends as in the sweep's edge events: each
        // starts where the one before ended, whose triangles are still at hand.
        ForEachRingEdge([this](int upper, int lower) {
            const int end = InsertedAs(upper);
            EdgeEvent(InsertedAs(lower), end);
            Verify("constrained edge insertion", end);
        });
        LargeVector<int>().swap(m_insertedAs); // the labels stay; their key is not needed any more
    } catch (const std::runtime_error &) {
        UndoRelabelling();
        m_incremental = false;
        return false;
    }
    if (m_hooks)
        m_hooks->sweptPoints = m_count;
    return true;
}

void Sweep::InsertPointsIncrementally()
{
    // The enclosing triangle. Its corners never matter inside the outline: they lie outside it, and
    // constrained edges block them from view. Vertices are numbered in order of y and ranked in order
    // of x, so the extremes are at hand.
    const double minX = X(VertexOfRank(1)), maxX = X(VertexOfRank(m_count));
    const double minY = Y(0), maxY = Y(m_count - 1);
    const double size = std::max(maxX - minX, maxY - minY);
    const double centerX = minX / 2 + maxX / 2, centerY = minY / 2 + maxY / 2;
    const int a = m_count + 2, b = m_count + 3, c = m_count + 4;
    // Along a nearly straight stretch of the hull, the in-circle tests of triangles with a corner are
    // close calls that the exact stages decide. Corners close to the cloud, whose coordinates have
    // few significant bits, keep those tests within the cheap integer stage (one fixed-point scale
    // for all eight coordinates), where distant corners with full significands sent them to the
    // general expansion. The span is the power of two at or above the size, the centre is rounded to
    // an eighth of it (all exact), and the cloud, within 5/8 of a span around that centre, lies well
    // inside the triangle.
    int exponent = 0;
    std::frexp(size, &exponent);
    const double span = std::ldexp(1.0, exponent);
    const double step = span / 8;
    const double cornerX = std::round(centerX / step) * step, cornerY = std::round(centerY / step) * step;
    m_xy.push_back(Coordinates{cornerX - 2 * span, cornerY - span});
    m_xy.push_back(Coordinates{cornerX + 2 * span, cornerY - span});
    m_xy.push_back(Coordinates{cornerX, cornerY + 2 * span});
    m_links.resize(m_xy.size());
    m_tris.reserve(2 * m_xy.size() + 16); // as reserved by StartSweep already
    NewTriangle(a, b, c);

    LargeVector<int> order(static_cast<std::size_t>(m_count));
    std::iota(order.begin(), order.end(), 0);
    std::uint64_t state = 0x5eed;
    for (std::size_t k = order.size(); k > 1; --k)
        std::swap(order[k - 1], order[static_cast<std::size_t>(NextRandom(state) % k)]);
    // The Hilbert positions are computed in vertex order, which reads the coordinates in sequence;
    // the rounds then look them up in a quarter of the space.
    const double cell = 65535.0 / size;
    LargeVector<std::uint32_t> hilbert(static_cast<std::size_t>(m_count));
    for (int v = 0; v < m_count; ++v) {
        const auto qx = static_cast<std::uint32_t>(std::min(65535.0, (X(v) - minX) * cell));
        const auto qy = static_cast<std::uint32_t>(std::min(65535.0, (Y(v) - minY) * cell));
        hilbert[static_cast<std::size_t>(v)] = static_cast<std::uint32_t>(HilbertPosition(qx, qy));
    }
    // Sorted by Hilbert position, then vertex: the vertex fills the key's low half.
    LargeVector<std::uint64_t> keyed;
    keyed.reserve(order.size() - order.size() / 2);
    for (std::size_t end = order.size(); end > 0;) {
        const std::size_t begin = end > 64 ? end / 2 : 0;
        keyed.clear();
        for (std::size_t k = begin; k < end; ++k) {
            const int v = order[k];
            keyed.push_back(std::uint64_t(hilbert[static_cast<std::size_t>(v)]) << 32 | static_cast<std::uint32_t>(v));
        }
        SortByKey(keyed, [](std::uint64_t item) { return item; });
        for (std::size_t k = begin; k < end; ++k)
            order[k] = static_cast<int>(keyed[k - begin] & 0xffffffffu);
        end = begin;
    }
    LargeVector<std::uint64_t>().swap(keyed);
    LargeVector<std::uint32_t>().swap(hilbert);
    RelabelInInsertionOrder(order);
    LargeVector<int>().swap(order);
    const LargeVector<int> ringAnchor = RingAnchors();

    // Consecutive points along the Hilbert curve are usually close, but where the curve moves on to
    // another quadrant the next point can lie across the cloud, and a walk from the previous point
    // would cross every thin triangle on the way. A grid of about one cell a point (at most 1024 a
    // side) remembers the last point inserted in each of its cells; the walk starts from that point
    // when it is closer than the previous one. Along outlines refined into long thin triangles, a
    // finer grid shortens the walks: at a million points, 6.6 steps on average where a grid of a
    // sixteenth of the points took 8.5.
    const int gridSide = std::clamp(static_cast<int>(std::sqrt(static_cast<double>(m_count))), 1, 1024);
    const double gridCell = gridSide / (size * (1.0 + 1e-9));
    std::vector<int> lastInCell(static_cast<std::size_t>(gridSide) * static_cast<std::size_t>(gridSide), -1);
    auto cellOf = [&](int v) {
        const int cx = std::min(gridSide - 1, static_cast<int>((X(v) - minX) * gridCell));
        const int cy = std::min(gridSide - 1, static_cast<int>((Y(v) - minY) * gridCell));
        return static_cast<std::size_t>(cy) * static_cast<std::size_t>(gridSide) + static_cast<std::size_t>(cx);
    };
    auto squaredDistance = [this](int u, int v) {
        const double dx = X(u) - X(v), dy = Y(u) - Y(v);
        return dx * dx + dy * dy;
    };

    std::uint64_t locateSteps = 0;
    int previous = a;
    for (int p = 0; p < m_count; ++p) {
        const std::size_t cell = cellOf(p);
        int from = previous;
        const int landmark = lastInCell[cell];
        if (landmark >= 0 && (previous == a || squaredDistance(landmark, p) < squaredDistance(previous, p)))
            from = landmark;
        const int anchor = ringAnchor[static_cast<std::size_t>(p)];
        if (anchor >= 0 && (from == a || squaredDistance(anchor, p) < squaredDistance(from, p)))
            from = anchor;
        lastInCell[cell] = p;
        int edge = -1;
        const int t = Locate(p, TriangleOf(from), edge, locateSteps);
        if (edge < 0)
            SplitTriangle(t, p);
        else
            SplitEdge(t, edge, p);
        Legalize(false);
        Verify("point insertion", p);
        previous = p;
    }
    if (m_hooks)
        m_hooks->locateSteps = locateSteps;
}

// For every vertex, in the numbering of insertion order, a vertex next to it along a ring that is
// inserted before it, or -1: the nearest of the ring points up to kRingAnchorReach places before or
// after it in its ring. Neighbours along an outline are the closest points that a walk can start from;
// where the outline is smooth, the triangle that contains the new point mostly touches them, and the
// walk ends after a step or two, where the previous point or a landmark in its cell may lie across a
// lobe or an arc, behind many thin triangles.
LargeVector<int> Sweep::RingAnchors() const
{
    constexpr int kRingAnchorReach = 3;
    LargeVector<int> anchors(static_cast<std::size_t>(m_count), -1);
    LargeVector<int> labels;
    for (std::size_t r = 0; r + 1 < m_ringBegin.size(); ++r) {
        const int first = m_ringBegin[r];
        const int size = m_ringBegin[r + 1] - first;
        labels.resize(static_cast<std::size_t>(size));
        for (int k = 0; k < size; ++k)
            labels[static_cast<std::size_t>(k)] = InsertedAs(m_ringVertices[static_cast<std::size_t>(first + k)]);
        for (int k = 0; k < size; ++k) {
            const int p = labels[static_cast<std::size_t>(k)];
            int anchor = -1;
            for (int d = 1; d <= kRingAnchorReach && d < size && anchor < 0; ++d) {
                for (const int at : {(k + size - d) % size, (k + d) % size}) {
                    const int q = labels[static_cast<std::size_t>(at)];
                    if (q < p) {
                        anchor = q;
                        break;
                    }
                }
            }
            anchors[static_cast<std::size_t>(p)] = anchor;
        }
    }
    return anchors;
}

namespace {

// Answers values with the element at position source[k] moved to position k, for the first
// source.size() positions; the positions after them stay as they are. Out of place, so that the
// reads are independent of each other and overlap, unlike a walk along the permutation's cycles.
template <typename T>
LargeVector<T> Gathered(const LargeVector<T> &values, const LargeVector<int> &source)
{
    LargeVector<T> gathered;
    gathered.reserve(values.capacity());
    for (const int from : source)
        gathered.push_back(values[static_cast<std::size_t>(from)]);
    for (std::size_t k = source.size(); k < values.size(); ++k)
        gathered.push_back(values[k]);
    return gathered;
}

} // namespace

// Numbers the real vertices in the order of insertion, so that the coordinates and links that a walk
// reads next to the point just inserted lie next to it in memory too: in sweep order, neighbours in
// the plane are a whole row of the cloud apart. Only the labels change; the sweep's numbering comes
// back with UndoRelabelling.
void Sweep::RelabelInInsertionOrder(const LargeVector<int> &order)
{
    m_xy = Gathered(m_xy, order);
    m_points = Gathered(m_points, order);
    m_insertedAs.resize(order.size());
    for (std::size_t k = 0; k < order.size(); ++k)
        m_insertedAs[static_cast<std::size_t>(order[k])] = static_cast<int>(k);
    for (int &v : m_outline)
        v = InsertedAs(v);
}

void Sweep::UndoRelabelling()
{
    if (m_insertedAs.empty())
        return;
    m_xy = Gathered(m_xy, m_insertedAs);
    m_points = Gathered(m_points, m_insertedAs);
    LargeVector<int> sweptAs(m_insertedAs.size());
    for (std::size_t v = 0; v < m_insertedAs.size(); ++v)
        sweptAs[static_cast<std::size_t>(m_insertedAs[v])] = static_cast<int>(v);
    for (int &v : m_outline)
        v = sweptAs[static_cast<std::size_t>(v)];
    LargeVector<int>().swap(m_insertedAs);
}

// Whether the input is one convex outline: no holes, every vertex an outline vertex met once, every
// turn (judged exactly) going the outline's way or straight on (a straight vertex lying strictly
// between its neighbours), at least three corners, and the direction in x changing sign exactly
// twice around it, so that it winds once.
bool Sweep::IsConvexOutline() const
{
    const std::size_t n = m_outline.size();
    if (m_rings.size() != 1 || n < 3 || n != static_cast<std::size_t>(m_count))
        return false;
    int orientation = 0;
    std::size_t corners = 0;
    int changes = 0, lastDirection = 0, firstDirection = 0;
    for (std::size_t k = 0; k < n; ++k) {
        const int a = m_outline[k == 0 ? n - 1 : k - 1], b = m_outline[k], c = m_outline[k + 1 == n ? 0 : k + 1];
        const int turn = OrientExact(a, b, c);
        if (turn == 0) {
            // Straight on, not back: b lies between a and c.
            if (!((X(b) - X(a)) * (X(c) - X(b)) + (Y(b) - Y(a)) * (Y(c) - Y(b)) > 0.0))
                return false;
        } else {
            if (orientation != 0 && turn != orientation)
                return false;
            orientation = turn;
            ++corners;
        }
        const int direction = X(c) > X(b) ? 1 : X(c) < X(b) ? -1 : 0;
        if (direction != 0) {
            if (firstDirection == 0)
                firstDirection = direction;
            if (lastDirection != 0 && direction != lastDirection)
                ++changes;
            lastDirection = direction;
        }
    }
    if (lastDirection != firstDirection)
        ++changes; // from the last edge with a direction round to the first
    return corners >= 3 && changes == 2;
}

// Builds the Delaunay triangulation of a convex outline, which is its constrained Delaunay
// triangulation, without locating any point: the outline's vertices are taken away one by one down
// to a triangle of corners, each remembering its two neighbours at that moment; put back in the
// reverse order, each vertex lies just outside the edge between those two neighbours (or on it, for
// a vertex of a straight run), and joins it as a triangle whose far edge is then made Delaunay by
// flips (or splits it and the triangle inside it). The order comes in rounds, as incremental
// insertion's does: each vertex draws a level (level l with probability 2^-(l+1)) from a fixed seed,
// corners' levels above those of straight vertices, the lowest level goes first, and within a level the vertices go along
// the outline, backwards, so that putting them back runs along it forwards and each vertex lands next
// to the one before. Answers false, with the mesh left for the caller to clear, if a step fails or
// the flips exceed their budget.
bool Sweep::InsertAroundConvexOutline()
{
    StartSweep();
    m_incremental = true;
    m_aroundConvexOutline = true;
    // Expected flips are a few a vertex; beyond a budget linear in the vertices (a bad draw, or an
    // outline that defeats the rounds) incremental insertion with point location takes over.
    m_workBudget = m_hooks && m_hooks->convexOutlineWorkBudget >= 0
                       ? static_cast<std::uint64_t>(m_hooks->convexOutlineWorkBudget)
                       : kConvexOutlineWorkPerPoint * m_outline.size() + kSweepWorkAllowance;
    bool built = true;
    try {
        std::vector<int> ring(m_outline);
        const int n = static_cast<int>(ring.size());
        auto turnAt = [&ring, n, this](int k) {
            return OrientExact(ring[static_cast<std::size_t>(k == 0 ? n - 1 : k - 1)], ring[static_cast<std::size_t>(k)],
                               ring[static_cast<std::size_t>(k + 1 == n ? 0 : k + 1)]);
        };
        int orientation = 0;
        for (int k = 0; k < n && orientation == 0; ++k)
            orientation = turnAt(k);
        if (orientation < 0)
            std::reverse(ring.begin(), ring.end()); // counter-clockwise from here on
        std::vector<int> previous(static_cast<std::size_t>(n)), next(static_cast<std::size_t>(n));
        for (int k = 0; k < n; ++k) {
            previous[static_cast<std::size_t>(k)] = k == 0 ? n - 1 : k - 1;
            next[static_cast<std::size_t>(k)] = k + 1 == n ? 0 : k + 1;
        }
        std::vector<int> order(static_cast<std::size_t>(n));
        {
            // Levels 0 to 30 for the vertices of straight runs, 31 to 61 for corners.
            constexpr int kLevels = 31;
            std::vector<std::uint8_t> level(static_cast<std::size_t>(n));
            std::vector<int> start(2 * kLevels + 1, 0);
            std::uint64_t state = 0xc0de;
            for (int k = 0; k < n; ++k) {
                const std::uint64_t draw = NextRandom(state) | (std::uint64_t(1) << (kLevels - 1));
                const int l = __builtin_ctzll(draw) + (turnAt(k) != 0 ? kLevels : 0);
                level[static_cast<std::size_t>(k)] = static_cast<std::uint8_t>(l);
                ++start[static_cast<std::size_t>(l) + 1];
            }
            for (int l = 0; l + 1 < 2 * kLevels; ++l)
                start[static_cast<std::size_t>(l) + 1] += start[static_cast<std::size_t>(l)];
            for (int k = n - 1; k >= 0; --k)
                order[static_cast<std::size_t>(start[level[static_cast<std::size_t>(k)]]++)] = k;
        }
        // Taken away: order[0] .. order[n - 4], each between the neighbours it had then.
        std::vector<std::pair<int, int>> between(static_cast<std::size_t>(n - 3));
        for (int k = 0; k < n - 3; ++k) {
            const int v = order[static_cast<std::size_t>(k)];
            const int before = previous[static_cast<std::size_t>(v)], after = next[static_cast<std::size_t>(v)];
            between[static_cast<std::size_t>(k)] = {before, after};
            next[static_cast<std::size_t>(before)] = after;
            previous[static_cast<std::size_t>(after)] = before;
        }
        const int first = order[static_cast<std::size_t>(n - 1)];
        const int second = next[static_cast<std::size_t>(first)];
        const int third = next[static_cast<std::size_t>(second)];
        const int a = ring[static_cast<std::size_t>(first)], b = ring[static_cast<std::size_t>(second)],
                  c = ring[static_cast<std::size_t>(third)];
        if (OrientExact(a, b, c) <= 0)
            throw std::runtime_error(kMissingTriangleError); // three of the corners always turn
        const int t0 = NewTriangle(a, b, c);
        TriangleAt(t0).constrained = 7;
        TriangleOf(a) = TriangleOf(b) = TriangleOf(c) = t0;

        for (int k = n - 4; k >= 0; --k) {
            const int v = ring[static_cast<std::size_t>(order[static_cast<std::size_t>(k)])];
            const int u = ring[static_cast<std::size_t>(between[static_cast<std::size_t>(k)].first)];
            const int w = ring[static_cast<std::size_t>(between[static_cast<std::size_t>(k)].second)];
            // The triangle inside the edge from u to w, found among the triangles around u.
            int inner = -1, at = -1;
            TurnAround(u, [&](int t, int i) {
                if (m_tris[static_cast<std::size_t>(t)].v[Next3(i)] != w)
                    return false;
                inner = t;
                at = i;
                return true;
            });
            if (inner < 0)
                throw std::runtime_error(kMissingTriangleError);
            if (OrientExact(u, w, v) == 0)
                SplitOutlineEdge(inner, at, v);
            else
                AddOutsideOutlineEdge(inner, Prev3(at), u, w, v);
            Legalize(false);
            Verify("point insertion", v);
        }
    } catch (const std::runtime_error &) {
        built = false;
    } catch (const SweepOverBudget &) {
        built = false;
    }
    m_workBudget = kNoWorkBudget;
    if (!built) {
        m_incremental = false;
        m_aroundConvexOutline = false;
        return false;
    }
    if (m_hooks)
        m_hooks->sweptPoints = m_count;
    return true;
}

// Joins v, which lies outside the outline edge from u to w (edge `edge` of the triangle inner), as
// the triangle (w, u, v), and queues that edge for legalisation.
void Sweep::AddOutsideOutlineEdge(int inner, int edge, int u, int w, int v)
{
    const int outer = NewTriangle(w, u, v);
    Tri &O = TriangleAt(outer);
    O.n[2] = inner;
    O.constrained = 3; // the two new outline edges
    Tri &I = TriangleAt(inner);
    I.n[edge] = outer;
    I.constrained = static_cast<std::uint8_t>(I.constrained & ~(1u << edge));
    TriangleOf(v) = outer;
    m_legalize.emplace_back(outer, 2);
}

// Splits the outline edge from u = vertex i of t = (u, w, x) to w at v, which lies on it: t becomes
// (x, u, v) and a new triangle (w, x, v); the edges across from v are queued for legalisation.
void Sweep::SplitOutlineEdge(int t, int i, int v)
{
    const Tri old = m_tris[static_cast<std::size_t>(t)];
    const int u = old.v[i], w = old.v[Next3(i)], x = old.v[Prev3(i)];
    const int nXU = old.n[Next3(i)], nWX = old.n[i];
    const unsigned cXU = (old.constrained >> Next3(i)) & 1u, cWX = (old.constrained >> i) & 1u;
    const int t2 = NewTriangle(w, x, v);
    TriangleAt(t) = Tri{{x, u, v}, {-1, t2, nXU}, static_cast<std::uint8_t>(1u | cXU << 2)};
    TriangleAt(t2) = Tri{{w, x, v}, {t, -1, nWX}, static_cast<std::uint8_t>(2u | cWX << 2)};
    Repoint(nWX, t, t2);
    TriangleOf(u) = t;
    TriangleOf(x) = t;
    TriangleOf(v) = t;
    TriangleOf(w) = t2;
    m_legalize.emplace_back(t, 2);
    m_legalize.emplace_back(t2, 2);
}

// The triangle that contains p, found by walking from start towards p; edge is the index of the
// edge that p lies on, or -1 when p lies inside. The walk crosses an edge that has p strictly on its
// far side, trying the edges in a rotating order; in a Delaunay triangulation such a walk always
// arrives. The edge it came in through is not tested again: p lies strictly on its near side. Adds
// the edges crossed to `steps`.
int Sweep::Locate(int p, int start, int &edge, std::uint64_t &steps) const
{
    int t = start;
    int cameFrom = -1;
    int rotation = 0;
    const std::size_t limit = m_tris.size() + 16;
    for (std::size_t walked = 0;; ++walked) {
        const Tri &T = m_tris[static_cast<std::size_t>(t)];
        int across = -1;
        edge = -1;
        for (int k = 0, e = rotation; k < 3; ++k, e = Next3(e)) {
            if (cameFrom >= 0 && T.n[e] == cameFrom)
                continue;
            const int side = OrientExact(T.v[Next3(e)], T.v[Prev3(e)], p);
            if (side < 0) {
                across = e;
                break;
            }
            if (side == 0)
                edge = e;
        }
        if (across < 0) {
            steps += walked;
            return t;
        }
        cameFrom = t;
        t = T.n[across];
        rotation = Next3(rotation);
        if (t < 0 || walked > limit)
            throw std::runtime_error(kMissingTriangleError);
    }
}

// Splits t = (a, b, c) at the point p inside it into (a, b, p), (b, c, p) and (c, a, p), and queues
// the three edges across from p for legalisation.
void Sweep::SplitTriangle(int t, int p)
{
    const Tri old = m_tris[static_cast<std::size_t>(t)];
    const int a = old.v[0], b = old.v[1], c = old.v[2];
    const int t1 = static_cast<int>(m_tris.size());
    const int t2 = t1 + 1;
    auto bit = [&old](int k) { return (old.constrained >> k) & 1u; };
    TriangleAt(t) = Tri{{a, b, p}, {t1, t2, old.n[2]}, static_cast<std::uint8_t>(bit(2) << 2)};
    m_tris.push_back(Tri{{b, c, p}, {t2, t, old.n[0]}, static_cast<std::uint8_t>(bit(0) << 2)});
    m_tris.push_back(Tri{{c, a, p}, {t, t1, old.n[1]}, static_cast<std::uint8_t>(bit(1) << 2)});
    Repoint(old.n[0], t, t1);
    Repoint(old.n[1], t, t2);
    // a and b stay in t; only c leaves it.
    TriangleOf(c) = t1;
    TriangleOf(p) = t;
    m_legalize.emplace_back(t, 2);
    m_legalize.emplace_back(t1, 2);
    m_legalize.emplace_back(t2, 2);
}

// Splits edge e of t, from b to c, at the point p on it: t = (a, b, c) becomes (a, b, p) and
// (a, p, c); its neighbour o = (q, c, b) across the edge becomes (q, c, p) and (q, p, b). The four
// edges across from p are queued for legalisation.
void Sweep::SplitEdge(int t, int e, int p)
{
    const Tri oldT = m_tris[static_cast<std::size_t>(t)];
    const int o = oldT.n[e];
    const int j = o < 0 ? -1 : IndexOfNeighbor(o, t);
    if (j < 0)
        throw std::runtime_error(kMissingOppositeError);
    const Tri oldO = m_tris[static_cast<std::size_t>(o)];
    const int a = oldT.v[e], b = oldT.v[Next3(e)], c = oldT.v[Prev3(e)];
    const int q = oldO.v[j];
    const int nCA = oldT.n[Next3(e)], nAB = oldT.n[Prev3(e)];
    const int nBQ = oldO.n[Next3(j)], nQC = oldO.n[Prev3(j)];
    if (m_hooks)
        ++m_hooks->pointsOnEdges;
    const unsigned split = (oldT.constrained >> e) & 1u;
    const unsigned cAB = (oldT.constrained >> Prev3(e)) & 1u, cCA = (oldT.constrained >> Next3(e)) & 1u;
    const unsigned cBQ = (oldO.constrained >> Next3(j)) & 1u, cQC = (oldO.constrained >> Prev3(j)) & 1u;
    const int t1 = static_cast<int>(m_tris.size());
    const int o1 = t1 + 1;
    TriangleAt(t) = Tri{{a, b, p}, {o1, t1, nAB}, static_cast<std::uint8_t>(split | cAB << 2)};
    TriangleAt(o) = Tri{{q, c, p}, {t1, o1, nQC}, static_cast<std::uint8_t>(split | cQC << 2)};
    m_tris.push_back(Tri{{a, p, c}, {o, nCA, t}, static_cast<std::uint8_t>(split | cCA << 1)});
    m_tris.push_back(Tri{{q, p, b}, {t, nBQ, o}, static_cast<std::uint8_t>(split | cBQ << 1)});
    Repoint(nCA, t, t1);
    Repoint(nBQ, o, o1);
    // a stays in t and q in o; b leaves o and c leaves t.
    TriangleOf(b) = t;
    TriangleOf(c) = t1;
    TriangleOf(p) = t;
    m_legalize.emplace_back(t, 2);
    m_legalize.emplace_back(t1, 1);
    m_legalize.emplace_back(o, 2);
    m_legalize.emplace_back(o1, 1);
}

// ---------------------------------------------------------------------------------------------
// Final stage

// The triangle on the inner side of the outline's first edge, found by turning around v0. The turn
// stops at a missing neighbour instead of failing; -1 when there is no such triangle. The edge may
// have been split by a point on it, so any constrained edge from v0 in the direction of v1 will do.
int Sweep::FindStartTriangle(int v0, int v1, bool insideOnLeft)
{
    const int start = TriangleOf(v0);
    if (start < 0 || IndexOf(start, v0) < 0)
        return -1;
    const double dx = X(v1) - X(v0), dy = Y(v1) - Y(v0);
    auto matches = [&](int t) {
        const int i = IndexOf(t, v0);
        const int edge = insideOnLeft ? Prev3(i) : Next3(i);
        const int other = m_tris[static_cast<std::size_t>(t)].v[insideOnLeft ? Next3(i) : Prev3(i)];
        if (!(m_tris[static_cast<std::size_t>(t)].constrained & (1u << edge)))
            return false;
        if (other == v1)
            return true;
        return Orient(v0, v1, other) == 0
               && (X(other) - X(v0)) * dx + (Y(other) - Y(v0)) * dy > 0.0;
    };
    const std::size_t limit = m_tris.size();
    for (int direction = 0; direction < 2; ++direction) {
        int t = start;
        for (std::size_t steps = 0; steps <= limit; ++steps) {
            if (matches(t))
                return t;
            const int i = IndexOf(t, v0);
            const int next = m_tris[static_cast<std::size_t>(t)].n[direction == 0 ? Next3(i) : Prev3(i)];
            if (next < 0 || next == start || IndexOf(next, v0) < 0)
                break;
            t = next;
        }
    }
    return -1;
}

void Sweep::BreakFrontAround(int v)
{
    for (Tri &tri : m_tris) {
        if (tri.v[0] == v || tri.v[1] == v || tri.v[2] == v) {
            for (int &n : tri.n)
                n = -1;
        }
    }
}

void Sweep::Finalize(LargeVector<Triangle> &out)
{
    const int v0 = m_outline[0], v1 = m_outline[1];
    double area2 = 0.0;
    for (std::size_t k = 0; k < m_outline.size(); ++k) {
        const int a = m_outline[k], b = m_outline[(k + 1) % m_outline.size()];
        area2 += (X(a) - X(v0)) * (Y(b) - Y(v0)) - (X(b) - X(v0)) * (Y(a) - Y(v0));
    }
    if (!(area2 != 0.0))
        return;
    if (m_hooks && m_hooks->breakFrontBeforeFinalization)
        BreakFrontAround(v0);
    const int start = FindStartTriangle(v0, v1, area2 > 0.0);
    if (start < 0)
        return;

    // What only building the mesh needed goes before the final stage allocates.
    ReleaseBuildingArrays();

    // Collect the triangles reachable without crossing a constrained edge.
    LargeVector<char> inside(m_tris.size(), 0);
    LargeVector<int> result;
    result.reserve(m_tris.size());
    std::vector<int> stack{start};
    while (!stack.empty()) {
        const int t = stack.back();
        stack.pop_back();
        if (inside[static_cast<std::size_t>(t)])
            continue;
        const Tri &T = m_tris[static_cast<std::size_t>(t)];
        if (IsArtificial(T.v[0]) || IsArtificial(T.v[1]) || IsArtificial(T.v[2]))
            continue;
        inside[static_cast<std::size_t>(t)] = 1;
        result.push_back(t);
        for (int k = 0; k < 3; ++k) {
            const int n = T.n[k];
            if (n >= 0 && !(T.constrained & (1u << k)) && !inside[static_cast<std::size_t>(n)])
                stack.push_back(n);
        }
    }

    if (!m_legalizationComplete || (m_hooks && m_hooks->forceClosingPass))
        RestoreDelaunay(result, inside);

    // Only the triangles and the input points are read from here on: the vertex links go too before
    // the output is allocated, which lowers the run's peak of memory.
    LargeVector<Links>().swap(m_links);
    out.reserve(out.size() + result.size());
    for (int t : result) {
        const Tri &T = m_tris[static_cast<std::size_t>(t)];
        out.emplace_back(m_points[static_cast<std::size_t>(T.v[0])], m_points[static_cast<std::size_t>(T.v[1])],
                         m_points[static_cast<std::size_t>(T.v[2])]);
    }
}

void Sweep::ReleaseBuildingArrays()
{
    LargeVector<int>().swap(m_rank);
    LargeVector<int>().swap(m_vertexOfRank);
    LargeVector<int>().swap(m_edgeOffsets);
    LargeVector<int>().swap(m_edgeStarts);
    LargeVector<int>().swap(m_ringVertices);
    m_front.Reset(0);
}

// Closing Delaunay pass over the collected triangles: flips between two collected triangles keep
// both inside. Each shared edge is checked once from its lower-numbered triangle; only a flip queues
// the edges around it for another look.
void Sweep::RestoreDelaunay(const LargeVector<int> &result, const LargeVector<char> &inside)
{
    int flips = 0;
    m_legalize.clear();
    auto check = [&](int t, int i) {
        const Tri &T = m_tris[static_cast<std::size_t>(t)];
        const int o = T.n[i];
        if (o < 0 || (T.constrained & (1u << i)) || !inside[static_cast<std::size_t>(o)])
            return;
        const int j = IndexOfNeighbor(o, t);
        if (j < 0)
            return;
        const int a = T.v[i], b = T.v[Next3(i)], c = T.v[Prev3(i)];
        const int q = m_tris[static_cast<std::size_t>(o)].v[j];
        if (InCircleSign(X(a), Y(a), X(b), Y(b), X(c), Y(c), X(q), Y(q)) <= 0)
            return;
        Flip(t, i, o, j);
        ++flips;
        m_legalize.emplace_back(t, 0);
        m_legalize.emplace_back(t, 2);
        m_legalize.emplace_back(o, 0);
        m_legalize.emplace_back(o, 1);
    };
    for (int t : result) {
        for (int k = 0; k < 3; ++k) {
            if (m_tris[static_cast<std::size_t>(t)].n[k] > t)
                check(t, k);
            while (!m_legalize.empty()) {
                const auto [u, i] = m_legalize.back();
                m_legalize.pop_back();
                check(u, i);
            }
        }
    }
    if (m_hooks) {
        m_hooks->closingPassRan = true;
        m_hooks->closingFlips = flips;
    }
}

// ---------------------------------------------------------------------------------------------

void Sweep::Run(LargeVector<Triangle> &out)
{
    using Insertion = TestHooks::Insertion;
    const Insertion insertion = m_hooks ? m_hooks->insertion : Insertion::Automatic;
    if (m_hooks) {
        m_hooks->caughtError.clear();
        m_hooks->sweptPoints = 0;
        m_hooks->sweepsStarted = 0;
        m_hooks->closingPassRan = false;
        m_hooks->closingFlips = 0;
        m_hooks->inconsistency.clear();
        m_hooks->insertedIncrementally = false;
        m_hooks->insertedAroundConvexOutline = false;
        m_hooks->work = 0;
        m_hooks->pointsOnEdges = 0;
        m_hooks->locateSteps = 0;
    }
    if (!Prepare())
        return;
    // Hooks that disturb the sweep on purpose test the sweep: it must not be replaced then.
    const bool disturbed = m_hooks
                           && (m_hooks->throwBeforeSweepIndex >= 0 || m_hooks->stallEdgeEvents
                               || m_hooks->loseOppositePoints > 0 || m_hooks->skipSweepLegalization);
    m_mayInsertIncrementally = !disturbed && insertion != Insertion::SweepOnly;
    const bool incrementalFirst = m_mayInsertIncrementally
                                  && (insertion == Insertion::IncrementalFirst
                                      || (insertion == Insertion::Automatic && m_smoothRings));
    bool built = incrementalFirst && insertion == Insertion::Automatic && IsConvexOutline()
                 && InsertAroundConvexOutline();
    if (!built)
        built = incrementalFirst && InsertIncrementally();
    if (incrementalFirst && !built)
        m_mayInsertIncrementally = false; // it failed once; the sweep decides
    while (!built) {
        if (m_hooks)
            ++m_hooks->sweepsStarted;
        StartSweep();
        try {
            SweepPoints();
            built = true;
        } catch (const SweepOverBudget &) {
            // Incremental insertion gives the same constrained Delaunay triangulation. If it fails,
            // the sweep runs again without a budget, so that its own failure handling decides.
            m_mayInsertIncrementally = false;
            built = InsertIncrementally();
        } catch (const std::runtime_error &error) {
            // The sweep ends here; what exists so far is finalized below.
            m_legalize.clear();
            m_legalizationComplete = false;
            if (m_hooks)
                m_hooks->caughtError = error.what();
            built = true;
        }
        m_workBudget = kNoWorkBudget; // the closing pass of the final stage flips too
    }
    if (m_hooks) {
        m_hooks->insertedIncrementally = m_incremental;
        m_hooks->insertedAroundConvexOutline = m_aroundConvexOutline;
        m_hooks->work = m_work;
    }
    Finalize(out);
}

} // namespace detail
} // namespace p2t
