// Tests of KEZMathAxis: identity default, tolerance of !=, the sense of Tilt and
// the mapping of points, vectors and boxes.

#include <KEZMathAxis.h>
#include <KEZMathZeroMagnitudeVectorException.h>

#include <KEZSysOutOfBoundsException.h>

#include "KEZTestHelpers.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace KEZTest;

namespace {

// The tolerances of this file's comparisons where a test names none.
constexpr double PointTolerance = 1e-15;
constexpr double VectorTolerance = 1e-15;

const double pi = std::acos(-1.0);

} // namespace

TEST(MathAxis, DefaultIsTheIdentity)
{
    const KEZMathAxis axis;
    ExpectPointNear(axis.GetOrigin(), 0, 0, 0, 0);
    ExpectVectorNear(axis.GetFirstDirection(), 1, 0, 0, 0);
    ExpectVectorNear(axis.GetSecondDirection(), 0, 1, 0, 0);
    ExpectVectorNear(axis.GetThirdDirection(), 0, 0, 1, 0);
    EXPECT_TRUE(axis.GetFirstDirection().IsValid());
    EXPECT_TRUE(axis.GetSecondDirection().IsValid());
    EXPECT_TRUE(axis.GetThirdDirection().IsValid());
}

TEST(MathAxis, SettersTakeTheValuesAsGiven)
{
    KEZMathAxis axis;
    axis.SetOrigin(KEZMathPoint(1, 2, 3));
    axis.SetFirstDirection(KEZMathVector(0, 2, 0));
    axis.SetSecondDirection(KEZMathVector(-3, 0, 0));
    axis.SetThirdDirection(KEZMathVector(0, 0, 4));
    ExpectPointNear(axis.GetOrigin(), 1, 2, 3, 0);
    ExpectVectorNear(axis.GetFirstDirection(), 0, 2, 0, 0);
    ExpectVectorNear(axis.GetSecondDirection(), -3, 0, 0, 0);
    ExpectVectorNear(axis.GetThirdDirection(), 0, 0, 4, 0);
}

TEST(MathAxis, AxisPlaneValuesAreFixed)
{
    EXPECT_EQ(int(KEZMathAxis::AxisPlaneThirdFirst), 0);
    EXPECT_EQ(int(KEZMathAxis::AxisPlaneFirstSecond), 1);
    EXPECT_EQ(int(KEZMathAxis::AxisPlaneSecondThird), 2);
}

TEST(MathAxis, TiltInFirstSecondByQuarterTurnTakesFirstToSecond)
{
    KEZMathAxis axis;
    axis.Tilt(KEZMathAxis::AxisPlaneFirstSecond, pi / 2);
    ExpectVectorNear(axis.GetFirstDirection(), 0, 1, 0, VectorTolerance);
    ExpectVectorNear(axis.GetSecondDirection(), -1, 0, 0, VectorTolerance);
    ExpectVectorNear(axis.GetThirdDirection(), 0, 0, 1, 0);
}

TEST(MathAxis, TiltInSecondThirdByQuarterTurnTakesSecondToThird)
{
    KEZMathAxis axis;
    axis.Tilt(KEZMathAxis::AxisPlaneSecondThird, pi / 2);
    ExpectVectorNear(axis.GetFirstDirection(), 1, 0, 0, 0);
    ExpectVectorNear(axis.GetSecondDirection(), 0, 0, 1, VectorTolerance);
    ExpectVectorNear(axis.GetThirdDirection(), 0, -1, 0, VectorTolerance);
}

TEST(MathAxis, TiltInThirdFirstByQuarterTurnTakesThirdToFirst)
{
    KEZMathAxis axis;
    axis.Tilt(KEZMathAxis::AxisPlaneThirdFirst, pi / 2);
    ExpectVectorNear(axis.GetFirstDirection(), 0, 0, -1, VectorTolerance);
    ExpectVectorNear(axis.GetSecondDirection(), 0, 1, 0, 0);
    ExpectVectorNear(axis.GetThirdDirection(), 1, 0, 0, VectorTolerance);
}

TEST(MathAxis, TiltByAGeneralAngleFollowsTheRightHandRule)
{
    // About the third direction (z) by 30 degrees: x goes to (cos, sin, 0).
    const double angle = pi / 6;
    KEZMathAxis axis;
    axis.Tilt(KEZMathAxis::AxisPlaneFirstSecond, angle);
    ExpectVectorNear(axis.GetFirstDirection(), std::sqrt(3.0) / 2, 0.5, 0, VectorTolerance);
    ExpectVectorNear(axis.GetSecondDirection(), -0.5, std::sqrt(3.0) / 2, 0, VectorTolerance);
}

TEST(MathAxis, NegativeTiltTurnsClockwise)
{
    KEZMathAxis axis;
    axis.Tilt(KEZMathAxis::AxisPlaneFirstSecond, -pi / 2);
    ExpectVectorNear(axis.GetFirstDirection(), 0, -1, 0, VectorTolerance);
    ExpectVectorNear(axis.GetSecondDirection(), 1, 0, 0, VectorTolerance);
}

TEST(MathAxis, TiltTurnsAboutTheFramesOwnDirectionsAndKeepsTheOrigin)
{
    // A frame whose third direction is world x: first = y, second = z, third = x.
    KEZMathAxis axis;
    axis.SetOrigin(KEZMathPoint(5, 6, 7));
    axis.SetFirstDirection(KEZMathVector(0, 1, 0));
    axis.SetSecondDirection(KEZMathVector(0, 0, 1));
    axis.SetThirdDirection(KEZMathVector(1, 0, 0));
    axis.Tilt(KEZMathAxis::AxisPlaneFirstSecond, pi / 2);
    // Quarter turn about world x: y goes to z, z goes to -y.
    ExpectVectorNear(axis.GetFirstDirection(), 0, 0, 1, VectorTolerance);
    ExpectVectorNear(axis.GetSecondDirection(), 0, -1, 0, VectorTolerance);
    ExpectVectorNear(axis.GetThirdDirection(), 1, 0, 0, 0);
    ExpectPointNear(axis.GetOrigin(), 5, 6, 7, 0);
}

TEST(MathAxis, TiltAboutALongDirectionTurnsByTheSameAngle)
{
    KEZMathAxis axis;
    axis.SetThirdDirection(KEZMathVector(0, 0, 10));
    axis.Tilt(KEZMathAxis::AxisPlaneFirstSecond, pi / 2);
    ExpectVectorNear(axis.GetFirstDirection(), 0, 1, 0, VectorTolerance);
    ExpectVectorNear(axis.GetThirdDirection(), 0, 0, 10, 0);
}

TEST(MathAxis, FourQuarterTiltsComeBackToTheStart)
{
    KEZMathAxis axis;
    for (int i = 0; i < 4; ++i)
        axis.Tilt(KEZMathAxis::AxisPlaneSecondThird, pi / 2);
    EXPECT_FALSE(axis != KEZMathAxis());
}

TEST(MathAxis, TiltWithAnUnknownPlaneThrowsAndLeavesTheFrame)
{
    KEZMathAxis axis;
    axis.SetOrigin(KEZMathPoint(1, 1, 1));
    const KEZMathAxis before = axis;
    EXPECT_THROW(axis.Tilt(KEZMathAxis::AxisPlane(3), 1.0), KEZSysOutOfBoundsException);
    EXPECT_THROW(axis.Tilt(KEZMathAxis::AxisPlane(-1), 1.0), KEZSysOutOfBoundsException);
    EXPECT_FALSE(axis != before);
}

TEST(MathAxis, TiltAboutANullDirectionThrowsAndLeavesTheFrame)
{
    KEZMathAxis axis;
    axis.SetSecondDirection(KEZMathVector());
    EXPECT_THROW(axis.Tilt(KEZMathAxis::AxisPlaneThirdFirst, 1.0), KEZMathZeroMagnitudeVectorException);
    ExpectVectorNear(axis.GetFirstDirection(), 1, 0, 0, 0);
    ExpectVectorNear(axis.GetThirdDirection(), 0, 0, 1, 0);
}

TEST(MathAxis, NotEqualIgnoresDifferencesUpToOneEMinusNine)
{
    KEZMathAxis a;
    KEZMathAxis b;
    b.SetOrigin(KEZMathPoint(0.9e-9, -0.9e-9, 0.9e-9));
    b.SetFirstDirection(KEZMathVector(1 + 0.9e-9, 0.9e-9, 0));
    b.SetSecondDirection(KEZMathVector(0, 1 - 0.9e-9, 0));
    b.SetThirdDirection(KEZMathVector(0.9e-9, 0, 1));
    EXPECT_FALSE(a != b);
    EXPECT_TRUE(a == b);
}

TEST(MathAxis, NotEqualSeesADifferenceAboveOneEMinusNineAnywhere)
{
    const KEZMathAxis identity;
    KEZMathAxis origin;
    origin.SetOrigin(KEZMathPoint(0, 0, 1.1e-9));
    EXPECT_TRUE(identity != origin);
    KEZMathAxis first;
    first.SetFirstDirection(KEZMathVector(1, 1.1e-9, 0));
    EXPECT_TRUE(identity != first);
    KEZMathAxis second;
    second.SetSecondDirection(KEZMathVector(-1.1e-9, 1, 0));
    EXPECT_TRUE(identity != second);
    KEZMathAxis third;
    third.SetThirdDirection(KEZMathVector(0, 0, 1 + 1.1e-9));
    EXPECT_TRUE(identity != third);
    EXPECT_FALSE(identity == third);
}

TEST(MathAxis, MapsAPointIntoTheSpaceAround)
{
    KEZMathAxis axis;
    axis.SetOrigin(KEZMathPoint(10, 0, 0));
    axis.SetFirstDirection(KEZMathVector(0, 1, 0));
    axis.SetSecondDirection(KEZMathVector(-1, 0, 0));
    // (x, y, z) goes to (10 - y, x, z).
    ExpectPointNear(axis * KEZMathPoint(1, 2, 3), 8, 1, 3, 0);
    ExpectVectorNear(axis * KEZMathVector(1, 2, 3), -2, 1, 3, 0);
}

TEST(MathAxis, IdentityMapsABoxUnchanged)
{
    const KEZMathBoundingBox box(KEZMathPoint(-1, 2, -3), KEZMathPoint(4, 5, 6));
    EXPECT_TRUE(KEZMathAxis() * box == box);
}

TEST(MathAxis, MapsABoxThroughTurnAndShift)
{
    KEZMathAxis axis;
    axis.SetOrigin(KEZMathPoint(10, 0, 0));
    axis.SetFirstDirection(KEZMathVector(0, 1, 0));
    axis.SetSecondDirection(KEZMathVector(-1, 0, 0));
    const KEZMathBoundingBox mapped = axis * KEZMathBoundingBox(KEZMathPoint(0, 0, 0), KEZMathPoint(1, 2, 3));
    // x in [0, 1], y in [0, 2] go to X = 10 - y in [8, 10], Y = x in [0, 1].
    ExpectPointNear(mapped.GetLowerPoint(), 8, 0, 0, 0);
    ExpectPointNear(mapped.GetUpperPoint(), 10, 1, 3, 0);
}

TEST(MathAxis, MapsAllEightCornersOfABox)
{
    // An eighth of a turn about z: the unit square's corners go to (0, 0),
    // (c, c), (-c, c) and (0, 2c); lower and upper corners alone would miss x = -c and x = c.
    const double c = std::sqrt(0.5);
    KEZMathAxis axis;
    axis.SetFirstDirection(KEZMathVector(c, c, 0));
    axis.SetSecondDirection(KEZMathVector(-c, c, 0));
    const KEZMathBoundingBox mapped = axis * KEZMathBoundingBox(KEZMathPoint(0, 0, 0), KEZMathPoint(1, 1, 1));
    ExpectPointNear(mapped.GetLowerPoint(), -c, 0, 0, PointTolerance);
    ExpectPointNear(mapped.GetUpperPoint(), c, 2 * c, 1, PointTolerance);
}

TEST(MathAxis, MapsABoxThroughLongDirections)
{
    KEZMathAxis axis;
    axis.SetFirstDirection(KEZMathVector(2, 0, 0));
    axis.SetThirdDirection(KEZMathVector(0, 0, -3));
    const KEZMathBoundingBox mapped = axis * KEZMathBoundingBox(KEZMathPoint(1, 1, 1), KEZMathPoint(2, 2, 2));
    ExpectPointNear(mapped.GetLowerPoint(), 2, 1, -6, 0);
    ExpectPointNear(mapped.GetUpperPoint(), 4, 2, -3, 0);
}
