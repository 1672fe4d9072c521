#ifndef KEZVISSOLIDONCIRCLEPRIVATE_P_H
#define KEZVISSOLIDONCIRCLEPRIVATE_P_H

#include "KEZVisSurfacePrimitive_p.h"

#include <KEZMathPoint.h>
#include <KEZMathVector.h>

#include <QtNumeric>

#include <memory>

// The fields that the records of KEZVisPrismPrimitive and
// KEZVisPyramidPrimitive have in common: both shapes stand on a circle and
// reach a height along its axis. It extends the surface record, whose counts
// and arrays stay empty: the shape's own arrays below share their names with
// the surface's on purpose and hide them, so that the surface part answers as
// an empty surface (default box, no triangle normals, zero counts in the
// stream) while the overridden getters answer from these arrays.
class KEZVisSolidOnCirclePrivate : public KEZVisSurfacePrimitivePrivate
{
public:
    KEZVisSolidOnCirclePrivate() = default;
    ~KEZVisSolidOnCirclePrivate() override = default;

    KEZMathPoint center;                   // centre of the base circle
    KEZMathVector direction;               // axis, also the normal given to the circle
    double radius = qQNaN();               // radius of the circle
    double height = qQNaN();               // distance along the axis
    int numSides = -1;                     // number of sides
    std::unique_ptr<double[]> vertexCoords;  // 3 values per vertex
    std::unique_ptr<double[]> vertexNormals; // 3 values per vertex
    std::unique_ptr<int[]> triangleVertexes; // 3 zero-based indexes per triangle

private:
    Q_DISABLE_COPY(KEZVisSolidOnCirclePrivate)
};

#endif // KEZVISSOLIDONCIRCLEPRIVATE_P_H
