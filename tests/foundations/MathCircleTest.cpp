// Tests of KEZMathCircle: defaults, the chosen start direction and the sense of EvalAngle.

#include <KEZMathCircle.h>
#include <KEZMathZeroMagnitudeVectorException.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

const double pi = std::acos(-1.0);

void expectVector(const KEZMathVector &actual, double x, double y, double z, double tolerance = 1e-15)
{
    EXPECT_NEAR(actual.GetX(), x, tolerance);
    EXPECT_NEAR(actual.GetY(), y, tolerance);
    EXPECT_NEAR(actual.GetZ(), z, tolerance);
}

void expectPoint(const KEZMathPoint &actual, double x, double y, double z, double tolerance = 1e-14)
{
    EXPECT_NEAR(actual.GetX(), x, tolerance);
    EXPECT_NEAR(actual.GetY(), y, tolerance);
    EXPECT_NEAR(actual.GetZ(), z, tolerance);
}

} // namespace

TEST(MathCircle, DefaultIsTheUnitCircleInTheXYPlane)
{
    const KEZMathCircle circle;
    expectPoint(circle.GetOrigin(), 0, 0, 0, 0);
    EXPECT_EQ(circle.GetRadius(), 1.0);
    expectVector(circle.GetNormal(), 0, 0, 1, 0);
    expectVector(circle.GetStartDirection(), 1, 0, 0, 0);
}

TEST(MathCircle, SettersOfOriginAndRadius)
{
    KEZMathCircle circle;
    circle.SetOrigin(KEZMathPoint(1, 2, 3));
    circle.SetRadius(2.5);
    expectPoint(circle.GetOrigin(), 1, 2, 3, 0);
    EXPECT_EQ(circle.GetRadius(), 2.5);
}

TEST(MathCircle, NormalZUpStartsAtXAndRunsCounterClockwise)
{
    KEZMathCircle circle;
    circle.SetOrigin(KEZMathPoint(10, 20, 30));
    circle.SetRadius(2);
    circle.SetDirections(KEZMathVector(0, 0, 1), nullptr);
    expectVector(circle.GetStartDirection(), 1, 0, 0, 0);
    expectPoint(circle.EvalAngle(0), 12, 20, 30);
    expectPoint(circle.EvalAngle(pi / 2), 10, 22, 30);
    expectPoint(circle.EvalAngle(pi), 8, 20, 30);
    expectPoint(circle.EvalAngle(3 * pi / 2), 10, 18, 30);
    expectPoint(circle.EvalAngle(pi / 4), 10 + std::sqrt(2.0), 20 + std::sqrt(2.0), 30);
}

TEST(MathCircle, NormalZDownStartsAtXAndRunsTheOtherWayInWorldTerms)
{
    KEZMathCircle circle;
    circle.SetDirections(KEZMathVector(0, 0, -1), nullptr);
    expectVector(circle.GetStartDirection(), 1, 0, 0);
    // Counter-clockwise seen from below: from +x towards -y.
    expectPoint(circle.EvalAngle(pi / 2), 0, -1, 0);
}

TEST(MathCircle, NormalXStartsAtY)
{
    KEZMathCircle circle;
    circle.SetDirections(KEZMathVector(3, 0, 0), nullptr);
    expectVector(circle.GetNormal(), 1, 0, 0);
    expectVector(circle.GetStartDirection(), 0, 1, 0);
    expectPoint(circle.EvalAngle(pi / 2), 0, 0, 1);
}

TEST(MathCircle, NormalYStartsAtX)
{
    KEZMathCircle circle;
    circle.SetDirections(KEZMathVector(0, 1, 0), nullptr);
    expectVector(circle.GetStartDirection(), 1, 0, 0);
    // (0,1,0) ^ (1,0,0) = (0,0,-1)
    expectPoint(circle.EvalAngle(pi / 2), 0, 0, -1);
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
    expectVector(circle.GetStartDirection(), 0, 1, 0);
    expectPoint(circle.EvalAngle(pi / 2), -1, 0, 0);
    const KEZMathVector slanted(1, 0, 5);
    circle.SetDirections(KEZMathVector(0, 0, 1), &slanted);
    expectVector(circle.GetStartDirection(), 1, 0, 0);
}

TEST(MathCircle, AStartDirectionAlongTheNormalFallsBackToTheChosenOne)
{
    KEZMathCircle circle;
    const KEZMathVector along(0, 0, -4);
    circle.SetDirections(KEZMathVector(0, 0, 1), &along);
    expectVector(circle.GetStartDirection(), 1, 0, 0);
    const KEZMathVector null;
    circle.SetDirections(KEZMathVector(1, 0, 0), &null);
    expectVector(circle.GetStartDirection(), 0, 1, 0);
}

TEST(MathCircle, ANormalWithoutMagnitudeThrowsAndLeavesTheCircle)
{
    KEZMathCircle circle;
    EXPECT_THROW(circle.SetDirections(KEZMathVector(), nullptr), KEZMathZeroMagnitudeVectorException);
    expectVector(circle.GetNormal(), 0, 0, 1, 0);
    expectVector(circle.GetStartDirection(), 1, 0, 0, 0);
}
