#ifndef KEZVISPOINTPRIMITIVE_P_H
#define KEZVISPOINTPRIMITIVE_P_H

// Private record of KEZVisPointPrimitive. Never installed.

#include "KEZMathBoundingBox.h"

#include <memory>

class KEZVisPointPrimitivePrivate
{
public:
    KEZVisPointPrimitivePrivate() = default;
    virtual ~KEZVisPointPrimitivePrivate();

    // Takes the array over; a negative count or a null array count as no points.
    void SetCoords(double *newCoords, int newNumPoints);

    int numPoints = 0;
    // x, y, z of each point, 3 x numPoints values, from array new.
    std::unique_ptr<double[]> coords;
    KEZMathBoundingBox boundingBox;

private:
    Q_DISABLE_COPY(KEZVisPointPrimitivePrivate)
};

#endif // KEZVISPOINTPRIMITIVE_P_H
