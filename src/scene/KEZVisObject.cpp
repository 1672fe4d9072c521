#include "KEZVisObject.h"

#include "KEZVisEnvironment_p.h"
#include "KEZVisObject_p.h"
#include "KEZVisRep.h"
#include "KEZVisSceneMetaTypes_p.h"

#include <atomic>
#include <utility>

namespace {

// Objects live on the GUI thread; the counter is atomic all the same, so that
// objects of worker threads that never meet a scene can't corrupt it.
std::atomic<quint64> objectDeaths{0};

} // namespace

quint64 KEZVisObjectPrivate::DeathCount()
{
    return objectDeaths.load(std::memory_order_relaxed);
}

KEZVisObjectPrivate::KEZVisObjectPrivate(KEZVisObject *q, const KEZVisEnvironment *environment)
    : q_ptr(q)
    , environmentListSerial(KEZVisEnvironmentPrivate::ListSerialOf(environment))
    , environment(environment)
{
}

KEZVisObjectPrivate::~KEZVisObjectPrivate()
{
    delete rep;
}

void KEZVisObjectPrivate::NoteHeldBy(const KEZVisEnvironment *environment)
{
    for (qsizetype i = 0; i < otherHolders.size();) {
        const KEZVisEnvironment *holder = otherHolders.at(i).data();
        if (holder == environment)
            return;
        if (!holder)
            otherHolders.removeAt(i);
        else
            ++i;
    }
    otherHolders.append(environment);
}

void KEZVisObjectPrivate::SetSelectionState(KEZVisObject::SelectionState state)
{
    if (selectionState == state)
        return;
    selectionState = state;
    KEZVisObject *q = q_ptr;
    EmitChange(q, [q, state] { emit q->SelectionStateChanged(state); }, KEZVisObject::SelectionStateChange);
}

KEZVisObject::KEZVisObject(const KEZVisEnvironment *environment, QObject *parent)
    : KEZVisObject(new KEZVisObjectPrivate(this, environment), parent)
{
}

KEZVisObject::KEZVisObject(KEZVisObjectPrivate *d, QObject *parent)
    : QObject(parent)
    , d_ptr(d)
{
    KEZVisRegisterSceneMetaTypes();
}

KEZVisObject::~KEZVisObject()
{
    objectDeaths.fetch_add(1, std::memory_order_relaxed);
    KEZVisObjectPrivate::DeathWatch::NoteDeath(d_ptr);
    d_ptr->dying = true;
    // The environment learns of the death first, while the record (and with it
    // the rep) is still there for listeners of ObjectRemoved.
    if (const KEZVisEnvironment *environment = d_ptr->environment.data())
        KEZVisEnvironmentPrivate::ObjectDestroyed(environment, this);
    // Other environments that may hold the object in a selection, preselection
    // or pending set let go of it as well, without a signal: the object never
    // reported to them. Nothing of this calls out, so no holder joins meanwhile.
    if (!d_ptr->otherHolders.isEmpty()) {
        const QList<QPointer<const KEZVisEnvironment>> holders = std::move(d_ptr->otherHolders);
        for (const QPointer<const KEZVisEnvironment> &holder : holders) {
            if (const KEZVisEnvironment *environment = holder.data())
                KEZVisEnvironmentPrivate::HeldObjectDestroyed(environment, this);
        }
    }
    delete d_ptr;
    d_ptr = nullptr;
}

bool KEZVisObject::IsPosition() const
{
    return false;
}

KEZMathAxis KEZVisObject::GetPosition() const
{
    return KEZMathAxis();
}

KEZMathBoundingBox KEZVisObject::GetBoundingBox(bool inWorld) const
{
    const KEZVisObjectPrivate *d = d_ptr;
    if (!d->rep)
        return KEZMathBoundingBox();
    if (!d->boundingBoxValid) {
        d->boundingBox = d->rep->GetBoundingBox();
        d->boundingBoxValid = true;
    }
    if (!inWorld)
        return d->boundingBox;
    return GetPosition() * d->boundingBox;
}

const KEZVisEnvironment *KEZVisObject::GetEnvironment() const
{
    return d_ptr->environment.data();
}

const KEZVisRep *KEZVisObject::GetRep() const
{
    return d_ptr->rep;
}

KEZVisObject::SelectionState KEZVisObject::GetSelectionState() const
{
    return d_ptr->selectionState;
}

void KEZVisObject::UpdateRep(const KEZVisRep *rep)
{
    KEZVisObjectPrivate *d = d_ptr;
    d->boundingBoxValid = false;
    if (rep != d->rep) {
        const KEZVisRep *old = d->rep;
        d->rep = rep;
        delete old;
    }
    KEZVisObjectPrivate::EmitChange(this, [this, rep] { emit RepChanged(rep); }, RepChange);
}
