#ifndef KEZVISTRUNCATE_P_H
#define KEZVISTRUNCATE_P_H

// Conversion of a coordinate to an int pixel position. Never installed.

#include <cmath>

// The largest pixel position handed on to QRect and QPoint: well inside int,
// so that the rectangle arithmetic of Qt cannot overflow.
constexpr int KEZVisPixelLimit = 1 << 30;

// Truncates towards zero, as a C++ conversion does. Values beyond
// +-KEZVisPixelLimit are clamped to it and NaN gives 0, where the plain
// conversion would be undefined.
inline int KEZVisTruncateToInt(double value)
{
    if (std::isnan(value))
        return 0;
    if (value >= double(KEZVisPixelLimit))
        return KEZVisPixelLimit;
    if (value <= -double(KEZVisPixelLimit))
        return -KEZVisPixelLimit;
    return int(value);
}

#endif // KEZVISTRUNCATE_P_H
