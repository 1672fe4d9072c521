#ifndef KEZMATHSETOFPOINTS_H
#define KEZMATHSETOFPOINTS_H

#include "KEZMathBoundingBox.h"
#include "KEZMathPoint.h"
#include "kezmathematics_export.h"

#include <QList>

/*!
    A list of points: a QList<KEZMathPoint> with a virtual destructor and a
    bounding box. All list operations are QList's, and a set of points passes
    wherever a QList of points is read.
*/
class KEZMATHEMATICS_EXPORT KEZMathSetOfPoints : public QList<KEZMathPoint>
{
public:
    using QList<KEZMathPoint>::QList;

    KEZMathSetOfPoints() = default;
    KEZMathSetOfPoints(const QList<KEZMathPoint> &points) : QList<KEZMathPoint>(points) {}
    KEZMathSetOfPoints(const KEZMathSetOfPoints &other) = default;
    KEZMathSetOfPoints &operator=(const KEZMathSetOfPoints &other) = default;
    virtual ~KEZMathSetOfPoints();

    //! The box around all points; a default box (both corners at the origin) when the set is empty.
    KEZMathBoundingBox GetBoundingBox() const;
};

#endif // KEZMATHSETOFPOINTS_H
