// Tests of KEZVisClientChangeRequest.

#include "KEZVisClientChangeRequest.h"

#include "KEZMathBoundingBox.h"
#include "KEZMathPoint.h"
#include "KEZMathVector.h"

#include <QVariant>

#include <gtest/gtest.h>

namespace {

KEZMathBoundingBox Box(double x0, double y0, double z0, double x1, double y1, double z1)
{
    return KEZMathBoundingBox(KEZMathPoint(x0, y0, z0), KEZMathPoint(x1, y1, z1));
}

} // namespace

TEST(ClientChangeRequest, NewRequestHasNoBitsAndSelectionDisabled)
{
    KEZVisClientChangeRequest request;
    EXPECT_EQ(int(request.GetChangeTypes()), 0);
    EXPECT_FALSE(request.IsSelectionEnabled());
    EXPECT_TRUE(request.GetFitBox() == KEZMathBoundingBox());
    EXPECT_FALSE(request.GetViewDirection().IsValid());
    EXPECT_FALSE(request.GetViewOrientation().IsValid());
    EXPECT_EQ(int(request.GetMouseInteraction()), 0);
    EXPECT_EQ(int(request.GetMouseSnapGeometryTypes()), 0);
}

TEST(ClientChangeRequest, EachRequestSetsItsBitAndValue)
{
    KEZVisClientChangeRequest request;
    request.RequestFit(Box(0, 0, 0, 1, 1, 1));
    EXPECT_EQ(int(request.GetChangeTypes()), 1);
    request.RequestViewDirection(KEZMathVector(0, 0, -1));
    EXPECT_EQ(int(request.GetChangeTypes()), 1 | 2);
    request.RequestViewOrientation(KEZMathVector(0, 1, 0));
    EXPECT_EQ(int(request.GetChangeTypes()), 1 | 2 | 4);
    request.RequestMouseInteraction(KEZVisEnvironment::SelectionInteraction);
    EXPECT_EQ(int(request.GetChangeTypes()), 1 | 2 | 4 | 8);
    request.RequestMouseSnapGeometryTypes(KEZVisEnvironment::PointSnapGeometry);
    EXPECT_EQ(int(request.GetChangeTypes()), 1 | 2 | 4 | 8 | 16);
    request.RequestSelectionEnabled(true);
    EXPECT_EQ(int(request.GetChangeTypes()), 1 | 2 | 4 | 8 | 16 | 32);

    EXPECT_TRUE(request.GetFitBox() == Box(0, 0, 0, 1, 1, 1));
    EXPECT_DOUBLE_EQ(request.GetViewDirection().GetZ(), -1.0);
    EXPECT_DOUBLE_EQ(request.GetViewOrientation().GetY(), 1.0);
    EXPECT_EQ(request.GetMouseInteraction(), KEZVisEnvironment::MouseInteractionFlags(KEZVisEnvironment::SelectionInteraction));
    EXPECT_EQ(request.GetMouseSnapGeometryTypes(),
              KEZVisEnvironment::MouseSnapGeometryTypes(KEZVisEnvironment::PointSnapGeometry));
    EXPECT_TRUE(request.IsSelectionEnabled());
}

TEST(ClientChangeRequest, CopiesAreIndependentAfterARequestOnOne)
{
    KEZVisClientChangeRequest original;
    original.RequestFit(Box(0, 0, 0, 1, 1, 1));
    KEZVisClientChangeRequest copy(original);
    KEZVisClientChangeRequest assigned;
    assigned = original;
    copy.RequestSelectionEnabled(true);
    copy.RequestFit(Box(0, 0, 0, 5, 5, 5));
    assigned.RequestViewDirection(KEZMathVector(1, 0, 0));
    EXPECT_EQ(int(original.GetChangeTypes()), 1);
    EXPECT_FALSE(original.IsSelectionEnabled());
    EXPECT_TRUE(original.GetFitBox() == Box(0, 0, 0, 1, 1, 1));
    EXPECT_EQ(int(copy.GetChangeTypes()), 1 | 32);
    EXPECT_TRUE(copy.GetFitBox() == Box(0, 0, 0, 5, 5, 5));
    EXPECT_EQ(int(assigned.GetChangeTypes()), 1 | 2);
}

TEST(ClientChangeRequest, SelfAssignmentKeepsTheRequest)
{
    KEZVisClientChangeRequest request;
    request.RequestSelectionEnabled(true);
    KEZVisClientChangeRequest &same = request;
    request = same;
    EXPECT_TRUE(request.IsSelectionEnabled());
    EXPECT_EQ(int(request.GetChangeTypes()), 32);
}

TEST(ClientChangeRequest, MergeOfTwoFitsTakesTheOtherBoxWithoutUnion)
{
    KEZVisClientChangeRequest a;
    a.RequestFit(Box(0, 0, 0, 1, 1, 1));
    KEZVisClientChangeRequest b;
    b.RequestFit(Box(5, 5, 5, 6, 6, 6));
    a.Merge(b);
    EXPECT_EQ(int(a.GetChangeTypes()), 1);
    EXPECT_TRUE(a.GetFitBox() == Box(5, 5, 5, 6, 6, 6));
}

TEST(ClientChangeRequest, MergeTakesTheSnapBitButKeepsItsOwnSnapTypes)
{
    KEZVisClientChangeRequest a;
    a.RequestMouseSnapGeometryTypes(KEZVisEnvironment::CurveSnapGeometry);
    KEZVisClientChangeRequest fresh;
    KEZVisClientChangeRequest b;
    b.RequestMouseSnapGeometryTypes(KEZVisEnvironment::PointSnapGeometry | KEZVisEnvironment::GridSnapGeometry);
    a.Merge(b);
    fresh.Merge(b);
    EXPECT_TRUE(a.GetChangeTypes().testFlag(KEZVisClientChangeRequest::MouseSnapGeometryTypesChange));
    EXPECT_EQ(a.GetMouseSnapGeometryTypes(),
              KEZVisEnvironment::MouseSnapGeometryTypes(KEZVisEnvironment::CurveSnapGeometry));
    EXPECT_EQ(int(fresh.GetChangeTypes()), 16);
    EXPECT_EQ(int(fresh.GetMouseSnapGeometryTypes()), 0);
}

TEST(ClientChangeRequest, MergeTakesEveryOtherWishWithItsValue)
{
    KEZVisClientChangeRequest a;
    a.RequestViewDirection(KEZMathVector(1, 0, 0));
    a.RequestMouseInteraction(KEZVisEnvironment::DragInteraction);
    KEZVisClientChangeRequest b;
    b.RequestViewDirection(KEZMathVector(0, 0, 1));
    b.RequestViewOrientation(KEZMathVector(0, 1, 0));
    b.RequestMouseInteraction(KEZVisEnvironment::SnapInteraction);
    b.RequestSelectionEnabled(true);
    a.Merge(b);
    EXPECT_EQ(int(a.GetChangeTypes()), 2 | 4 | 8 | 32);
    EXPECT_DOUBLE_EQ(a.GetViewDirection().GetZ(), 1.0);
    EXPECT_DOUBLE_EQ(a.GetViewDirection().GetX(), 0.0);
    EXPECT_DOUBLE_EQ(a.GetViewOrientation().GetY(), 1.0);
    EXPECT_EQ(a.GetMouseInteraction(), KEZVisEnvironment::MouseInteractionFlags(KEZVisEnvironment::SnapInteraction));
    EXPECT_TRUE(a.IsSelectionEnabled());
}

TEST(ClientChangeRequest, MergeLeavesWishesThatTheOtherLacks)
{
    KEZVisClientChangeRequest a;
    a.RequestFit(Box(0, 0, 0, 1, 1, 1));
    a.RequestSelectionEnabled(true);
    KEZVisClientChangeRequest b;
    b.RequestViewOrientation(KEZMathVector(0, 1, 0));
    a.Merge(b);
    EXPECT_EQ(int(a.GetChangeTypes()), 1 | 4 | 32);
    EXPECT_TRUE(a.GetFitBox() == Box(0, 0, 0, 1, 1, 1));
    EXPECT_TRUE(a.IsSelectionEnabled());
}

TEST(ClientChangeRequest, MergeDetachesFromCopies)
{
    KEZVisClientChangeRequest a;
    const KEZVisClientChangeRequest copy(a);
    KEZVisClientChangeRequest b;
    b.RequestSelectionEnabled(true);
    a.Merge(b);
    EXPECT_EQ(int(copy.GetChangeTypes()), 0);
    EXPECT_EQ(int(a.GetChangeTypes()), 32);
}

TEST(ClientChangeRequest, TravelsInAVariant)
{
    KEZVisClientChangeRequest request;
    request.RequestSelectionEnabled(true);
    const QVariant variant = QVariant::fromValue(request);
    EXPECT_TRUE(variant.value<KEZVisClientChangeRequest>().IsSelectionEnabled());
}
