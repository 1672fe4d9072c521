#ifndef KEZVISPYRAMIDPRIMITIVE_P_H
#define KEZVISPYRAMIDPRIMITIVE_P_H

#include "KEZVisSolidOnCirclePrivate_p.h"

// The record of a KEZVisPyramidPrimitive: the fields of a solid on a circle,
// nothing of its own.
class KEZVisPyramidPrimitivePrivate : public KEZVisSolidOnCirclePrivate
{
public:
    KEZVisPyramidPrimitivePrivate() = default;
    ~KEZVisPyramidPrimitivePrivate() override = default;

private:
    Q_DISABLE_COPY(KEZVisPyramidPrimitivePrivate)
};

#endif // KEZVISPYRAMIDPRIMITIVE_P_H
