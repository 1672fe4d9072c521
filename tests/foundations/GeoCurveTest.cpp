// KEZGeoCurve as a base for curves written outside the library: locations
// and ranges work through its interface alone.

#include "KEZGeoCurve.h"
#include "KEZGeoLocationOnCurve.h"
#include "KEZGeoRangeOfCurve.h"

#include "KEZSysOutOfBoundsException.h"

#include <QPointer>

#include <gtest/gtest.h>

namespace {

// A closed triangle whose vertices come from a formula, not from a list:
// vertex i is (i, i * i, 1).
class FormulaTriangle : public KEZGeoCurve
{
public:
    explicit FormulaTriangle(QObject *parent = nullptr)
        : KEZGeoCurve(parent)
    {
    }

    KEZGeoLocationOnCurve GetLocation(int vertexIndex) const override
    {
        return KEZGeoLocationOnCurve(this, vertexIndex, 0.0);
    }
    KEZMathBoundingBox GetBoundingBox() const override
    {
        KEZMathBoundingBox box(GetVertex(0));
        box.Expand(GetVertex(1));
        box.Expand(GetVertex(2));
        return box;
    }
    int GetNumVertices() const override { return 3; }
    KEZMathPoint GetVertex(int vertexIndex) const override
    {
        return KEZMathPoint(vertexIndex, vertexIndex * vertexIndex, 1.0);
    }
    int GetNumSegments() const override { return 3; }
    bool IsClosed() const override { return true; }
};

} // namespace

TEST(GeoCurve, LocationOnACurveOfAnotherKindInterpolatesBetweenItsVertices)
{
    const FormulaTriangle curve;
    // Segment 1 runs from (1, 1, 1) to (2, 4, 1).
    const KEZMathPoint point = KEZGeoLocationOnCurve(&curve, 1, 0.5).GetMathPoint();
    EXPECT_EQ(point.GetX(), 1.5);
    EXPECT_EQ(point.GetY(), 2.5);
    EXPECT_EQ(point.GetZ(), 1.0);
}

TEST(GeoCurve, LastSegmentOfACurveOfAnotherKindEndsOnItsFirstVertex)
{
    const FormulaTriangle curve;
    // Segment 2 runs from (2, 4, 1) back to (0, 0, 1).
    const KEZMathPoint point = KEZGeoLocationOnCurve(&curve, 2, 0.25).GetMathPoint();
    EXPECT_EQ(point.GetX(), 1.5);
    EXPECT_EQ(point.GetY(), 3.0);
    EXPECT_EQ(point.GetZ(), 1.0);
}

TEST(GeoCurve, SegmentsAreCheckedAgainstTheCountThatTheCurveGives)
{
    const FormulaTriangle curve;
    EXPECT_NO_THROW(KEZGeoLocationOnCurve(&curve, 2, 1.0));
    EXPECT_THROW(KEZGeoLocationOnCurve(&curve, 3, 0.0), KEZSysOutOfBoundsException);
}

TEST(GeoCurve, CurveOfAnotherKindCountsReferencesAndCanBeWatched)
{
    auto *curve = new FormulaTriangle;
    const QPointer<const KEZGeoCurve> watch(curve);
    const KEZGeoRangeOfCurve range(curve->GetLocation(0), curve->GetLocation(2));
    curve->AddReference();
    EXPECT_EQ(curve->GetReferenceCount(), 1);
    EXPECT_EQ(range.GetCurve(), curve);
    delete curve;
    EXPECT_TRUE(watch.isNull());
    EXPECT_FALSE(range.IsValid());
}
