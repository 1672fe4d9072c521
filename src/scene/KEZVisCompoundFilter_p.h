#ifndef KEZVISCOMPOUNDFILTER_P_H
#define KEZVISCOMPOUNDFILTER_P_H

// Private record of KEZVisCompoundFilter, held beside that of its base.

#include "KEZVisCompoundFilter.h"

#include <QList>

class KEZVisCompoundFilterPrivate
{
public:
    KEZVisCompoundFilter::Type type = KEZVisCompoundFilter::AnyOf;
    QList<const KEZVisSelectionFilter *> subFilters;  // owned
};

#endif // KEZVISCOMPOUNDFILTER_P_H
