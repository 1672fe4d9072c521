#ifndef KEZTOPEDGE_H
#define KEZTOPEDGE_H

#include "keztopology_export.h"

#include "KEZGeoComboCurve.h"

#include <QObject>

class KEZTopEdgePrivate;

/*!
    A topology edge: an entity of dimension 1 of a KEZTopBody, running along a
    curve.

    The edge refers to its geometry without owning it and without counting a
    reference on it: whoever made the geometry keeps it alive. The edge
    watches the geometry, and GetCurve() answers null once it has been
    deleted, as it does when null was given.
*/
class KEZTOPOLOGY_EXPORT KEZTopEdge : public QObject
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(KEZTopEdge)
public:
    explicit KEZTopEdge(const KEZGeoComboCurve *curve, QObject *parent = nullptr);
    ~KEZTopEdge() override;

    const KEZGeoComboCurve *GetCurve() const;

private:
    KEZTopEdgePrivate *d_ptr;
    Q_DISABLE_COPY(KEZTopEdge)
};

#endif // KEZTOPEDGE_H
