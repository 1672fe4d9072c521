// Geometric predicates of the triangulator.
//
// Two kinds are offered. OrientWithTolerance is the orientation test with the triangulator's fixed
// collinearity tolerance of 1e-12: the sweep uses it wherever it has to decide whether a point lies on
// a line (constrained edges, the opposing point of a crossed edge). OrientSign and InCircleSign are
// exact: a fast floating-point evaluation is trusted when its error bound proves the sign, otherwise
// the determinant is evaluated exactly (in 256-bit integers or in floating-point expansion
// arithmetic, see Predicates.cpp). The exact tests keep
// the Delaunay decisions consistent, so that the mesh does not depend on rounding and co-circular
// points always get the same answer.
#ifndef KEZ_TRIANGULATION_PREDICATES_P_H
#define KEZ_TRIANGULATION_PREDICATES_P_H

#include <cmath>

namespace p2t {
namespace detail {

// Collinearity tolerance of the orientation test and of the opposing-point test.
constexpr double kCollinearTolerance = 1e-12;

// Sign of the tolerance-based orientation of (a, b, c): +1 counter-clockwise, -1 clockwise,
// 0 when the doubled signed area lies strictly between -kCollinearTolerance and kCollinearTolerance;
// an area of exactly kCollinearTolerance already counts as a turn.
inline int OrientWithTolerance(double ax, double ay, double bx, double by, double cx, double cy)
{
    const double value = (ax - cx) * (by - cy) - (ay - cy) * (bx - cx);
    if (value > -kCollinearTolerance && value < kCollinearTolerance)
        return 0;
    return value > 0.0 ? 1 : -1;
}

// Exact orientation sign when the floating-point filter cannot decide it.
int OrientSignExact(double ax, double ay, double bx, double by, double cx, double cy);

// Exact sign of the orientation of (a, b, c): +1 counter-clockwise, -1 clockwise, 0 collinear.
// The determinant is evaluated in doubles first and trusted when it lies farther from zero than
// its rounding error bound; only the rare remaining cases go to OrientSignExact.
inline int OrientSign(double ax, double ay, double bx, double by, double cx, double cy)
{
    constexpr double kUnitRoundoff = 1.1102230246251565e-16; // 2^-53
    constexpr double kErrorBound = (3.0 + 16.0 * kUnitRoundoff) * kUnitRoundoff;
    const double left = (ax - cx) * (by - cy);
    const double right = (ay - cy) * (bx - cx);
    const double det = left - right;
    const double bound = kErrorBound * (std::fabs(left) + std::fabs(right));
    if (det > bound)
        return 1;
    if (-det > bound)
        return -1;
    return OrientSignExact(ax, ay, bx, by, cx, cy);
}

// Exact in-circle sign when the floating-point filter cannot decide it.
int InCircleSignExact(double ax, double ay, double bx, double by, double cx, double cy, double dx,
                      double dy);

// Exact sign of the in-circle determinant: for a counter-clockwise triangle (a, b, c), +1 when d lies
// strictly inside its circumcircle, -1 strictly outside, 0 on it.
// The determinant of the differences to d is evaluated in doubles first and trusted when it lies
// farther from zero than its rounding error bound; only the rare remaining cases go to
// InCircleSignExact.
// Exact while the coordinate differences to d stay above about 2^-256, or while the eight
// coordinates are multiples of one power of two within 61 bits of it: otherwise the degree-four
// products of the expansion underflow and the answer may be 0 for a point off the circle, which the
// sweep then treats as a co-circular tie. The triangulator scales its input to unit extent first,
// so only points closer together than that fraction of the extent are affected.
inline int InCircleSign(double ax, double ay, double bx, double by, double cx, double cy, double dx,
                        double dy)
{
    constexpr double kUnitRoundoff = 1.1102230246251565e-16; // 2^-53
    constexpr double kErrorBound = (10.0 + 96.0 * kUnitRoundoff) * kUnitRoundoff;
    const double adx = ax - dx, ady = ay - dy;
    const double bdx = bx - dx, bdy = by - dy;
    const double cdx = cx - dx, cdy = cy - dy;

    const double bdxcdy = bdx * cdy, cdxbdy = cdx * bdy;
    const double cdxady = cdx * ady, adxcdy = adx * cdy;
    const double adxbdy = adx * bdy, bdxady = bdx * ady;
    const double aLift = adx * adx + ady * ady;
    const double bLift = bdx * bdx + bdy * bdy;
    const double cLift = cdx * cdx + cdy * cdy;

    const double det = aLift * (bdxcdy - cdxbdy) + bLift * (cdxady - adxcdy) + cLift * (adxbdy - bdxady);
    const double permanent = (std::fabs(bdxcdy) + std::fabs(cdxbdy)) * aLift
                             + (std::fabs(cdxady) + std::fabs(adxcdy)) * bLift
                             + (std::fabs(adxbdy) + std::fabs(bdxady)) * cLift;
    const double bound = kErrorBound * permanent;
    if (det > bound)
        return 1;
    if (-det > bound)
        return -1;
    return InCircleSignExact(ax, ay, bx, by, cx, cy, dx, dy);
}

} // namespace detail
} // namespace p2t

#endif
