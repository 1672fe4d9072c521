#ifndef KEZGEOGEOMETRY_P_H
#define KEZGEOGEOMETRY_P_H

// Private record of KEZGeoGeometry; the records of the subclasses derive
// from it. Not part of the installed interface.

class KEZGeoGeometryPrivate
{
public:
    KEZGeoGeometryPrivate() = default;
    virtual ~KEZGeoGeometryPrivate() = default;

    // Changed through the const AddReference() and RemoveReference().
    mutable int referenceCount = 0;

private:
    KEZGeoGeometryPrivate(const KEZGeoGeometryPrivate &) = delete;
    KEZGeoGeometryPrivate &operator=(const KEZGeoGeometryPrivate &) = delete;
};

#endif // KEZGEOGEOMETRY_P_H
