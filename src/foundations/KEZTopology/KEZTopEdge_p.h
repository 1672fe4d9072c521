#ifndef KEZTOPEDGE_P_H
#define KEZTOPEDGE_P_H

// Private record of KEZTopEdge. Not part of the installed interface.

#include "KEZGeoComboCurve.h"

#include <QPointer>

class KEZTopEdgePrivate
{
public:
    // Weak: the edge neither owns nor counts its geometry.
    QPointer<const KEZGeoComboCurve> curve;
};

#endif // KEZTOPEDGE_P_H
