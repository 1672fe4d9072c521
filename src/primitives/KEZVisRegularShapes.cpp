#include "KEZVisRegularShapes_p.h"

#include <KEZMathCircle.h>
#include <KEZMathPoint.h>
#include <KEZMathVector.h>
#include <KEZSysOutOfBoundsException.h>

#include <QVariant>

#include <climits>
#include <new>

namespace KEZVisRegularShapes {

namespace {

KEZMathCircle MakeCircle(const KEZMathPoint &center, const KEZMathVector &direction, double radius)
{
    KEZMathCircle circle;
    circle.SetOrigin(center);
    circle.SetRadius(radius);
    // No start direction of our own: the circle chooses it from the normal.
    circle.SetDirections(direction, nullptr);
    return circle;
}

KEZMathVector UnitAxis(const KEZMathVector &direction)
{
    KEZMathVector axis = direction;
    axis.Normalize();
    return axis;
}

inline void Put(double *where, const KEZMathPoint &point)
{
    point.GetCoord(where[0], where[1], where[2]);
}

inline void Put(double *where, const KEZMathVector &vector)
{
    vector.GetCoord(where[0], where[1], where[2]);
}

} // namespace

void CheckSideCount(int numSides)
{
    if (numSides < 1)
        throw KEZSysOutOfBoundsException(QVariant(numSides), QVariant(1), QVariant(), true, true);
}

qint64 CheckedCount(qint64 count)
{
    if (count > qint64(INT_MAX))
        throw std::bad_array_new_length();
    return count;
}

void FillPolygonVertexes(const KEZMathPoint &center, const KEZMathVector &direction,
                         double radius, int numSides, double *coords)
{
    const KEZMathCircle circle = MakeCircle(center, direction, radius);
    for (int i = 0; i < numSides; ++i)
        Put(coords + 3 * qsizetype(i), circle.EvalAngle(CornerAngle(i, numSides)));
}

void FillPolygonTriangles(int numSides, int *indexes)
{
    for (int t = 0; t < numSides - 2; ++t) {
        int *triangle = indexes + 3 * qsizetype(t);
        triangle[0] = 0;
        triangle[1] = t + 1;
        triangle[2] = t + 2;
    }
}

void FillPrismVertexes(const KEZMathPoint &center, const KEZMathVector &direction,
                       double radius, double height, int numSides,
                       double *coords, double *normals)
{
    const KEZMathCircle bottom = MakeCircle(center, direction, radius);
    const KEZMathPoint topCenter = center + UnitAxis(direction) * height;
    const KEZMathCircle top = MakeCircle(topCenter, direction, radius);
    for (int i = 0; i < numSides; ++i) {
        const double angle = CornerAngle(i, numSides);
        const KEZMathPoint lower = bottom.EvalAngle(angle);
        const KEZMathPoint upper = top.EvalAngle(angle);
        const qsizetype at = 6 * qsizetype(i);
        Put(coords + at, lower);
        Put(coords + at + 3, upper);
        if (normals) {
            Put(normals + at, lower - center);
            Put(normals + at + 3, upper - topCenter);
        }
    }
}

void FillPrismTriangles(int numSides, int *indexes)
{
    const int n = 2 * numSides;
    // The last two triangles wrap round to vertexes 0 and 1; the others need no modulo.
    for (int t = 0; t < n - 2; ++t) {
        int *triangle = indexes + 3 * qsizetype(t);
        triangle[0] = t;
        triangle[1] = t + 1;
        triangle[2] = t + 2;
    }
    int *last = indexes + 3 * qsizetype(n - 2);
    last[0] = n - 2;
    last[1] = n - 1;
    last[2] = 0;
    last[3] = n - 1;
    last[4] = 0;
    last[5] = 1;
}

void FillPyramidVertexes(const KEZMathPoint &center, const KEZMathVector &direction,
                         double radius, double height, int numSides,
                         double *coords, double *normals)
{
    const KEZMathCircle base = MakeCircle(center, direction, radius);
    const KEZMathPoint apex = center + UnitAxis(direction) * height;
    Put(coords, apex);
    if (normals)
        Put(normals, direction);
    for (int i = 0; i < numSides; ++i) {
        const KEZMathPoint corner = base.EvalAngle(CornerAngle(i, numSides));
        const qsizetype at = 3 * (qsizetype(i) + 1);
        Put(coords + at, corner);
        if (normals)
            Put(normals + at, corner - center);
    }
}

void FillPyramidTriangles(int numSides, int *indexes)
{
    for (int k = 1; k < numSides; ++k) {
        int *triangle = indexes + 3 * (qsizetype(k) - 1);
        triangle[0] = 0;
        triangle[1] = k;
        triangle[2] = k + 1;
    }
    int *closing = indexes + 3 * (qsizetype(numSides) - 1);
    closing[0] = 0;
    closing[1] = numSides;
    closing[2] = 1;
}

} // namespace KEZVisRegularShapes
