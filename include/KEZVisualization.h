#ifndef KEZVISUALIZATION_H
#define KEZVISUALIZATION_H

// Every public header of KEZVisualization.
#include "KEZVisGlobal.h"

#endif // KEZVISUALIZATION_H
