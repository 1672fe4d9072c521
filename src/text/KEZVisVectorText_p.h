#ifndef KEZVISVECTORTEXT_P_H
#define KEZVISVECTORTEXT_P_H

#include "KEZVisVectorText.h"

#include <QSharedData>

// The shared record of a vector text: its settings and nothing else.
class KEZVisVectorTextPrivate : public QSharedData
{
public:
    QString text;
    KEZVisVectorFont font;
    KEZVisVectorText::Anchor anchor = KEZVisVectorText::BottomLeft;
    double lineSpacing = 5.0;
    double characterSpacing = 0.0;
    KEZVisVectorText::Orientation orientation = KEZVisVectorText::LeftToRight;
    KEZVisVectorText::Justification justification = KEZVisVectorText::JustifyLeft;
    QFlags<KEZVisVectorText::Decoration> decorations;
    double textSize = 0.0;
    double tiltAngle = 0.0;
    KEZMathPlane plane;
};

#endif // KEZVISVECTORTEXT_P_H
