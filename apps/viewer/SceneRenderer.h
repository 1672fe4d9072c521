#ifndef KEZVIEWER_SCENERENDERER_H
#define KEZVIEWER_SCENERENDERER_H

// Draws the mirror of a SceneClient with QPainter, in software, so that it runs
// on any platform, the offscreen one included.
//
// Order of drawing: everything drawn with depth enabled comes first, from back
// to front by its mean depth, and at equal depth the lower priority first;
// then everything with depth disabled, by priority and then from back to
// front, so that it always stays on top. Faces are filled flat in their colour
// times 0.35 + 0.65 |n . d| for the unit normal n and the direction of view d.
// Selected objects are drawn in SelectedColor and preselected ones in
// PreselectedColor, whatever their own colours.

#include "SceneClient.h"
#include "ViewCamera.h"

#include <QColor>

class QPainter;

namespace SceneRenderer {

inline const QColor BackgroundColor(246, 246, 242);
inline const QColor SelectedColor = QColor::fromRgb(SceneClient::SelectedRgb());
inline const QColor PreselectedColor = QColor::fromRgb(SceneClient::PreselectedRgb());

// The number of drawing calls of the last Render() in this process, for tests
// and benchmarks.
struct Statistics
{
    int faces = 0;
    int lines = 0;
    int points = 0;
    int texts = 0;
};

// Fills the painter's device with the background and draws every visible item
// of \a client as \a camera sees it. The camera's size is the device's.
Statistics Render(QPainter &painter, const SceneClient &client, const ViewCamera &camera);

// The dash pattern of a line style, in units of the pen width; empty for a
// solid line or a style out of range.
QList<qreal> DashPattern(int lineStyle);

} // namespace SceneRenderer

#endif // KEZVIEWER_SCENERENDERER_H
