#ifndef KEZVISREPEXTRASET_H
#define KEZVISREPEXTRASET_H

#include "KEZVisRepSet.h"
#include "kezvisualization_export.h"

/*!
 * \class KEZVisRepExtraSet
 * \brief A rep set that carries one further KEZVisOptions for its reader.
 *
 * The extra options take no part in GetPrimitives(), the box or the stream;
 * their meaning is for those who read them (the 2D painter, for one, takes
 * their colour as the fill of the closed polylines below the set). Otherwise the set behaves as a
 * KEZVisRepSet.
 */
class KEZVISUALIZATION_EXPORT KEZVisRepExtraSet : public KEZVisRepSet
{
    Q_OBJECT

public:
    /*! Takes over the children and keeps a copy of \a extraOptions. */
    KEZVisRepExtraSet(const QList<const KEZVisRep *> &children, const KEZVisOptions &extraOptions);

    ~KEZVisRepExtraSet() override;

    /*! The extra options, by value. */
    KEZVisOptions GetExtraVisOptions() const;

private:
    Q_DISABLE_COPY(KEZVisRepExtraSet)

    // The extra options, owned and deleted with the set.
    KEZVisOptions *m_extraOptions;
};

#endif // KEZVISREPEXTRASET_H
