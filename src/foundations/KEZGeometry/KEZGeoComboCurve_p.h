#ifndef KEZGEOCOMBOCURVE_P_H
#define KEZGEOCOMBOCURVE_P_H

// Private record of KEZGeoComboCurve. Not part of the installed interface.

#include "KEZGeoGeometry_p.h"

#include "KEZMathBoundingBox.h"
#include "KEZMathSetOfPoints.h"

class KEZGeoComboCurvePrivate : public KEZGeoGeometryPrivate
{
public:
    KEZMathSetOfPoints vertices;
    bool closed = false;
    KEZMathBoundingBox boundingBox;
};

#endif // KEZGEOCOMBOCURVE_P_H
