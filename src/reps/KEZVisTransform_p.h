#ifndef KEZVISTRANSFORM_P_H
#define KEZVISTRANSFORM_P_H

// Shared record of KEZVisTransform. Never installed.

#include "KEZVisTransform.h"

#include "KEZMathPoint.h"

#include <QSharedData>

class KEZVisTransformData : public QSharedData
{
public:
    KEZMathPoint anchorPoint;
    double pixelScale = 1.5;
    KEZVisTransform::DisplayTransformBehavior displayTransformBehavior = KEZVisTransform::DisplayTransformNone;
};

#endif // KEZVISTRANSFORM_P_H
