#ifndef SCENETESTSUPPORT_H
#define SCENETESTSUPPORT_H

// Helpers shared by the scene tests: a rep with a fixed box, an ordered log of
// every signal of an environment and its objects, and a client that writes
// every call it gets into the same log.

#include "KEZVisClient.h"
#include "KEZVisClientChangeRequest.h"
#include "KEZVisEnvironment.h"
#include "KEZVisMouseEvent.h"
#include "KEZVisObject.h"
#include "KEZVisRep.h"
#include "KEZVisSelectionFilter.h"
#include "KEZVisVirtualObject.h"

#include "KEZMathBoundingBox.h"
#include "KEZMathPoint.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <ostream>
#include <functional>

// Readable failures: gtest prints strings and string lists through this.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

namespace SceneTest {

// A rep whose box is given, which counts the times its box is asked and
// reports its destruction.
class TestRep : public KEZVisRep
{
public:
    explicit TestRep(const KEZMathBoundingBox &box = KEZMathBoundingBox(), bool *deleted = nullptr)
        : m_box(box)
        , m_deleted(deleted)
    {
        if (m_deleted)
            *m_deleted = false;
    }
    ~TestRep() override
    {
        if (m_deleted)
            *m_deleted = true;
    }
    void GetPrimitives(QList<const KEZVisPrimitive *> &, QList<KEZVisOptions> &) const override {}
    KEZMathBoundingBox GetBoundingBox() const override
    {
        ++boxRequests;
        return m_box;
    }
    void SetBox(const KEZMathBoundingBox &box) { m_box = box; }

    mutable int boxRequests = 0;

private:
    KEZMathBoundingBox m_box;
    bool *m_deleted;
};

inline KEZMathBoundingBox Box(double x0, double y0, double z0, double x1, double y1, double z1)
{
    return KEZMathBoundingBox(KEZMathPoint(x0, y0, z0), KEZMathPoint(x1, y1, z1));
}

inline QString Name(const KEZVisObject *object)
{
    return object ? object->objectName() : QStringLiteral("null");
}

// "{a,b}" with the names sorted, since a set has no order.
inline QString Names(const QSet<KEZVisObject *> &objects)
{
    QStringList names;
    for (const KEZVisObject *object : objects)
        names.append(Name(object));
    std::sort(names.begin(), names.end());
    return QLatin1Char('{') + names.join(QLatin1Char(',')) + QLatin1Char('}');
}

inline QString StateName(KEZVisObject::SelectionState state)
{
    switch (state) {
    case KEZVisObject::NotSelected:
        return QStringLiteral("NotSelected");
    case KEZVisObject::Selected:
        return QStringLiteral("Selected");
    case KEZVisObject::PreSelected:
        return QStringLiteral("PreSelected");
    }
    return QStringLiteral("?");
}

// One ordered log of everything that happens in a scene.
class SceneLog
{
public:
    void Add(const QString &entry) { entries.append(entry); }
    void Clear() { entries.clear(); }

    // Records every signal of the environment as "env:Signal(arguments)".
    void WatchEnvironment(KEZVisEnvironment *environment, const QString &prefix = QStringLiteral("env"))
    {
        QObject::connect(environment, &KEZVisEnvironment::ObjectAdded, environment,
                         [this, prefix](KEZVisObject *o) { Add(prefix + ":ObjectAdded(" + Name(o) + ")"); });
        QObject::connect(environment, &KEZVisEnvironment::ObjectRemoved, environment,
                         [this, prefix](KEZVisObject *o) { Add(prefix + ":ObjectRemoved(" + Name(o) + ")"); });
        QObject::connect(environment, &KEZVisEnvironment::VisualizationSelectionChanged, environment,
                         [this, prefix](const QSet<KEZVisObject *> &s, const QSet<KEZVisObject *> &d) {
                             Add(prefix + ":VisualizationSelectionChanged(" + Names(s) + "," + Names(d) + ")");
                         });
        QObject::connect(environment, &KEZVisEnvironment::VisualizationPreselectionChanged, environment,
                         [this, prefix](const QSet<KEZVisObject *> &o, const QSet<KEZVisObject *> &n) {
                             Add(prefix + ":VisualizationPreselectionChanged(" + Names(o) + "," + Names(n) + ")");
                         });
        QObject::connect(environment, &KEZVisEnvironment::SelectionFilterChanged, environment,
                         [this, prefix](KEZVisSelectionFilter *) { Add(prefix + ":SelectionFilterChanged"); });
        QObject::connect(environment, &KEZVisEnvironment::ClientChangeRequested, environment,
                         [this, prefix](const KEZVisClientChangeRequest &r) {
                             Add(prefix + ":ClientChangeRequested(" + QString::number(int(r.GetChangeTypes())) + ")");
                         });
        QObject::connect(environment, &KEZVisEnvironment::MouseEvent, environment,
                         [this, prefix](const KEZVisMouseEvent &e) {
                             Add(prefix + ":MouseEvent(" + QString::number(int(e.GetActionType())) + ")");
                         });
        QObject::connect(environment, &KEZVisEnvironment::BatchStarted, environment,
                         [this, prefix]() { Add(prefix + ":BatchStarted"); });
        QObject::connect(environment, &KEZVisEnvironment::BatchFinished, environment,
                         [this, prefix]() { Add(prefix + ":BatchFinished"); });
        QObject::connect(environment, &KEZVisEnvironment::BatchSelectionStarted, environment,
                         [this, prefix]() { Add(prefix + ":BatchSelectionStarted"); });
        QObject::connect(environment, &KEZVisEnvironment::BatchSelectionFinished, environment,
                         [this, prefix]() { Add(prefix + ":BatchSelectionFinished"); });
    }

    // Records every signal of the object as "name:Signal(arguments)".
    void WatchObject(KEZVisObject *object)
    {
        const QString prefix = Name(object);
        QObject::connect(object, &KEZVisObject::RepChanged, object, [this, prefix](const KEZVisRep *rep) {
            Add(prefix + ":RepChanged(" + (rep ? "rep" : "null") + ")");
        });
        QObject::connect(object, &KEZVisObject::SelectionStateChanged, object,
                         [this, prefix](KEZVisObject::SelectionState s) {
                             Add(prefix + ":SelectionStateChanged(" + StateName(s) + ")");
                         });
        QObject::connect(object, &KEZVisObject::VisibilityChanged, object, [this, prefix](bool s) {
            Add(prefix + ":VisibilityChanged(" + (s ? "true" : "false") + ")");
        });
        QObject::connect(object, &KEZVisObject::SelectabilityChanged, object, [this, prefix](bool s) {
            Add(prefix + ":SelectabilityChanged(" + (s ? "true" : "false") + ")");
        });
        QObject::connect(object, &KEZVisObject::LabelChanged, object,
                         [this, prefix](const QString &l) { Add(prefix + ":LabelChanged(" + l + ")"); });
        QObject::connect(object, &KEZVisObject::PositionChanged, object,
                         [this, prefix](const KEZMathAxis &) { Add(prefix + ":PositionChanged"); });
        QObject::connect(object, &KEZVisObject::ChangeOccurred, object,
                         [this, prefix](KEZVisObject::ChangeTypes c) {
                             Add(prefix + ":ChangeOccurred(" + QString::number(int(c)) + ")");
                         });
    }

    QStringList entries;
};

// An environment whose protected selection layer is open to the tests.
class OpenEnvironment : public KEZVisEnvironment
{
public:
    using KEZVisEnvironment::KEZVisEnvironment;
    using KEZVisEnvironment::AddSelectedVisualization;
    using KEZVisEnvironment::BeginSelection;
    using KEZVisEnvironment::EndSelection;
    using KEZVisEnvironment::RemoveSelectedVisualization;
    using KEZVisEnvironment::SetPreselectedVisualization;
    using KEZVisEnvironment::SetSelectedVisualization;
};

// A virtual object with a name, watched by the log from its birth.
inline KEZVisVirtualObject *MakeObject(const QString &name, KEZVisEnvironment *environment, SceneLog *log = nullptr,
                                       QObject *parent = nullptr)
{
    auto *object = new KEZVisVirtualObject(environment, parent);
    object->setObjectName(name);
    if (log)
        log->WatchObject(object);
    return object;
}

// A client that writes every call into a log, prefixed with its name. Hooks
// let a test act from inside a call.
class RecordingClient : public KEZVisClient
{
public:
    explicit RecordingClient(SceneLog *log, const QString &prefix = QStringLiteral("client"))
        : m_log(log)
        , m_prefix(prefix)
    {
    }

    std::function<void(KEZVisObject *)> onObjectRemovedHook;
    std::function<void()> onEndBatchHook;

protected:
    void OnEnvironmentChanged(KEZVisEnvironment *environment) override
    {
        m_log->Add(m_prefix + ":OnEnvironmentChanged(" +
                   (environment ? environment->objectName() : QStringLiteral("null")) + ")");
    }
    void OnObjectAdded(KEZVisObject *object) override { m_log->Add(m_prefix + ":OnObjectAdded(" + Name(object) + ")"); }
    void OnObjectRemoved(KEZVisObject *object) override
    {
        m_log->Add(m_prefix + ":OnObjectRemoved(" + Name(object) + ")");
        if (onObjectRemovedHook)
            onObjectRemovedHook(object);
    }
    void OnObjectChanged(KEZVisObject *object, KEZVisObject::ChangeTypes changes) override
    {
        m_log->Add(m_prefix + ":OnObjectChanged(" + Name(object) + "," + QString::number(int(changes)) + ")");
    }
    void OnClientChangeRequested(const KEZVisClientChangeRequest &request) override
    {
        m_log->Add(m_prefix + ":OnClientChangeRequested(" + QString::number(int(request.GetChangeTypes())) + ")");
    }
    void BeginBatch() override { m_log->Add(m_prefix + ":BeginBatch"); }
    void EndBatch() override
    {
        m_log->Add(m_prefix + ":EndBatch");
        if (onEndBatchHook)
            onEndBatchHook();
    }
    void OnVisualizationSelectionChanged(const QSet<KEZVisObject *> &selected,
                                         const QSet<KEZVisObject *> &deselected) override
    {
        m_log->Add(m_prefix + ":OnVisualizationSelectionChanged(" + Names(selected) + "," + Names(deselected) + ")");
    }
    void OnVisualizationPreselectionChanged(const QSet<KEZVisObject *> &oldSelection,
                                            const QSet<KEZVisObject *> &newSelection) override
    {
        m_log->Add(m_prefix + ":OnVisualizationPreselectionChanged(" + Names(oldSelection) + "," +
                   Names(newSelection) + ")");
    }

private:
    SceneLog *m_log;
    QString m_prefix;
};

// A filter that answers from a set of refused objects and counts its questions.
class SetFilter : public KEZVisSelectionFilter
{
public:
    explicit SetFilter(bool multiSelection, QSet<const KEZVisObject *> refused = {})
        : KEZVisSelectionFilter(multiSelection)
        , refused(std::move(refused))
    {
    }
    bool IsSelectable(const KEZVisObject *object) const override
    {
        ++questions;
        return !refused.contains(object);
    }
    QSet<const KEZVisObject *> refused;
    mutable int questions = 0;
};

} // namespace SceneTest

#endif // SCENETESTSUPPORT_H
