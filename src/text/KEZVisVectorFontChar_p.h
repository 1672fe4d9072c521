#ifndef KEZVISVECTORFONTCHAR_P_H
#define KEZVISVECTORFONTCHAR_P_H

#include "KEZMathSetOfPoints2D.h"

#include <QChar>
#include <QList>
#include <QSharedData>
#include <QtNumeric>

// The shared record of a glyph. Filled once by the parser, never changed after.
class KEZVisVectorFontCharPrivate : public QSharedData
{
public:
    QChar character;
    QList<KEZMathSetOfPoints2D> polylines;
    double width = qQNaN();
};

#endif // KEZVISVECTORFONTCHAR_P_H
