#include "KEZVisArrowRep.h"

#include "KEZVisPolygonPrimitive.h"
#include "KEZVisPrismPrimitive.h"
#include "KEZVisPyramidPrimitive.h"

#include <memory>

namespace {

// Shaft, disc and head, in this order. A shape that throws leaves nothing
// behind: the ones made before it are freed.
QList<const KEZVisPrimitive *> CreateArrowPrimitives(const KEZMathPoint &start, const KEZMathVector &direction,
                                                     double shaftLength, double shaftRadius, double headLength,
                                                     double headRadius, int sides)
{
    KEZMathVector axis = direction;
    axis.Normalize();
    const KEZMathPoint headBase = start + axis * shaftLength;

    std::unique_ptr<KEZVisPrismPrimitive> shaft(
        new KEZVisPrismPrimitive(start, axis, shaftRadius, shaftLength, sides));
    std::unique_ptr<KEZVisPolygonPrimitive> foot(new KEZVisPolygonPrimitive(start, axis, shaftRadius, sides));
    std::unique_ptr<KEZVisPyramidPrimitive> head(
        new KEZVisPyramidPrimitive(headBase, axis, headRadius, headLength, sides));

    QList<const KEZVisPrimitive *> primitives;
    primitives.reserve(3);
    primitives.append(shaft.release());
    primitives.append(foot.release());
    primitives.append(head.release());
    return primitives;
}

} // namespace

KEZVisArrowRep::KEZVisArrowRep(const KEZMathPoint &start, const KEZMathVector &direction, double shaftLength,
                               double shaftRadius, double headLength, double headRadius, int sides,
                               const KEZVisOptions &options)
    : KEZVisRepGraphics(
          CreateArrowPrimitives(start, direction, shaftLength, shaftRadius, headLength, headRadius, sides), options)
{
}

KEZVisArrowRep::KEZVisArrowRep(const KEZMathPoint &start, const KEZMathVector &direction, double length,
                               const KEZVisOptions &options, int sides, double shaftRadiusRatio,
                               double headRadiusRatio, double shaftLengthRatio)
    : KEZVisArrowRep(start, direction, length * shaftLengthRatio, length * shaftRadiusRatio,
                     (1.0 - shaftLengthRatio) * length, length * headRadiusRatio, sides, options)
{
}

KEZVisArrowRep::~KEZVisArrowRep() = default;
