#ifndef KEZVISSELECTIONFILTER_H
#define KEZVISSELECTIONFILTER_H

#include "kezvisualization_export.h"

#include <QObject>
#include <QString>

class KEZVisObject;
class KEZVisSelectionFilterPrivate;

/*!
    Abstract rule of a selection: may this object be selected, and may several
    objects be selected at once.

    An application installs one filter at a time with
    KEZVisEnvironment::SetSelectionFilter(), and the environment owns it from
    then on (it is deleted when the next filter replaces it or the environment
    dies); the pointer that KEZVisEnvironment::GetSelectionFilter() hands out
    must not be deleted. The environment does not learn of later changes to an
    installed filter: they take effect at its next question and deselect
    nothing.

    A filter is created without a QObject parent.
*/
class KEZVISUALIZATION_EXPORT KEZVisSelectionFilter : public QObject
{
    Q_OBJECT

public:
    ~KEZVisSelectionFilter() override;

    //! Whether \a object may be selected.
    virtual bool IsSelectable(const KEZVisObject *object) const = 0;

    //! The description if one was set, else GetAutoDescription().
    QString GetDescription() const;
    //! Sets the description; an empty text brings back GetAutoDescription().
    void SetDescription(const QString &description);
    //! Whether several objects may be selected at once; fixed at construction.
    bool IsMultiSelection() const;

protected:
    //! A filter without parent; \a multiSelection is fixed for its life.
    explicit KEZVisSelectionFilter(bool multiSelection);
    //! Adopts a record made by a subclass.
    explicit KEZVisSelectionFilter(KEZVisSelectionFilterPrivate *d);

    //! The text of a filter without description; empty here.
    virtual QString GetAutoDescription() const;

    KEZVisSelectionFilterPrivate *d_ptr;

private:
    Q_DECLARE_PRIVATE(KEZVisSelectionFilter)
    Q_DISABLE_COPY(KEZVisSelectionFilter)
};

#endif // KEZVISSELECTIONFILTER_H
