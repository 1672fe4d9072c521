#ifndef KEZTOPOLOGY_H
#define KEZTOPOLOGY_H

// Every public header of KEZTopology: bodies and their vertices, edges and
// faces.

#include "keztopology_export.h"

#include "KEZTopBody.h"
#include "KEZTopEdge.h"
#include "KEZTopFace.h"
#include "KEZTopVertex.h"

#endif // KEZTOPOLOGY_H
