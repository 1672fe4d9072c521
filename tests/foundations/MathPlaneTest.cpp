// Tests of KEZMathPlane.

#include <KEZMathPlane.h>
#include <KEZMathZeroMagnitudeVectorException.h>

#include "KEZTestHelpers.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace KEZTest;

namespace {

// The tolerances of this file's comparisons where a test names none.
constexpr double PointTolerance = 1e-14;
constexpr double VectorTolerance = 1e-15;

} // namespace

TEST(MathPlane, DefaultIsTheXYPlaneThroughTheOrigin)
{
    const KEZMathPlane plane;
    ExpectPointNear(plane.GetOrigin(), 0, 0, 0, 0);
    ExpectVectorNear(plane.GetFirstDirection(), 1, 0, 0, 0);
    ExpectVectorNear(plane.GetSecondDirection(), 0, 1, 0, 0);
    ExpectVectorNear(plane.GetNormal(), 0, 0, 1, 0);
}

TEST(MathPlane, DefaultProjectsThreeFourFiveToThreeFour)
{
    KEZMathPoint2D point2D(-1, -1);
    KEZMathPlane().Project(KEZMathPoint(3, 4, 5), point2D);
    EXPECT_EQ(point2D.GetX(), 3.0);
    EXPECT_EQ(point2D.GetY(), 4.0);
}

TEST(MathPlane, ProjectsAPointToTheNearestPointOfThePlane)
{
    ExpectPointNear(KEZMathPlane().Project(KEZMathPoint(3, 4, 5)), 3, 4, 0, 0);
    KEZMathPlane shifted;
    shifted.SetOrigin(KEZMathPoint(0, 0, 2));
    ExpectPointNear(shifted.Project(KEZMathPoint(3, 4, 5)), 3, 4, 2, 0);
}

TEST(MathPlane, ProjectionOfAVectorAlongTheNormalIsNotValid)
{
    const KEZMathPlane plane;
    EXPECT_FALSE(plane.Project(KEZMathVector(0, 0, 7)).IsValid());
    KEZMathPlane tilted;
    tilted.SetNormal(KEZMathVector(1, 1, 1));
    EXPECT_FALSE(tilted.Project(KEZMathVector(-2, -2, -2)).IsValid());
}

TEST(MathPlane, ProjectionOfAVectorKeepsItsInPlanePart)
{
    const KEZMathVector projected = KEZMathPlane().Project(KEZMathVector(1, 2, 3));
    ExpectVectorNear(projected, 1, 2, 0, 0);
    EXPECT_TRUE(projected.IsValid());
}

TEST(MathPlane, SetNormalZUpGivesTheDefaultFrame)
{
    KEZMathPlane plane;
    plane.SetNormal(KEZMathVector(0, 0, 5));
    ExpectVectorNear(plane.GetNormal(), 0, 0, 1, VectorTolerance);
    ExpectVectorNear(plane.GetFirstDirection(), 1, 0, 0, VectorTolerance);
    ExpectVectorNear(plane.GetSecondDirection(), 0, 1, 0, VectorTolerance);
}

TEST(MathPlane, SetNormalZDownKeepsXAndTurnsY)
{
    KEZMathPlane plane;
    plane.SetNormal(KEZMathVector(0, 0, -1));
    ExpectVectorNear(plane.GetFirstDirection(), 1, 0, 0, VectorTolerance);
    ExpectVectorNear(plane.GetSecondDirection(), 0, -1, 0, VectorTolerance);
    ExpectVectorNear(plane.GetNormal(), 0, 0, -1, VectorTolerance);
}

TEST(MathPlane, SetNormalXGivesYAndZ)
{
    KEZMathPlane plane;
    plane.SetNormal(KEZMathVector(2, 0, 0));
    ExpectVectorNear(plane.GetNormal(), 1, 0, 0, VectorTolerance);
    ExpectVectorNear(plane.GetFirstDirection(), 0, 1, 0, VectorTolerance);
    ExpectVectorNear(plane.GetSecondDirection(), 0, 0, 1, VectorTolerance);
}

TEST(MathPlane, SetNormalMakesARightHandedOrthonormalFrame)
{
    KEZMathPlane plane;
    plane.SetNormal(KEZMathVector(1, -2, 0.5));
    const KEZMathVector x = plane.GetFirstDirection();
    const KEZMathVector y = plane.GetSecondDirection();
    const KEZMathVector n = plane.GetNormal();
    EXPECT_NEAR(x * x, 1.0, 1e-15);
    EXPECT_NEAR(y * y, 1.0, 1e-15);
    EXPECT_NEAR(n * n, 1.0, 1e-15);
    EXPECT_NEAR(x * y, 0.0, 1e-15);
    EXPECT_NEAR(x * n, 0.0, 1e-15);
    const KEZMathVector cross = x ^ y;
    ExpectVectorNear(cross, n.GetX(), n.GetY(), n.GetZ(), VectorTolerance);
    // The normal keeps the given sense.
    const double length = std::sqrt(1 + 4 + 0.25);
    ExpectVectorNear(n, 1 / length, -2 / length, 0.5 / length, VectorTolerance);
}

TEST(MathPlane, SetNormalWithoutMagnitudeThrowsAndLeavesThePlane)
{
    KEZMathPlane plane;
    EXPECT_THROW(plane.SetNormal(KEZMathVector()), KEZMathZeroMagnitudeVectorException);
    ExpectVectorNear(plane.GetNormal(), 0, 0, 1, 0);
    ExpectVectorNear(plane.GetFirstDirection(), 1, 0, 0, 0);
}

TEST(MathPlane, SetDirectionsSetsTheNormalXCrossY)
{
    KEZMathPlane plane;
    plane.SetDirections(KEZMathVector(1, 0, 0), KEZMathVector(0, -1, 0));
    ExpectVectorNear(plane.GetFirstDirection(), 1, 0, 0, 0);
    ExpectVectorNear(plane.GetSecondDirection(), 0, -1, 0, 0);
    ExpectVectorNear(plane.GetNormal(), 0, 0, -1, 0);
    KEZMathPoint2D point2D;
    plane.Project(KEZMathPoint(3, 4, 5), point2D);
    EXPECT_EQ(point2D.GetX(), 3.0);
    EXPECT_EQ(point2D.GetY(), -4.0);
}

TEST(MathPlane, SetDirectionsMakesTheDirectionsOrthonormal)
{
    KEZMathPlane plane;
    // x (2, 0, 0) becomes (1, 0, 0); y (1, 3, 0) loses its part along x.
    plane.SetDirections(KEZMathVector(2, 0, 0), KEZMathVector(1, 3, 0));
    ExpectVectorNear(plane.GetFirstDirection(), 1, 0, 0, VectorTolerance);
    ExpectVectorNear(plane.GetSecondDirection(), 0, 1, 0, VectorTolerance);
    ExpectVectorNear(plane.GetNormal(), 0, 0, 1, VectorTolerance);
}

TEST(MathPlane, SetDirectionsAlongEachOtherThrowsAndLeavesThePlane)
{
    KEZMathPlane plane;
    EXPECT_THROW(plane.SetDirections(KEZMathVector(1, 0, 0), KEZMathVector(-2, 0, 0)),
                 KEZMathZeroMagnitudeVectorException);
    EXPECT_THROW(plane.SetDirections(KEZMathVector(), KEZMathVector(0, 1, 0)),
                 KEZMathZeroMagnitudeVectorException);
    EXPECT_THROW(plane.SetDirections(KEZMathVector(0, 1, 0), KEZMathVector()),
                 KEZMathZeroMagnitudeVectorException);
    ExpectVectorNear(plane.GetFirstDirection(), 1, 0, 0, 0);
    ExpectVectorNear(plane.GetSecondDirection(), 0, 1, 0, 0);
    ExpectVectorNear(plane.GetNormal(), 0, 0, 1, 0);
}

TEST(MathPlane, TwoDCoordinatesAreOffsetsAlongTheDirections)
{
    KEZMathPlane plane;
    plane.SetOrigin(KEZMathPoint(1, 1, 1));
    plane.SetDirections(KEZMathVector(0, 1, 0), KEZMathVector(0, 0, 1));
    KEZMathPoint2D point2D;
    plane.Project(KEZMathPoint(9, 3, 5), point2D);
    EXPECT_EQ(point2D.GetX(), 2.0);
    EXPECT_EQ(point2D.GetY(), 4.0);
}

TEST(MathPlane, EvaluateGivesTheThreeDPoint)
{
    KEZMathPlane plane;
    plane.SetOrigin(KEZMathPoint(1, 1, 1));
    plane.SetDirections(KEZMathVector(0, 1, 0), KEZMathVector(0, 0, 1));
    ExpectPointNear(plane.Evaluate(KEZMathPoint2D(2, 4)), 1, 3, 5, 0);
}

TEST(MathPlane, EvaluateIsTheInverseOfProjectForPointsInThePlane)
{
    KEZMathPlane plane;
    plane.SetOrigin(KEZMathPoint(0.5, -2, 3));
    plane.SetNormal(KEZMathVector(1, 2, -2));
    for (int i = -3; i <= 3; ++i) {
        for (int j = -3; j <= 3; ++j) {
            const KEZMathPoint2D point2D(i * 1.25, j * -0.75);
            const KEZMathPoint inPlane = plane.Evaluate(point2D);
            KEZMathPoint2D back;
            plane.Project(inPlane, back);
            EXPECT_NEAR(back.GetX(), point2D.GetX(), 1e-12);
            EXPECT_NEAR(back.GetY(), point2D.GetY(), 1e-12);
            // And the evaluated point lies in the plane: (p - o) . n = 0.
            EXPECT_NEAR((inPlane - plane.GetOrigin()) * plane.GetNormal(), 0.0, 1e-12);
        }
    }
}

TEST(MathPlane, EvaluateOfTheTwoDCoordinatesOfAnyPointIsItsProjection)
{
    KEZMathPlane plane;
    plane.SetOrigin(KEZMathPoint(1, 2, 3));
    plane.SetDirections(KEZMathVector(1, 1, 0), KEZMathVector(-1, 1, 1));
    const KEZMathPoint off(4, -5, 6);
    KEZMathPoint2D point2D;
    plane.Project(off, point2D);
    const KEZMathPoint projected = plane.Project(off);
    ExpectPointNear(plane.Evaluate(point2D), projected.GetX(), projected.GetY(), projected.GetZ(), 1e-12);
}
