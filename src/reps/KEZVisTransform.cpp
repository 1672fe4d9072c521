#include "KEZVisTransform.h"
#include "KEZVisTransform_p.h"

KEZVisTransform::KEZVisTransform()
    : d(new KEZVisTransformData)
{
}

KEZVisTransform::KEZVisTransform(const KEZVisTransform &other) = default;

KEZVisTransform &KEZVisTransform::operator=(const KEZVisTransform &other)
{
    // QSharedDataPointer leaves a record that is already shared alone.
    d = other.d;
    return *this;
}

KEZVisTransform::~KEZVisTransform() = default;

KEZMathPoint KEZVisTransform::GetAnchorPoint() const
{
    return d->anchorPoint;
}

void KEZVisTransform::SetAnchorPoint(const KEZMathPoint &anchorPoint)
{
    d->anchorPoint = anchorPoint;
}

double KEZVisTransform::GetPixelScale() const
{
    return d->pixelScale;
}

void KEZVisTransform::SetPixelScale(double pixelScale)
{
    d->pixelScale = pixelScale;
}

KEZVisTransform::DisplayTransformBehavior KEZVisTransform::GetDisplayTransformBehavior() const
{
    return d->displayTransformBehavior;
}

void KEZVisTransform::SetDisplayTransformBehavior(DisplayTransformBehavior behavior)
{
    d->displayTransformBehavior = behavior;
}

bool KEZVisTransform::operator==(const KEZVisTransform &other) const
{
    if (d.constData() == other.d.constData())
        return true;
    // The points are compared on copies, with the tolerance of KEZMathPoint.
    const KEZMathPoint mine = d->anchorPoint;
    const KEZMathPoint theirs = other.d->anchorPoint;
    if (!(mine == theirs))
        return false;
    // The pixel scale is compared exactly, on purpose: no tolerance.
    if (d->pixelScale != other.d->pixelScale)
        return false;
    return d->displayTransformBehavior == other.d->displayTransformBehavior;
}

bool KEZVisTransform::operator!=(const KEZVisTransform &other) const
{
    return !(*this == other);
}
