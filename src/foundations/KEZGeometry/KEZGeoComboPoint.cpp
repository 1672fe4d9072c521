#include "KEZGeoComboPoint.h"
#include "KEZGeoComboPoint_p.h"

namespace {

KEZGeoComboPointPrivate *createRecord(const KEZMathPoint &point)
{
    auto *d = new KEZGeoComboPointPrivate;
    d->point = point;
    return d;
}

} // namespace

KEZGeoComboPoint::KEZGeoComboPoint(const KEZMathPoint &point, QObject *parent)
    : KEZGeoGeometry(createRecord(point), parent)
{
}

KEZGeoComboPoint::~KEZGeoComboPoint() = default;

KEZMathPoint KEZGeoComboPoint::GetMathPoint() const
{
    Q_D(const KEZGeoComboPoint);
    return d->point;
}
