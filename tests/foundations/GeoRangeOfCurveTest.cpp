// Ranges of a curve: validity, the curve they lie on and the two locations.

#include "KEZGeoComboCurve.h"
#include "KEZGeoLocationOnCurve.h"
#include "KEZGeoRangeOfCurve.h"

#include "KEZTestHelpers.h"

#include <gtest/gtest.h>

using namespace KEZTest;

namespace {

KEZMathSetOfPoints Square()
{
    return Points({KEZMathPoint(0.0, 0.0, 0.0), KEZMathPoint(1.0, 0.0, 0.0),
                   KEZMathPoint(1.0, 1.0, 0.0), KEZMathPoint(0.0, 1.0, 0.0)});
}

void ExpectLocation(const KEZGeoLocationOnCurve &actual, const KEZGeoCurve *curve, int segment,
                    double parameter)
{
    EXPECT_EQ(actual.GetCurve(), curve);
    EXPECT_EQ(actual.GetSegment(), segment);
    EXPECT_EQ(actual.GetParameter(), parameter);
}

} // namespace

TEST(GeoRangeOfCurve, DefaultRangeIsInvalidAndLiesOnNoCurve)
{
    const KEZGeoRangeOfCurve range;
    EXPECT_FALSE(range.IsValid());
    EXPECT_EQ(range.GetCurve(), nullptr);
    ExpectLocation(range.GetStartLocation(), nullptr, 0, 0.0);
    ExpectLocation(range.GetEndLocation(), nullptr, 0, 0.0);
}

TEST(GeoRangeOfCurve, RangeBetweenTwoLocationsOfOneCurveIsValidAndLiesOnIt)
{
    const KEZGeoComboCurve curve(Square(), false);
    const KEZGeoRangeOfCurve range(KEZGeoLocationOnCurve(&curve, 0, 0.5), KEZGeoLocationOnCurve(&curve, 2, 0.25));
    EXPECT_TRUE(range.IsValid());
    EXPECT_EQ(range.GetCurve(), &curve);
    ExpectLocation(range.GetStartLocation(), &curve, 0, 0.5);
    ExpectLocation(range.GetEndLocation(), &curve, 2, 0.25);
}

TEST(GeoRangeOfCurve, GetLocationsGivesStartThenEnd)
{
    const KEZGeoComboCurve curve(Square(), false);
    const KEZGeoRangeOfCurve range(curve.GetLocation(1), curve.GetLocation(3));
    KEZGeoLocationOnCurve start(&curve, 2, 0.75);
    KEZGeoLocationOnCurve end;
    range.GetLocations(start, end);
    ExpectLocation(start, &curve, 1, 0.0);
    ExpectLocation(end, &curve, 2, 1.0);
}

TEST(GeoRangeOfCurve, RangeFromOneLocationToItselfIsValid)
{
    const KEZGeoComboCurve curve(Square(), true);
    const KEZGeoRangeOfCurve range(curve.GetLocation(0), curve.GetLocation(0));
    EXPECT_TRUE(range.IsValid());
    EXPECT_TRUE(range.GetStartLocation() == range.GetEndLocation());
}

TEST(GeoRangeOfCurve, RangeWithALocationOnNoCurveIsInvalid)
{
    const KEZGeoComboCurve curve(Square(), false);
    const KEZGeoRangeOfCurve noStart(KEZGeoLocationOnCurve(), curve.GetLocation(2));
    const KEZGeoRangeOfCurve noEnd(curve.GetLocation(0), KEZGeoLocationOnCurve(nullptr, 1, 0.5));
    EXPECT_FALSE(noStart.IsValid());
    EXPECT_EQ(noStart.GetCurve(), nullptr);
    EXPECT_FALSE(noEnd.IsValid());
    EXPECT_EQ(noEnd.GetCurve(), nullptr);
    // The locations are kept as they were given all the same.
    ExpectLocation(noStart.GetEndLocation(), &curve, 2, 0.0);
    ExpectLocation(noEnd.GetEndLocation(), nullptr, 1, 0.5);
}

TEST(GeoRangeOfCurve, RangeAcrossTwoCurvesIsInvalid)
{
    const KEZGeoComboCurve curve(Square(), false);
    const KEZGeoComboCurve twin(Square(), false);
    const KEZGeoRangeOfCurve range(curve.GetLocation(0), twin.GetLocation(2));
    EXPECT_FALSE(range.IsValid());
    EXPECT_EQ(range.GetCurve(), nullptr);
}

TEST(GeoRangeOfCurve, StartBeyondTheEndIsKeptAsGivenAndStaysValid)
{
    // On a closed curve such a range runs across the seam.
    const KEZGeoComboCurve curve(Square(), true);
    const KEZGeoRangeOfCurve range(KEZGeoLocationOnCurve(&curve, 3, 0.5), KEZGeoLocationOnCurve(&curve, 1, 0.5));
    EXPECT_TRUE(range.IsValid());
    EXPECT_TRUE(range.GetStartLocation() > range.GetEndLocation());
    ExpectLocation(range.GetStartLocation(), &curve, 3, 0.5);
    ExpectLocation(range.GetEndLocation(), &curve, 1, 0.5);
}

TEST(GeoRangeOfCurve, RangeBecomesInvalidWhenItsCurveIsDeleted)
{
    auto *curve = new KEZGeoComboCurve(Square(), false);
    const KEZGeoRangeOfCurve range(curve->GetLocation(0), curve->GetLocation(3));
    EXPECT_TRUE(range.IsValid());
    delete curve;
    EXPECT_FALSE(range.IsValid());
    EXPECT_EQ(range.GetCurve(), nullptr);
    ExpectLocation(range.GetEndLocation(), nullptr, 2, 1.0);
}

TEST(GeoRangeOfCurve, CopyAndAssignmentCarryBothLocations)
{
    const KEZGeoComboCurve curve(Square(), false);
    const KEZGeoRangeOfCurve original(KEZGeoLocationOnCurve(&curve, 0, 0.25), KEZGeoLocationOnCurve(&curve, 1, 0.75));
    const KEZGeoRangeOfCurve copy(original);
    EXPECT_TRUE(copy.IsValid());
    ExpectLocation(copy.GetStartLocation(), &curve, 0, 0.25);
    ExpectLocation(copy.GetEndLocation(), &curve, 1, 0.75);

    KEZGeoRangeOfCurve assigned;
    EXPECT_FALSE(assigned.IsValid());
    assigned = original;
    EXPECT_TRUE(assigned.IsValid());
    EXPECT_EQ(assigned.GetCurve(), &curve);
    ExpectLocation(assigned.GetStartLocation(), &curve, 0, 0.25);
    ExpectLocation(assigned.GetEndLocation(), &curve, 1, 0.75);

    assigned = KEZGeoRangeOfCurve();
    EXPECT_FALSE(assigned.IsValid());
    EXPECT_TRUE(original.IsValid());
}
