#include "KEZVisEnvironmentBatchContext.h"

#include "KEZVisEnvironment_p.h"

KEZVisEnvironmentBatchContext::KEZVisEnvironmentBatchContext(KEZVisEnvironment *environment)
    : m_environment(environment)
{
    if (KEZVisEnvironmentPrivate *d = environment ? KEZVisEnvironmentPrivate::get(environment) : nullptr)
        d->StartBatch();
}

KEZVisEnvironmentBatchContext::KEZVisEnvironmentBatchContext(const KEZVisEnvironmentBatchContext &other) = default;

KEZVisEnvironmentBatchContext &KEZVisEnvironmentBatchContext::operator=(const KEZVisEnvironmentBatchContext &other) = default;

KEZVisEnvironmentBatchContext::~KEZVisEnvironmentBatchContext()
{
    // May raise "batch count already zero"; the destructor is noexcept, so an
    // unbalanced batch ends the process.
    if (KEZVisEnvironment *environment = m_environment.data()) {
        if (KEZVisEnvironmentPrivate *d = KEZVisEnvironmentPrivate::get(environment))
            d->FinishBatch();
    }
}
