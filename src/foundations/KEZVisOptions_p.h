#ifndef KEZVISOPTIONS_P_H
#define KEZVISOPTIONS_P_H

#include "KEZVisOptions.h"

#include <QColor>
#include <QFont>
#include <QSharedData>

// The shared record of KEZVisOptions. The implicit copy constructor clones all
// eight fields, the fixed-perspective flag included, when a write detaches.
class KEZVisOptionsData : public QSharedData
{
public:
    QColor color;
    KEZVisOptions::LineStyle lineStyle = KEZVisOptions::LineStyleSolid;
    double lineThickness = 1.0;
    KEZVisOptions::PointSymbol pointSymbol = KEZVisOptions::PointSymbolDefault;
    bool fixedPerspective = false;
    QFont font;
    bool depthEnabled = true;
    int priority = 1;
};

#endif // KEZVISOPTIONS_P_H
