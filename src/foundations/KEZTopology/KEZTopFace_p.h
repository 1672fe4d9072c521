#ifndef KEZTOPFACE_P_H
#define KEZTOPFACE_P_H

// Private record of KEZTopFace. Not part of the installed interface.

#include "KEZGeoSurface.h"

#include <QPointer>

class KEZTopFacePrivate
{
public:
    // Weak: the face neither owns nor counts its geometry.
    QPointer<const KEZGeoSurface> surface;
};

#endif // KEZTOPFACE_P_H
