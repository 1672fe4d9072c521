#ifndef KEZVISENVIRONMENTOBJECTLIST_P_H
#define KEZVISENVIRONMENTOBJECTLIST_P_H

// The object list of an environment: a list in order of addition in which the
// removal of every occurrence of an object costs amortised constant time.

#include <QHash>
#include <QList>
#include <QMultiHash>

#include <vector>

class KEZVisObject;
class KEZVisVirtualObject;

/*
    Entries live in a QList of slots. Removing an object marks its slots dead
    instead of shifting the list; a hash from object to the index of its first
    slot finds it without a scan, and a second hash holds the further slots of
    the rare object that is listed more than once. The hash holds one pointer
    and one index per object: in large scenes the size of the table, more than
    the work per object, decides the cost. The dead slots are squeezed out, in
    one linear pass that keeps the order, once they outnumber the live ones and
    whenever the whole list is handed out, so the cost of a removal stays
    amortised constant.
    A null pointer is a legal entry like any other.
*/
class KEZVisEnvironmentObjectList
{
public:
    //! Appends \a object at the end.
    void Append(KEZVisVirtualObject *object);
    //! Removes every occurrence of \a object; answers whether there was one.
    bool RemoveAll(KEZVisObject *object);
    //! The live entries in order, as a list that shares its data with this one.
    QList<KEZVisVirtualObject *> List() const;
    //! A new list of the live entries in order.
    QList<KEZVisObject *> ToObjectList() const;
    //! Whether \a object is listed.
    bool Contains(KEZVisObject *object) const;
    //! The number of live entries.
    qsizetype Count() const { return m_slots.size() - m_dead; }

private:
    void Compact() const;

    mutable QList<KEZVisVirtualObject *> m_slots;
    mutable std::vector<bool> m_alive;
    // Keyed by the base class: a dying object is no longer a KEZVisVirtualObject.
    mutable QHash<KEZVisObject *, qsizetype> m_first;
    mutable QMultiHash<KEZVisObject *, qsizetype> m_more;
    mutable qsizetype m_dead = 0;
};

#endif // KEZVISENVIRONMENTOBJECTLIST_P_H
