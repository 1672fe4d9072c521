#include "KEZVisEnvironmentObjectList_p.h"

#include "KEZVisVirtualObject.h"

void KEZVisEnvironmentObjectList::Append(KEZVisVirtualObject *object)
{
    const qsizetype index = m_slots.size();
    // One lookup: operator[] adds the object if it is new, which the size tells.
    const qsizetype known = m_first.size();
    qsizetype &first = m_first[object];
    if (m_first.size() != known)
        first = index;
    else
        m_more.insert(object, index);
    m_slots.append(object);
    m_alive.push_back(true);
}

bool KEZVisEnvironmentObjectList::RemoveAll(KEZVisObject *object)
{
    KEZVisObject *const key = object;
    const auto it = m_first.find(key);
    if (it == m_first.end())
        return false;
    m_alive[size_t(it.value())] = false;
    ++m_dead;
    m_first.erase(it);
    if (!m_more.isEmpty() && m_more.contains(key)) {
        const QList<qsizetype> further = m_more.values(key);
        for (qsizetype index : further) {
            m_alive[size_t(index)] = false;
            ++m_dead;
        }
        m_more.remove(key);
    }
    if (m_dead == m_slots.size()) {
        // Nothing left: start afresh without a pass over the dead slots.
        m_slots.clear();
        m_alive.clear();
        m_dead = 0;
    } else if (m_dead > 64 && m_dead * 2 > m_slots.size()) {
        Compact();
    }
    return true;
}

QList<KEZVisVirtualObject *> KEZVisEnvironmentObjectList::List() const
{
    if (m_dead)
        Compact();
    return m_slots;
}

QList<KEZVisObject *> KEZVisEnvironmentObjectList::ToObjectList() const
{
    QList<KEZVisObject *> result;
    result.reserve(Count());
    const qsizetype size = m_slots.size();
    for (qsizetype i = 0; i < size; ++i) {
        if (m_alive[size_t(i)])
            result.append(m_slots.at(i));
    }
    return result;
}

bool KEZVisEnvironmentObjectList::Contains(KEZVisObject *object) const
{
    return m_first.contains(object);
}

void KEZVisEnvironmentObjectList::Compact() const
{
    QList<KEZVisVirtualObject *> compacted;
    compacted.reserve(m_slots.size() - m_dead);
    // Every live object is renumbered: -1 marks one not yet met in this pass.
    for (auto it = m_first.begin(); it != m_first.end(); ++it)
        it.value() = -1;
    m_more.clear();
    const qsizetype size = m_slots.size();
    for (qsizetype i = 0; i < size; ++i) {
        if (!m_alive[size_t(i)])
            continue;
        KEZVisVirtualObject *object = m_slots.at(i);
        qsizetype &first = m_first[object];
        if (first < 0)
            first = compacted.size();
        else
            m_more.insert(object, compacted.size());
        compacted.append(object);
    }
    m_slots = std::move(compacted);
    m_alive.assign(size_t(m_slots.size()), true);
    m_dead = 0;
}
