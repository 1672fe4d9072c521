#ifndef KEZVISREPGRAPHICS_P_H
#define KEZVISREPGRAPHICS_P_H

// Private record of KEZVisRepGraphics. Never installed.

#include "KEZVisRep_p.h"
#include "KEZVisRepGraphics.h"

#include "KEZVisOptions.h"

#include <QList>

class KEZVisPrimitive;

class KEZVisRepGraphicsPrivate : public KEZVisRepPrivate
{
    Q_DECLARE_PUBLIC(KEZVisRepGraphics)

public:
    KEZVisRepGraphicsPrivate() = default;
    // Deletes each non-null primitive, in list order.
    ~KEZVisRepGraphicsPrivate() override;

    // The primitives, owned.
    QList<const KEZVisPrimitive *> primitives;
    // Options by index; may be shorter than primitives, entry 0 serving the rest.
    QList<KEZVisOptions> options;
};

#endif // KEZVISREPGRAPHICS_P_H
