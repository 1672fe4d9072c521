#include "KEZVisEnvironmentBatchSelectionContext.h"

#include "KEZVisEnvironment_p.h"

KEZVisEnvironmentBatchSelectionContext::KEZVisEnvironmentBatchSelectionContext(KEZVisEnvironment *environment)
    : m_environment(environment)
{
    if (KEZVisEnvironmentPrivate *d = environment ? KEZVisEnvironmentPrivate::get(environment) : nullptr)
        d->StartBatchSelection();
}

KEZVisEnvironmentBatchSelectionContext::KEZVisEnvironmentBatchSelectionContext(
    const KEZVisEnvironmentBatchSelectionContext &other) = default;

KEZVisEnvironmentBatchSelectionContext &KEZVisEnvironmentBatchSelectionContext::operator=(
    const KEZVisEnvironmentBatchSelectionContext &other) = default;

KEZVisEnvironmentBatchSelectionContext::~KEZVisEnvironmentBatchSelectionContext()
{
    // May raise "batch selection count already zero"; the destructor is
    // noexcept, so an unbalanced selection batch ends the process.
    if (KEZVisEnvironment *environment = m_environment.data()) {
        if (KEZVisEnvironmentPrivate *d = KEZVisEnvironmentPrivate::get(environment))
            d->FinishBatchSelection();
    }
}
