#include "KEZVisRepExtraSet.h"

KEZVisRepExtraSet::KEZVisRepExtraSet(const QList<const KEZVisRep *> &children, const KEZVisOptions &extraOptions)
    : KEZVisRepSet(children)
    , m_extraOptions(new KEZVisOptions(extraOptions))
{
}

KEZVisRepExtraSet::~KEZVisRepExtraSet()
{
    delete m_extraOptions;
}

KEZVisOptions KEZVisRepExtraSet::GetExtraVisOptions() const
{
    return *m_extraOptions;
}
