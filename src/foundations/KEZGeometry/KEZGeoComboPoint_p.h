#ifndef KEZGEOCOMBOPOINT_P_H
#define KEZGEOCOMBOPOINT_P_H

// Private record of KEZGeoComboPoint. Not part of the installed interface.

#include "KEZGeoGeometry_p.h"

#include "KEZMathPoint.h"

class KEZGeoComboPointPrivate : public KEZGeoGeometryPrivate
{
public:
    KEZMathPoint point;
};

#endif // KEZGEOCOMBOPOINT_P_H
