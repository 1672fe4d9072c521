#include "KEZTopFace.h"
#include "KEZTopFace_p.h"

KEZTopFace::KEZTopFace(const KEZGeoSurface *surface, QObject *parent)
    : QObject(parent)
    , d_ptr(new KEZTopFacePrivate)
{
    Q_D(KEZTopFace);
    d->surface = surface;
}

KEZTopFace::~KEZTopFace()
{
    delete d_ptr;
}

const KEZGeoSurface *KEZTopFace::GetSurface() const
{
    Q_D(const KEZTopFace);
    return d->surface.data();
}
