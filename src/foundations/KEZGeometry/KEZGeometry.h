#ifndef KEZGEOMETRY_H
#define KEZGEOMETRY_H

// Every public header of KEZGeometry: curves, locations and ranges on them,
// triangulated surfaces and points.

#include "kezgeometry_export.h"

#include "KEZGeoComboCurve.h"
#include "KEZGeoComboPoint.h"
#include "KEZGeoCurve.h"
#include "KEZGeoGeometry.h"
#include "KEZGeoLocationOnCurve.h"
#include "KEZGeoRangeOfCurve.h"
#include "KEZGeoSurface.h"

#endif // KEZGEOMETRY_H
