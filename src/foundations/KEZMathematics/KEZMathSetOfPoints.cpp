#include "KEZMathSetOfPoints.h"

KEZMathSetOfPoints::~KEZMathSetOfPoints() = default;

KEZMathBoundingBox KEZMathSetOfPoints::GetBoundingBox() const
{
    if (isEmpty())
        return KEZMathBoundingBox();
    KEZMathBoundingBox box(first());
    for (const KEZMathPoint &point : *this)
        box.Expand(point);
    return box;
}
