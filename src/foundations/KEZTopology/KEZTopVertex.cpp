#include "KEZTopVertex.h"
#include "KEZTopVertex_p.h"

KEZTopVertex::KEZTopVertex(const KEZGeoComboPoint *point, QObject *parent)
    : QObject(parent)
    , d_ptr(new KEZTopVertexPrivate)
{
    Q_D(KEZTopVertex);
    d->point = point;
}

KEZTopVertex::~KEZTopVertex()
{
    delete d_ptr;
}

const KEZGeoComboPoint *KEZTopVertex::GetPoint() const
{
    Q_D(const KEZTopVertex);
    return d->point.data();
}
