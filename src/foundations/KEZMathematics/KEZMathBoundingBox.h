#ifndef KEZMATHBOUNDINGBOX_H
#define KEZMATHBOUNDINGBOX_H

#include "KEZMathPoint.h"
#include "kezmathematics_export.h"

/*!
    An axis-aligned box, given by its lower and upper corners.

    A default-constructed box has both corners at the origin, so all its deltas
    are 0; it is what a thing without geometry answers. Expanding it takes the
    origin in, so a box of real geometry starts from its first point or box and
    expands from there.
*/
class KEZMATHEMATICS_EXPORT KEZMathBoundingBox
{
public:
    KEZMathBoundingBox() = default;
    //! The box of one point: both corners at the point.
    explicit KEZMathBoundingBox(const KEZMathPoint &point) : m_lower(point), m_upper(point) {}
    //! The smallest box around both points, given in any order.
    KEZMathBoundingBox(const KEZMathPoint &first, const KEZMathPoint &second);
    KEZMathBoundingBox(const KEZMathBoundingBox &other) = default;
    KEZMathBoundingBox &operator=(const KEZMathBoundingBox &other) = default;
    virtual ~KEZMathBoundingBox();

    //! Grows the box to take in the point.
    void Expand(const KEZMathPoint &point);
    //! Grows the box to take in the other box.
    void Expand(const KEZMathBoundingBox &box);

    //! The corner with the smallest coordinates.
    KEZMathPoint GetLowerPoint() const { return m_lower; }
    //! The corner with the largest coordinates.
    KEZMathPoint GetUpperPoint() const { return m_upper; }
    double GetDeltaX() const { return m_upper.GetX() - m_lower.GetX(); }
    double GetDeltaY() const { return m_upper.GetY() - m_lower.GetY(); }
    double GetDeltaZ() const { return m_upper.GetZ() - m_lower.GetZ(); }

    //! True when both corners are exactly the same, coordinate by coordinate (no tolerance).
    bool operator==(const KEZMathBoundingBox &other) const;
    bool operator!=(const KEZMathBoundingBox &other) const { return !(*this == other); }

private:
    KEZMathPoint m_lower;
    KEZMathPoint m_upper;
};

#endif // KEZMATHBOUNDINGBOX_H
