#include "KEZVisSelectionFilter.h"

#include "KEZVisSelectionFilter_p.h"

KEZVisSelectionFilter::KEZVisSelectionFilter(bool multiSelection)
    : KEZVisSelectionFilter(new KEZVisSelectionFilterPrivate(this, multiSelection))
{
}

KEZVisSelectionFilter::KEZVisSelectionFilter(KEZVisSelectionFilterPrivate *d)
    : QObject(nullptr)
    , d_ptr(d)
{
}

KEZVisSelectionFilter::~KEZVisSelectionFilter()
{
    delete d_ptr;
}

QString KEZVisSelectionFilter::GetDescription() const
{
    Q_D(const KEZVisSelectionFilter);
    if (!d->description.isEmpty())
        return d->description;
    return GetAutoDescription();
}

void KEZVisSelectionFilter::SetDescription(const QString &description)
{
    Q_D(KEZVisSelectionFilter);
    d->description = description;
}

bool KEZVisSelectionFilter::IsMultiSelection() const
{
    Q_D(const KEZVisSelectionFilter);
    return d->multiSelection;
}

QString KEZVisSelectionFilter::GetAutoDescription() const
{
    return QString();
}
