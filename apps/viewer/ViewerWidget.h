#ifndef KEZVIEWER_VIEWERWIDGET_H
#define KEZVIEWER_VIEWERWIDGET_H

// The view: draws one environment through a SceneClient and turns the mouse
// into camera moves and into events of the environment.
//
// Mouse:
//   left drag on an object     reported to the environment (drags the gizmo)
//   left drag on empty space   turns the view about its centre
//   middle drag                pans
//   wheel                      zooms at the cursor
//   hover                      preselects the object under the cursor
//   click                      selects the object (Ctrl toggles it), or
//                              clears the selection on empty space, when
//                              the environment has selection enabled
//
// Every press, move, release, click and double click goes to the environment
// as a KEZVisMouseEvent with a KEZVisMouseContext that holds the picked
// object, the point under the mouse (on the object, or else on the plane at
// right angles to the view through the reference point: the gizmo's origin
// if a gizmo is set, the centre of the view otherwise), the snap point and
// snap axis within SceneClient::SnapRadius, and the direction of view. A click
// is a release within ClickSlop pixels of its press; the release after a
// double click is not a click.

#include "SceneClient.h"
#include "ViewCamera.h"

#include <KEZVisMouseContext.h>
#include <KEZVisMouseEvent.h>

#include <QImage>
#include <QPointer>
#include <QWidget>

class KEZVisEnvironment;
class KEZVisGizmo;

class ViewerWidget : public QWidget
{
    Q_OBJECT
public:
    static constexpr double ClickSlop = 3.0;

    explicit ViewerWidget(QWidget *parent = nullptr);
    ~ViewerWidget() override;

    void SetEnvironment(KEZVisEnvironment *environment);
    KEZVisEnvironment *GetEnvironment() const;
    // The gizmo whose origin the mouse point lies level with; held weakly.
    void SetGizmo(KEZVisGizmo *gizmo);

    SceneClient &GetClient() { return m_client; }
    ViewCamera &GetCamera() { return m_camera; }
    const KEZVisMouseContext &GetContext() const { return m_context; }

    // One frame of the widget's size, drawn as on screen.
    QImage RenderImage();
    // Frames painted by the widget so far.
    int GetFrameCount() const { return m_frames; }

signals:
    void FramePainted();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    enum class Drag { None, Objects, Rotate, Pan };

    void OnViewRequested(const KEZVisClientChangeRequest &request);
    void OnObjectGone(KEZVisObject *object);
    SceneClient::Hit FillContext(const QPointF &position);
    void Report(KEZVisMouseEvent::MouseActionFlag action);
    void Preselect(KEZVisObject *object);
    void ClickSelect(KEZVisObject *object, bool toggle);

    SceneClient m_client;
    ViewCamera m_camera;
    KEZVisMouseContext m_context;
    QPointer<KEZVisGizmo> m_gizmo;
    Drag m_drag = Drag::None;
    QPointF m_pressPosition;
    QPointF m_lastPosition;
    bool m_moved = false;
    bool m_afterDoubleClick = false;
    KEZVisObject *m_hover = nullptr;
    bool m_keepFit = false;
    KEZMathBoundingBox m_fitBox;
    int m_frames = 0;
};

#endif // KEZVIEWER_VIEWERWIDGET_H
