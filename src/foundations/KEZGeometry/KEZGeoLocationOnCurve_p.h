#ifndef KEZGEOLOCATIONONCURVE_P_H
#define KEZGEOLOCATIONONCURVE_P_H

// Shared record of KEZGeoLocationOnCurve. Not part of the installed interface.

#include "KEZGeoCurve.h"

#include <QPointer>
#include <QSharedData>

class KEZGeoLocationOnCurveData : public QSharedData
{
public:
    // Weak: a location neither owns nor counts its curve, and notices its end.
    QPointer<const KEZGeoCurve> curve;
    int segment = 0;
    double parameter = 0.0;
};

#endif // KEZGEOLOCATIONONCURVE_P_H
