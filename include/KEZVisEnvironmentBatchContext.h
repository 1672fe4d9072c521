#ifndef KEZVISENVIRONMENTBATCHCONTEXT_H
#define KEZVISENVIRONMENTBATCHCONTEXT_H

#include "kezvisualization_export.h"

#include <QPointer>

#include "KEZVisEnvironment.h"

/*!
    Scope guard of a batch of a KEZVisEnvironment.

    Construction opens a batch on a living environment, destruction closes one
    if the environment still lives; a context on a null or dead environment does
    nothing at all. The environment is held weakly.

    Copies are plain copies of the weak pointer and deliberately open nothing:
    each copy's destructor still closes a batch, so a copied context closes the
    batch early, and the last one to go finds the count at zero. The close then
    raises KEZSysException "batch count already zero" inside a noexcept
    destructor, which ends the process through std::terminate: the designed
    consequence of an unbalanced batch. Assignment overwrites the weak pointer
    without closing anything for the environment that it held.
*/
class KEZVISUALIZATION_EXPORT KEZVisEnvironmentBatchContext
{
public:
    //! Holds \a environment weakly and opens a batch on it if it is there.
    explicit KEZVisEnvironmentBatchContext(KEZVisEnvironment *environment);
    //! Copies the weak pointer; opens nothing.
    KEZVisEnvironmentBatchContext(const KEZVisEnvironmentBatchContext &other);
    //! Overwrites the weak pointer; closes nothing.
    KEZVisEnvironmentBatchContext &operator=(const KEZVisEnvironmentBatchContext &other);
    //! Closes a batch if the environment still lives.
    ~KEZVisEnvironmentBatchContext();

private:
    QPointer<KEZVisEnvironment> m_environment;
};

#endif // KEZVISENVIRONMENTBATCHCONTEXT_H
