#ifndef KEZVISCOMPOUNDFILTER_H
#define KEZVISCOMPOUNDFILTER_H

#include "KEZVisSelectionFilter.h"

#include <QList>

#include <functional>

class KEZVisCompoundFilterPrivate;

/*!
    A filter that combines sub-filters.

    With AnyOf one sub-filter must accept, with AllOf (and any value other than
    AnyOf) every sub-filter must; evaluation stops at the first answer that
    decides, in list order, so later sub-filters aren't asked. A compound
    without sub-filters accepts everything, whatever its type.

    The compound owns its sub-filters and deletes each non-null one in list
    order when it dies; a filter has one owner, so it must not stand in two
    compounds or twice in one. IsMultiSelection() of a sub-filter counts for
    nothing: only the flag of the filter installed in the environment is read.
    A null sub-filter is not guarded against by IsSelectable().
*/
class KEZVISUALIZATION_EXPORT KEZVisCompoundFilter : public KEZVisSelectionFilter
{
    Q_OBJECT

public:
    //! How the answers of the sub-filters combine. Every int is a legal value: all but AnyOf act like AllOf.
    enum Type : int {
        AllOf = 0,  //!< every sub-filter must accept
        AnyOf = 1   //!< one sub-filter must accept
    };
    Q_ENUM(Type)

    //! Adopts the filters of \a subFilters, in order.
    explicit KEZVisCompoundFilter(bool multiSelection = true,
                                  const QList<const KEZVisSelectionFilter *> &subFilters = {},
                                  Type type = AnyOf);
    //! Makes one KEZVisFunctionFilter(multiSelection, function) per function, in order, and adopts them.
    KEZVisCompoundFilter(bool multiSelection,
                         QList<std::function<bool(const KEZVisObject *)>> &functions,
                         Type type);
    //! Deletes every non-null sub-filter, in list order.
    ~KEZVisCompoundFilter() override;

    bool IsSelectable(const KEZVisObject *object) const override;

    //! Appends \a filter and adopts it; no check for null or for a repeat.
    void AddSubFilter(KEZVisSelectionFilter *filter);
    //! Removes every occurrence of \a filter without deleting it: it goes back to the caller.
    void RemoveSubFilter(KEZVisSelectionFilter *filter);
    //! The sub-filters, in order; a shared copy of the list.
    QList<const KEZVisSelectionFilter *> GetSubFilters() const;
    //! True when there is no sub-filter, whatever the type: the compound accepts everything.
    bool IsAcceptAll() const;

private:
    Q_DECLARE_PRIVATE_D(d_compound, KEZVisCompoundFilter)
    Q_DISABLE_COPY(KEZVisCompoundFilter)
    KEZVisCompoundFilterPrivate *d_compound;
};

#endif // KEZVISCOMPOUNDFILTER_H
