#include "KEZVisPointPrimitive.h"
#include "KEZVisPointPrimitive_p.h"

#include "KEZVisFlatArrays_p.h"

KEZVisPointPrimitivePrivate::~KEZVisPointPrimitivePrivate() = default;

void KEZVisPointPrimitivePrivate::SetCoords(double *newCoords, int newNumPoints)
{
    coords.reset(newCoords);
    numPoints = (newCoords && newNumPoints > 0) ? newNumPoints : 0;
    boundingBox = KEZVisFlatArrays::BoundingBox(coords.get(), numPoints);
}

KEZVisPointPrimitive::KEZVisPointPrimitive(const KEZMathSetOfPoints &points)
    : d_ptr(new KEZVisPointPrimitivePrivate)
{
    Q_D(KEZVisPointPrimitive);
    const int count = int(points.size());
    double *coords = count > 0 ? new double[3 * size_t(count)] : nullptr;
    for (int i = 0; i < count; ++i)
        points.at(i).GetCoord(coords[3 * i], coords[3 * i + 1], coords[3 * i + 2]);
    d->SetCoords(coords, count);
}

KEZVisPointPrimitive::KEZVisPointPrimitive(double *coords, int numPoints)
    : d_ptr(new KEZVisPointPrimitivePrivate)
{
    Q_D(KEZVisPointPrimitive);
    d->SetCoords(coords, numPoints);
}

KEZVisPointPrimitive::KEZVisPointPrimitive(KEZVisPointPrimitivePrivate *d)
    : d_ptr(d)
{
}

KEZVisPointPrimitive::~KEZVisPointPrimitive()
{
    delete d_ptr;
}

KEZMathBoundingBox KEZVisPointPrimitive::GetBoundingBox(const KEZVisOptions &) const
{
    Q_D(const KEZVisPointPrimitive);
    return d->boundingBox;
}

std::vector<double> KEZVisPointPrimitive::GetCoordsAsDouble() const
{
    Q_D(const KEZVisPointPrimitive);
    if (d->numPoints == 0)
        return {};
    const double *begin = d->coords.get();
    return std::vector<double>(begin, begin + 3 * size_t(d->numPoints));
}

std::vector<float> KEZVisPointPrimitive::GetCoordsAsFloat() const
{
    Q_D(const KEZVisPointPrimitive);
    if (d->numPoints == 0)
        return {};
    // The range constructor narrows value by value in one pass.
    const double *begin = d->coords.get();
    return std::vector<float>(begin, begin + 3 * size_t(d->numPoints));
}

int KEZVisPointPrimitive::GetNumPoints() const
{
    Q_D(const KEZVisPointPrimitive);
    return d->numPoints;
}
