#ifndef KEZVISOBJECT_P_H
#define KEZVISOBJECT_P_H

// Private record of KEZVisObject. Not part of the installed interface.

#include "KEZVisObject.h"

#include <QList>
#include <QPointer>

#include "KEZMathBoundingBox.h"

class KEZVisEnvironment;
class KEZVisEnvironmentObjectList;
class KEZVisRep;

class KEZVISUALIZATION_EXPORT KEZVisObjectPrivate
{
public:
    KEZVisObjectPrivate(KEZVisObject *q, const KEZVisEnvironment *environment);
    //! Deletes the rep.
    virtual ~KEZVisObjectPrivate();

    /*!
        Writes the selection state. Writing the state already held does nothing;
        otherwise SelectionStateChanged(state) and then
        ChangeOccurred(SelectionStateChange) go out. The environment's selection
        operations are the only writers.
    */
    void SetSelectionState(KEZVisObject::SelectionState state);

    static KEZVisObjectPrivate *get(KEZVisObject *object) { return object->d_func(); }

    /*
        The number of KEZVisObject destructors run so far in the process. Code
        that walks a copied list of objects while calling out to listeners
        compares it before and after each call: if it moved, some object died,
        and the copy must be checked against a fresh list before going on.
    */
    static quint64 DeathCount();

    /*
        Emits ChangeOccurred(change) on object after emitSpecific() has sent
        the specific signal of the change, unless a listener of that signal
        destroyed the object meanwhile: then nothing more goes out, and nothing
        touches the object again.
    */
    template <typename EmitSpecific>
    static void EmitChange(KEZVisObject *object, EmitSpecific emitSpecific, KEZVisObject::ChangeType change)
    {
        const DeathWatch watch(get(object));
        emitSpecific();
        if (!watch.Died())
            emit object->ChangeOccurred(change);
    }

    /*
        Tells whether an object outlives a call: a record on the stack that the
        object's destructor marks. The records of an object chain from its
        private record, innermost first, so that neither a QPointer's tracking
        block nor thread-local storage is needed.
    */
    class DeathWatch
    {
    public:
        explicit DeathWatch(KEZVisObjectPrivate *d)
            : m_d(d)
            , m_outer(d->deathWatch)
        {
            d->deathWatch = this;
        }
        ~DeathWatch()
        {
            if (!m_died)
                m_d->deathWatch = m_outer;
        }
        DeathWatch(const DeathWatch &) = delete;
        DeathWatch &operator=(const DeathWatch &) = delete;
        bool Died() const { return m_died; }
        // Marks every record that watches the object of d, which is dying.
        static void NoteDeath(KEZVisObjectPrivate *d)
        {
            for (DeathWatch *watch = d->deathWatch; watch; watch = watch->m_outer)
                watch->m_died = true;
        }

    private:
        KEZVisObjectPrivate *m_d;
        DeathWatch *m_outer;
        bool m_died = false;
    };

    // The fields that adding, removing and commits read come first, so that
    // in large scenes those operations touch a single cache line of the record.
    KEZVisObject *q_ptr;
    /*
        The list of this object's own environment while the object is listed
        there, and the index of its first slot in it, kept and read by that
        list alone so that it finds the object without a search. Null and -1
        while the object isn't listed there.
    */
    const KEZVisEnvironmentObjectList *listedIn = nullptr;
    qsizetype listIndex = -1;
    /*
        The serial of the object list of the environment the object was made
        for (KEZVisEnvironmentObjectList::Serial()), or 0 for none; the list
        tells its own objects by it.
    */
    const quint64 environmentListSerial;
    KEZVisObject::SelectionState selectionState = KEZVisObject::NotSelected;
    /*
        Whether the object is in the selection set of its own environment, kept
        by that environment alone (KEZVisEnvironmentPrivate::SetSelectionMember)
        so that an object's death knows without a lookup whether it leaves the
        selection. Objects in the selection of another environment don't set it.
    */
    bool inOwnSelection = false;
    /*
        Set when the object's destructor begins. A dying object that a listener
        lists again is listed like an object of another environment, without an
        index in this record, which is about to go.
    */
    bool dying = false;
    // The innermost record watching for the object's death while it emits (see DeathWatch).
    DeathWatch *deathWatch = nullptr;
    const KEZVisRep *rep = nullptr;
    QPointer<const KEZVisEnvironment> environment;
    // The rep's box is asked lazily from const accessors, hence mutable.
    mutable bool boundingBoxValid = false;
    mutable KEZMathBoundingBox boundingBox;
    /*
        The environments other than its own whose selection, preselection or
        pending sets may hold the object, noted by each of them when the object
        enters one of those sets (and by its own environment as well while the
        object is dying). The object's death takes it out of their sets too, so
        that no environment keeps the address of a dead object. Weak, since
        those environments may die first; an entry may outlast the membership
        that it was noted for, which costs a few lookups at the death.
    */
    QList<QPointer<const KEZVisEnvironment>> otherHolders;

    //! Notes \a environment among otherHolders once, dropping dead entries on the way.
    void NoteHeldBy(const KEZVisEnvironment *environment);

private:
    Q_DISABLE_COPY(KEZVisObjectPrivate)
};

#endif // KEZVISOBJECT_P_H
