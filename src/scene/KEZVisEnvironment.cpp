#include "KEZVisEnvironment.h"

#include "KEZVisClientChangeRequest.h"
#include "KEZVisCompoundFilter.h"
#include "KEZVisEnvironmentBatchContext.h"
#include "KEZVisEnvironment_p.h"
#include "KEZVisFunctionFilter.h"
#include "KEZVisObject_p.h"
#include "KEZVisSceneMetaTypes_p.h"
#include "KEZVisVirtualObject.h"

#include "KEZMathBoundingBox.h"
#include "KEZMathPlane.h"
#include "KEZMathPoint.h"
#include "KEZMathVector.h"
#include "KEZMathZeroMagnitudeVectorException.h"
#include "KEZSysException.h"

#include <QScopeGuard>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <iterator>
#include <utility>
#include <vector>

namespace {

// QSet::remove() detaches even when the key is absent; a set shared with a
// caller's copy must not be copied for nothing on every removal.
void removeIfPresent(QSet<KEZVisObject *> &set, KEZVisObject *object)
{
    if (set.contains(object))
        set.remove(object);
}

// Inserts every object of source into target. QSet::unite() inserts one by one
// even into an empty set; sharing the larger set and inserting the smaller one
// keeps large selections cheap.
void uniteInto(QSet<KEZVisObject *> &target, const QSet<KEZVisObject *> &source)
{
    if (source.isEmpty())
        return;
    if (target.isEmpty()) {
        target = source;
    } else if (source.size() > target.size()) {
        QSet<KEZVisObject *> united = source;
        united.unite(target);
        target = std::move(united);
    } else {
        target.unite(source);
    }
}

/*
    Puts objects in order of their addresses. The order in which a
    transaction visits the members of one set is unspecified (a QSet's own
    order depends on a per-process hash seed), so the environment picks the
    one that is cheapest for memory: objects made one after another lie
    together on the heap, with their records beside them, and visiting them
    by address turns the scattered reads of a large selection into a nearly
    sequential walk that the processor's prefetcher follows. An LSD radix
    sort on the address bits keeps the ordering itself linear.
*/
void sortByAddress(std::vector<KEZVisObject *> &objects)
{
    if (objects.size() < 2)
        return;
    std::uintptr_t lowest = UINTPTR_MAX;
    std::uintptr_t highest = 0;
    for (KEZVisObject *object : objects) {
        const auto address = reinterpret_cast<std::uintptr_t>(object);
        lowest = std::min(lowest, address);
        highest = std::max(highest, address);
    }
    const std::uintptr_t span = highest - lowest;
    constexpr int digitBits = 11;
    constexpr size_t buckets = size_t(1) << digitBits;
    std::vector<KEZVisObject *> buffer(objects.size());
    std::vector<size_t> counts(buckets);
    for (int shift = 0; shift < int(sizeof(std::uintptr_t) * 8) && (span >> shift) != 0; shift += digitBits) {
        std::fill(counts.begin(), counts.end(), 0);
        const auto digitOf = [lowest, shift](const KEZVisObject *object) {
            return size_t(((reinterpret_cast<std::uintptr_t>(object) - lowest) >> shift) & (buckets - 1));
        };
        for (KEZVisObject *object : objects)
            ++counts[digitOf(object)];
        size_t start = 0;
        for (size_t &count : counts)
            start += std::exchange(count, start);
        for (KEZVisObject *object : objects)
            buffer[counts[digitOf(object)]++] = object;
        objects.swap(buffer);
    }
}

std::vector<KEZVisObject *> inAddressOrder(const QSet<KEZVisObject *> &set)
{
    std::vector<KEZVisObject *> objects(set.cbegin(), set.cend());
    sortByAddress(objects);
    return objects;
}

/*
    Empties a set that nobody else shares without giving its memory back, as
    removing each member would. Erasing in the set's own order walks its memory
    once; clear() would free it, and in glibc freeing a large block right after
    a teardown first merges every small block that the teardown freed.
*/
void emptyKeepingMemory(QSet<KEZVisObject *> &set)
{
    if (!set.isDetached()) {
        set.clear();  // only lets go of the shared copy
        return;
    }
    for (auto it = set.begin(); it != set.end();)
        it = set.erase(it);
}

// The objects of set that are not in removed, which must be in address order.
QSet<KEZVisObject *> withoutSorted(const QSet<KEZVisObject *> &set, const std::vector<KEZVisObject *> &removed)
{
    const std::vector<KEZVisObject *> members = inAddressOrder(set);
    std::vector<KEZVisObject *> kept;
    kept.reserve(members.size());
    std::set_difference(members.cbegin(), members.cend(), removed.cbegin(), removed.cend(),
                        std::back_inserter(kept), std::less<KEZVisObject *>());
    QSet<KEZVisObject *> result;
    if (kept.empty())
        return result;
    result.reserve(qsizetype(kept.size()));
    for (KEZVisObject *object : kept)
        result.insert(object);
    return result;
}

/*
    Before the selection state of objects[i] changes, asks the memory of the
    objects a few places further on into the cache. Even in address order the
    records of the objects needn't lie together, and each change of state
    reads three records one after the other (the object, its private record,
    and the QObject record that the signals consult); in large scenes waiting
    for these reads costs more than the work. The object itself is asked for
    far ahead; nearer, when it has arrived, the two records whose addresses it
    holds. Nothing is written and nothing is called, so it changes no
    behaviour. Reading those addresses needs a living object: once any object
    has died since \a deaths was taken, only the objects' own addresses are
    prefetched.
*/
void prefetchObjectsAhead(const std::vector<KEZVisObject *> &objects, size_t i, quint64 deaths)
{
    constexpr size_t objectDistance = 16;
    constexpr size_t recordDistance = 8;
    if (i + objectDistance < objects.size()) {
        if (const KEZVisObject *object = objects[i + objectDistance])
            __builtin_prefetch(object);
    }
    if (i + recordDistance < objects.size() && KEZVisObjectPrivate::DeathCount() == deaths) {
        if (KEZVisObject *object = objects[i + recordDistance]) {
            const char *record = reinterpret_cast<const char *>(KEZVisObjectPrivate::get(object));
            __builtin_prefetch(record);
            __builtin_prefetch(record + 64);
            // The address of a member of the QObject record, not a read of it.
            const char *qobjectRecord = reinterpret_cast<const char *>(&object->children());
            __builtin_prefetch(qobjectRecord);
            __builtin_prefetch(qobjectRecord + 64);
        }
    }
}

} // namespace

// ---------------------------------------------------------------------------
// KEZVisEnvironmentPrivate

KEZVisEnvironmentPrivate::KEZVisEnvironmentPrivate(KEZVisEnvironment *q)
    : QObject(nullptr)
    , q_ptr(q)
{
}

KEZVisEnvironmentPrivate::~KEZVisEnvironmentPrivate()
{
    // First of all, while every object that keeps its index in the list is
    // still alive: from here on objects die without reporting to the list.
    objects.Release();
    // The environment's destructor normally closes the scope before; this one
    // is left for a private object deleted on its own.
    delete selectionScope;
    selectionScope = nullptr;
}

quint64 KEZVisEnvironmentPrivate::ListSerialOf(const KEZVisEnvironment *environment)
{
    const KEZVisEnvironmentPrivate *d = environment ? environment->d_ptr : nullptr;
    return d ? d->objects.Serial() : 0;
}

void KEZVisEnvironmentPrivate::ObjectDestroyed(const KEZVisEnvironment *environment, KEZVisObject *object)
{
    auto *q = const_cast<KEZVisEnvironment *>(environment);
    KEZVisEnvironmentPrivate *d = q->d_ptr;
    if (!d)
        return;  // the environment is being destroyed
    d->objects.RemoveAll(object);
    d->NoteDeathForSelection(object);
    removeIfPresent(d->preselection, object);
    removeIfPresent(d->pendingAdditions, object);
    removeIfPresent(d->pendingRemovals, object);
    for (QSet<KEZVisObject *> *entering : d->enteringPreselection)
        removeIfPresent(*entering, object);
    ++d->pendingShrinks;
    emit q->ObjectRemoved(object);
}

void KEZVisEnvironmentPrivate::HeldObjectDestroyed(const KEZVisEnvironment *environment, KEZVisObject *object)
{
    auto *q = const_cast<KEZVisEnvironment *>(environment);
    KEZVisEnvironmentPrivate *d = q->d_ptr;
    if (!d)
        return;  // the environment is being destroyed
    // During a commit's callouts the set leaves the object at once, as for an
    // object of this environment; otherwise earlier notes go first.
    removeIfPresent(d->committingSelection ? d->selection : d->Selection(), object);
    removeIfPresent(d->preselection, object);
    removeIfPresent(d->pendingAdditions, object);
    removeIfPresent(d->pendingRemovals, object);
    for (QSet<KEZVisObject *> *entering : d->enteringPreselection)
        removeIfPresent(*entering, object);
    ++d->pendingShrinks;
}

void KEZVisEnvironmentPrivate::NoteHolding(KEZVisObject *object)
{
    if (!object)
        return;
    KEZVisObjectPrivate *od = KEZVisObjectPrivate::get(object);
    if (od->environmentListSerial != objects.Serial() || od->dying)
        od->NoteHeldBy(q_ptr);
}

QSet<KEZVisObject *> &KEZVisEnvironmentPrivate::Selection()
{
    TakeDeadOutOfSelection();
    return selection;
}

const QSet<KEZVisObject *> &KEZVisEnvironmentPrivate::Selection() const
{
    TakeDeadOutOfSelection();
    return selection;
}

void KEZVisEnvironmentPrivate::SetSelectionMember(KEZVisObject *object, bool member)
{
    KEZVisObjectPrivate *od = KEZVisObjectPrivate::get(object);
    if (od->environmentListSerial == objects.Serial())
        od->inOwnSelection = member;
}

void KEZVisEnvironmentPrivate::NoteDeathForSelection(KEZVisObject *object)
{
    if (committingSelection) {
        removeIfPresent(selection, object);
        return;
    }
    if (KEZVisObjectPrivate::get(object)->inOwnSelection)
        deadMembers.push_back(object);
}

void KEZVisEnvironmentPrivate::KeepRoomForDeathNotes()
{
    TakeDeadOutOfSelection();
    const size_t members = size_t(selection.size());
    // A set that shrank much gives the room back; a growing one gets room
    // ahead, so that selecting objects one at a time doesn't reallocate each time.
    if (deadMembers.capacity() > 4 * members + 64)
        std::vector<KEZVisObject *>().swap(deadMembers);
    if (deadMembers.capacity() < members)
        deadMembers.reserve(std::max(members, 2 * deadMembers.capacity()));
}

void KEZVisEnvironmentPrivate::TakeDeadOutOfSelection() const
{
    if (deadMembers.empty())
        return;
    const size_t dead = deadMembers.size();
    if (dead == size_t(selection.size())) {
        emptyKeepingMemory(selection);
    } else if (dead * 8 < size_t(selection.size())) {
        for (KEZVisObject *object : deadMembers)
            removeIfPresent(selection, object);
    } else {
        sortByAddress(deadMembers);
        selection = withoutSorted(selection, deadMembers);
    }
    deadMembers.clear();
}

void KEZVisEnvironmentPrivate::StartBatch()
{
    Q_Q(KEZVisEnvironment);
    if (batchCount == 0)
        emit q->BatchStarted();
    ++batchCount;
}

void KEZVisEnvironmentPrivate::FinishBatch()
{
    Q_Q(KEZVisEnvironment);
    if (batchCount <= 0)
        throw KEZSysException(QStringLiteral("batch count already zero"));
    --batchCount;
    if (batchCount == 0)
        emit q->BatchFinished();
}

void KEZVisEnvironmentPrivate::StartBatchSelection()
{
    Q_Q(KEZVisEnvironment);
    if (batchSelectionCount == 0)
        emit q->BatchSelectionStarted();
    ++batchSelectionCount;
}

void KEZVisEnvironmentPrivate::FinishBatchSelection()
{
    Q_Q(KEZVisEnvironment);
    if (batchSelectionCount <= 0)
        throw KEZSysException(QStringLiteral("batch selection count already zero"));
    --batchSelectionCount;
    if (batchSelectionCount == 0)
        emit q->BatchSelectionFinished();
}

void KEZVisEnvironmentPrivate::EnsureSelectionFilter()
{
    Q_Q(KEZVisEnvironment);
    if (selectionFilter)
        return;
    q->SetSelectionFilter(nullptr);
    // An override that installs nothing still leaves the environment with a filter.
    if (!selectionFilter)
        selectionFilter.reset(new KEZVisCompoundFilter(true, {}, KEZVisCompoundFilter::AnyOf));
}

template <typename Build>
void KEZVisEnvironmentPrivate::SendRequest(Build build)
{
    Q_Q(KEZVisEnvironment);
    KEZVisClientChangeRequest request;
    build(request);
    emit q->ClientChangeRequested(request);
}

// ---------------------------------------------------------------------------
// KEZVisEnvironment: construction

KEZVisEnvironment::KEZVisEnvironment(QObject *parent)
    : KEZVisEnvironment(new KEZVisEnvironmentPrivate(this), parent)
{
}

KEZVisEnvironment::KEZVisEnvironment(KEZVisEnvironmentPrivate *d, QObject *parent)
    : QObject(parent)
    , d_ptr(d)
{
    KEZVisRegisterSceneMetaTypes();
}

KEZVisEnvironment::~KEZVisEnvironment()
{
    KEZVisEnvironmentPrivate *d = d_ptr;
    // An open selection scope closes its batch while the state is still whole,
    // so that listeners of BatchFinished() see a consistent environment.
    if (KEZVisEnvironmentBatchContext *scope = d->selectionScope) {
        d->selectionScope = nullptr;
        delete scope;
    }
    // From here on, objects that die (children of this environment, or objects
    // deleted by listeners) find no private object and report nothing.
    d_ptr = nullptr;
    delete d;
}

// ---------------------------------------------------------------------------
// Registry

QList<KEZVisObject *> KEZVisEnvironment::GetObjects() const
{
    Q_D(const KEZVisEnvironment);
    return d->objects.ToObjectList();
}

void KEZVisEnvironment::AddVirtualObject(KEZVisVirtualObject *object)
{
    Q_D(KEZVisEnvironment);
    d->objects.Append(object);
    emit ObjectAdded(object);
}

void KEZVisEnvironment::RemoveVirtualObject(KEZVisVirtualObject *object)
{
    Q_D(KEZVisEnvironment);
    if (!d->objects.RemoveAll(object))
        return;
    // Deliberately the selection set alone, and without a selection signal:
    // the object keeps its state and stays in the preselection and pending sets.
    removeIfPresent(d->Selection(), object);
    // A pending addition of a commit under way joins the set again at its end.
    if (object && !(d->committingSelection && d->pendingAdditions.contains(object)))
        d->SetSelectionMember(object, false);
    if (object)
        QObject::disconnect(object, nullptr, d, nullptr);
    emit ObjectRemoved(object);
}

void KEZVisEnvironment::RemoveAllVirtualObjects()
{
    Q_D(KEZVisEnvironment);
    const QList<KEZVisVirtualObject *> objects = d->objects.List();
    // Listeners of ObjectRemoved may destroy objects further on in the copy.
    // Such an object has left the list, so its turn would do nothing; it is
    // skipped without being touched. Once some object has died, the turns are
    // checked against the live entries, taken afresh after each death.
    quint64 deaths = KEZVisObjectPrivate::DeathCount();
    QSet<KEZVisObject *> live;
    bool checkLive = false;
    for (KEZVisVirtualObject *object : objects) {
        if (KEZVisObjectPrivate::DeathCount() != deaths) {
            deaths = KEZVisObjectPrivate::DeathCount();
            const QList<KEZVisObject *> now = d->objects.ToObjectList();
            live = QSet<KEZVisObject *>(now.cbegin(), now.cend());
            checkLive = true;
        }
        if (checkLive && !live.contains(object))
            continue;
        RemoveVirtualObject(object);
    }
}

QList<KEZVisVirtualObject *> KEZVisEnvironment::GetVirtualObjects() const
{
    Q_D(const KEZVisEnvironment);
    return d->objects.List();
}

bool KEZVisEnvironment::IsBatch() const
{
    Q_D(const KEZVisEnvironment);
    return d->batchCount > 0;
}

bool KEZVisEnvironment::IsBatchSelection() const
{
    Q_D(const KEZVisEnvironment);
    return d->batchSelectionCount > 0;
}

// ---------------------------------------------------------------------------
// Interaction settings and view requests

bool KEZVisEnvironment::IsSelectionEnabled()
{
    Q_D(const KEZVisEnvironment);
    return d->selectionEnabled;
}

void KEZVisEnvironment::SetSelectionEnabled(bool enabled)
{
    Q_D(KEZVisEnvironment);
    d->selectionEnabled = enabled;
    d->SendRequest([enabled](KEZVisClientChangeRequest &request) { request.RequestSelectionEnabled(enabled); });
}

KEZVisEnvironment::MouseInteractionFlags KEZVisEnvironment::GetMouseInteraction() const
{
    Q_D(const KEZVisEnvironment);
    return d->mouseInteraction;
}

KEZVisEnvironment::MouseSnapGeometryTypes KEZVisEnvironment::GetMouseSnapGeometryTypes() const
{
    Q_D(const KEZVisEnvironment);
    return d->mouseSnapGeometryTypes;
}

KEZVisMouseContext::NativeGeometrySelectionType KEZVisEnvironment::GetNativeGeometrySelectionType() const
{
    Q_D(const KEZVisEnvironment);
    return d->nativeGeometrySelectionType;
}

void KEZVisEnvironment::SetMouseInteraction(const QFlags<MouseInteractionFlag> &flags)
{
    Q_D(KEZVisEnvironment);
    if (d->mouseInteraction == flags)
        return;
    d->mouseInteraction = flags;
    d->SendRequest([flags](KEZVisClientChangeRequest &request) { request.RequestMouseInteraction(flags); });
}

void KEZVisEnvironment::SetMouseSnapGeometryTypes(const QFlags<MouseSnapGeometryType> &types)
{
    Q_D(KEZVisEnvironment);
    if (d->mouseSnapGeometryTypes == types)
        return;
    d->mouseSnapGeometryTypes = types;
    d->SendRequest([types](KEZVisClientChangeRequest &request) { request.RequestMouseSnapGeometryTypes(types); });
}

void KEZVisEnvironment::SetNativeGeometrySelectionType(const KEZVisMouseContext::NativeGeometrySelectionType &type)
{
    Q_D(KEZVisEnvironment);
    d->nativeGeometrySelectionType = type;
}

void KEZVisEnvironment::FitToBoundingBox(const KEZMathBoundingBox &box)
{
    Q_D(KEZVisEnvironment);
    d->SendRequest([&box](KEZVisClientChangeRequest &request) { request.RequestFit(box); });
}

void KEZVisEnvironment::FitToObject(KEZVisObject *object)
{
    if (!object || !object->GetRep() || !object->IsVisible())
        return;
    FitToBoundingBox(object->GetBoundingBox(true));
}

void KEZVisEnvironment::FitToObjects(const QList<KEZVisObject *> &objects)
{
    if (objects.isEmpty())
        return;
    KEZMathBoundingBox result;
    bool haveBox = false;
    for (KEZVisObject *object : objects) {
        if (!object || !object->IsVisible() || !object->GetRep())
            continue;
        const KEZMathBoundingBox box = object->GetBoundingBox(true);
        // Deliberately here alone: a box that is one point doesn't count.
        if (box.GetLowerPoint() == box.GetUpperPoint())
            continue;
        if (haveBox) {
            result.Expand(box);
        } else {
            result = box;
            haveBox = true;
        }
    }
    if (haveBox)
        FitToBoundingBox(result);
}

void KEZVisEnvironment::FitToSelection()
{
    Q_D(KEZVisEnvironment);
    const QSet<KEZVisObject *> &selection = d->Selection();
    const QList<KEZVisObject *> objects(selection.cbegin(), selection.cend());
    FitToObjects(objects);
}

void KEZVisEnvironment::SetViewDirection(const KEZMathVector &direction)
{
    Q_D(KEZVisEnvironment);
    if (!direction.IsValid())
        throw KEZMathZeroMagnitudeVectorException();
    d->SendRequest([&direction](KEZVisClientChangeRequest &request) { request.RequestViewDirection(direction); });
}

void KEZVisEnvironment::SetViewOrientation(const KEZMathVector &orientation)
{
    Q_D(KEZVisEnvironment);
    if (!orientation.IsValid())
        throw KEZMathZeroMagnitudeVectorException();
    d->SendRequest(
        [&orientation](KEZVisClientChangeRequest &request) { request.RequestViewOrientation(orientation); });
}

void KEZVisEnvironment::SetViewPlane(const KEZMathPlane &plane)
{
    Q_D(KEZVisEnvironment);
    d->SendRequest([&plane](KEZVisClientChangeRequest &request) {
        request.RequestViewOrientation(plane.GetSecondDirection());
        request.RequestViewDirection(plane.GetNormal());
    });
}

// ---------------------------------------------------------------------------
// Selection: public operations

void KEZVisEnvironment::SetSelectionFilter(KEZVisSelectionFilter *filter)
{
    Q_D(KEZVisEnvironment);
    if (!filter)
        filter = new KEZVisCompoundFilter(true, {}, KEZVisCompoundFilter::AnyOf);
    // Installing the filter already in use must not give it a second owner.
    if (d->selectionFilter.data() != filter)
        d->selectionFilter.reset(filter);
    const QSharedPointer<KEZVisSelectionFilter> keep = d->selectionFilter;

    BeginSelection();
    QSet<KEZVisObject *> refused;
    try {
        const QSet<KEZVisObject *> selection = d->Selection();
        for (KEZVisObject *object : selection) {
            if (!filter->IsSelectable(object))
                refused.insert(object);
        }
    } catch (...) {
        // The filter failed before anything was collected: close the transaction
        // with nothing to commit, then let the failure go on.
        EndSelection();
        throw;
    }
    uniteInto(d->pendingRemovals, refused);
    EndSelection();
    emit SelectionFilterChanged(filter);
}

void KEZVisEnvironment::SetSelectionFilter(bool multiSelection,
                                           const std::function<bool(const KEZVisObject *)> &function)
{
    SetSelectionFilter(new KEZVisFunctionFilter(multiSelection, function));
}

KEZVisSelectionFilter *KEZVisEnvironment::GetSelectionFilter() const
{
    // Installing the default is a change of the environment, made on demand
    // even from this const accessor.
    auto *d = const_cast<KEZVisEnvironmentPrivate *>(d_ptr);
    d->EnsureSelectionFilter();
    return d->selectionFilter.data();
}

bool KEZVisEnvironment::AddToSelection(KEZVisObject *object)
{
    Q_D(KEZVisEnvironment);
    if (!object)
        return false;
    d->EnsureSelectionFilter();
    // Held for the whole operation, in case a listener installs another filter.
    const QSharedPointer<KEZVisSelectionFilter> filter = d->selectionFilter;
    if (!filter->IsSelectable(object))
        return false;
    if (d->Selection().contains(object))
        return false;
    BeginSelection();
    if (!filter->IsMultiSelection())
        uniteInto(d->pendingRemovals, d->Selection());
    d->pendingAdditions.insert(object);
    EndSelection();
    return true;
}

void KEZVisEnvironment::RemoveFromSelection(KEZVisObject *object)
{
    Q_D(KEZVisEnvironment);
    if (!object || !d->Selection().contains(object))
        return;
    BeginSelection();
    d->pendingRemovals.insert(object);
    EndSelection();
}

bool KEZVisEnvironment::ToggleSelection(KEZVisObject *object)
{
    Q_D(KEZVisEnvironment);
    if (object && d->Selection().contains(object)) {
        RemoveFromSelection(object);
        return false;
    }
    // Deliberately true also when the filter refused the object.
    AddToSelection(object);
    return true;
}

bool KEZVisEnvironment::SetSelection(const QSet<KEZVisObject *> &objects)
{
    Q_D(KEZVisEnvironment);
    if (objects == d->Selection())
        return true;

    // Starts as a shared copy of the request and loses what the filter refuses:
    // accepting everything costs no copy.
    QSet<KEZVisObject *> candidates = objects;
    if (!objects.isEmpty()) {
        d->EnsureSelectionFilter();
        const QSharedPointer<KEZVisSelectionFilter> filter = d->selectionFilter;
        for (KEZVisObject *object : objects) {
            if (!object || !filter->IsSelectable(object))
                candidates.remove(object);
        }
        if (!filter->IsMultiSelection() && candidates.size() > 1) {
            // One remains: the first in set order, which is arbitrary.
            KEZVisObject *first = *candidates.cbegin();
            candidates = QSet<KEZVisObject *>{first};
        }
        if (candidates.isEmpty())
            return false;
    }

    BeginSelection();
    // Compared with the request as handed in, not with the candidates: a
    // selected object that is named but refused or dropped stays selected.
    for (KEZVisObject *object : std::as_const(d->Selection())) {
        if (!objects.contains(object))
            d->pendingRemovals.insert(object);
    }
    uniteInto(d->pendingAdditions, candidates);
    EndSelection();
    return true;
}

bool KEZVisEnvironment::SetPreSelectedObjects(QSet<KEZVisObject *> objects)
{
    Q_D(KEZVisEnvironment);
    // Deliberately a query here: nothing is stored and nothing is emitted.
    bool result = objects.isEmpty();
    for (KEZVisObject *object : std::as_const(objects)) {
        if (!object)
            continue;
        d->EnsureSelectionFilter();
        if (d->selectionFilter->IsSelectable(object))
            result = true;
    }
    return result;
}

QSet<KEZVisObject *> KEZVisEnvironment::GetVisualizationSelection() const
{
    Q_D(const KEZVisEnvironment);
    return d->Selection();
}

QSet<KEZVisObject *> KEZVisEnvironment::GetPreSelectedObjects() const
{
    Q_D(const KEZVisEnvironment);
    return d->preselection;
}

// ---------------------------------------------------------------------------
// Selection: raw layer

void KEZVisEnvironment::BeginSelection()
{
    Q_D(KEZVisEnvironment);
    if (!d->pendingAdditions.isEmpty() || !d->pendingRemovals.isEmpty())
        throw KEZSysException(QStringLiteral("previous selection modifications were not committed"));
    if (d->selectionScope)
        return;
    d->selectionScope = new KEZVisEnvironmentBatchContext(this);
}

void KEZVisEnvironment::EndSelection()
{
    Q_D(KEZVisEnvironment);

    // Ends the transaction: the pending sets are cleared before the scope goes,
    // so that a listener of BatchFinished() may open a fresh transaction.
    const auto finish = [d]() {
        d->committingSelection = false;
        d->KeepRoomForDeathNotes();
        ++d->pendingShrinks;
        d->pendingAdditions.clear();
        d->pendingRemovals.clear();
        KEZVisEnvironmentBatchContext *scope = d->selectionScope;
        d->selectionScope = nullptr;
        delete scope;
    };

    // A removal beats an addition of the same object.
    if (!d->pendingAdditions.isEmpty()) {
        for (KEZVisObject *object : std::as_const(d->pendingRemovals))
            removeIfPresent(d->pendingAdditions, object);
    }
    // Only selected objects can be deselected.
    {
        const QSet<KEZVisObject *> &selection = d->Selection();
        for (auto it = d->pendingRemovals.begin(); it != d->pendingRemovals.end();) {
            if (selection.contains(*it))
                ++it;
            else
                it = d->pendingRemovals.erase(it);
        }
    }

    // Until the set and the members' marks are in step again, a death takes
    // the object out of the set at once.
    d->committingSelection = true;
    try {
        // The state signals run listeners that may destroy objects, which takes
        // them out of the pending sets: iterate over shared copies and skip
        // whatever has left the pending set since.
        quint64 deaths = KEZVisObjectPrivate::DeathCount();
        quint64 shrinks = d->pendingShrinks;
        const std::vector<KEZVisObject *> additions = inAddressOrder(d->pendingAdditions);
        const size_t additionCount = additions.size();
        // Before the first callout: an object that a listener destroys must
        // find this environment noted if it is not its own.
        for (KEZVisObject *object : additions)
            d->NoteHolding(object);
        for (size_t i = 0; i < additionCount; ++i) {
            prefetchObjectsAhead(additions, i, deaths);
            KEZVisObject *object = additions[i];
            if (d->pendingShrinks != shrinks && !d->pendingAdditions.contains(object))
                continue;
            KEZVisObjectPrivate *od = KEZVisObjectPrivate::get(object);
            if (od->selectionState != KEZVisObject::PreSelected) {
                const quint64 shrinksBefore = d->pendingShrinks;
                od->SetSelectionState(KEZVisObject::Selected);
                // The listeners may have destroyed the object itself.
                if (d->pendingShrinks != shrinksBefore && !d->pendingAdditions.contains(object))
                    continue;
            }
            d->SetSelectionMember(object, true);
        }
        uniteInto(d->Selection(), d->pendingAdditions);

        deaths = KEZVisObjectPrivate::DeathCount();
        shrinks = d->pendingShrinks;
        const std::vector<KEZVisObject *> removals = inAddressOrder(d->pendingRemovals);
        const size_t removalCount = removals.size();
        for (size_t i = 0; i < removalCount; ++i) {
            prefetchObjectsAhead(removals, i, deaths);
            KEZVisObject *object = removals[i];
            if (d->pendingShrinks != shrinks && !d->pendingRemovals.contains(object))
                continue;
            d->SetSelectionMember(object, false);
            if (!d->preselection.isEmpty() && d->preselection.contains(object))
                continue;
            KEZVisObjectPrivate::get(object)->SetSelectionState(KEZVisObject::NotSelected);
        }
        for (KEZVisObject *object : std::as_const(d->pendingRemovals))
            removeIfPresent(d->Selection(), object);
        d->committingSelection = false;

        if (d->pendingAdditions.isEmpty() && d->pendingRemovals.isEmpty()) {
            finish();
            return;
        }
        // Shared copies, so that listeners hold stable sets even if an object
        // dies during the delivery. The pending sets stay filled meanwhile,
        // which keeps selection operations from handlers out.
        const QSet<KEZVisObject *> selected = d->pendingAdditions;
        const QSet<KEZVisObject *> deselected = d->pendingRemovals;
        emit VisualizationSelectionChanged(selected, deselected);
    } catch (...) {
        // A listener let an exception escape: the commit stays in the selection
        // set, the remaining signals are skipped, the transaction ends and the
        // exception goes on.
        // The pending sets hold living objects only; their marks follow the set.
        uniteInto(d->Selection(), d->pendingAdditions);
        for (KEZVisObject *object : std::as_const(d->pendingAdditions))
            d->SetSelectionMember(object, true);
        for (KEZVisObject *object : std::as_const(d->pendingRemovals)) {
            removeIfPresent(d->Selection(), object);
            d->SetSelectionMember(object, false);
        }
        finish();
        throw;
    }
    finish();
}

void KEZVisEnvironment::AddSelectedVisualization(KEZVisObject *object)
{
    Q_D(KEZVisEnvironment);
    if (object) {
        d->NoteHolding(object);
        d->pendingAdditions.insert(object);
    }
}

void KEZVisEnvironment::RemoveSelectedVisualization(KEZVisObject *object)
{
    Q_D(KEZVisEnvironment);
    if (object) {
        d->NoteHolding(object);
        d->pendingRemovals.insert(object);
    }
}

void KEZVisEnvironment::SetSelectedVisualization(const QSet<KEZVisObject *> &objects)
{
    Q_D(KEZVisEnvironment);
    for (KEZVisObject *object : objects) {
        if (object && !d->Selection().contains(object)) {
            d->NoteHolding(object);
            d->pendingAdditions.insert(object);
        }
    }
    for (KEZVisObject *object : std::as_const(d->Selection())) {
        if (!objects.contains(object))
            d->pendingRemovals.insert(object);
    }
}

void KEZVisEnvironment::SetPreselectedVisualization(const QSet<KEZVisObject *> &objects)
{
    Q_D(KEZVisEnvironment);
    QSet<KEZVisObject *> incoming = objects;
    if (incoming.contains(nullptr))
        incoming.remove(nullptr);
    // Before the first callout, so that the death of any of them reaches here.
    for (KEZVisObject *object : std::as_const(incoming))
        d->NoteHolding(object);

    // The state signals run listeners that may destroy objects: a death takes
    // the object out of the live preselection and out of `incoming`, and the
    // loops walk shared copies.
    d->enteringPreselection.push_back(&incoming);
    const auto stopWatchingIncoming = qScopeGuard([d] { d->enteringPreselection.pop_back(); });
    const QSet<KEZVisObject *> previous = d->preselection;
    for (KEZVisObject *object : previous) {
        if (incoming.contains(object) || !d->preselection.contains(object))
            continue;
        KEZVisObjectPrivate::get(object)->SetSelectionState(
            d->Selection().contains(object) ? KEZVisObject::Selected : KEZVisObject::NotSelected);
    }
    const QSet<KEZVisObject *> entering = incoming;
    for (KEZVisObject *object : entering) {
        if (!previous.contains(object) && incoming.contains(object))
            KEZVisObjectPrivate::get(object)->SetSelectionState(KEZVisObject::PreSelected);
    }
    if (d->preselection == incoming)
        return;
    const QSet<KEZVisObject *> old = d->preselection;
    d->preselection = incoming;
    emit VisualizationPreselectionChanged(old, incoming);
}
