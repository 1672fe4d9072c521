#include "KEZMathSetOfPoints2D.h"

KEZMathSetOfPoints2D::~KEZMathSetOfPoints2D() = default;
