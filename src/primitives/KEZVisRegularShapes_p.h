#ifndef KEZVISREGULARSHAPES_P_H
#define KEZVISREGULARSHAPES_P_H

// Generation of the regular shapes that are built on a circle: the polygon,
// the prism wall and the pyramid fan. The polygon, prism and pyramid
// primitives and the shape operations of KEZVisRepFactory lay their vertices
// and triangles out in the same way, so both fill their arrays here.
//
// Every Fill... routine writes into arrays that the caller has allocated at
// their final size, in one pass, and allocates nothing itself. Never installed.

#include <QtGlobal>

class KEZMathPoint;
class KEZMathVector;

namespace KEZVisRegularShapes {

// The value of pi that every angle of these shapes is computed with.
constexpr double Pi = 3.141592653589793;

// Throws KEZSysOutOfBoundsException(numSides, 1, no upper limit, true, true)
// when numSides is below 1.
void CheckSideCount(int numSides);

// Throws std::bad_array_new_length when `count` vertexes or triangles could not
// be numbered by an int (the type of the counts and of the triangle indexes),
// and returns the count otherwise. A negative count passes: the caller's
// array allocation then fails on its own.
qint64 CheckedCount(qint64 count);

// The angle of corner i of a regular shape of numSides corners:
// (2 i) pi / numSides, with 2 i formed without int overflow.
inline double CornerAngle(int i, int numSides)
{
    return (2.0 * double(i)) * Pi / double(numSides);
}

// Polygon: numSides points on the circle at `center` with `radius` around
// `direction` (given to the circle as it is), point i at CornerAngle(i).
// `coords` takes 3 * numSides values.
void FillPolygonVertexes(const KEZMathPoint &center, const KEZMathVector &direction,
                         double radius, int numSides, double *coords);

// Polygon fan from vertex 0: triangle t, for t from 0 to numSides - 3, is
// (0, t + 1, t + 2). `indexes` takes 3 * (numSides - 2) values.
void FillPolygonTriangles(int numSides, int *indexes);

// Prism wall: for each corner i, vertex 2i on the circle at `center` and
// vertex 2i + 1 on the circle at `center` + normalised `direction` * `height`,
// both at CornerAngle(i). When `normals` is not null, each vertex gets the
// vector from its circle's centre to itself, not normalised.
// `coords` and `normals` take 6 * numSides values.
void FillPrismVertexes(const KEZMathPoint &center, const KEZMathVector &direction,
                       double radius, double height, int numSides,
                       double *coords, double *normals);

// Closed strip round the prism wall: with n = 2 * numSides, triangle t, for t
// from 0 to n - 1, is (t, (t + 1) mod n, (t + 2) mod n). The winding is not
// alternated. `indexes` takes 6 * numSides values.
void FillPrismTriangles(int numSides, int *indexes);

// Pyramid: vertex 0 is the apex `center` + normalised `direction` * `height`,
// vertex i + 1 the point of the circle at `center` at CornerAngle(i). When
// `normals` is not null, the apex gets `direction` as it is and every other
// vertex the vector from `center` to itself, not normalised.
// `coords` and `normals` take 3 * (numSides + 1) values.
void FillPyramidVertexes(const KEZMathPoint &center, const KEZMathVector &direction,
                         double radius, double height, int numSides,
                         double *coords, double *normals);

// Fan from the apex: (0, k, k + 1) for k from 1 to numSides - 1, closed by
// (0, numSides, 1). `indexes` takes 3 * numSides values.
void FillPyramidTriangles(int numSides, int *indexes);

} // namespace KEZVisRegularShapes

#endif // KEZVISREGULARSHAPES_P_H
