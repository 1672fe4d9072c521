#ifndef KEZTOPVERTEX_P_H
#define KEZTOPVERTEX_P_H

// Private record of KEZTopVertex. Not part of the installed interface.

#include "KEZGeoComboPoint.h"

#include <QPointer>

class KEZTopVertexPrivate
{
public:
    // Weak: the vertex neither owns nor counts its geometry.
    QPointer<const KEZGeoComboPoint> point;
};

#endif // KEZTOPVERTEX_P_H
