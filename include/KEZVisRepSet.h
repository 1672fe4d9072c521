#ifndef KEZVISREPSET_H
#define KEZVISREPSET_H

#include "KEZVisRep.h"
#include "kezvisualization_export.h"

class KEZVisRepSetPrivate;

/*!
 * \class KEZVisRepSet
 * \brief The branch rep: a list of child reps whose answers it concatenates.
 *
 * The set owns its children and deletes each non-null one, in list order,
 * when it goes; a child must have exactly one owner. Null children are
 * allowed and skipped.
 *
 * A set has no stream form: Save() and Load() are those of KEZVisRep and do
 * nothing, so a rep stream never holds a set.
 */
class KEZVISUALIZATION_EXPORT KEZVisRepSet : public KEZVisRep
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(KEZVisRepSet)

public:
    /*! Takes over the children. */
    explicit KEZVisRepSet(const QList<const KEZVisRep *> &children);

    ~KEZVisRepSet() override;

    /*! The children, a shared copy of the list; the pointers are borrowed. */
    QList<const KEZVisRep *> GetChildVisReps() const;

    /*!
     * Asks each non-null child, in order, into two fresh lists and appends
     * them to \a primitives and \a options. A set inside a set thus flattens
     * depth first, in order.
     */
    void GetPrimitives(QList<const KEZVisPrimitive *> &primitives, QList<KEZVisOptions> &options) const override;

protected:
    /*!
     * Lets a subclass bring a record derived from KEZVisRepSetPrivate, with
     * its children already in it; the set takes ownership of it.
     */
    explicit KEZVisRepSet(KEZVisRepSetPrivate *d);

private:
    Q_DISABLE_COPY(KEZVisRepSet)
};

#endif // KEZVISREPSET_H
