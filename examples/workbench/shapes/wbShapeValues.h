#pragma once

#include <algorithm>
#include <cmath>

// Limits that every shape applies to the values it is given, from a user
// or from a file: a document never holds a negative or undefined size,
// nor a circle of fewer sides than a triangle.
namespace wbShapeValues {

constexpr int MinSegments = 3;
constexpr int MaxSegments = 512;

// A size is zero or more; NaN counts as zero, infinity as zero too, since
// no renderer can build it.
inline double size(double value)
{
    return std::isfinite(value) && value > 0.0 ? value : 0.0;
}

inline int segments(int value)
{
    return std::clamp(value, MinSegments, MaxSegments);
}

} // namespace wbShapeValues
