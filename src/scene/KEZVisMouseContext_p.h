#ifndef KEZVISMOUSECONTEXT_P_H
#define KEZVISMOUSECONTEXT_P_H

// Private record of KEZVisMouseContext. Not part of the installed interface.

#include "KEZVisMouseContext.h"

#include <QList>

#include "KEZMathPoint.h"
#include "KEZMathVector.h"

class KEZVisMouseContextPrivate
{
public:
    explicit KEZVisMouseContextPrivate(KEZVisMouseContext *q)
        : q_ptr(q)
    {
    }
    virtual ~KEZVisMouseContextPrivate() = default;

    KEZVisMouseContext *q_ptr;
    QFlags<KEZVisMouseContext::SnapType> snapType;
    KEZMathVector snapAxis;
    KEZMathPoint snapPoint;
    KEZMathPoint mousePoint;
    KEZMathVector viewDirection;
    const KEZVisObject *visualizationObject = nullptr;
    KEZVisMouseContext::NativeGeometrySelectionType geometrySelectionType =
        KEZVisMouseContext::NoGeometrySelection;
    QList<KEZMathVector> selectedAxises;
    QList<KEZMathPoint> selectedPoints;
};

#endif // KEZVISMOUSECONTEXT_P_H
