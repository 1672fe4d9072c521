#ifndef KEZTOPBODY_H
#define KEZTOPBODY_H

#include "keztopology_export.h"

#include <QList>
#include <QObject>

class KEZTopBodyPrivate;

/*!
    A topology body: the owner of entities sorted by dimension, 0 for
    vertices, 1 for edges and 2 for faces.

    The body takes any QObject as an entity, usually a KEZTopVertex,
    KEZTopEdge or KEZTopFace; readers tell the kinds apart with
    QMetaObject::cast and skip what they do not know.
*/
class KEZTOPOLOGY_EXPORT KEZTopBody : public QObject
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(KEZTopBody)
public:
    explicit KEZTopBody(QObject *parent = nullptr);
    //! Deletes the entities that are still its children, as QObject does.
    ~KEZTopBody() override;

    //! Lists the entity under the dimension (0, 1 or 2) after the entities
    //! added there before, and makes the body its QObject parent, so that the
    //! body deletes it. Refused, leaving the entity as it was:
    //! - a dimension other than 0, 1 or 2 throws KEZSysOutOfBoundsException
    //!   (limits 0 and 2, both included);
    //! - a null entity, the body itself or one of the body's QObject ancestors
    //!   throws KEZSysException.
    //! Nothing else is checked: an entity added twice is listed twice.
    void AddEntity(int dimension, QObject *entity);

    //! The living entities of the dimension in the order of their addition;
    //! an entity that has been deleted drops out of the list. An empty list
    //! for any other dimension than 0, 1 or 2.
    virtual QList<QObject *> GetEntitiesOfDimension(int dimension) const;

private:
    KEZTopBodyPrivate *d_ptr;
    Q_DISABLE_COPY(KEZTopBody)
};

#endif // KEZTOPBODY_H
