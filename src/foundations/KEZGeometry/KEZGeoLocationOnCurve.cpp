#include "KEZGeoLocationOnCurve.h"
#include "KEZGeoLocationOnCurve_p.h"

#include "KEZSysOutOfBoundsException.h"

KEZGeoLocationOnCurve::KEZGeoLocationOnCurve()
    : d(new KEZGeoLocationOnCurveData)
{
}

KEZGeoLocationOnCurve::KEZGeoLocationOnCurve(const KEZGeoCurve *curve, int segment, double parameter)
{
    // Checked before the record exists, so that a refused location leaves
    // nothing behind. The negated test also refuses NaN.
    if (!(parameter >= 0.0 && parameter <= 1.0))
        throw KEZSysOutOfBoundsException(parameter, 0.0, 1.0, true, true);
    if (curve && (segment < 0 || segment >= curve->GetNumSegments()))
        throw KEZSysOutOfBoundsException(segment, 0, curve->GetNumSegments() - 1, true, true);
    d = new KEZGeoLocationOnCurveData;
    d->curve = curve;
    d->segment = segment;
    d->parameter = parameter;
}

KEZGeoLocationOnCurve::KEZGeoLocationOnCurve(const KEZGeoLocationOnCurve &other) = default;

KEZGeoLocationOnCurve &KEZGeoLocationOnCurve::operator=(const KEZGeoLocationOnCurve &other) = default;

KEZGeoLocationOnCurve::~KEZGeoLocationOnCurve() = default;

const KEZGeoCurve *KEZGeoLocationOnCurve::GetCurve() const
{
    return d->curve.data();
}

int KEZGeoLocationOnCurve::GetSegment() const
{
    return d->segment;
}

double KEZGeoLocationOnCurve::GetParameter() const
{
    return d->parameter;
}

int KEZGeoLocationOnCurve::GetEndPoint() const
{
    if (d->parameter == 0.0)
        return -1;
    if (d->parameter == 1.0)
        return 1;
    return 0;
}

KEZMathPoint KEZGeoLocationOnCurve::GetMathPoint() const
{
    const KEZGeoCurve *curve = d->curve.data();
    if (!curve)
        return KEZMathPoint();
    const int start = d->segment;
    const int end = start + 1 < curve->GetNumVertices() ? start + 1 : 0;
    const KEZMathPoint a = curve->GetVertex(start);
    const KEZMathPoint b = curve->GetVertex(end);
    // Weighted form rather than a + t (b - a): it gives each end vertex
    // exactly, without rounding, at the parameters 0 and 1.
    const double t = d->parameter;
    const double s = 1.0 - t;
    return KEZMathPoint(s * a.GetX() + t * b.GetX(),
                        s * a.GetY() + t * b.GetY(),
                        s * a.GetZ() + t * b.GetZ());
}

bool KEZGeoLocationOnCurve::operator==(const KEZGeoLocationOnCurve &other) const
{
    return d->curve.data() == other.d->curve.data()
        && d->segment == other.d->segment
        && d->parameter == other.d->parameter;
}

bool KEZGeoLocationOnCurve::operator!=(const KEZGeoLocationOnCurve &other) const
{
    return !(*this == other);
}

bool KEZGeoLocationOnCurve::operator>(const KEZGeoLocationOnCurve &other) const
{
    if (d->segment != other.d->segment)
        return d->segment > other.d->segment;
    return d->parameter > other.d->parameter;
}
