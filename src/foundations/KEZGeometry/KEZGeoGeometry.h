#ifndef KEZGEOGEOMETRY_H
#define KEZGEOGEOMETRY_H

#include "kezgeometry_export.h"

#include <QObject>

class KEZGeoGeometryPrivate;

/*!
    Base of every geometry object of the family: curves, surfaces and points.

    A geometry is a QObject, so that users that keep a pointer to it can watch
    it with a QPointer and notice when it has gone. Its lifetime follows the
    usual QObject rules: the creator or the QObject parent deletes it.

    Users of a geometry announce themselves with AddReference() and leave with
    RemoveReference(); GetReferenceCount() tells how many are left. The count
    starts at 0 and is for information only: a geometry never deletes itself,
    not even when the count goes back to 0. Both operations are const, since a
    user typically holds the geometry through a pointer to const. The count is
    not atomic: like the object itself it belongs to one thread.
*/
class KEZGEOMETRY_EXPORT KEZGeoGeometry : public QObject
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(KEZGeoGeometry)
public:
    ~KEZGeoGeometry() override;

    //! Counts one more user of this geometry.
    void AddReference() const;
    //! Counts one user less and answers true. When the count is already 0 it
    //! stays 0 and the answer is false: an unbalanced call is reported to the
    //! caller instead of driving the count below zero.
    bool RemoveReference() const;
    //! The number of users counted so far; never negative.
    int GetReferenceCount() const;

protected:
    //! Lets a subclass bring a record derived from KEZGeoGeometryPrivate; the
    //! geometry takes ownership of it.
    KEZGeoGeometry(KEZGeoGeometryPrivate *d, QObject *parent);
    KEZGeoGeometryPrivate *d_ptr;

private:
    Q_DISABLE_COPY(KEZGeoGeometry)
};

#endif // KEZGEOGEOMETRY_H
