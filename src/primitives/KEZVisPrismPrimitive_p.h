#ifndef KEZVISPRISMPRIMITIVE_P_H
#define KEZVISPRISMPRIMITIVE_P_H

#include "KEZVisSolidOnCirclePrivate_p.h"

// The record of a KEZVisPrismPrimitive: the fields of a solid on a circle,
// nothing of its own.
class KEZVisPrismPrimitivePrivate : public KEZVisSolidOnCirclePrivate
{
public:
    KEZVisPrismPrimitivePrivate() = default;
    ~KEZVisPrismPrimitivePrivate() override = default;

private:
    Q_DISABLE_COPY(KEZVisPrismPrimitivePrivate)
};

#endif // KEZVISPRISMPRIMITIVE_P_H
