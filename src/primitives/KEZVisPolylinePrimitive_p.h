#ifndef KEZVISPOLYLINEPRIMITIVE_P_H
#define KEZVISPOLYLINEPRIMITIVE_P_H

// Private record of KEZVisPolylinePrimitive. Never installed.

#include "KEZVisPolylinePrimitive.h"

#include "KEZGeoCurve.h"
#include "KEZGeoRangeOfCurve.h"
#include "KEZMathBoundingBox.h"

#include <QPointer>

#include <memory>

// A counted tracking pointer to a curve: it holds a reference on the curve
// (KEZGeoGeometry::AddReference) for as long as it points to it, and watches
// it with a QPointer, so that a curve deleted first is noticed and never
// touched again, not even to give the reference back.
class KEZVisCountedCurvePointer
{
public:
    KEZVisCountedCurvePointer() = default;
    ~KEZVisCountedCurvePointer() { Reset(nullptr); }

    // Takes a reference on the new curve first, then gives back the one on
    // the previous curve if that is still alive.
    void Reset(const KEZGeoCurve *curve)
    {
        if (curve)
            curve->AddReference();
        if (const KEZGeoCurve *previous = m_curve.data())
            previous->RemoveReference();
        m_curve = curve;
    }

    // The curve, or null when there is none or it has gone.
    const KEZGeoCurve *Get() const { return m_curve.data(); }

private:
    Q_DISABLE_COPY(KEZVisCountedCurvePointer)

    QPointer<const KEZGeoCurve> m_curve;
};

class KEZVisPolylinePrimitivePrivate
{
public:
    KEZVisPolylinePrimitivePrivate() = default;
    virtual ~KEZVisPolylinePrimitivePrivate();

    // Takes the array over as the explicit coordinates and computes the box;
    // a negative count or a null array count as no points.
    void SetCoords(double *newCoords, int newNumPoints);

    // Number of points that GetCoordsAsDouble yields.
    int numPoints = 0;
    // x, y, z of each point, from array new; null when the polyline is curve-based.
    std::unique_ptr<double[]> coords;
    // The curve when built from one; keeps a reference on it.
    KEZVisCountedCurvePointer curve;
    // The stretch of the curve; invalid for explicit coordinates.
    KEZGeoRangeOfCurve range;
    KEZVisPolylinePrimitive::Structure structure = KEZVisPolylinePrimitive::StructureConnected;
    KEZMathBoundingBox boundingBox;

private:
    Q_DISABLE_COPY(KEZVisPolylinePrimitivePrivate)
};

#endif // KEZVISPOLYLINEPRIMITIVE_P_H
