// Tests of the triangulator's geometric predicates (triangulation/Predicates_p.h).
//
// Every expected sign below comes from the geometry of the points, worked out in the comments: the
// points lie on, inside or outside a circle whose equation is known, or on a side of a line whose
// equation is known. The inputs are chosen so that each evaluation stage of the in-circle test is
// reached: the floating-point filter, the integer stage (coordinate differences that fit one
// fixed-point scale of at most 62 bits), the expansion of the differences as doubles (a wider span
// of bits), the integer stage on the coordinates (differences that are not doubles, coordinates on
// one scale of at most 61 bits) and the general expansion (differences below 2^-200, or coordinates
// of very different magnitudes).
#include "triangulation/Predicates_p.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using p2t::detail::InCircleSign;
using p2t::detail::OrientSign;
using p2t::detail::OrientWithTolerance;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct Pt
{
    double x;
    double y;
};

int InCircle(Pt a, Pt b, Pt c, Pt d)
{
    return InCircleSign(a.x, a.y, b.x, b.y, c.x, c.y, d.x, d.y);
}

int SignOf(double value)
{
    return (value > 0.0) - (value < 0.0);
}

// The in-circle determinant as a textbook evaluation writes it in doubles: each point is lifted to
// x^2 + y^2 before anything is subtracted, and the 3x3 determinant of the rows relative to d is
// expanded along its first column. Far from the origin, the lifted values lose the low bits that
// carry the answer.
double NaiveInCircle(Pt a, Pt b, Pt c, Pt d)
{
    const double dLift = d.x * d.x + d.y * d.y;
    const double aLift = (a.x * a.x + a.y * a.y) - dLift;
    const double bLift = (b.x * b.x + b.y * b.y) - dLift;
    const double cLift = (c.x * c.x + c.y * c.y) - dLift;
    const double adx = a.x - d.x, ady = a.y - d.y;
    const double bdx = b.x - d.x, bdy = b.y - d.y;
    const double cdx = c.x - d.x, cdy = c.y - d.y;
    return adx * (bdy * cLift - bLift * cdy) - ady * (bdx * cLift - bLift * cdx)
           + aLift * (bdx * cdy - bdy * cdx);
}

// The orientation determinant of (p, q, r) in doubles, pivoted on p.
double NaiveOrient(Pt p, Pt q, Pt r)
{
    return (q.x - p.x) * (r.y - p.y) - (q.y - p.y) * (r.x - p.x);
}

// The circle x^2 + y^2 = 25 through integer points, shifted by (offset, offset). The triangle
// (5, 0), (0, 5), (-5, 0) runs counter-clockwise (its doubled area is (-5)(0) - (5)(-10) = 50 > 0).
struct RadiusFiveCircle
{
    double offset;
    Pt At(double x, double y) const { return {offset + x, offset + y}; }
    int Test(Pt d) const { return InCircle(At(5, 0), At(0, 5), At(-5, 0), d); }
};

} // namespace

// ---------------------------------------------------------------------------------------------
// In-circle: co-circular points

TEST(TriangulatorExactPredicates, CornersOfTheUnitSquareAreCoCircular)
{
    // All four corners lie on the circle of radius sqrt(1/2) about (0.5, 0.5), whichever three span it.
    const Pt p0{0, 0}, p1{1, 0}, p2{1, 1}, p3{0, 1};
    EXPECT_EQ(InCircle(p0, p1, p2, p3), 0);
    EXPECT_EQ(InCircle(p1, p2, p3, p0), 0);
    EXPECT_EQ(InCircle(p2, p3, p0, p1), 0);
    EXPECT_EQ(InCircle(p3, p0, p1, p2), 0);
}

TEST(TriangulatorExactPredicates, IntegerPointsOfTheCircleOfRadiusFiveAreCoCircular)
{
    const RadiusFiveCircle circle{0.0};
    // 3^2 + 4^2 = 25 in every quadrant, and the fourth axis point.
    for (const Pt d : {Pt{3, 4}, Pt{4, -3}, Pt{-3, -4}, Pt{-4, 3}, Pt{0, -5}, Pt{-3, 4}, Pt{4, 3}})
        EXPECT_EQ(circle.Test(d), 0) << d.x << " " << d.y;
    // Another counter-clockwise triple of the same circle (polar angles 53, 143 and 270 degrees).
    EXPECT_EQ(InCircle({3, 4}, {-4, 3}, {0, -5}, {5, 0}), 0);
    EXPECT_EQ(InCircle({3, 4}, {-4, 3}, {0, -5}, {-3, -4}), 0);
}

// ---------------------------------------------------------------------------------------------
// In-circle: one ulp off the circle

TEST(TriangulatorExactPredicates, InCircleSeesOneUlpInsideAndOutsideTheCircle)
{
    const RadiusFiveCircle circle{0.0};
    // Moving a coordinate of a point on x^2 + y^2 = 25 away from zero makes x^2 + y^2 larger (outside,
    // -1); moving it towards zero makes it smaller (inside, +1). Moves of y keep every difference a
    // double; a move of x to 3 + 2^-51 makes -5 - dx inexact, which leaves only the general expansion.
    EXPECT_EQ(circle.Test({3, std::nextafter(4.0, kInfinity)}), -1);
    EXPECT_EQ(circle.Test({3, std::nextafter(4.0, 0.0)}), 1);
    EXPECT_EQ(circle.Test({std::nextafter(3.0, kInfinity), 4}), -1);
    EXPECT_EQ(circle.Test({std::nextafter(3.0, 0.0), 4}), 1);
    EXPECT_EQ(circle.Test({4, std::nextafter(-3.0, -kInfinity)}), -1);
    EXPECT_EQ(circle.Test({4, std::nextafter(-3.0, 0.0)}), 1);
    EXPECT_EQ(circle.Test({std::nextafter(-4.0, -kInfinity), 3}), -1);
    EXPECT_EQ(circle.Test({std::nextafter(-4.0, 0.0), 3}), 1);
}

TEST(TriangulatorExactPredicates, InCircleIsRightAtAnOffsetOf1e8WhereTheNaiveDeterminantIsWrong)
{
    const double offset = 1e8; // in [2^26, 2^27): its ulp is 2^-26
    const RadiusFiveCircle circle{offset};
    const double up = std::nextafter(offset + 4, kInfinity);
    const double down = std::nextafter(offset + 4, 0.0);
    ASSERT_EQ(up - (offset + 4), std::ldexp(1.0, -26));
    ASSERT_EQ((offset + 4) - down, std::ldexp(1.0, -26));

    const Pt a = circle.At(5, 0), b = circle.At(0, 5), c = circle.At(-5, 0);
    const Pt on = circle.At(3, 4), outside{offset + 3, up}, inside{offset + 3, down};
    EXPECT_EQ(InCircle(a, b, c, on), 0);
    EXPECT_EQ(InCircle(a, b, c, outside), -1);
    EXPECT_EQ(InCircle(a, b, c, inside), 1);

    // The naive evaluation gets both off-circle points wrong: the lifted values near 2e16 keep
    // nothing of the 2^-26 moves, so it does not give -1 outside nor +1 inside. The predicate
    // subtracts d first; the differences are then exact and small, and even its floating-point
    // stage can decide.
    EXPECT_NE(SignOf(NaiveInCircle(a, b, c, outside)), -1) << NaiveInCircle(a, b, c, outside);
    EXPECT_NE(SignOf(NaiveInCircle(a, b, c, inside)), 1) << NaiveInCircle(a, b, c, inside);
}

TEST(TriangulatorExactPredicates, InCircleIsExactAtAnOffsetOf1e15WithUnitDetails)
{
    const double offset = 1e15; // in [2^49, 2^50): its ulp is 2^-3
    const RadiusFiveCircle circle{offset};
    ASSERT_EQ(std::nextafter(offset + 4, kInfinity), offset + 4.125);
    ASSERT_EQ(std::nextafter(offset + 4, 0.0), offset + 3.875);

    EXPECT_EQ(circle.Test(circle.At(3, 4)), 0);
    EXPECT_EQ(circle.Test(circle.At(-4, 3)), 0);
    EXPECT_EQ(circle.Test(circle.At(4, -3)), 0);
    // 3^2 + 4.125^2 = 26.015625 > 25; 3^2 + 3.875^2 = 24.015625 < 25.
    EXPECT_EQ(circle.Test(circle.At(3, 4.125)), -1);
    EXPECT_EQ(circle.Test(circle.At(3, 3.875)), 1);
    // The centre and a far point are clear cases. (Moves of 2^-3 on a circle of radius 5 are large
    // enough for the floating-point stage; the next test needs the exact ones at this offset.)
    EXPECT_EQ(circle.Test(circle.At(0, 0)), 1);
    EXPECT_EQ(circle.Test(circle.At(1e6, 0)), -1);
}

// ---------------------------------------------------------------------------------------------
// In-circle: differences spanning many bits

// With d at the origin, a = (2R, 0), b = (R, R) and c = (x, y), the in-circle determinant is
//   | 2R  0  4R^2      |
//   | R   R  2R^2      |  = 2R (R (x^2 + y^2) - 2R^2 y) + 4R^2 (R y - R x) = 2R^2 (x^2 + y^2 - 2R x),
//   | x   y  x^2 + y^2 |
// and (a, b, c) runs counter-clockwise for small x, y (doubled area 2R^2 - R (x + y) > 0). So the
// origin is inside the circle through a, b, c (+1) when x^2 + y^2 > 2R x, outside (-1) when it is
// smaller. With R = 2^50 (about 1.1e15) the differences reach 2^51 while c carries small details.
TEST(TriangulatorExactPredicates, InCircleIsExactWhenTheDifferencesSpanMoreThan62Bits)
{
    const double r = std::ldexp(1.0, 50);
    const Pt a{2 * r, 0}, b{r, r}, d{0, 0};

    // x = 0: x^2 + y^2 - 2R x = y^2 > 0, inside however small y is. y = 1 spans 52 bits, y = 2^-12
    // spans 64 and y = 2^-20 spans 72.
    for (const int exponent : {0, -12, -20}) {
        const Pt c{0, std::ldexp(1.0, exponent)};
        EXPECT_EQ(InCircle(a, b, c, d), 1) << exponent;
    }
    // x = 2^-101, y = 2^-25: y^2 = 2^-50 = 2R x, so the sign rests on x^2 = 2^-202 alone: inside.
    const double x = std::ldexp(1.0, -101), y = std::ldexp(1.0, -25);
    EXPECT_EQ(InCircle(a, b, {x, y}, d), 1);
    // One ulp more in x adds 2R * 2^-153 = 2^-102 to 2R x, far more than x^2: outside.
    EXPECT_EQ(InCircle(a, b, {std::nextafter(x, kInfinity), y}, d), -1);
    // One ulp less in x takes 2^-103 off 2R x (x is a power of two): inside.
    EXPECT_EQ(InCircle(a, b, {std::nextafter(x, 0.0), y}, d), 1);
    // One ulp less in y takes about 2 * 2^-25 * 2^-78 = 2^-102 off y^2: outside.
    EXPECT_EQ(InCircle(a, b, {x, std::nextafter(y, 0.0)}, d), -1);
}

TEST(TriangulatorExactPredicates, InCircleIsExactAtAnOffsetOf1e15WithAFarThirdPoint)
{
    // The same construction shifted by (1e15, 1e15); every coordinate is an integer below 2^53, so the
    // points and their differences are exact. x = 0, y = 1: inside. x = 1, y = 2^25: 1 + 2^50 < 2^51,
    // outside. x = 2, y = 2^26: 4 + 2^52 > 2^52, inside.
    const double o = 1e15, r = std::ldexp(1.0, 50);
    const Pt a{o + 2 * r, o}, b{o + r, o + r}, d{o, o};
    EXPECT_EQ(InCircle(a, b, {o, o + 1}, d), 1);
    EXPECT_EQ(InCircle(a, b, {o + 1, o + std::ldexp(1.0, 25)}, d), -1);
    EXPECT_EQ(InCircle(a, b, {o + 2, o + std::ldexp(1.0, 26)}, d), 1);
}

// ---------------------------------------------------------------------------------------------
// In-circle: tiny differences

TEST(TriangulatorExactPredicates, InCircleIsExactForDifferencesBelowTwoToTheMinus200)
{
    // The radius-five circle scaled by 2^-210 and by 2^-240: every difference is below 2^-200, and
    // the determinant (a degree-four polynomial in them) is far below what the floating-point filter
    // can see.
    for (const int exponent : {-210, -240}) {
        const double s = std::ldexp(1.0, exponent);
        const Pt a{5 * s, 0}, b{0, 5 * s}, c{-5 * s, 0};
        EXPECT_EQ(InCircle(a, b, c, {3 * s, 4 * s}), 0) << exponent;
        EXPECT_EQ(InCircle(a, b, c, {4 * s, -3 * s}), 0) << exponent;
        EXPECT_EQ(InCircle(a, b, c, {3 * s, std::nextafter(4 * s, kInfinity)}), -1) << exponent;
        EXPECT_EQ(InCircle(a, b, c, {3 * s, std::nextafter(4 * s, 0.0)}), 1) << exponent;
        EXPECT_EQ(InCircle(a, b, c, {0, 0}), 1) << exponent;
        EXPECT_EQ(InCircle(a, b, c, {6 * s, 0}), -1) << exponent;
    }
}

// Below about 2^-256 the products of the general expansion underflow; these coordinates are all
// multiples of one power of two within 61 bits of it, so the integer stage on the coordinates answers
// before the expansion is reached.
TEST(TriangulatorExactPredicates, InCircleIsExactForTinyCoordinatesOnOneFixedPointScale)
{
    // 2^-300 keeps the coordinates normal; 2^-1070 makes them subnormal (and still exact: multiples of
    // 2^-1074).
    for (const int exponent : {-300, -1070}) {
        const double s = std::ldexp(1.0, exponent);
        ASSERT_EQ(3 * s / s, 3.0);
        const Pt a{5 * s, 0}, b{0, 5 * s}, c{-5 * s, 0};
        EXPECT_EQ(InCircle(a, b, c, {3 * s, 4 * s}), 0) << exponent;
        EXPECT_EQ(InCircle(a, b, c, {3 * s, std::nextafter(4 * s, kInfinity)}), -1) << exponent;
        EXPECT_EQ(InCircle(a, b, c, {3 * s, std::nextafter(4 * s, 0.0)}), 1) << exponent;
        EXPECT_EQ(InCircle(a, b, c, {0, 0}), 1) << exponent;
        EXPECT_EQ(InCircle(a, b, c, {6 * s, 0}), -1) << exponent;
    }
}

namespace {

// An isosceles trapezoid symmetric about the y axis is cyclic: the circle through (x1, y1), (-x1, y1)
// and (-x2, y2) has its centre on the axis and passes through (x2, y2) too. With x1 = 0.3 and
// x2 = 0.7 that centre is (0, 0.25): equal distances to (0.3, 0.9) and (0.7, 0.1) give
// 0.09 + (0.9 - yc)^2 = 0.49 + (0.1 - yc)^2, so yc = 0.25 (as exactly as the doubles are symmetric).
// Moving (0.7, 0.1) up moves it towards the centre, which lies above it: inside; down: outside.
struct Trapezoid
{
    double x1, y1, x2, y2;
    int Test(Pt d) const { return InCircle({x1, y1}, {-x1, y1}, {-x2, y2}, d); }
};

} // namespace

TEST(TriangulatorExactPredicates, InCircleIsExactForPointsWhoseDifferencesAreNotDoubles)
{
    // The differences x1 - (-x2) = x1 + x2 need more bits than a double has, so the stages on the
    // differences cannot take them; the coordinates share one fixed-point scale.
    const Trapezoid trapezoid{0.3, 0.9, 0.7, 0.1};
    const double sum = 0.3 + 0.7;
    const double virtualX2 = sum - 0.3;
    const double roundingError = (0.3 - (sum - virtualX2)) + (0.7 - virtualX2); // Knuth's two-sum
    ASSERT_NE(roundingError, 0.0);
    EXPECT_EQ(trapezoid.Test({0.7, 0.1}), 0);
    EXPECT_EQ(trapezoid.Test({0.7, std::nextafter(0.1, kInfinity)}), 1);
    EXPECT_EQ(trapezoid.Test({0.7, std::nextafter(0.1, 0.0)}), -1);
    EXPECT_EQ(trapezoid.Test({std::nextafter(0.7, kInfinity), 0.1}), -1);
    EXPECT_EQ(trapezoid.Test({0.0, 0.25}), 1);
}

TEST(TriangulatorExactPredicates, InCircleIsExactForFarApartPointsOfVeryDifferentMagnitudes)
{
    // x1 = 2^-70 puts 124 bits between the finest unit and the largest coordinate: only the general
    // expansion is exact here. The trapezoid is still cyclic by its symmetry.
    const double x1 = std::ldexp(1.0, -70);
    const Trapezoid trapezoid{x1, 0.9, 0.7, 0.1};
    EXPECT_EQ(trapezoid.Test({0.7, 0.1}), 0);
    EXPECT_EQ(trapezoid.Test({0.7, std::nextafter(0.1, kInfinity)}), 1);
    EXPECT_EQ(trapezoid.Test({0.7, std::nextafter(0.1, 0.0)}), -1);
}

// ---------------------------------------------------------------------------------------------
// Orientation

TEST(TriangulatorExactPredicates, OrientationOfCollinearPointsIsZero)
{
    EXPECT_EQ(OrientSign(0, 0, 1, 1, 2, 2), 0);
    EXPECT_EQ(OrientSign(2, 2, 0, 0, 1, 1), 0);
    EXPECT_EQ(OrientSign(1e8, 1e8, 1e8 + 1, 1e8 + 2, 1e8 + 2, 1e8 + 4), 0);
    EXPECT_EQ(OrientSign(-3e15, 5, 1e15, 1, 5e15, -3), 0); // c - a = 2 (b - a)
}

TEST(TriangulatorExactPredicates, OrientationIsOneUlpLeftOrRightOfALine)
{
    // For a = (0, 0), b = (1, 1) the doubled signed area of (a, b, c) is cy - cx: positive (c left of
    // a->b, counter-clockwise) when cy > cx.
    EXPECT_EQ(OrientSign(0, 0, 1, 1, 2, std::nextafter(2.0, kInfinity)), 1);
    EXPECT_EQ(OrientSign(0, 0, 1, 1, 2, std::nextafter(2.0, 0.0)), -1);
    EXPECT_EQ(OrientSign(0, 0, 1, 1, std::nextafter(2.0, 0.0), 2), 1);
    EXPECT_EQ(OrientSign(0, 0, 1, 1, std::nextafter(2.0, kInfinity), 2), -1);
    // Swapping two points reverses the turn.
    EXPECT_EQ(OrientSign(1, 1, 0, 0, 2, std::nextafter(2.0, kInfinity)), -1);
}

TEST(TriangulatorExactPredicates, OrientationIsRightOnAGridWhereTheNaiveFormulaFails)
{
    // p = (0.5 + i u, 0.5 + j u) with u = 2^-53, the ulp of 0.5, against the line y = x through
    // q = (12, 12) and r = (24, 24). The doubled signed area of (p, q, r) is 12 (py - px), so the sign
    // is that of j - i.
    const double u = std::ldexp(1.0, -53);
    const Pt q{12, 12}, r{24, 24};
    int naiveWrong = 0;
    for (int i = 0; i < 16; ++i) {
        for (int j = 0; j < 16; ++j) {
            const Pt p{0.5 + i * u, 0.5 + j * u};
            const int expected = SignOf(double(j - i));
            EXPECT_EQ(OrientSign(p.x, p.y, q.x, q.y, r.x, r.y), expected) << i << " " << j;
            if (SignOf(NaiveOrient(p, q, r)) != expected)
                ++naiveWrong;
        }
    }
    // The grid is only interesting because plain doubles misjudge part of it.
    EXPECT_GT(naiveWrong, 0);
}

TEST(TriangulatorExactPredicates, ToleranceOrientationIsZeroStrictlyWithin1e12)
{
    // For a = (0, 0), b = (1, 0), c = (0.5, h) the doubled signed area is 0.5 h + 0.5 h = h, exact
    // in doubles. Areas strictly inside (-1e-12, 1e-12) count as collinear.
    auto orient = [](double h) { return OrientWithTolerance(0, 0, 1, 0, 0.5, h); };
    EXPECT_EQ(orient(0.0), 0);
    EXPECT_EQ(orient(0.5e-12), 0);
    EXPECT_EQ(orient(-0.5e-12), 0);
    EXPECT_EQ(orient(std::nextafter(1e-12, 0.0)), 0);
    EXPECT_EQ(orient(std::nextafter(-1e-12, 0.0)), 0);
    // The tolerance itself is no longer within it.
    EXPECT_EQ(orient(1e-12), 1);
    EXPECT_EQ(orient(-1e-12), -1);
    EXPECT_EQ(orient(std::nextafter(1e-12, 1.0)), 1);
    EXPECT_EQ(orient(2e-12), 1);
    EXPECT_EQ(orient(-2e-12), -1);
}

TEST(TriangulatorExactPredicates, ToleranceIsOnTheDoubledAreaNotOnTheDistanceFromTheLine)
{
    // A point 1e-15 above a segment of length 1e6: doubled area 1e-9, well beyond the tolerance.
    EXPECT_EQ(OrientWithTolerance(0, 0, 1e6, 0, 5e5, 1e-15), 1);
    EXPECT_EQ(OrientWithTolerance(0, 0, 1e6, 0, 5e5, -1e-15), -1);
    // A right isosceles triangle with legs of 1e-7: doubled area 1e-14, so it counts as collinear,
    // which is why the triangulator scales the points to unit size before using this test.
    EXPECT_EQ(OrientWithTolerance(0, 0, 1e-7, 0, 0, 1e-7), 0);
    // The exact test still sees its counter-clockwise turn.
    EXPECT_EQ(OrientSign(0, 0, 1e-7, 0, 0, 1e-7), 1);
}

TEST(TriangulatorExactPredicates, ExactOrientationSeesWhatTheToleranceHides)
{
    // Doubled area 1e-13: collinear for the tolerance test, counter-clockwise for the exact one.
    EXPECT_EQ(OrientWithTolerance(0, 0, 1, 0, 0.5, 1e-13), 0);
    EXPECT_EQ(OrientSign(0, 0, 1, 0, 0.5, 1e-13), 1);
    EXPECT_EQ(OrientWithTolerance(0, 0, 1, 0, 0.5, -1e-13), 0);
    EXPECT_EQ(OrientSign(0, 0, 1, 0, 0.5, -1e-13), -1);
}
