#ifndef KEZVISREPFACTORY_P_H
#define KEZVISREPFACTORY_P_H

// Helpers that the files of KEZVisRepFactory share. Never installed.

#include "KEZVisOptions.h"
#include "KEZVisPrimitive.h"
#include "KEZVisRepGraphics.h"
#include "KEZVisSurfacePrimitive.h"

#include <QtGlobal>

#include <memory>

class KEZVisRepFactoryPrivate
{
public:
    // A new graphics rep that owns `primitive`, drawn with `options`. The
    // primitive is freed if the rep cannot be made.
    static KEZVisRepGraphics *WrapInRep(std::unique_ptr<const KEZVisPrimitive> primitive,
                                        const KEZVisOptions &options);

    // A new surface that takes over the arrays; a null `normals` lets the
    // surface work out the triangle normals. The counts must fit an int. The
    // arrays are freed if the surface cannot be made.
    static KEZVisSurfacePrimitive *CreateSurface(qint64 numVertexes, std::unique_ptr<double[]> coords,
                                                 qint64 numTriangles, std::unique_ptr<int[]> indexes,
                                                 std::unique_ptr<double[]> normals);
};

#endif // KEZVISREPFACTORY_P_H
