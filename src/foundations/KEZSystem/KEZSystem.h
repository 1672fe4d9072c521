#ifndef KEZSYSTEM_H
#define KEZSYSTEM_H

// Every public header of KEZSystem: exceptions, JSON conversion, the colour
// hash and load-time registration.

#include "KEZSysColorHash.h"
#include "KEZSysException.h"
#include "KEZSysFileException.h"
#include "KEZSysFileOpenException.h"
#include "KEZSysJsonConverters.h"
#include "KEZSysOutOfBoundsException.h"
#include "KEZSysRegisterInit.h"

#endif // KEZSYSTEM_H
