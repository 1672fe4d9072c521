#ifndef KEZVISSURFACEPRIMITIVE_P_H
#define KEZVISSURFACEPRIMITIVE_P_H

// Private record of KEZVisSurfacePrimitive. Never installed.
//
// Subclasses that keep a mesh of their own (polygons, prisms, pyramids) may
// derive their record from this one and hand it to the protected constructor;
// the mesh part here then stays empty.

#include "KEZGeoSurface.h"
#include "KEZMathBoundingBox.h"

#include <QPointer>

#include <memory>

class KEZVisSurfacePrimitivePrivate
{
public:
    KEZVisSurfacePrimitivePrivate() = default;
    virtual ~KEZVisSurfacePrimitivePrivate();

    // Replaces the mesh with the given arrays, which it takes over. A negative
    // count or a null array where values are expected count as none. Computes
    // the normals when none are given, and the box.
    void SetMesh(int newNumVertexes, double *newVertexCoords, int newNumTriangles, int *newTriangleVertexes,
                 double *newTriangleNormals);

    // Fills triangleNormals with ((pc - pa) ^ (pb - pa)).Normalized() for each
    // triangle (a, b, c); the zero vector for a triangle with an index outside
    // the vertices.
    void ComputeNormals();

    // The box of the vertices: from the first, expanded by each further one;
    // with no vertices the box stays as it is. Marks the box as computed.
    void ComputeBoundingBox() const;

    int numVertexes = 0;
    // x, y, z of each vertex, 3 x numVertexes values, from array new.
    std::unique_ptr<double[]> vertexCoords;
    int numTriangles = 0;
    // Three zero-based vertex indexes per triangle, 3 x numTriangles values.
    std::unique_ptr<int[]> triangleVertexes;
    // x, y, z of the normal of each triangle, 3 x numTriangles values.
    std::unique_ptr<double[]> triangleNormals;
    // The source of the mesh, when built from a surface; watched, not counted.
    QPointer<const KEZGeoSurface> surface;
    // Computed on demand by the const box getter.
    mutable KEZMathBoundingBox boundingBox;
    mutable bool boundingBoxValid = false;

private:
    Q_DISABLE_COPY(KEZVisSurfacePrimitivePrivate)
};

#endif // KEZVISSURFACEPRIMITIVE_P_H
