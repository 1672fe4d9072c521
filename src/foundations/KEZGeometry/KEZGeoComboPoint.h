#ifndef KEZGEOCOMBOPOINT_H
#define KEZGEOCOMBOPOINT_H

#include "KEZGeoGeometry.h"
#include "kezgeometry_export.h"

#include "KEZMathPoint.h"

class KEZGeoComboPointPrivate;

/*!
    A point as a geometry object: the geometry that topology vertices hold.
    It keeps a copy of the point and never changes after construction.
*/
class KEZGEOMETRY_EXPORT KEZGeoComboPoint : public KEZGeoGeometry
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(KEZGeoComboPoint)
public:
    explicit KEZGeoComboPoint(const KEZMathPoint &point, QObject *parent = nullptr);
    ~KEZGeoComboPoint() override;

    KEZMathPoint GetMathPoint() const;

private:
    Q_DISABLE_COPY(KEZGeoComboPoint)
};

#endif // KEZGEOCOMBOPOINT_H
