#ifndef KEZMATHEMATICS_H
#define KEZMATHEMATICS_H

// Every public header of KEZMathematics: points, vectors, lines, planes,
// frames, boxes, circles and sets of points.

#include "KEZMathAxis.h"
#include "KEZMathBoundingBox.h"
#include "KEZMathCircle.h"
#include "KEZMathLine.h"
#include "KEZMathLine2D.h"
#include "KEZMathPlane.h"
#include "KEZMathPoint.h"
#include "KEZMathPoint2D.h"
#include "KEZMathSetOfPoints.h"
#include "KEZMathSetOfPoints2D.h"
#include "KEZMathVector.h"
#include "KEZMathVector2D.h"
#include "KEZMathZeroMagnitudeVectorException.h"

#endif // KEZMATHEMATICS_H
