#include "KEZSysRegisterInit.h"

#include <mutex>
#include <vector>

namespace {

// Built on first use, so that initialisers of other files of this library may
// register before this file's own initialiser has run.
struct StartupState
{
    std::mutex mutex;
    bool started = false;
    std::vector<std::function<void()>> pending;
};

StartupState &startupState()
{
    static StartupState state;
    return state;
}

// Marks the end of the library's start-up: runs what was handed over during it.
bool finishStartup()
{
    StartupState &state = startupState();
    std::vector<std::function<void()>> pending;
    {
        const std::lock_guard<std::mutex> lock(state.mutex);
        state.started = true;
        pending.swap(state.pending);
    }
    for (const std::function<void()> &routine : pending)
        routine();
    return true;
}

[[maybe_unused]] const bool startupFinished = finishStartup();

} // namespace

bool KEZSysRegisterInit(const std::function<void()> &routine)
{
    if (!routine)
        return false;
    StartupState &state = startupState();
    {
        const std::lock_guard<std::mutex> lock(state.mutex);
        if (!state.started) {
            state.pending.push_back(routine);
            return true;
        }
    }
    routine();   // outside the lock, so that the routine may register in turn
    return true;
}
