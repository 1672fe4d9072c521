#include "KEZGeoRangeOfCurve.h"
#include "KEZGeoRangeOfCurve_p.h"

KEZGeoRangeOfCurve::KEZGeoRangeOfCurve()
    : d(new KEZGeoRangeOfCurveData)
{
}

KEZGeoRangeOfCurve::KEZGeoRangeOfCurve(const KEZGeoLocationOnCurve &start, const KEZGeoLocationOnCurve &end)
    : d(new KEZGeoRangeOfCurveData)
{
    d->start = start;
    d->end = end;
}

KEZGeoRangeOfCurve::KEZGeoRangeOfCurve(const KEZGeoRangeOfCurve &other) = default;

KEZGeoRangeOfCurve &KEZGeoRangeOfCurve::operator=(const KEZGeoRangeOfCurve &other) = default;

KEZGeoRangeOfCurve::~KEZGeoRangeOfCurve() = default;

bool KEZGeoRangeOfCurve::IsValid() const
{
    const KEZGeoCurve *curve = d->start.GetCurve();
    return curve && curve == d->end.GetCurve();
}

const KEZGeoCurve *KEZGeoRangeOfCurve::GetCurve() const
{
    return IsValid() ? d->start.GetCurve() : nullptr;
}

KEZGeoLocationOnCurve KEZGeoRangeOfCurve::GetStartLocation() const
{
    return d->start;
}

KEZGeoLocationOnCurve KEZGeoRangeOfCurve::GetEndLocation() const
{
    return d->end;
}

void KEZGeoRangeOfCurve::GetLocations(KEZGeoLocationOnCurve &start, KEZGeoLocationOnCurve &end) const
{
    start = d->start;
    end = d->end;
}
