// A triangle of a finished triangulation.
#ifndef KEZ_TRIANGULATION_TRIANGLE_H
#define KEZ_TRIANGULATION_TRIANGLE_H

#include "Point.h"

namespace p2t {

// One triangle of the result of CDT::Triangulate. Its corners are counter-clockwise and are the
// caller's own Point objects. Triangles belong to the CDT that made them.
class Triangle
{
public:
    Triangle(Point *a, Point *b, Point *c) : m_points{a, b, c} { }

    // Corner 0, 1 or 2; any other index gives nullptr.
    Point *GetPoint(int index) const
    {
        return index >= 0 && index < 3 ? m_points[index] : nullptr;
    }

private:
    Point *m_points[3];
};

} // namespace p2t

#endif
