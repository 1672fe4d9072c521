#ifndef KEZGEOLOCATIONONCURVE_H
#define KEZGEOLOCATIONONCURVE_H

#include "kezgeometry_export.h"

#include "KEZMathPoint.h"

#include <QSharedDataPointer>

class KEZGeoCurve;
class KEZGeoLocationOnCurveData;

/*!
    A position on a curve: a segment number and a parameter that runs from 0 at
    the segment's start to 1 at its end. An implicitly shared value.

    The location watches its curve: once the curve has been deleted GetCurve()
    answers null and GetMathPoint() the origin, as for a default location.

    A default location lies on no curve: null curve, segment 0, parameter 0.
*/
class KEZGEOMETRY_EXPORT KEZGeoLocationOnCurve
{
public:
    KEZGeoLocationOnCurve();
    //! The location at the parameter on one segment of the curve.
    //!
    //! Throws KEZSysOutOfBoundsException when the parameter lies outside
    //! [0, 1] (NaN included), with the limits 0.0 and 1.0 both included, and,
    //! when the curve is not null, when the segment lies outside
    //! [0, curve->GetNumSegments() - 1], with both limits included. With a null
    //! curve the segment is kept as given.
    KEZGeoLocationOnCurve(const KEZGeoCurve *curve, int segment, double parameter);
    KEZGeoLocationOnCurve(const KEZGeoLocationOnCurve &other);
    KEZGeoLocationOnCurve &operator=(const KEZGeoLocationOnCurve &other);
    virtual ~KEZGeoLocationOnCurve();

    //! The curve of the location; null for a default location and once the
    //! curve has been deleted.
    const KEZGeoCurve *GetCurve() const;
    int GetSegment() const;
    double GetParameter() const;

    //! -1 at the start of the segment (parameter 0), 1 at its end (parameter 1)
    //! and 0 anywhere between.
    int GetEndPoint() const;

    //! The point at the location, interpolated linearly between the segment's
    //! start vertex (vertex s) and end vertex (vertex s + 1, or vertex 0 after
    //! the last vertex of a closed curve): exactly the start vertex at
    //! parameter 0 and exactly the end vertex at parameter 1. The origin when
    //! there is no curve.
    KEZMathPoint GetMathPoint() const;

    //! Same curve, same segment and same parameter, compared exactly.
    bool operator==(const KEZGeoLocationOnCurve &other) const;
    bool operator!=(const KEZGeoLocationOnCurve &other) const;
    //! Further along: a greater segment, or the same segment and a greater
    //! parameter. The curve takes no part in the order.
    bool operator>(const KEZGeoLocationOnCurve &other) const;

private:
    QSharedDataPointer<KEZGeoLocationOnCurveData> d;
};

#endif // KEZGEOLOCATIONONCURVE_H
