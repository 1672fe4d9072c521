#include "KEZGeoGeometry.h"
#include "KEZGeoGeometry_p.h"

KEZGeoGeometry::KEZGeoGeometry(KEZGeoGeometryPrivate *d, QObject *parent)
    : QObject(parent)
    , d_ptr(d)
{
}

KEZGeoGeometry::~KEZGeoGeometry()
{
    delete d_ptr;
}

void KEZGeoGeometry::AddReference() const
{
    Q_D(const KEZGeoGeometry);
    ++d->referenceCount;
}

bool KEZGeoGeometry::RemoveReference() const
{
    Q_D(const KEZGeoGeometry);
    if (d->referenceCount == 0)
        return false;
    --d->referenceCount;
    return true;
}

int KEZGeoGeometry::GetReferenceCount() const
{
    Q_D(const KEZGeoGeometry);
    return d->referenceCount;
}
