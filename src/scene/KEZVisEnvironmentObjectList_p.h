#ifndef KEZVISENVIRONMENTOBJECTLIST_P_H
#define KEZVISENVIRONMENTOBJECTLIST_P_H

// The object list of an environment: a list in order of addition in which the
// removal of every occurrence of an object costs amortised constant time.

#include <QHash>
#include <QList>
#include <QMultiHash>

#include <cstdint>
#include <vector>

class KEZVisObject;
class KEZVisVirtualObject;

/*
    Entries live in a QList of slots. Removing an object marks its slots dead
    instead of shifting the list, and the dead slots are squeezed out, in one
    linear pass that keeps the order, once they outnumber the live ones and
    whenever the whole list is handed out, so the cost of a removal stays
    amortised constant.

    Finding the slots of an object takes no search. The common object, one made
    for this list's environment and listed here, keeps the index of its first
    slot in its own private record (KEZVisObjectPrivate::listedIn/listIndex):
    looking it up touches only memory that the operation touches anyway, which
    in large scenes is what decides the cost. Such an object reports its death
    to this environment and so leaves the list before its record goes, which is
    what makes the record safe to write; a dying object that a listener lists
    again goes the other way. Every other entry (an object made for
    another environment, a null pointer) is found through a hash from object to
    the index of its first slot, and a second hash holds the further slots of
    the rare object that is listed more than once, whichever way its first slot
    is found. Entries of the hash kind are never dereferenced: such an object
    may die without telling this list.
    A null pointer is a legal entry like any other.
*/
class KEZVisEnvironmentObjectList
{
public:
    //! An empty list with a serial number not given to any list before.
    KEZVisEnvironmentObjectList();
    //! Forgets the indices kept in the records of the listed objects.
    ~KEZVisEnvironmentObjectList();

    //! Appends \a object at the end.
    void Append(KEZVisVirtualObject *object);
    /*!
        Removes every occurrence of \a object; answers whether there was one.
        Reads the record of \a object, which must therefore be null or a living
        object (or one still inside its KEZVisObject destructor).
    */
    bool RemoveAll(KEZVisObject *object);
    //! The live entries in order, as a list that shares its data with this one.
    QList<KEZVisVirtualObject *> List() const;
    //! A new list of the live entries in order.
    QList<KEZVisObject *> ToObjectList() const;
    /*
        Names this list for the records of the objects made for its
        environment (KEZVisObjectPrivate::environmentListSerial). Serials are
        never reused, so unlike an address, a serial can't come to name a new
        list after its own has gone.
    */
    quint64 Serial() const { return m_serial; }
    //! The number of live entries.
    qsizetype Count() const { return m_slots.size() - m_dead; }
    /*
        Empties the list and forgets the indices kept in the records of the
        listed objects. Called before anything else when the environment goes,
        while every object that keeps an index is still alive.
    */
    void Release();

private:
    // What a slot holds.
    enum SlotKind : std::uint8_t {
        Dead,         // removed
        HashedFirst,  // first slot of an object found through m_first
        RecordFirst,  // first slot of an object that keeps its index itself
        Further       // a further slot of an object listed more than once
    };

    void Compact() const;
    // Writes the live slots in order to \a target, which may be the slots
    // themselves, renumbers the indices and the kinds, and answers the count.
    qsizetype CompactInto(KEZVisVirtualObject **target) const;
    void CompactIntoCopy() const;

    const quint64 m_serial;
    mutable QList<KEZVisVirtualObject *> m_slots;
    mutable std::vector<SlotKind> m_kinds;
    // Keyed by the base class: a dying object is no longer a KEZVisVirtualObject.
    mutable QHash<KEZVisObject *, qsizetype> m_first;
    mutable QMultiHash<KEZVisObject *, qsizetype> m_more;
    mutable qsizetype m_dead = 0;
};

#endif // KEZVISENVIRONMENTOBJECTLIST_P_H
