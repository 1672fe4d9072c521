// Load-time start-up of the library.

#include "KEZVisGlobal.h"

bool _KEZVisualizationLoaded = false;
