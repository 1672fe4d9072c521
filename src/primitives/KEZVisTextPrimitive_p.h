#ifndef KEZVISTEXTPRIMITIVE_P_H
#define KEZVISTEXTPRIMITIVE_P_H

// Private record of KEZVisTextPrimitive. Never installed.

#include "KEZVisTextPrimitive.h"

#include "KEZMathPoint.h"

#include <QString>

class KEZVisTextPrimitivePrivate
{
public:
    KEZVisTextPrimitivePrivate() = default;
    virtual ~KEZVisTextPrimitivePrivate();

    QString text;
    KEZMathPoint anchor;
    // Both start at 1; the constructor then stores the values given.
    KEZVisTextPrimitive::AnchorLocation anchorLocation = KEZVisTextPrimitive::AnchorLeft;
    KEZVisTextPrimitive::Scalability scalability = KEZVisTextPrimitive::ScalabilityScalable;

private:
    Q_DISABLE_COPY(KEZVisTextPrimitivePrivate)
};

#endif // KEZVISTEXTPRIMITIVE_P_H
