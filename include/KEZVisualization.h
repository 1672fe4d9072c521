#ifndef KEZVISUALIZATION_H
#define KEZVISUALIZATION_H

// Every public header of KEZVisualization.
#include "KEZVisGlobal.h"
#include "KEZVisOptions.h"

#endif // KEZVISUALIZATION_H
