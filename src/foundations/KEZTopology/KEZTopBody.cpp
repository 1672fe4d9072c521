#include "KEZTopBody.h"
#include "KEZTopBody_p.h"

#include "KEZSysException.h"
#include "KEZSysOutOfBoundsException.h"

KEZTopBody::KEZTopBody(QObject *parent)
    : QObject(parent)
    , d_ptr(new KEZTopBodyPrivate)
{
}

KEZTopBody::~KEZTopBody()
{
    // The entities are children and go with ~QObject, after the lists.
    delete d_ptr;
}

void KEZTopBody::AddEntity(int dimension, QObject *entity)
{
    Q_D(KEZTopBody);
    if (dimension < 0 || dimension >= KEZTopBodyPrivate::dimensionCount)
        throw KEZSysOutOfBoundsException(dimension, 0, KEZTopBodyPrivate::dimensionCount - 1, true, true);
    if (!entity)
        throw KEZSysException(QStringLiteral("a body cannot hold a null entity"));
    // Parenting the body or an ancestor to the body would close a cycle of
    // ownership.
    for (const QObject *object = this; object; object = object->parent()) {
        if (object == entity)
            throw KEZSysException(QStringLiteral("a body cannot hold itself or one of its ancestors"));
    }
    entity->setParent(this);
    d->entities[dimension].append(entity);
}

QList<QObject *> KEZTopBody::GetEntitiesOfDimension(int dimension) const
{
    Q_D(const KEZTopBody);
    QList<QObject *> result;
    if (dimension < 0 || dimension >= KEZTopBodyPrivate::dimensionCount)
        return result;
    const QList<QPointer<QObject>> &entities = d->entities[dimension];
    result.reserve(entities.size());
    for (const QPointer<QObject> &entity : entities) {
        if (entity)
            result.append(entity.data());
    }
    return result;
}
