// The Qt logging category of the triangulator.
#ifndef KEZ_TRIANGULATION_LOGGING_P_H
#define KEZ_TRIANGULATION_LOGGING_P_H

#include <QLoggingCategory>

// "kez.visualization.triangulation", enabled for debug messages by default.
Q_DECLARE_LOGGING_CATEGORY(lcKezTriangulation)

#endif
