#ifndef KEZMATHSETOFPOINTS2D_H
#define KEZMATHSETOFPOINTS2D_H

#include "KEZMathPoint2D.h"
#include "kezmathematics_export.h"

#include <QList>

/*!
    A list of 2D points: a QList<KEZMathPoint2D> with a virtual destructor. All
    list operations are QList's.
*/
class KEZMATHEMATICS_EXPORT KEZMathSetOfPoints2D : public QList<KEZMathPoint2D>
{
public:
    using QList<KEZMathPoint2D>::QList;

    KEZMathSetOfPoints2D() = default;
    KEZMathSetOfPoints2D(const QList<KEZMathPoint2D> &points) : QList<KEZMathPoint2D>(points) {}
    KEZMathSetOfPoints2D(const KEZMathSetOfPoints2D &other) = default;
    KEZMathSetOfPoints2D &operator=(const KEZMathSetOfPoints2D &other) = default;
    virtual ~KEZMathSetOfPoints2D();
};

#endif // KEZMATHSETOFPOINTS2D_H
