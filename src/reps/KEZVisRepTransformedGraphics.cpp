#include "KEZVisRepTransformedGraphics.h"
#include "KEZVisRepTransformedGraphics_p.h"

KEZVisRepTransformedGraphics::KEZVisRepTransformedGraphics(const QList<const KEZVisPrimitive *> &primitives,
                                                           QList<KEZVisOptions> &options,
                                                           QList<KEZVisTransform> &transforms)
    : KEZVisRepGraphics(new KEZVisRepTransformedGraphicsPrivate)
{
    Q_D(KEZVisRepTransformedGraphics);
    d->primitives = primitives;
    d->options = options;
    d->transforms = transforms;
}

KEZVisRepTransformedGraphics::KEZVisRepTransformedGraphics(const QList<const KEZVisPrimitive *> &primitives,
                                                           const KEZVisOptions &options, KEZVisTransform &transform)
    : KEZVisRepGraphics(new KEZVisRepTransformedGraphicsPrivate)
{
    Q_D(KEZVisRepTransformedGraphics);
    d->primitives = primitives;
    d->options.append(options);
    d->transforms.append(transform);
}

KEZVisRepTransformedGraphics::~KEZVisRepTransformedGraphics() = default;

void KEZVisRepTransformedGraphics::GetPrimitives(QList<const KEZVisPrimitive *> &primitives,
                                                 QList<KEZVisOptions> &options,
                                                 QList<KEZVisTransform> &transforms) const
{
    KEZVisRepGraphics::GetPrimitives(primitives, options);
    Q_D(const KEZVisRepTransformedGraphics);
    const qsizetype count = d->primitives.size();
    const KEZVisTransform fallback = d->transforms.isEmpty() ? KEZVisTransform() : d->transforms.first();
    for (qsizetype i = 0; i < count; ++i)
        transforms.append(i < d->transforms.size() ? d->transforms.at(i) : fallback);
}
