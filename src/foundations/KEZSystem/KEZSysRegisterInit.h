#ifndef KEZSYSREGISTERINIT_H
#define KEZSYSREGISTERINIT_H

#include "kezsystem_export.h"

#include <functional>

/*!
    Hands a routine over to be run once the family has started, and answers
    whether it will be run.

    The family's start-up is the static initialisation of KEZSystem itself. The
    dynamic loader completes it before any library or program that links
    KEZSystem runs its own static initialisers, so by the time such code calls
    this function the family has started: the routine runs at once, inside the
    call and on the calling thread, and the call answers true. A library can
    therefore register from a static initialiser and keep the result, and rely
    on the routine having run when the result is true.

    A routine handed over while KEZSystem's own static initialisation is still
    under way (from another initialiser of KEZSystem) is kept and run at the end
    of that start-up, in the order of the calls; the call answers true as well.

    An empty std::function is no routine: the call answers false and nothing is
    kept. An exception thrown by a routine that runs at once passes out of this
    call to its caller. The call is thread-safe, and a routine may itself call
    KEZSysRegisterInit.
*/
KEZSYSTEM_EXPORT bool KEZSysRegisterInit(const std::function<void()> &routine);

#endif // KEZSYSREGISTERINIT_H
