#ifndef KEZVISREP_P_H
#define KEZVISREP_P_H

// Private record of KEZVisRep, the base of the records of all reps. Never
// installed.

#include "KEZVisRep.h"

#include "KEZMathAxis.h"

class KEZVisRepPrivate
{
    Q_DECLARE_PUBLIC(KEZVisRep)

public:
    KEZVisRepPrivate() = default;
    virtual ~KEZVisRepPrivate();

    // The rep that owns this record; set by KEZVisRep's constructor.
    KEZVisRep *q_ptr = nullptr;
    // A frame and a flag that travel with every rep for subclasses and future
    // use; nothing in the library reads them.
    KEZMathAxis axis;
    bool axisEnabled = false;

private:
    Q_DISABLE_COPY(KEZVisRepPrivate)
};

#endif // KEZVISREP_P_H
