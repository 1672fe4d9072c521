#include "KEZVisCompoundFilter.h"

#include "KEZVisCompoundFilter_p.h"
#include "KEZVisFunctionFilter.h"

KEZVisCompoundFilter::KEZVisCompoundFilter(bool multiSelection,
                                           const QList<const KEZVisSelectionFilter *> &subFilters,
                                           Type type)
    : KEZVisSelectionFilter(multiSelection)
    , d_compound(new KEZVisCompoundFilterPrivate)
{
    d_compound->type = type;
    d_compound->subFilters = subFilters;
}

KEZVisCompoundFilter::KEZVisCompoundFilter(bool multiSelection,
                                           QList<std::function<bool(const KEZVisObject *)>> &functions,
                                           Type type)
    : KEZVisSelectionFilter(multiSelection)
    , d_compound(new KEZVisCompoundFilterPrivate)
{
    d_compound->type = type;
    d_compound->subFilters.reserve(functions.size());
    for (const auto &function : std::as_const(functions))
        d_compound->subFilters.append(new KEZVisFunctionFilter(multiSelection, function));
}

KEZVisCompoundFilter::~KEZVisCompoundFilter()
{
    for (const KEZVisSelectionFilter *filter : std::as_const(d_compound->subFilters))
        delete filter;  // null entries are skipped by delete itself
    delete d_compound;
}

bool KEZVisCompoundFilter::IsSelectable(const KEZVisObject *object) const
{
    Q_D(const KEZVisCompoundFilter);
    if (d->subFilters.isEmpty())
        return true;
    if (d->type == AnyOf) {
        for (const KEZVisSelectionFilter *filter : d->subFilters) {
            if (filter->IsSelectable(object))
                return true;
        }
        return false;
    }
    // AllOf, and every value other than AnyOf.
    for (const KEZVisSelectionFilter *filter : d->subFilters) {
        if (!filter->IsSelectable(object))
            return false;
    }
    return true;
}

void KEZVisCompoundFilter::AddSubFilter(KEZVisSelectionFilter *filter)
{
    Q_D(KEZVisCompoundFilter);
    d->subFilters.append(filter);
}

void KEZVisCompoundFilter::RemoveSubFilter(KEZVisSelectionFilter *filter)
{
    Q_D(KEZVisCompoundFilter);
    d->subFilters.removeAll(filter);
}

QList<const KEZVisSelectionFilter *> KEZVisCompoundFilter::GetSubFilters() const
{
    Q_D(const KEZVisCompoundFilter);
    return d->subFilters;
}

bool KEZVisCompoundFilter::IsAcceptAll() const
{
    Q_D(const KEZVisCompoundFilter);
    return d->subFilters.isEmpty();
}
