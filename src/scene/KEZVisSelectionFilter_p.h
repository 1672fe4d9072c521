#ifndef KEZVISSELECTIONFILTER_P_H
#define KEZVISSELECTIONFILTER_P_H

// Private record of KEZVisSelectionFilter. Not part of the installed interface.

#include <QString>

class KEZVisSelectionFilter;

class KEZVisSelectionFilterPrivate
{
public:
    KEZVisSelectionFilterPrivate(KEZVisSelectionFilter *q, bool multiSelection)
        : q_ptr(q)
        , multiSelection(multiSelection)
    {
    }
    virtual ~KEZVisSelectionFilterPrivate() = default;

    KEZVisSelectionFilter *q_ptr;
    const bool multiSelection;
    QString description = QStringLiteral("");  // empty, not null
};

#endif // KEZVISSELECTIONFILTER_P_H
