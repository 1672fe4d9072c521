#ifndef KEZGEORANGEOFCURVE_H
#define KEZGEORANGEOFCURVE_H

#include "kezgeometry_export.h"

#include <QSharedDataPointer>

class KEZGeoCurve;
class KEZGeoLocationOnCurve;
class KEZGeoRangeOfCurveData;

/*!
    A stretch of a curve between a start and an end location. An implicitly
    shared value.

    A range is valid when both locations lie on the same curve and that curve
    is not null. Validity is judged at every call from the locations, which
    watch their curve: a range becomes invalid once its curve has been deleted.
    The order of the two locations is not judged: on a closed curve a start
    beyond the end describes a stretch across the seam, and what such an order
    means on an open curve is left to the reader of the range.
*/
class KEZGEOMETRY_EXPORT KEZGeoRangeOfCurve
{
public:
    //! An invalid range: two default locations.
    KEZGeoRangeOfCurve();
    KEZGeoRangeOfCurve(const KEZGeoLocationOnCurve &start, const KEZGeoLocationOnCurve &end);
    KEZGeoRangeOfCurve(const KEZGeoRangeOfCurve &other);
    KEZGeoRangeOfCurve &operator=(const KEZGeoRangeOfCurve &other);
    virtual ~KEZGeoRangeOfCurve();

    bool IsValid() const;
    //! The curve that the range lies on; null when the range is invalid.
    const KEZGeoCurve *GetCurve() const;

    //! The two locations as they were given, valid range or not.
    KEZGeoLocationOnCurve GetStartLocation() const;
    KEZGeoLocationOnCurve GetEndLocation() const;
    void GetLocations(KEZGeoLocationOnCurve &start, KEZGeoLocationOnCurve &end) const;

private:
    QSharedDataPointer<KEZGeoRangeOfCurveData> d;
};

#endif // KEZGEORANGEOFCURVE_H
