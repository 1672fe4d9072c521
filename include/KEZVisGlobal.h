#ifndef KEZVISGLOBAL_H
#define KEZVISGLOBAL_H

#include "kezvisualization_export.h"

/*!
 * True once the library's load-time routine has run: the routine that the
 * library hands to KEZSysRegisterInit() when it is loaded stores true here
 * after registering the library's types with Qt's meta-type system. Before
 * that it holds the answer of KEZSysRegisterInit() itself.
 */
extern KEZVISUALIZATION_EXPORT bool _KEZVisualizationLoaded;

#endif // KEZVISGLOBAL_H
