#include "KEZGeoCurve.h"
#include "KEZGeoGeometry_p.h"

KEZGeoCurve::KEZGeoCurve(QObject *parent)
    : KEZGeoGeometry(new KEZGeoGeometryPrivate, parent)
{
}

KEZGeoCurve::KEZGeoCurve(KEZGeoGeometryPrivate *d, QObject *parent)
    : KEZGeoGeometry(d, parent)
{
}

KEZGeoCurve::~KEZGeoCurve() = default;
