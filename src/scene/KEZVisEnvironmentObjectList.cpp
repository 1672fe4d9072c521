#include "KEZVisEnvironmentObjectList_p.h"

#include "KEZVisEnvironment.h"
#include "KEZVisObject_p.h"
#include "KEZVisVirtualObject.h"

#include <atomic>

namespace {

// Starts at one: zero names no list.
std::atomic<quint64> nextListSerial{1};

// The record of a living object, or null for a null pointer and for an object
// whose KEZVisObject part has already been destroyed.
KEZVisObjectPrivate *recordOf(KEZVisObject *object)
{
    return object ? KEZVisObjectPrivate::get(object) : nullptr;
}

} // namespace

KEZVisEnvironmentObjectList::KEZVisEnvironmentObjectList()
    : m_serial(nextListSerial.fetch_add(1, std::memory_order_relaxed))
{
}

KEZVisEnvironmentObjectList::~KEZVisEnvironmentObjectList()
{
    Release();
}

void KEZVisEnvironmentObjectList::Release()
{
    const qsizetype size = m_slots.size();
    for (qsizetype i = 0; i < size; ++i) {
        if (m_kinds[size_t(i)] == RecordFirst) {
            KEZVisObjectPrivate *record = KEZVisObjectPrivate::get(m_slots.at(i));
            record->listedIn = nullptr;
            record->listIndex = -1;
        }
    }
    m_slots.clear();
    m_kinds.clear();
    m_first.clear();
    m_more.clear();
    m_dead = 0;
}

void KEZVisEnvironmentObjectList::Append(KEZVisVirtualObject *object)
{
    const qsizetype index = m_slots.size();
    SlotKind kind = HashedFirst;
    if (KEZVisObjectPrivate *record = recordOf(object)) {
        if (record->listedIn == this) {
            kind = Further;
        } else if (!record->listedIn && !record->dying && record->environmentListSerial == m_serial) {
            // The serial says that the object's environment is this list's
            // one, which is alive; comparing it instead of asking the guarded
            // pointer spares a read of the pointer's separately allocated
            // reference count, a cache miss per object in large scenes.
            record->listedIn = this;
            record->listIndex = index;
            kind = RecordFirst;
        }
    }
    if (kind == HashedFirst) {
        // One lookup: operator[] adds the object if it is new, which the size tells.
        const qsizetype known = m_first.size();
        qsizetype &first = m_first[object];
        if (m_first.size() != known)
            first = index;
        else
            kind = Further;
    }
    if (kind == Further)
        m_more.insert(object, index);
    m_slots.append(object);
    m_kinds.push_back(kind);
}

bool KEZVisEnvironmentObjectList::RemoveAll(KEZVisObject *object)
{
    KEZVisObject *const key = object;
    qsizetype first = -1;
    KEZVisObjectPrivate *record = recordOf(object);
    if (record && record->listedIn == this) {
        first = record->listIndex;
        record->listedIn = nullptr;
        record->listIndex = -1;
    } else {
        if (m_first.isEmpty())
            return false;
        const auto it = m_first.find(key);
        if (it == m_first.end())
            return false;
        first = it.value();
        m_first.erase(it);
    }
    m_kinds[size_t(first)] = Dead;
    ++m_dead;
    if (!m_more.isEmpty() && m_more.contains(key)) {
        const QList<qsizetype> further = m_more.values(key);
        for (qsizetype index : further) {
            m_kinds[size_t(index)] = Dead;
            ++m_dead;
        }
        m_more.remove(key);
    }
    if (m_dead == m_slots.size()) {
        // Nothing left: start afresh without a pass over the dead slots.
        m_slots.clear();
        m_kinds.clear();
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
    if (!m_dead)
        return QList<KEZVisObject *>(m_slots.cbegin(), m_slots.cend());
    QList<KEZVisObject *> result;
    result.reserve(Count());
    const qsizetype size = m_slots.size();
    for (qsizetype i = 0; i < size; ++i) {
        if (m_kinds[size_t(i)] != Dead)
            result.append(m_slots.at(i));
    }
    return result;
}

void KEZVisEnvironmentObjectList::Compact() const
{
    // In place unless a handed-out list still shares the slots: a fresh
    // allocation of the whole list on every compaction would cost a copy, and
    // glibc merges all recently freed small chunks at the next large request,
    // which in a scene being torn down means the memory of every dead object.
    if (m_slots.isDetached())
        m_slots.resize(CompactInto(m_slots.data()));
    else
        CompactIntoCopy();
}

qsizetype KEZVisEnvironmentObjectList::CompactInto(KEZVisVirtualObject **target) const
{
    // Removal takes every occurrence of an object at once, so the live slots of
    // an object keep their kinds: its first live slot stays its first. Slots
    // only move towards the front, so reading slot i after writing slot
    // index <= i is safe.
    m_more.clear();
    const qsizetype size = m_slots.size();
    const KEZVisVirtualObject *const *source = m_slots.constData();
    qsizetype index = 0;
    for (qsizetype i = 0; i < size; ++i) {
        const SlotKind kind = m_kinds[size_t(i)];
        if (kind == Dead)
            continue;
        KEZVisVirtualObject *object = const_cast<KEZVisVirtualObject *>(source[i]);
        switch (kind) {
        case RecordFirst:
            KEZVisObjectPrivate::get(object)->listIndex = index;
            break;
        case HashedFirst:
            m_first[object] = index;
            break;
        case Further:
            m_more.insert(object, index);
            break;
        case Dead:
            break;
        }
        target[index] = object;
        m_kinds[size_t(index)] = kind;
        ++index;
    }
    m_kinds.resize(size_t(index));
    m_dead = 0;
    return index;
}

void KEZVisEnvironmentObjectList::CompactIntoCopy() const
{
    QList<KEZVisVirtualObject *> compacted(m_slots.size() - m_dead);
    CompactInto(compacted.data());
    m_slots = std::move(compacted);
}
