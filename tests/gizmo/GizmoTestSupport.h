#ifndef GIZMOTESTSUPPORT_H
#define GIZMOTESTSUPPORT_H

// A scene with a gizmo and a recording client, and a viewer's way of reporting
// mouse activity to the environment.

#include "SceneTestSupport.h"

#include "KEZVisGizmo.h"
#include "KEZVisMouseContext.h"
#include "KEZVisMouseEvent.h"

#include "KEZMathAxis.h"
#include "KEZMathPoint.h"
#include "KEZMathVector.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <memory>

namespace GizmoTest {

using SceneTest::RecordingClient;
using SceneTest::SceneLog;

inline const char *PartNames[8] = {"none", "sphere", "shaft1", "shaft2", "shaft3", "tip1", "tip2", "tip3"};

struct Mouse {
    KEZMathPoint point;
    KEZMathVector view = KEZMathVector(0.0, 0.0, 1.0);
    int snapType = 0;
    KEZMathPoint snapPoint;
    KEZMathVector snapAxis;
};

class GizmoScene : public ::testing::Test
{
protected:
    void SetUp() override
    {
        environment = std::make_unique<KEZVisEnvironment>();
        environment->setObjectName("env");
        client = std::make_unique<RecordingClient>(&log);
        client->SetEnvironment(environment.get());
        gizmo = std::make_unique<KEZVisGizmo>(environment.get());
        const QList<KEZVisVirtualObject *> objects = environment->GetVirtualObjects();
        // The parts are added in the order of their numbers.
        for (int part = 1; part <= 7; ++part) {
            parts[part] = objects.at(part - 1);
            parts[part]->setObjectName(PartNames[part]);
        }
        spy = std::make_unique<QSignalSpy>(gizmo.get(), &KEZVisGizmo::PositionChanged);
        log.Clear();
    }

    void TearDown() override
    {
        gizmo.reset();
        client.reset();
        environment.reset();
        // The parts outlive the gizmo, unowned.
        for (int part = 1; part <= 7; ++part)
            delete parts[part].data();
    }

    void Send(KEZVisMouseEvent::MouseActionFlag action, const KEZVisObject *object, const Mouse &mouse = Mouse())
    {
        KEZVisMouseContext context;
        context.SetVisObject(object);
        context.SetMousePoint(mouse.point);
        context.SetViewDirection(mouse.view);
        context.SetSnapType(QFlags<KEZVisMouseContext::SnapType>(mouse.snapType));
        context.SetSnapPoint(mouse.snapPoint);
        context.SetSnapAxis(mouse.snapAxis);
        KEZVisMouseEvent event(action, &context);
        emit environment->MouseEvent(event);
    }
    void Press(int part, const KEZMathPoint &point, const KEZMathVector &view = KEZMathVector(0, 0, 1))
    {
        Mouse mouse;
        mouse.point = point;
        mouse.view = view;
        Send(KEZVisMouseEvent::MousePressed, part ? parts[part].data() : nullptr, mouse);
    }
    void Move(const KEZMathPoint &point, const KEZMathVector &view = KEZMathVector(0, 0, 1))
    {
        Mouse mouse;
        mouse.point = point;
        mouse.view = view;
        Send(KEZVisMouseEvent::MouseMoved, nullptr, mouse);
    }
    void Release() { Send(KEZVisMouseEvent::MouseReleased, nullptr); }
    void Click(int part, const Mouse &mouse = Mouse())
    {
        Send(KEZVisMouseEvent::MouseClicked, part ? parts[part].data() : nullptr, mouse);
    }
    void DoubleClick(int part) { Send(KEZVisMouseEvent::MouseDoubleClicked, part ? parts[part].data() : nullptr); }

    // The environment's objects other than the seven parts.
    QList<KEZVisVirtualObject *> Extras() const
    {
        QList<KEZVisVirtualObject *> result;
        for (KEZVisVirtualObject *object : environment->GetVirtualObjects()) {
            bool isPart = false;
            for (int part = 1; part <= 7; ++part)
                isPart = isPart || object == parts[part];
            if (!isPart)
                result.append(object);
        }
        return result;
    }
    // The ghost: the one unselectable extra object without a point primitive.
    int CountGhosts() const
    {
        int count = 0;
        for (KEZVisVirtualObject *object : Extras()) {
            QList<const KEZVisPrimitive *> primitives;
            QList<KEZVisOptions> options;
            object->GetRep()->GetPrimitives(primitives, options);
            if (primitives.size() == 7)
                ++count;
        }
        return count;
    }
    KEZVisVirtualObject *Ghost() const
    {
        for (KEZVisVirtualObject *object : Extras()) {
            QList<const KEZVisPrimitive *> primitives;
            QList<KEZVisOptions> options;
            object->GetRep()->GetPrimitives(primitives, options);
            if (primitives.size() == 7)
                return object;
        }
        return nullptr;
    }
    KEZVisVirtualObject *Marker() const
    {
        for (KEZVisVirtualObject *object : Extras()) {
            QList<const KEZVisPrimitive *> primitives;
            QList<KEZVisOptions> options;
            object->GetRep()->GetPrimitives(primitives, options);
            if (primitives.size() == 1)
                return object;
        }
        return nullptr;
    }
    bool AllParts(bool (KEZVisObject::*query)() const, bool expected) const
    {
        for (int part = 1; part <= 7; ++part) {
            if ((parts[part]->*query)() != expected)
                return false;
        }
        return true;
    }
    bool AllPartsAt(const KEZMathAxis &axis) const
    {
        for (int part = 1; part <= 7; ++part) {
            if (!(parts[part]->GetPosition() == axis))
                return false;
        }
        return true;
    }
    KEZMathAxis Emitted(int index) const { return spy->at(index).at(0).value<KEZMathAxis>(); }

    SceneLog log;
    std::unique_ptr<KEZVisEnvironment> environment;
    std::unique_ptr<RecordingClient> client;
    std::unique_ptr<KEZVisGizmo> gizmo;
    QPointer<KEZVisVirtualObject> parts[8];
    std::unique_ptr<QSignalSpy> spy;
};

inline bool Near(const KEZMathPoint &a, const KEZMathPoint &b, double tolerance = 1e-9)
{
    return a.GetDistanceTo(b) <= tolerance;
}

inline bool Near(const KEZMathVector &a, const KEZMathVector &b, double tolerance = 1e-9)
{
    return (a - b).GetMagnitude() <= tolerance;
}

} // namespace GizmoTest

#endif // GIZMOTESTSUPPORT_H
