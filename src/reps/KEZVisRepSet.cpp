#include "KEZVisRepSet.h"
#include "KEZVisRepSet_p.h"

#include <QtAlgorithms>

KEZVisRepSetPrivate::~KEZVisRepSetPrivate()
{
    qDeleteAll(children);
}

KEZVisRepSet::KEZVisRepSet(const QList<const KEZVisRep *> &children)
    : KEZVisRep(new KEZVisRepSetPrivate)
{
    Q_D(KEZVisRepSet);
    d->children = children;
}

KEZVisRepSet::KEZVisRepSet(KEZVisRepSetPrivate *d)
    : KEZVisRep(d)
{
}

KEZVisRepSet::~KEZVisRepSet() = default;

QList<const KEZVisRep *> KEZVisRepSet::GetChildVisReps() const
{
    Q_D(const KEZVisRepSet);
    return d->children;
}

void KEZVisRepSet::GetPrimitives(QList<const KEZVisPrimitive *> &primitives, QList<KEZVisOptions> &options) const
{
    Q_D(const KEZVisRepSet);
    for (const KEZVisRep *child : d->children) {
        if (!child)
            continue;
        QList<const KEZVisPrimitive *> childPrimitives;
        QList<KEZVisOptions> childOptions;
        child->GetPrimitives(childPrimitives, childOptions);
        primitives.append(childPrimitives);
        options.append(childOptions);
    }
}
