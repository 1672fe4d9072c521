#include "KEZVisEnvironmentObjectList_p.h"

#include "KEZVisVirtualObject.h"

void KEZVisEnvironmentObjectList::Append(KEZVisVirtualObject *object)
{
    m_positions[object].append(m_slots.size());
    m_slots.append(object);
    m_alive.push_back(true);
}

bool KEZVisEnvironmentObjectList::RemoveAll(KEZVisObject *object)
{
    const auto it = m_positions.find(object);
    if (it == m_positions.end())
        return false;
    for (qsizetype index : std::as_const(it.value())) {
        m_alive[size_t(index)] = false;
        ++m_dead;
    }
    m_positions.erase(it);
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
    return m_positions.contains(object);
}

void KEZVisEnvironmentObjectList::Compact() const
{
    QList<KEZVisVirtualObject *> compacted;
    compacted.reserve(m_slots.size() - m_dead);
    // The indexes of each object stay in increasing order, so they are rewritten in place.
    for (auto it = m_positions.begin(); it != m_positions.end(); ++it)
        it.value().clear();
    const qsizetype size = m_slots.size();
    for (qsizetype i = 0; i < size; ++i) {
        if (!m_alive[size_t(i)])
            continue;
        KEZVisVirtualObject *object = m_slots.at(i);
        m_positions[object].append(compacted.size());
        compacted.append(object);
    }
    m_slots = std::move(compacted);
    m_alive.assign(size_t(m_slots.size()), true);
    m_dead = 0;
}
