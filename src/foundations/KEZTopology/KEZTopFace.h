#ifndef KEZTOPFACE_H
#define KEZTOPFACE_H

#include "keztopology_export.h"

#include "KEZGeoSurface.h"

#include <QObject>

class KEZTopFacePrivate;

/*!
    A topology face: an entity of dimension 2 of a KEZTopBody, covering a
    triangulated surface.

    The face refers to its geometry without owning it and without counting a
    reference on it: whoever made the geometry keeps it alive. The face
    watches the geometry, and GetSurface() answers null once it has been
    deleted, as it does when null was given.
*/
class KEZTOPOLOGY_EXPORT KEZTopFace : public QObject
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(KEZTopFace)
public:
    explicit KEZTopFace(const KEZGeoSurface *surface, QObject *parent = nullptr);
    ~KEZTopFace() override;

    const KEZGeoSurface *GetSurface() const;

private:
    KEZTopFacePrivate *d_ptr;
    Q_DISABLE_COPY(KEZTopFace)
};

#endif // KEZTOPFACE_H
