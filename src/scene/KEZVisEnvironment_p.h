#ifndef KEZVISENVIRONMENT_P_H
#define KEZVISENVIRONMENT_P_H

// Private object of KEZVisEnvironment. Not part of the installed interface.

#include "KEZVisEnvironment.h"
#include "KEZVisEnvironmentObjectList_p.h"

#include <QObject>
#include <QSet>
#include <QSharedPointer>

#include <vector>

class KEZVisEnvironmentBatchContext;
class KEZVisSelectionFilter;

/*
    The environment's state. It is a QObject of its own, without parent, signals
    or slots, so that connections made on behalf of the environment never touch
    the meta-object of a subclass of KEZVisEnvironment.
*/
class KEZVISUALIZATION_EXPORT KEZVisEnvironmentPrivate : public QObject
{
    Q_OBJECT

public:
    explicit KEZVisEnvironmentPrivate(KEZVisEnvironment *q);
    //! Deletes an open selection scope, then releases the sets, the filter and the list.
    ~KEZVisEnvironmentPrivate() override;

    static KEZVisEnvironmentPrivate *get(KEZVisEnvironment *environment) { return environment->d_ptr; }

    /*
        The death of an object that names \a environment: every occurrence
        leaves the list, the object leaves the selection, preselection, pending
        additions and pending removals, and ObjectRemoved() goes out whether or
        not it was listed. Nothing happens once the environment's private
        object is gone.
    */
    static void ObjectDestroyed(const KEZVisEnvironment *environment, KEZVisObject *object);

    /*
        The death of an object that \a environment noted as held in its sets
        although the object doesn't name it (or was dying when it joined): the
        object leaves the selection, preselection, pending additions and pending
        removals, silently. Nothing happens once the environment's private
        object is gone.
    */
    static void HeldObjectDestroyed(const KEZVisEnvironment *environment, KEZVisObject *object);

    /*
        Called before \a object enters the selection (through the pending
        additions), the preselection or a pending set: an object of another
        environment, without one, or dying, notes this environment so that its
        death reaches this environment too. Null is ignored.
    */
    void NoteHolding(KEZVisObject *object);

    //! The serial of the object list of \a environment; 0 for null or a dying environment.
    static quint64 ListSerialOf(const KEZVisEnvironment *environment);

    //! Opens a batch; BatchStarted() goes out if it is the outermost.
    void StartBatch();
    //! Closes a batch; raises "batch count already zero" if none is open.
    void FinishBatch();
    //! Opens a selection batch; BatchSelectionStarted() goes out if it is the outermost.
    void StartBatchSelection();
    //! Closes a selection batch; raises "batch selection count already zero" if none is open.
    void FinishBatchSelection();

    //! Installs the default filter through the virtual SetSelectionFilter() if there is none.
    void EnsureSelectionFilter();
    //! Emits one request built by \a build.
    template <typename Build>
    void SendRequest(Build build);

    /*
        The selection set. Every read and write goes through these, which first
        take out the selected objects that died since the last call.
    */
    QSet<KEZVisObject *> &Selection();
    const QSet<KEZVisObject *> &Selection() const;
    /*
        Records in a living object of this environment whether it is now in the
        selection set; objects of other environments are left alone. Every
        change of the set's members outside a commit's callouts goes with it.
    */
    void SetSelectionMember(KEZVisObject *object, bool member);

    KEZVisEnvironmentObjectList objects;
    QSharedPointer<KEZVisSelectionFilter> selectionFilter;
    QSet<KEZVisObject *> preselection;
    QSet<KEZVisObject *> pendingAdditions;
    QSet<KEZVisObject *> pendingRemovals;
    /*
        Counts the events that may take entries out of the pending sets while a
        commit calls out to listeners (an object's death, the end of a nested
        commit). A commit that sees it unchanged knows that every object of its
        snapshot is still pending, without a lookup per object.
    */
    quint64 pendingShrinks = 0;
    /*
        The sets of objects entering the preselection of the
        SetPreselectedVisualization calls under way, innermost last: a death
        takes the object out of each of them too, so that a listener that
        destroys an object entering the preselection doesn't leave it there.
    */
    std::vector<QSet<KEZVisObject *> *> enteringPreselection;
    int batchCount = 0;
    int batchSelectionCount = 0;
    KEZVisEnvironmentBatchContext *selectionScope = nullptr;  // owned
    KEZVisEnvironment::MouseInteractionFlags mouseInteraction;
    KEZVisEnvironment::MouseSnapGeometryTypes mouseSnapGeometryTypes;
    KEZVisMouseContext::NativeGeometrySelectionType nativeGeometrySelectionType =
        KEZVisMouseContext::NoGeometrySelection;
    bool selectionEnabled = false;
    KEZVisEnvironment *q_ptr;

    /*
        Set while a commit calls out to listeners with the selection set and
        the members' marks not yet in step; a death then leaves the set at once.
    */
    bool committingSelection = false;

    /*
        Makes room for a note of every member after a commit, so that noting a
        death never allocates: in glibc, any allocation in the middle of a
        teardown first sorts the memory freed so far into its bins, and the
        deaths would pay for that bookkeeping. Costs a pointer a member.
    */
    void KeepRoomForDeathNotes();

private:
    //! An object of this environment died: it leaves the selection set, now or at the next Selection().
    void NoteDeathForSelection(KEZVisObject *object);
    //! Takes every object noted by NoteDeathForSelection() out of the selection set.
    void TakeDeadOutOfSelection() const;

    /*
        When a large selected scene is torn down, objects die one after another
        while their memory streams through the cache; a hash lookup per death
        would wait on two cache misses and grow the cost an object with the
        size of the scene. So a dying member (its record says so) is only noted,
        and the notes leave the set before anyone reads or writes it again: all
        at once if every member died, one by one if they are few against the
        set, else in one pass that sorts both by address and keeps the
        difference. No code sees the set in between, so an object made later at
        a dead member's address is never taken for it. Each note is a distinct
        member, so the notes never outnumber the set.
    */
    mutable QSet<KEZVisObject *> selection;
    mutable std::vector<KEZVisObject *> deadMembers;

    Q_DECLARE_PUBLIC(KEZVisEnvironment)
};

#endif // KEZVISENVIRONMENT_P_H
