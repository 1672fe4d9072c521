#ifndef KEZVISREPTRANSFORMEDGRAPHICS_P_H
#define KEZVISREPTRANSFORMEDGRAPHICS_P_H

// Private record of KEZVisRepTransformedGraphics. Never installed.

#include "KEZVisRepGraphics_p.h"
#include "KEZVisRepTransformedGraphics.h"

#include "KEZVisTransform.h"

#include <QList>

class KEZVisRepTransformedGraphicsPrivate : public KEZVisRepGraphicsPrivate
{
    Q_DECLARE_PUBLIC(KEZVisRepTransformedGraphics)

public:
    KEZVisRepTransformedGraphicsPrivate() = default;

    // Transforms by index; may be shorter than primitives, entry 0 serving the rest.
    QList<KEZVisTransform> transforms;
};

#endif // KEZVISREPTRANSFORMEDGRAPHICS_P_H
