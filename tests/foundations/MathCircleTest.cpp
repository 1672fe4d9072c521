// Tests of KEZMathCircle: defaults, the chosen start direction and the sense of EvalAngle.

#include <KEZMathCircle.h>
#include <KEZMathZeroMagnitudeVectorException.h>

#include "KEZTestHelpers.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace KEZTest;

namespace {

// The tolerances of this file's comparisons where a test names none.
constexpr double PointTolerance = 1e-14;
constexpr double VectorTolerance = 1e-15;

const double pi = std::acos(-1.0);

} // namespace

TEST(MathCircle, DefaultIsTheUnitCircleInTheXYPlane)
{
    const KEZMathCircle circle;
    ExpectPointNear(circle.GetOrigin(), 0, 0, 0, 0);
    EXPECT_EQ(circle.GetRadius(), 1.0);
    ExpectVectorNear(circle.GetNormal(), 0, 0, 1, 0);
    ExpectVectorNear(circle.GetStartDirection(), 1, 0, 0, 0);
}

TEST(MathCircle, SettersOfOriginAndRadius)
{
    KEZMathCircle circle;
    circle.SetOrigin(KEZMathPoint(1, 2, 3));
    circle.SetRadius(2.5);
    ExpectPointNear(circle.GetOrigin(), 1, 2, 3, 0);
    EXPECT_EQ(circle.GetRadius(), 2.5);
}

TEST(MathCircle, NormalZUpStartsAtXAndRunsCounterClockwise)
{
    KEZMathCircle circle;
    circle.SetOrigin(KEZMathPoint(10, 20, 30));
    circle.SetRadius(2);
    circle.SetDirections(KEZMathVector(0, 0, 1), nullptr);
    ExpectVectorNear(circle.GetStartDirection(), 1, 0, 0, 0);
    ExpectPointNear(circle.EvalAngle(0), 12, 20, 30, PointTolerance);
    ExpectPointNear(circle.EvalAngle(pi / 2), 10, 22, 30, PointTolerance);
    ExpectPointNear(circle.EvalAngle(pi), 8, 20, 30, PointTolerance);
    ExpectPointNear(circle.EvalAngle(3 * pi / 2), 10, 18, 30, PointTolerance);
    ExpectPointNear(circle.EvalAngle(pi / 4), 10 + std::sqrt(2.0), 20 + std::sqrt(2.0), 30, PointTolerance);
}

TEST(MathCircle, NormalZDownStartsAtXAndRunsTheOtherWayInWorldTerms)
{
    KEZMathCircle circle;
    circle.SetDirections(KEZMathVector(0, 0, -1), nullptr);
    ExpectVectorNear(circle.GetStartDirection(), 1, 0, 0, VectorTolerance);
    // Counter-clockwise seen from below: from +x towards -y.
    ExpectPointNear(circle.EvalAngle(pi / 2), 0, -1, 0, PointTolerance);
}

TEST(MathCircle, NormalXStartsAtY)
{
    KEZMathCircle circle;
    circle.SetDirections(KEZMathVector(3, 0, 0), nullptr);
    ExpectVectorNear(circle.GetNormal(), 1, 0, 0, VectorTolerance);
    ExpectVectorNear(circle.GetStartDirection(), 0, 1, 0, VectorTolerance);
    ExpectPointNear(circle.EvalAngle(pi / 2), 0, 0, 1, PointTolerance);
}

TEST(MathCircle, NormalYStartsAtX)
{
    KEZMathCircle circle;
    circle.SetDirections(KEZMathVector(0, 1, 0), nullptr);
    ExpectVectorNear(circle.GetStartDirection(), 1, 0, 0, VectorTolerance);
    // (0,1,0) ^ (1,0,0) = (0,0,-1)
    ExpectPointNear(circle.EvalAngle(pi / 2), 0, 0, -1, PointTolerance);
}

TEST(MathCircle, ChosenStartIsPerpendicularAndPointsStayOnTheCircle)
{
    KEZMathCircle circle;
    circle.SetOrigin(KEZMathPoint(1, -1, 2));
    circle.SetRadius(3);
    circle.SetDirections(KEZMathVector(1, 2, 3), nullptr);
    const KEZMathVector n = circle.GetNormal();
    EXPECT_NEAR(circle.GetStartDirection() * n, 0.0, 1e-15);
    for (int i = 0; i < 16; ++i) {
        const KEZMathPoint p = circle.EvalAngle(i * pi / 8);
        EXPECT_NEAR(p.GetDistanceTo(circle.GetOrigin()), 3.0, 1e-14);
        EXPECT_NEAR((p - circle.GetOrigin()) * n, 0.0, 1e-14);
    }
}

TEST(MathCircle, AGivenStartDirectionIsUsedAfterRemovingItsNormalPart)
{
    KEZMathCircle circle;
    const KEZMathVector start(0, 2, 0);
    circle.SetDirections(KEZMathVector(0, 0, 1), &start);
    ExpectVectorNear(circle.GetStartDirection(), 0, 1, 0, VectorTolerance);
    ExpectPointNear(circle.EvalAngle(pi / 2), -1, 0, 0, PointTolerance);
    const KEZMathVector slanted(1, 0, 5);
    circle.SetDirections(KEZMathVector(0, 0, 1), &slanted);
    ExpectVectorNear(circle.GetStartDirection(), 1, 0, 0, VectorTolerance);
}

TEST(MathCircle, AStartDirectionAlongTheNormalFallsBackToTheChosenOne)
{
    KEZMathCircle circle;
    const KEZMathVector along(0, 0, -4);
    circle.SetDirections(KEZMathVector(0, 0, 1), &along);
    ExpectVectorNear(circle.GetStartDirection(), 1, 0, 0, VectorTolerance);
    const KEZMathVector null;
    circle.SetDirections(KEZMathVector(1, 0, 0), &null);
    ExpectVectorNear(circle.GetStartDirection(), 0, 1, 0, VectorTolerance);
}

TEST(MathCircle, ANormalWithoutMagnitudeThrowsAndLeavesTheCircle)
{
    KEZMathCircle circle;
    EXPECT_THROW(circle.SetDirections(KEZMathVector(), nullptr), KEZMathZeroMagnitudeVectorException);
    ExpectVectorNear(circle.GetNormal(), 0, 0, 1, 0);
    ExpectVectorNear(circle.GetStartDirection(), 1, 0, 0, 0);
}
