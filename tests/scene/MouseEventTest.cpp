// Tests of KEZVisMouseContext and KEZVisMouseEvent.

#include "KEZVisEnvironment.h"
#include "KEZVisMouseContext.h"
#include "KEZVisMouseEvent.h"
#include "KEZVisVirtualObject.h"

#include "KEZMathPoint.h"
#include "KEZMathVector.h"

#include <QPointer>

#include <gtest/gtest.h>

#include <type_traits>

TEST(MouseEvent, DefaultEventHasActionZeroAndNoContext)
{
    KEZVisMouseEvent event;
    EXPECT_EQ(int(event.GetActionType()), 0);
    EXPECT_EQ(event.GetContext(), nullptr);
}

TEST(MouseEvent, ConstructorAndSettersStoreActionAndContext)
{
    KEZVisMouseContext first;
    KEZVisMouseContext second;
    KEZVisMouseEvent event(KEZVisMouseEvent::MouseClicked, &first);
    EXPECT_EQ(event.GetActionType(), KEZVisMouseEvent::MouseClicked);
    EXPECT_EQ(event.GetContext(), &first);
    event.SetActionType(KEZVisMouseEvent::MouseReleased);
    event.SetContext(&second);
    EXPECT_EQ(event.GetActionType(), KEZVisMouseEvent::MouseReleased);
    EXPECT_EQ(event.GetContext(), &second);
    event.SetContext(nullptr);
    EXPECT_EQ(event.GetContext(), nullptr);
}

TEST(MouseEvent, ActionValuesAreThoseOfTheFlagEnumeration)
{
    EXPECT_EQ(int(KEZVisMouseEvent::MouseMoved), 1);
    EXPECT_EQ(int(KEZVisMouseEvent::MouseClicked), 2);
    EXPECT_EQ(int(KEZVisMouseEvent::MouseDoubleClicked), 4);
    EXPECT_EQ(int(KEZVisMouseEvent::MouseReleased), 32);
    EXPECT_EQ(int(KEZVisMouseEvent::MousePressed), 64);
    EXPECT_EQ(sizeof(KEZVisMouseEvent::MouseActionFlags), 4u);
    EXPECT_EQ(sizeof(KEZVisMouseContext::SnapTypes), 4u);
    EXPECT_EQ(sizeof(KEZVisMouseContext::NativeGeometrySelectionType), 4u);
    EXPECT_EQ(sizeof(KEZVisEnvironment::MouseInteractionFlags), 4u);
    EXPECT_EQ(sizeof(KEZVisEnvironment::MouseSnapGeometryTypes), 4u);
}

TEST(MouseEvent, DestroyingTheEventLeavesTheContextAlive)
{
    KEZVisMouseContext context;
    QPointer<KEZVisMouseContext> watch(&context);
    {
        KEZVisMouseEvent event(KEZVisMouseEvent::MouseMoved, &context);
    }
    EXPECT_FALSE(watch.isNull());
}

TEST(MouseEvent, EnvironmentDeliversTheEventDirectlyByConstReference)
{
    KEZVisEnvironment environment;
    KEZVisMouseContext context;
    KEZVisMouseEvent event(KEZVisMouseEvent::MousePressed, &context);
    const KEZVisMouseEvent *received = nullptr;
    KEZVisMouseEvent::MouseActionFlag action = KEZVisMouseEvent::MouseMoved;
    QObject::connect(&environment, &KEZVisEnvironment::MouseEvent, &environment,
                     [&](const KEZVisMouseEvent &e) {
                         received = &e;
                         action = e.GetActionType();
                     });
    emit environment.MouseEvent(event);
    EXPECT_EQ(received, &event);
    EXPECT_EQ(action, KEZVisMouseEvent::MousePressed);
}

TEST(MouseContext, NewContextHoldsInitialValues)
{
    KEZVisMouseContext context;
    EXPECT_EQ(int(context.GetSnapType()), 0);
    EXPECT_FALSE(context.GetSnapAxis().IsValid());
    EXPECT_TRUE(context.GetSnapPoint() == KEZMathPoint());
    EXPECT_TRUE(context.GetMousePoint() == KEZMathPoint());
    EXPECT_FALSE(context.GetViewDirection().IsValid());
    EXPECT_EQ(context.GetVisObject(), nullptr);
    EXPECT_EQ(context.GetGeometrySelectionType(), KEZVisMouseContext::NoGeometrySelection);
    EXPECT_EQ(int(context.GetGeometrySelectionType()), 0);
    EXPECT_TRUE(context.GetSelectedAxises().isEmpty());
    EXPECT_TRUE(context.GetSelectedPoints().isEmpty());
}

TEST(MouseContext, SettersStoreTheirValues)
{
    KEZVisMouseContext context;
    KEZVisVirtualObject object(nullptr);
    context.SetSnapType(KEZVisMouseContext::SnapToPoint | KEZVisMouseContext::SnapToAxis);
    context.SetSnapAxis(KEZMathVector(0, 0, 1));
    context.SetSnapPoint(KEZMathPoint(1, 2, 3));
    context.SetMousePoint(KEZMathPoint(4, 5, 6));
    context.SetViewDirection(KEZMathVector(0, 1, 0));
    context.SetVisObject(&object);
    context.SetGeometrySelectionType(KEZVisMouseContext::EdgeGeometrySelection);
    context.SetSelectedAxises({KEZMathVector(1, 0, 0)});
    EXPECT_EQ(int(context.GetSnapType()), 3);
    EXPECT_DOUBLE_EQ(context.GetSnapAxis().GetZ(), 1.0);
    EXPECT_TRUE(context.GetSnapPoint() == KEZMathPoint(1, 2, 3));
    EXPECT_TRUE(context.GetMousePoint() == KEZMathPoint(4, 5, 6));
    EXPECT_DOUBLE_EQ(context.GetViewDirection().GetY(), 1.0);
    EXPECT_EQ(context.GetVisObject(), &object);
    EXPECT_EQ(context.GetGeometrySelectionType(), KEZVisMouseContext::EdgeGeometrySelection);
    ASSERT_EQ(context.GetSelectedAxises().size(), 1);
    EXPECT_DOUBLE_EQ(context.GetSelectedAxises().first().GetX(), 1.0);
}

TEST(MouseContext, SetSnapPointAloneLeavesTheSnapTypeAtZero)
{
    KEZVisMouseContext context;
    context.SetSnapPoint(KEZMathPoint(1, 1, 1));
    context.SetSnapAxis(KEZMathVector(1, 0, 0));
    EXPECT_EQ(int(context.GetSnapType()), 0);
}

TEST(MouseContext, SetSelectedPointsSharesTheListAndACallersLaterChangeDetaches)
{
    KEZVisMouseContext context;
    QList<KEZMathPoint> points{KEZMathPoint(1, 0, 0), KEZMathPoint(2, 0, 0)};
    context.SetSelectedPoints(points);
    EXPECT_EQ(context.GetSelectedPoints().constData(), points.constData());  // shared
    points.append(KEZMathPoint(3, 0, 0));
    points[0] = KEZMathPoint(9, 9, 9);
    const QList<KEZMathPoint> stored = context.GetSelectedPoints();
    ASSERT_EQ(stored.size(), 2);
    EXPECT_TRUE(stored.at(0) == KEZMathPoint(1, 0, 0));
    EXPECT_TRUE(stored.at(1) == KEZMathPoint(2, 0, 0));
}

TEST(MouseContext, DestroyingTheContextAfterItsEventLeavesTheObjectAlive)
{
    KEZVisVirtualObject object(nullptr);
    QPointer<KEZVisVirtualObject> watch(&object);
    auto *context = new KEZVisMouseContext;
    context->SetVisObject(&object);
    auto *event = new KEZVisMouseEvent(KEZVisMouseEvent::MouseMoved, context);
    delete event;
    delete context;
    EXPECT_FALSE(watch.isNull());
    EXPECT_TRUE(object.IsVisible());
}

TEST(MouseContext, RecordsAreNotCopyable)
{
    EXPECT_FALSE(std::is_copy_constructible_v<KEZVisMouseContext>);
    EXPECT_FALSE(std::is_copy_constructible_v<KEZVisMouseEvent>);
}
