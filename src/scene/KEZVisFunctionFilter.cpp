#include "KEZVisFunctionFilter.h"

#include "KEZVisFunctionFilter_p.h"

KEZVisFunctionFilter::KEZVisFunctionFilter(bool multiSelection,
                                           const std::function<bool(const KEZVisObject *)> &function)
    : KEZVisSelectionFilter(multiSelection)
    , d_function(new KEZVisFunctionFilterPrivate)
{
    d_function->function = function;
}

KEZVisFunctionFilter::~KEZVisFunctionFilter()
{
    delete d_function;
}

bool KEZVisFunctionFilter::IsSelectable(const KEZVisObject *object) const
{
    Q_D(const KEZVisFunctionFilter);
    return d->function(object);
}
