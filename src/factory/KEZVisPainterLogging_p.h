// The Qt logging category of the 2D painter and the picture export.
#ifndef KEZVISPAINTERLOGGING_P_H
#define KEZVISPAINTERLOGGING_P_H

#include <QLoggingCategory>

// "kez.visualization.painter", enabled for debug messages by default.
Q_DECLARE_LOGGING_CATEGORY(lcKezPainter)

#endif // KEZVISPAINTERLOGGING_P_H
