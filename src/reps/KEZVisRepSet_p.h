#ifndef KEZVISREPSET_P_H
#define KEZVISREPSET_P_H

// Private record of KEZVisRepSet. Never installed.

#include "KEZVisRep_p.h"
#include "KEZVisRepSet.h"

#include <QList>

class KEZVisRepSetPrivate : public KEZVisRepPrivate
{
    Q_DECLARE_PUBLIC(KEZVisRepSet)

public:
    KEZVisRepSetPrivate() = default;
    // Deletes each non-null child, in list order.
    ~KEZVisRepSetPrivate() override;

    // The child reps, owned.
    QList<const KEZVisRep *> children;
};

#endif // KEZVISREPSET_P_H
