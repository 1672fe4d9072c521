#ifndef KEZTOPVERTEX_H
#define KEZTOPVERTEX_H

#include "keztopology_export.h"

#include "KEZGeoComboPoint.h"

#include <QObject>

class KEZTopVertexPrivate;

/*!
    A topology vertex: an entity of dimension 0 of a KEZTopBody, placed at a point.

    The vertex refers to its geometry without owning it and without counting a
    reference on it: whoever made the geometry keeps it alive. The vertex
    watches the geometry, and GetPoint() answers null once it has been
    deleted, as it does when null was given.
*/
class KEZTOPOLOGY_EXPORT KEZTopVertex : public QObject
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(KEZTopVertex)
public:
    explicit KEZTopVertex(const KEZGeoComboPoint *point, QObject *parent = nullptr);
    ~KEZTopVertex() override;

    const KEZGeoComboPoint *GetPoint() const;

private:
    KEZTopVertexPrivate *d_ptr;
    Q_DISABLE_COPY(KEZTopVertex)
};

#endif // KEZTOPVERTEX_H
