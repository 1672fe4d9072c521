#ifndef KEZGEOSURFACE_P_H
#define KEZGEOSURFACE_P_H

// Private record of KEZGeoSurface. Not part of the installed interface.

#include "KEZGeoGeometry_p.h"

#include "KEZMathBoundingBox.h"
#include "KEZMathSetOfPoints.h"

#include <QList>

class KEZGeoSurfacePrivate : public KEZGeoGeometryPrivate
{
public:
    KEZMathSetOfPoints vertices;
    // Three zero-based vertex indexes per triangle; each is a valid index.
    QList<int> triangleVertexIndexes;
    KEZMathBoundingBox boundingBox;
};

#endif // KEZGEOSURFACE_P_H
