#include "KEZTopEdge.h"
#include "KEZTopEdge_p.h"

KEZTopEdge::KEZTopEdge(const KEZGeoComboCurve *curve, QObject *parent)
    : QObject(parent)
    , d_ptr(new KEZTopEdgePrivate)
{
    Q_D(KEZTopEdge);
    d->curve = curve;
}

KEZTopEdge::~KEZTopEdge()
{
    delete d_ptr;
}

const KEZGeoComboCurve *KEZTopEdge::GetCurve() const
{
    Q_D(const KEZTopEdge);
    return d->curve.data();
}
