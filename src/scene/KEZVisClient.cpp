#include "KEZVisClient.h"

#include "KEZVisClientChangeRequest.h"
#include "KEZVisClient_p.h"
#include "KEZVisEnvironment.h"
#include "KEZVisObject_p.h"
#include "KEZVisSceneMetaTypes_p.h"

const QByteArray KEZVisNeedRedrawWhenVisible = QByteArrayLiteral("NeedRedrawWhenVisible");

// ---------------------------------------------------------------------------
// KEZVisClientPrivate

KEZVisClientPrivate::KEZVisClientPrivate(KEZVisClient *q)
    : QObject(nullptr)
    , q_ptr(q)
{
}

KEZVisClientPrivate::~KEZVisClientPrivate() = default;

bool KEZVisClientPrivate::ForEachObject(KEZVisEnvironment *environment,
                                        const std::function<void(KEZVisObject *)> &visit)
{
    const QPointer<KEZVisClientPrivate> alive(this);
    const QPointer<KEZVisEnvironment> watched(environment);
    const QList<KEZVisObject *> objects = environment->GetObjects();
    quint64 deaths = KEZVisObjectPrivate::DeathCount();
    // Filled only after a listener destroyed some object: the live entries of the environment.
    QSet<KEZVisObject *> live;
    bool checkLive = false;
    for (KEZVisObject *object : objects) {
        if (checkLive && !live.contains(object))
            continue;
        visit(object);
        if (!alive)
            return false;
        if (KEZVisObjectPrivate::DeathCount() != deaths) {
            deaths = KEZVisObjectPrivate::DeathCount();
            if (!watched)
                break;  // nothing left to tell the living from the dead
            const QList<KEZVisObject *> now = watched->GetObjects();
            live = QSet<KEZVisObject *>(now.cbegin(), now.cend());
            checkLive = true;
        }
    }
    return true;
}

void KEZVisClientPrivate::Wire(KEZVisEnvironment *newEnvironment)
{
    Q_Q(KEZVisClient);
    KEZVisEnvironment *old = environment.data();
    if (newEnvironment == old)
        return;
    // A client may be deleted by its own handlers; nothing is touched after that.
    const QPointer<KEZVisClientPrivate> alive(this);

    if (old) {
        QObject::disconnect(old, nullptr, this, nullptr);
        q->BeginBatch();
        if (!alive)
            return;
        const bool goOn = ForEachObject(old, [this, q](KEZVisObject *object) {
            if (object)
                QObject::disconnect(object, nullptr, this, nullptr);
            q->OnObjectRemoved(object);
        });
        if (!goOn)
            return;
        q->EndBatch();
        if (!alive)
            return;
    }

    environment = newEnvironment;
    if (!newEnvironment)
        return;

    connect(newEnvironment, &KEZVisEnvironment::ObjectAdded, this, &KEZVisClientPrivate::OnObjectAdded);
    connect(newEnvironment, &KEZVisEnvironment::ObjectRemoved, this, &KEZVisClientPrivate::OnObjectRemoved);
    connect(newEnvironment, &KEZVisEnvironment::BatchStarted, this, &KEZVisClientPrivate::StartBatch);
    connect(newEnvironment, &KEZVisEnvironment::BatchFinished, this, &KEZVisClientPrivate::FinishBatch);
    connect(newEnvironment, &KEZVisEnvironment::ClientChangeRequested, this,
            &KEZVisClientPrivate::OnClientChangeRequested);
    connect(newEnvironment, &KEZVisEnvironment::VisualizationPreselectionChanged, this,
            &KEZVisClientPrivate::OnVisualizationPreselectionChanged);
    connect(newEnvironment, &KEZVisEnvironment::VisualizationSelectionChanged, this,
            &KEZVisClientPrivate::OnVisualizationSelectionChanged);

    q->BeginBatch();
    if (!alive)
        return;
    if (!ForEachObject(newEnvironment, [this](KEZVisObject *object) { OnObjectAdded(object); }))
        return;
    q->EndBatch();
}

void KEZVisClientPrivate::OnObjectAdded(KEZVisObject *object)
{
    Q_Q(KEZVisClient);
    if (object) {
        // The connection carries its object instead of asking sender(), which
        // scans every connection made to this receiver: with one connection per
        // object that would make each change cost time linear in the scene.
        connect(object, &KEZVisObject::ChangeOccurred, this,
                [this, object](KEZVisObject::ChangeTypes changes) { DeliverChange(object, changes); });
    }
    q->OnObjectAdded(object);
}

void KEZVisClientPrivate::DeliverChange(KEZVisObject *object, KEZVisObject::ChangeTypes changes)
{
    Q_Q(KEZVisClient);
    q->OnObjectChanged(object, changes);
}

void KEZVisClientPrivate::OnObjectRemoved(KEZVisObject *object)
{
    Q_Q(KEZVisClient);
    // The object's ChangeOccurred() stays connected: a dying object takes the
    // connection with it, and one that was removed and lives on goes on
    // reporting its changes, as designed.
    q->OnObjectRemoved(object);
}

void KEZVisClientPrivate::OnObjectChanged(KEZVisObject::ChangeTypes changes)
{
    Q_Q(KEZVisClient);
    if (auto *object = qobject_cast<KEZVisObject *>(sender()))
        q->OnObjectChanged(object, changes);
}

void KEZVisClientPrivate::OnClientChangeRequested(const KEZVisClientChangeRequest &request)
{
    Q_Q(KEZVisClient);
    q->OnClientChangeRequested(request);
}

void KEZVisClientPrivate::OnVisualizationSelectionChanged(const QSet<KEZVisObject *> &selected,
                                                          const QSet<KEZVisObject *> &deselected)
{
    Q_Q(KEZVisClient);
    q->OnVisualizationSelectionChanged(selected, deselected);
}

void KEZVisClientPrivate::OnVisualizationPreselectionChanged(const QSet<KEZVisObject *> &oldSelection,
                                                             const QSet<KEZVisObject *> &newSelection)
{
    Q_Q(KEZVisClient);
    q->OnVisualizationPreselectionChanged(oldSelection, newSelection);
}

void KEZVisClientPrivate::StartBatch()
{
    Q_Q(KEZVisClient);
    q->BeginBatch();
}

void KEZVisClientPrivate::FinishBatch()
{
    Q_Q(KEZVisClient);
    q->EndBatch();
}

// ---------------------------------------------------------------------------
// KEZVisClient

KEZVisClient::KEZVisClient()
    : QObject(nullptr)
    , d_ptr(new KEZVisClientPrivate(this))
{
    KEZVisRegisterSceneMetaTypes();
}

KEZVisClient::~KEZVisClient()
{
    // Deleting the private object removes every connection of the client.
    delete d_ptr;
    d_ptr = nullptr;
}

void KEZVisClient::SetEnvironment(KEZVisEnvironment *environment)
{
    Q_D(KEZVisClient);
    const QPointer<KEZVisClient> alive(this);
    d->Wire(environment);
    if (alive)
        OnEnvironmentChanged(environment);
}

KEZVisEnvironment *KEZVisClient::GetEnvironment() const
{
    Q_D(const KEZVisClient);
    return d->environment.data();
}

void KEZVisClient::BeginBatch()
{
}

void KEZVisClient::EndBatch()
{
}

void KEZVisClient::OnVisualizationSelectionChanged(const QSet<KEZVisObject *> &, const QSet<KEZVisObject *> &)
{
}

void KEZVisClient::OnVisualizationPreselectionChanged(const QSet<KEZVisObject *> &, const QSet<KEZVisObject *> &)
{
}
