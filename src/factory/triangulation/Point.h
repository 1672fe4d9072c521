// A point handed to the triangulator.
#ifndef KEZ_TRIANGULATION_POINT_H
#define KEZ_TRIANGULATION_POINT_H

namespace p2t {

// A 2D point of an outline, a hole or a triangle. The triangulator never takes ownership of points:
// the caller creates them, keeps them alive until the CDT that uses them is deleted, and frees them.
struct Point
{
    double x = 0.0;
    double y = 0.0;

    Point() = default;
    Point(double px, double py) : x(px), y(py) { }
};

} // namespace p2t

#endif
