#ifndef KEZVISUALIZATION_H
#define KEZVISUALIZATION_H

// Every public header of KEZVisualization.
#include "KEZVisGlobal.h"
#include "KEZVisOptions.h"
#include "KEZVisPointPrimitive.h"
#include "KEZVisPolylinePrimitive.h"
#include "KEZVisPrimitive.h"
#include "KEZVisRep.h"
#include "KEZVisRepExtraSet.h"
#include "KEZVisRepGraphics.h"
#include "KEZVisRepSet.h"
#include "KEZVisSurfacePrimitive.h"
#include "KEZVisArrowRep.h"
#include "KEZVisPolygonPrimitive.h"
#include "KEZVisPrismPrimitive.h"
#include "KEZVisPyramidPrimitive.h"
#include "KEZVisRepFactory.h"
#include "KEZVisClient.h"
#include "KEZVisClientChangeRequest.h"
#include "KEZVisCompoundFilter.h"
#include "KEZVisEnvironment.h"
#include "KEZVisEnvironmentBatchContext.h"
#include "KEZVisEnvironmentBatchSelectionContext.h"
#include "KEZVisFunctionFilter.h"
#include "KEZVisMouseContext.h"
#include "KEZVisMouseEvent.h"
#include "KEZVisObject.h"
#include "KEZVisSelectionFilter.h"
#include "KEZVisVirtualObject.h"
#include "KEZVisGizmo.h"

#endif // KEZVISUALIZATION_H
