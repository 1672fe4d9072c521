#ifndef KEZVISREPFACTORYEXTRUSION_P_H
#define KEZVISREPFACTORYEXTRUSION_P_H

// Extrusion, the stage that CreateFilledPolygonRep adds for a solid: a top cap over the filled polygon and
// walls along the input rings.
//
// What the stage promises: the top cap has the base's vertices and triangles in the same order, so its
// winding is the base's; the walls stand on every input ring, rejected holes included, simplified but
// not walked, at the ring's own z. Never installed.

#include "KEZVisSurfacePrimitive.h"

#include <KEZMathSetOfPoints.h>

#include <QList>

#include <memory>

namespace KEZVisFilledPolygon {

// The top cap: the base raised by `extrusion`, with the same triangles in the same order, so that the
// winding isn't turned.
std::unique_ptr<KEZVisSurfacePrimitive> CreateTopCap(const KEZVisSurfacePrimitive &base, double extrusion);

// The walls of all `rings`, each raised by `extrusion`, in one surface. Null when the walls have more
// vertices or triangles than an int can number.
std::unique_ptr<KEZVisSurfacePrimitive> CreateWalls(const QList<KEZMathSetOfPoints> &rings, double extrusion);

} // namespace KEZVisFilledPolygon

#endif // KEZVISREPFACTORYEXTRUSION_P_H
