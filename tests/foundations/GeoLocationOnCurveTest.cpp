// Locations on a curve: what they keep, where they are, how they compare,
// what they refuse and how they outlive their curve.

#include "KEZGeoComboCurve.h"
#include "KEZGeoLocationOnCurve.h"

#include "KEZSysOutOfBoundsException.h"

#include "KEZTestHelpers.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>

using namespace KEZTest;

namespace {

// Vertices chosen so that a quarter of each step is exact in binary.
KEZMathSetOfPoints Zigzag()
{
    return Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(4.0, 8.0, -2.0),
                   KEZMathPoint(8.0, 0.0, 2.0), KEZMathPoint(12.0, 8.0, 0.0)});
}

} // namespace

TEST(GeoLocationOnCurve, DefaultLocationLiesOnNoCurveAtTheStartOfSegmentZero)
{
    const KEZGeoLocationOnCurve location;
    EXPECT_EQ(location.GetCurve(), nullptr);
    EXPECT_EQ(location.GetSegment(), 0);
    EXPECT_EQ(location.GetParameter(), 0.0);
    EXPECT_EQ(location.GetEndPoint(), -1);
    ExpectPoint(location.GetMathPoint(), 0.0, 0.0, 0.0);
}

TEST(GeoLocationOnCurve, LocationKeepsItsCurveSegmentAndParameter)
{
    const KEZGeoComboCurve curve(Zigzag(), false);
    const KEZGeoLocationOnCurve location(&curve, 2, 0.375);
    EXPECT_EQ(location.GetCurve(), &curve);
    EXPECT_EQ(location.GetSegment(), 2);
    EXPECT_EQ(location.GetParameter(), 0.375);
}

TEST(GeoLocationOnCurve, EndPointIsMinusOneAtTheStartOfTheSegment)
{
    const KEZGeoComboCurve curve(Zigzag(), false);
    EXPECT_EQ(KEZGeoLocationOnCurve(&curve, 1, 0.0).GetEndPoint(), -1);
}

TEST(GeoLocationOnCurve, EndPointIsOneAtTheEndOfTheSegment)
{
    const KEZGeoComboCurve curve(Zigzag(), false);
    EXPECT_EQ(KEZGeoLocationOnCurve(&curve, 1, 1.0).GetEndPoint(), 1);
}

TEST(GeoLocationOnCurve, EndPointIsZeroAnywhereInsideTheSegment)
{
    const KEZGeoComboCurve curve(Zigzag(), false);
    for (double parameter : {1e-300, 0.25, 0.5, 1.0 - 1e-16}) {
        SCOPED_TRACE(parameter);
        EXPECT_EQ(KEZGeoLocationOnCurve(&curve, 1, parameter).GetEndPoint(), 0);
    }
}

TEST(GeoLocationOnCurve, MathPointInterpolatesLinearlyAlongTheSegment)
{
    const KEZGeoComboCurve curve(Zigzag(), false);
    // Segment 0 runs from (0, 0, 0) to (4, 8, -2).
    ExpectPoint(KEZGeoLocationOnCurve(&curve, 0, 0.25).GetMathPoint(), 1.0, 2.0, -0.5);
    ExpectPoint(KEZGeoLocationOnCurve(&curve, 0, 0.5).GetMathPoint(), 2.0, 4.0, -1.0);
    // Segment 1 runs from (4, 8, -2) to (8, 0, 2).
    ExpectPoint(KEZGeoLocationOnCurve(&curve, 1, 0.75).GetMathPoint(), 7.0, 2.0, 1.0);
    // Segment 2 runs from (8, 0, 2) to (12, 8, 0).
    ExpectPoint(KEZGeoLocationOnCurve(&curve, 2, 0.5).GetMathPoint(), 10.0, 4.0, 1.0);
}

TEST(GeoLocationOnCurve, MathPointIsExactlyTheVertexAtEitherEndOfTheSegment)
{
    // Coordinates chosen so that a + 1 * (b - a) misses b by a rounding step
    // in each of x, y and z: 0.7 + (0.1 - 0.7) gives 0.09999999999999998.
    const KEZGeoComboCurve curve(Points({KEZMathPoint(0.7, -1.3, 0.9), KEZMathPoint(0.1, 0.2, 0.3)}), false);
    ExpectPoint(KEZGeoLocationOnCurve(&curve, 0, 0.0).GetMathPoint(), 0.7, -1.3, 0.9);
    ExpectPoint(KEZGeoLocationOnCurve(&curve, 0, 1.0).GetMathPoint(), 0.1, 0.2, 0.3);
}

TEST(GeoLocationOnCurve, ClosingSegmentOfAClosedCurveRunsBackToTheFirstVertex)
{
    const KEZGeoComboCurve curve(Zigzag(), true);
    // Segment 3 runs from (12, 8, 0) back to (0, 0, 0).
    ExpectPoint(KEZGeoLocationOnCurve(&curve, 3, 0.25).GetMathPoint(), 9.0, 6.0, 0.0);
    ExpectPoint(KEZGeoLocationOnCurve(&curve, 3, 1.0).GetMathPoint(), 0.0, 0.0, 0.0);
}

TEST(GeoLocationOnCurve, LocationsWithTheSameCurveSegmentAndParameterAreEqual)
{
    const KEZGeoComboCurve curve(Zigzag(), false);
    const KEZGeoLocationOnCurve a(&curve, 1, 0.5);
    const KEZGeoLocationOnCurve b(&curve, 1, 0.5);
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a != b);
    EXPECT_TRUE(KEZGeoLocationOnCurve() == KEZGeoLocationOnCurve());
}

TEST(GeoLocationOnCurve, LocationsDifferingInCurveSegmentOrParameterAreNotEqual)
{
    const KEZGeoComboCurve curve(Zigzag(), false);
    const KEZGeoComboCurve twin(Zigzag(), false);
    const KEZGeoLocationOnCurve location(&curve, 1, 0.5);
    EXPECT_FALSE(location == KEZGeoLocationOnCurve(&twin, 1, 0.5));
    EXPECT_FALSE(location == KEZGeoLocationOnCurve(&curve, 2, 0.5));
    EXPECT_FALSE(location == KEZGeoLocationOnCurve(&curve, 1, 0.5000001));
    EXPECT_FALSE(location == KEZGeoLocationOnCurve(nullptr, 1, 0.5));
    EXPECT_TRUE(location != KEZGeoLocationOnCurve(&twin, 1, 0.5));
}

TEST(GeoLocationOnCurve, EndOfOneSegmentAndStartOfTheNextAreNotEqual)
{
    // The same point in space, but two different locations.
    const KEZGeoComboCurve curve(Zigzag(), false);
    const KEZGeoLocationOnCurve end(&curve, 0, 1.0);
    const KEZGeoLocationOnCurve start(&curve, 1, 0.0);
    ExpectPoint(end.GetMathPoint(), 4.0, 8.0, -2.0);
    ExpectPoint(start.GetMathPoint(), 4.0, 8.0, -2.0);
    EXPECT_FALSE(end == start);
    EXPECT_TRUE(start > end);
}

TEST(GeoLocationOnCurve, GreaterSegmentComesLaterWhateverTheParameters)
{
    const KEZGeoComboCurve curve(Zigzag(), false);
    const KEZGeoLocationOnCurve early(&curve, 1, 0.9);
    const KEZGeoLocationOnCurve late(&curve, 2, 0.1);
    EXPECT_TRUE(late > early);
    EXPECT_FALSE(early > late);
}

TEST(GeoLocationOnCurve, OnTheSameSegmentTheGreaterParameterComesLater)
{
    const KEZGeoComboCurve curve(Zigzag(), false);
    const KEZGeoLocationOnCurve early(&curve, 1, 0.4);
    const KEZGeoLocationOnCurve late(&curve, 1, 0.6);
    EXPECT_TRUE(late > early);
    EXPECT_FALSE(early > late);
}

TEST(GeoLocationOnCurve, EqualLocationsAreNotGreaterThanEachOther)
{
    const KEZGeoComboCurve curve(Zigzag(), false);
    const KEZGeoLocationOnCurve a(&curve, 2, 0.5);
    const KEZGeoLocationOnCurve b(&curve, 2, 0.5);
    EXPECT_FALSE(a > b);
    EXPECT_FALSE(b > a);
}

TEST(GeoLocationOnCurve, OrderIgnoresTheCurve)
{
    const KEZGeoComboCurve curve(Zigzag(), false);
    const KEZGeoComboCurve other(Zigzag(), false);
    EXPECT_TRUE(KEZGeoLocationOnCurve(&curve, 2, 0.0) > KEZGeoLocationOnCurve(&other, 1, 0.5));
    EXPECT_TRUE(KEZGeoLocationOnCurve(&other, 2, 0.0) > KEZGeoLocationOnCurve(&curve, 1, 0.5));
    EXPECT_FALSE(KEZGeoLocationOnCurve(&other, 1, 0.5) > KEZGeoLocationOnCurve(&curve, 1, 0.5));
}

TEST(GeoLocationOnCurve, ParameterOutsideZeroToOneIsRefused)
{
    const KEZGeoComboCurve curve(Zigzag(), false);
    for (double parameter : {-0.1, -1e-300, 1.0 + 1e-15, 2.0}) {
        SCOPED_TRACE(parameter);
        const auto exception = OutOfBoundsThrownBy([&] { KEZGeoLocationOnCurve(&curve, 0, parameter); });
        ASSERT_TRUE(exception.has_value());
        EXPECT_EQ(exception->GetValue(), QVariant(parameter));
        EXPECT_EQ(exception->GetLowerLimit(), QVariant(0.0));
        EXPECT_EQ(exception->GetUpperLimit(), QVariant(1.0));
        EXPECT_TRUE(exception->IsLowerLimitIncluded());
        EXPECT_TRUE(exception->IsUpperLimitIncluded());
    }
}

TEST(GeoLocationOnCurve, NotANumberAsParameterIsRefused)
{
    const KEZGeoComboCurve curve(Zigzag(), false);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_THROW(KEZGeoLocationOnCurve(&curve, 0, nan), KEZSysOutOfBoundsException);
    EXPECT_THROW(KEZGeoLocationOnCurve(nullptr, 0, nan), KEZSysOutOfBoundsException);
}

TEST(GeoLocationOnCurve, SegmentOutsideTheCurveIsRefused)
{
    const KEZGeoComboCurve open(Zigzag(), false);
    for (int segment : {-1, 3}) {
        SCOPED_TRACE(segment);
        const auto exception = OutOfBoundsThrownBy([&] { KEZGeoLocationOnCurve(&open, segment, 0.5); });
        ASSERT_TRUE(exception.has_value());
        EXPECT_EQ(exception->GetValue(), QVariant(segment));
        EXPECT_EQ(exception->GetLowerLimit(), QVariant(0));
        EXPECT_EQ(exception->GetUpperLimit(), QVariant(2));
    }
}

TEST(GeoLocationOnCurve, ClosingSegmentExistsOnlyOnAClosedCurve)
{
    const KEZGeoComboCurve open(Zigzag(), false);
    const KEZGeoComboCurve closed(Zigzag(), true);
    EXPECT_THROW(KEZGeoLocationOnCurve(&open, 3, 0.0), KEZSysOutOfBoundsException);
    EXPECT_EQ(KEZGeoLocationOnCurve(&closed, 3, 0.0).GetSegment(), 3);
    EXPECT_THROW(KEZGeoLocationOnCurve(&closed, 4, 0.0), KEZSysOutOfBoundsException);
}

TEST(GeoLocationOnCurve, WithoutACurveAnySegmentIsKeptAndThePointIsTheOrigin)
{
    const KEZGeoLocationOnCurve location(nullptr, 7, 0.5);
    EXPECT_EQ(location.GetCurve(), nullptr);
    EXPECT_EQ(location.GetSegment(), 7);
    EXPECT_EQ(location.GetParameter(), 0.5);
    EXPECT_EQ(location.GetEndPoint(), 0);
    ExpectPoint(location.GetMathPoint(), 0.0, 0.0, 0.0);
}

TEST(GeoLocationOnCurve, LocationNoticesThatItsCurveWasDeleted)
{
    auto *curve = new KEZGeoComboCurve(Zigzag(), false);
    const KEZGeoLocationOnCurve location(curve, 1, 0.5);
    ExpectPoint(location.GetMathPoint(), 6.0, 4.0, 0.0);
    delete curve;
    EXPECT_EQ(location.GetCurve(), nullptr);
    ExpectPoint(location.GetMathPoint(), 0.0, 0.0, 0.0);
    EXPECT_EQ(location.GetSegment(), 1);
    EXPECT_EQ(location.GetParameter(), 0.5);
}

TEST(GeoLocationOnCurve, CopiesAndAssignmentsCarryTheWholeLocation)
{
    const KEZGeoComboCurve curve(Zigzag(), true);
    const KEZGeoLocationOnCurve original(&curve, 3, 0.25);
    const KEZGeoLocationOnCurve copy(original);
    EXPECT_TRUE(copy == original);
    EXPECT_EQ(copy.GetCurve(), &curve);
    EXPECT_EQ(copy.GetSegment(), 3);
    EXPECT_EQ(copy.GetParameter(), 0.25);

    KEZGeoLocationOnCurve assigned;
    assigned = original;
    EXPECT_TRUE(assigned == original);
    assigned = KEZGeoLocationOnCurve();
    EXPECT_EQ(assigned.GetCurve(), nullptr);
    EXPECT_EQ(original.GetCurve(), &curve);
    EXPECT_EQ(original.GetSegment(), 3);
}
