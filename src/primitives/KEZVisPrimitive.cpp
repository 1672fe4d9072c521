#include "KEZVisPrimitive.h"

KEZVisPrimitive::KEZVisPrimitive()
    : QObject(nullptr)
{
}

KEZVisPrimitive::~KEZVisPrimitive() = default;
