// Exact orientation and in-circle signs.
//
// Each test first evaluates its determinant in plain double arithmetic together with a bound on the
// rounding error of that evaluation; when the value lies farther from zero than the bound, its sign is
// certain. Otherwise the determinant is recomputed without any rounding as a floating-point expansion:
// a sum of non-overlapping doubles, ordered by increasing magnitude, whose largest component carries
// the sign. The expansion operations are the classic error-free transformations (the sum and the
// product of two doubles written exactly as a rounded result plus its error) and the expansion growth
// and scaling built from them.
//
// The in-circle test has three cheaper exact stages before the general expansion. When every
// coordinate difference is itself a double (the usual case: nearby points subtract exactly), the
// determinant is a polynomial in those six doubles. If they share one fixed-point scale of at most
// 62 bits, it is computed in 256-bit integers; otherwise it is expanded in doubles rather than in
// exact pairs. Differences below 2^-200, where the expansion products would leave the range of
// normal doubles, skip that stage. When some difference is not a double (points far apart, as across
// a symmetric outline, where co-circular points are common), the eight coordinates themselves are
// tried on one fixed-point scale of at most 61 bits, whose differences are exact in 64-bit integers;
// that fits unless the coordinates differ greatly in magnitude (one of them near zero, say).
#include "Predicates_p.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace p2t {
namespace detail {
namespace {

constexpr double kSplitter = 134217729.0; // 2^27 + 1, splits a double into two 26-bit halves

// s + e == a + b exactly, s the rounded sum.
inline void ExactSum(double a, double b, double &s, double &e)
{
    s = a + b;
    const double bVirtual = s - a;
    const double aVirtual = s - bVirtual;
    e = (a - aVirtual) + (b - bVirtual);
}

inline void Split(double a, double &high, double &low)
{
    const double c = kSplitter * a;
    const double big = c - a;
    high = c - big;
    low = a - high;
}

// p + e == a * b exactly, p the rounded product.
inline void ExactProduct(double a, double b, double &p, double &e)
{
    p = a * b;
    double aHigh, aLow, bHigh, bLow;
    Split(a, aHigh, aLow);
    Split(b, bHigh, bLow);
    e = aLow * bLow - (((p - aHigh * bHigh) - aLow * bHigh) - aHigh * bLow);
}

// A fixed-capacity expansion. Components are non-overlapping, ordered by increasing magnitude, and
// carry no zeros; an empty expansion is zero. Capacities are chosen per use so that no result can
// outgrow its storage.
template <int Capacity>
struct Expansion
{
    double c[Capacity];
    int size = 0;

    void Push(double value)
    {
        if (value != 0.0)
            c[size++] = value;
    }
    int Sign() const
    {
        if (size == 0)
            return 0;
        return c[size - 1] > 0.0 ? 1 : -1;
    }
};

// acc += f. The components of both are merged by increasing magnitude and then summed from the
// smallest up, each partial sum split exactly into its rounded value and the error that becomes the
// next output component (the linear-time expansion sum; it relies on round-to-nearest-even).
template <int A, int F>
void AddInto(Expansion<A> &acc, const Expansion<F> &f)
{
    if (f.size == 0)
        return;
    if (acc.size == 0) {
        for (int k = 0; k < f.size; ++k)
            acc.c[k] = f.c[k];
        acc.size = f.size;
        return;
    }
    double merged[A]; // acc.size + f.size <= A: the sum has no more components than its inputs
    merged[0] = 0.0;
    int i = 0, j = 0, m = 0;
    while (i < acc.size && j < f.size)
        merged[m++] = std::fabs(acc.c[i]) <= std::fabs(f.c[j]) ? acc.c[i++] : f.c[j++];
    while (i < acc.size)
        merged[m++] = acc.c[i++];
    while (j < f.size)
        merged[m++] = f.c[j++];

    acc.size = 0;
    double q = merged[0];
    for (int k = 1; k < m; ++k) {
        double sum, err;
        ExactSum(q, merged[k], sum, err);
        acc.Push(err);
        q = sum;
    }
    acc.Push(q);
}

// out = e * b.
template <int E, int O>
void Scale(const Expansion<E> &e, double b, Expansion<O> &out)
{
    static_assert(O >= 2 * E, "scale result too small");
    out.size = 0;
    if (e.size == 0 || b == 0.0)
        return;
    double q, err;
    ExactProduct(e.c[0], b, q, err);
    out.Push(err);
    for (int i = 1; i < e.size; ++i) {
        double product, productErr;
        ExactProduct(e.c[i], b, product, productErr);
        double sum, sumErr;
        ExactSum(q, productErr, sum, sumErr);
        out.Push(sumErr);
        ExactSum(product, sum, q, err);
        out.Push(err);
    }
    out.Push(q);
}

// out = e * f.
template <int E, int F, int O>
void Multiply(const Expansion<E> &e, const Expansion<F> &f, Expansion<O> &out)
{
    static_assert(O >= 2 * E * F, "product too small");
    out.size = 0;
    Expansion<2 * E> term;
    for (int i = 0; i < f.size; ++i) {
        Scale(e, f.c[i], term);
        AddInto(out, term);
    }
}

template <int E>
void Negate(Expansion<E> &e)
{
    for (int i = 0; i < e.size; ++i)
        e.c[i] = -e.c[i];
}

using Pair = Expansion<2>;

// The exact difference a - b.
void Difference(double a, double b, Pair &out)
{
    double s, e;
    ExactSum(a, -b, s, e);
    out.size = 0;
    out.Push(e);
    out.Push(s);
}

// out = p * q - r * s for exact differences.
void CrossTerm(const Pair &p, const Pair &q, const Pair &r, const Pair &s, Expansion<16> &out)
{
    Expansion<8> right;
    Multiply(p, q, out);
    Multiply(r, s, right);
    Negate(right);
    AddInto(out, right);
}

// out = u * u + v * v for exact differences.
void Lift(const Pair &u, const Pair &v, Expansion<16> &out)
{
    Expansion<8> vv;
    Multiply(u, u, out);
    Multiply(v, v, vv);
    AddInto(out, vv);
}

int OrientExact(double ax, double ay, double bx, double by, double cx, double cy)
{
    Pair acx, bcy, acy, bcx;
    Difference(ax, cx, acx);
    Difference(by, cy, bcy);
    Difference(ay, cy, acy);
    Difference(bx, cx, bcx);
    Expansion<16> det;
    CrossTerm(acx, bcy, acy, bcx, det);
    return det.Sign();
}

#if defined(__SIZEOF_INT128__)
#define KEZ_TRIANGULATION_HAVE_INT128 1
using Int128 = __int128;
using UInt128 = unsigned __int128;

// A signed 256-bit integer in two's complement, four 64-bit limbs from the least significant up.
struct Int256
{
    std::uint64_t limb[4] = {0, 0, 0, 0};

    void Add(const Int256 &o)
    {
        std::uint64_t carry = 0;
        for (int k = 0; k < 4; ++k) {
            const UInt128 sum = UInt128(limb[k]) + o.limb[k] + carry;
            limb[k] = static_cast<std::uint64_t>(sum);
            carry = static_cast<std::uint64_t>(sum >> 64);
        }
    }
    int Sign() const
    {
        if (limb[3] >> 63)
            return -1;
        return (limb[0] | limb[1] | limb[2] | limb[3]) != 0 ? 1 : 0;
    }
};

// The exact product of two signed values below 2^126 in magnitude.
Int256 Product(Int128 a, Int128 b)
{
    const bool negative = (a < 0) != (b < 0);
    const UInt128 ua = a < 0 ? UInt128(-a) : UInt128(a);
    const UInt128 ub = b < 0 ? UInt128(-b) : UInt128(b);
    const std::uint64_t a0 = static_cast<std::uint64_t>(ua), a1 = static_cast<std::uint64_t>(ua >> 64);
    const std::uint64_t b0 = static_cast<std::uint64_t>(ub), b1 = static_cast<std::uint64_t>(ub >> 64);
    const UInt128 p00 = UInt128(a0) * b0, p01 = UInt128(a0) * b1;
    const UInt128 p10 = UInt128(a1) * b0, p11 = UInt128(a1) * b1;
    Int256 r;
    r.limb[0] = static_cast<std::uint64_t>(p00);
    const UInt128 middle = (p00 >> 64) + static_cast<std::uint64_t>(p01) + static_cast<std::uint64_t>(p10);
    r.limb[1] = static_cast<std::uint64_t>(middle);
    const UInt128 high = (middle >> 64) + (p01 >> 64) + (p10 >> 64) + static_cast<std::uint64_t>(p11);
    r.limb[2] = static_cast<std::uint64_t>(high);
    r.limb[3] = static_cast<std::uint64_t>((high >> 64) + (p11 >> 64));
    if (negative) {
        std::uint64_t carry = 1;
        for (std::uint64_t &l : r.limb) {
            l = ~l + carry;
            carry = carry && l == 0;
        }
    }
    return r;
}

// A double as significand * 2^unit with an odd significand below 2^53 (0 for zero), and the
// exponent `high` with |value| < 2^high.
struct Decomposed
{
    std::int64_t significand = 0;
    int unit = 0;
    int high = 0;
};

inline Decomposed Decompose(double value)
{
    std::uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    const int biased = static_cast<int>((bits >> 52) & 0x7ff);
    std::uint64_t magnitude = bits & ((std::uint64_t(1) << 52) - 1);
    int exponent = -1074;
    if (biased != 0) {
        magnitude |= std::uint64_t(1) << 52;
        exponent = biased - 1075;
    }
    Decomposed d;
    if (magnitude == 0)
        return d;
    const int trailing = __builtin_ctzll(magnitude);
    magnitude >>= trailing;
    exponent += trailing;
    d.significand = (bits >> 63) ? -static_cast<std::int64_t>(magnitude) : static_cast<std::int64_t>(magnitude);
    d.unit = exponent;
    d.high = exponent + 64 - __builtin_clzll(magnitude);
    return d;
}

// Writes the values as integer multiples of one power of two, 2^low (the finest unit among them),
// into m; answers false when some value is 2^maxBits times that unit or more.
template <int N>
bool ToFixedPoint(const double (&values)[N], int maxBits, std::int64_t (&m)[N], bool &allZero)
{
    Decomposed parts[N];
    int low = 1 << 20, high = -(1 << 20);
    for (int k = 0; k < N; ++k) {
        parts[k] = Decompose(values[k]);
        if (parts[k].significand == 0)
            continue;
        low = std::min(low, parts[k].unit);
        high = std::max(high, parts[k].high);
    }
    allZero = high < low;
    if (allZero)
        return true;
    if (high - low > maxBits)
        return false;
    for (int k = 0; k < N; ++k)
        m[k] = parts[k].significand == 0
                   ? 0
                   : static_cast<std::int64_t>(static_cast<std::uint64_t>(parts[k].significand) << (parts[k].unit - low));
    return true;
}

// The in-circle determinant of six integer differences below 2^62 in magnitude: the lifts and the
// cross products stay below 2^125, each product below 2^250, so the sum is exact in 256 bits.
int InCircleOfIntegerDifferences(const std::int64_t (&m)[6])
{
    auto cross = [](std::int64_t p, std::int64_t q, std::int64_t r, std::int64_t s) {
        return Int128(p) * q - Int128(r) * s;
    };
    auto lift = [](std::int64_t u, std::int64_t v) { return Int128(u) * u + Int128(v) * v; };
    Int256 det = Product(lift(m[0], m[1]), cross(m[2], m[5], m[4], m[3]));
    det.Add(Product(lift(m[2], m[3]), cross(m[4], m[1], m[0], m[5])));
    det.Add(Product(lift(m[4], m[5]), cross(m[0], m[3], m[2], m[1])));
    return det.Sign();
}

// The in-circle determinant of the differences (all doubles) in integer arithmetic: each difference
// is a multiple of one power of two, 2^low, and below 2^62 times it. Answers false when the
// differences span too many bits for that.
bool InCircleInIntegers(double adx, double ady, double bdx, double bdy, double cdx, double cdy, int &sign)
{
    const double values[6] = {adx, ady, bdx, bdy, cdx, cdy};
    std::int64_t m[6];
    bool allZero = false;
    if (!ToFixedPoint(values, 62, m, allZero))
        return false;
    sign = allZero ? 0 : InCircleOfIntegerDifferences(m);
    return true;
}

// The in-circle determinant from the coordinates themselves, where some difference is not a double
// (points far apart, or of different magnitudes): when the eight coordinates are multiples of one
// power of two and below 2^61 times it, their differences are exact in 64-bit integers, below 2^62.
// Answers false otherwise (coordinates of very different magnitudes, such as one near zero).
bool InCircleOfCoordinatesInIntegers(double ax, double ay, double bx, double by, double cx, double cy, double dx,
                                     double dy, int &sign)
{
    const double values[8] = {ax, ay, bx, by, cx, cy, dx, dy};
    std::int64_t c[8];
    bool allZero = false;
    if (!ToFixedPoint(values, 61, c, allZero))
        return false;
    if (allZero) {
        sign = 0;
        return true;
    }
    const std::int64_t m[6] = {c[0] - c[6], c[1] - c[7], c[2] - c[6], c[3] - c[7], c[4] - c[6], c[5] - c[7]};
    sign = InCircleOfIntegerDifferences(m);
    return true;
}
#endif

// out = p * q - r * s exactly, for doubles.
void CrossOfDoubles(double p, double q, double r, double s, Expansion<4> &out)
{
    Pair left, right;
    double product, error;
    ExactProduct(p, q, product, error);
    left.Push(error);
    left.Push(product);
    ExactProduct(r, s, product, error);
    right.Push(-error);
    right.Push(-product);
    out.size = 0;
    AddInto(out, left);
    AddInto(out, right);
}

// out = cross * (u * u + v * v) exactly, for doubles u and v.
void LiftedTerm(const Expansion<4> &cross, double u, double v, Expansion<32> &out)
{
    Expansion<8> once;
    Expansion<16> twice, other;
    Scale(cross, u, once);
    Scale(once, u, twice);
    Scale(cross, v, once);
    Scale(once, v, other);
    out.size = 0;
    AddInto(out, twice);
    AddInto(out, other);
}

int InCircleExact(double ax, double ay, double bx, double by, double cx, double cy, double dx,
                  double dy)
{
    Pair adx, ady, bdx, bdy, cdx, cdy;
    Difference(ax, dx, adx);
    Difference(ay, dy, ady);
    Difference(bx, dx, bdx);
    Difference(by, dy, bdy);
    Difference(cx, dx, cdx);
    Difference(cy, dy, cdy);

    // Usually every difference is a single double (nearby points subtract exactly). The determinant
    // is then a polynomial in six doubles, far cheaper to expand than in six pairs, and cheaper still
    // in integers when the six fit one fixed-point scale.
    // Differences below 2^-200 stay with the general expansion below, whose products then leave the
    // range of normal doubles, so that its answer on such input stays what it was.
    auto single = [](const Pair &pair) {
        return pair.size == 0 || (pair.size == 1 && std::fabs(pair.c[0]) >= 0x1p-200);
    };
    if (single(adx) && single(ady) && single(bdx) && single(bdy) && single(cdx) && single(cdy)) {
        auto value = [](const Pair &pair) { return pair.size == 0 ? 0.0 : pair.c[0]; };
        const double adxv = value(adx), adyv = value(ady);
        const double bdxv = value(bdx), bdyv = value(bdy);
        const double cdxv = value(cdx), cdyv = value(cdy);
#ifdef KEZ_TRIANGULATION_HAVE_INT128
        int sign = 0;
        if (InCircleInIntegers(adxv, adyv, bdxv, bdyv, cdxv, cdyv, sign))
            return sign;
#endif
        Expansion<4> cross;
        Expansion<32> term;
        Expansion<96> det;
        CrossOfDoubles(bdxv, cdyv, cdxv, bdyv, cross);
        LiftedTerm(cross, adxv, adyv, term);
        AddInto(det, term);
        CrossOfDoubles(cdxv, adyv, adxv, cdyv, cross);
        LiftedTerm(cross, bdxv, bdyv, term);
        AddInto(det, term);
        CrossOfDoubles(adxv, bdyv, bdxv, adyv, cross);
        LiftedTerm(cross, cdxv, cdyv, term);
        AddInto(det, term);
        return det.Sign();
    }

#ifdef KEZ_TRIANGULATION_HAVE_INT128
    {
        int sign = 0;
        if (InCircleOfCoordinatesInIntegers(ax, ay, bx, by, cx, cy, dx, dy, sign))
            return sign;
    }
#endif
    Expansion<16> cross, lift;
    Expansion<512> term;
    Expansion<1536> det;

    CrossTerm(bdx, cdy, cdx, bdy, cross);
    Lift(adx, ady, lift);
    Multiply(lift, cross, term);
    AddInto(det, term);

    CrossTerm(cdx, ady, adx, cdy, cross);
    Lift(bdx, bdy, lift);
    Multiply(lift, cross, term);
    AddInto(det, term);

    CrossTerm(adx, bdy, bdx, ady, cross);
    Lift(cdx, cdy, lift);
    Multiply(lift, cross, term);
    AddInto(det, term);
    return det.Sign();
}

} // namespace

int OrientSignExact(double ax, double ay, double bx, double by, double cx, double cy)
{
    return OrientExact(ax, ay, bx, by, cx, cy);
}

int InCircleSignExact(double ax, double ay, double bx, double by, double cx, double cy, double dx,
                      double dy)
{
    return InCircleExact(ax, ay, bx, by, cx, cy, dx, dy);
}

} // namespace detail
} // namespace p2t
