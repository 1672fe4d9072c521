#ifndef KEZVISENVIRONMENTBATCHSELECTIONCONTEXT_H
#define KEZVISENVIRONMENTBATCHSELECTIONCONTEXT_H

#include "kezvisualization_export.h"

#include <QPointer>

#include "KEZVisEnvironment.h"

/*!
    Scope guard of a selection batch of a KEZVisEnvironment.

    It works like KEZVisEnvironmentBatchContext, on the environment's separate
    selection batch count: the outermost opening emits
    KEZVisEnvironment::BatchSelectionStarted(), the outermost closing
    KEZVisEnvironment::BatchSelectionFinished(), and an unbalanced close raises
    KEZSysException "batch selection count already zero" inside the noexcept
    destructor, which ends the process. Selection batches and ordinary batches
    are independent: neither opens the other.
*/
class KEZVISUALIZATION_EXPORT KEZVisEnvironmentBatchSelectionContext
{
public:
    //! Holds \a environment weakly and opens a selection batch on it if it is there.
    explicit KEZVisEnvironmentBatchSelectionContext(KEZVisEnvironment *environment);
    //! Copies the weak pointer; opens nothing.
    KEZVisEnvironmentBatchSelectionContext(const KEZVisEnvironmentBatchSelectionContext &other);
    //! Overwrites the weak pointer; closes nothing.
    KEZVisEnvironmentBatchSelectionContext &operator=(const KEZVisEnvironmentBatchSelectionContext &other);
    //! Closes a selection batch if the environment still lives.
    ~KEZVisEnvironmentBatchSelectionContext();

private:
    QPointer<KEZVisEnvironment> m_environment;
};

#endif // KEZVISENVIRONMENTBATCHSELECTIONCONTEXT_H
