#ifndef KEZGEORANGEOFCURVE_P_H
#define KEZGEORANGEOFCURVE_P_H

// Shared record of KEZGeoRangeOfCurve. Not part of the installed interface.

#include "KEZGeoLocationOnCurve.h"

#include <QSharedData>

class KEZGeoRangeOfCurveData : public QSharedData
{
public:
    KEZGeoLocationOnCurve start;
    KEZGeoLocationOnCurve end;
};

#endif // KEZGEORANGEOFCURVE_P_H
