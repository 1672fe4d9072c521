#include "ViewerWidget.h"

#include "SceneRenderer.h"

#include <KEZVisClientChangeRequest.h>
#include <KEZVisEnvironment.h>
#include <KEZVisGizmo.h>

#include <KEZMathAxis.h>

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <QtDebug>

#include <cmath>
#include <exception>

ViewerWidget::ViewerWidget(QWidget *parent) : QWidget(parent)
{
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    m_camera.SetSize(size());
    connect(&m_client, &SceneClient::RedrawNeeded, this, qOverload<>(&QWidget::update));
    connect(&m_client, &SceneClient::ViewRequested, this, &ViewerWidget::OnViewRequested);
    connect(&m_client, &SceneClient::ObjectGone, this, &ViewerWidget::OnObjectGone);
}

ViewerWidget::~ViewerWidget()
{
    m_context.SetVisObject(nullptr);
}

void ViewerWidget::SetEnvironment(KEZVisEnvironment *environment)
{
    m_hover = nullptr;
    m_context.SetVisObject(nullptr);
    m_client.SetEnvironment(environment);
}

KEZVisEnvironment *ViewerWidget::GetEnvironment() const
{
    return m_client.GetEnvironment();
}

void ViewerWidget::SetGizmo(KEZVisGizmo *gizmo)
{
    m_gizmo = gizmo;
}

QImage ViewerWidget::RenderImage()
{
    QImage image(size(), QImage::Format_RGB32);
    m_camera.SetSize(size());
    QPainter painter(&image);
    SceneRenderer::Render(painter, m_client, m_camera);
    return image;
}

void ViewerWidget::paintEvent(QPaintEvent *)
{
    m_camera.SetSize(size());
    QPainter painter(this);
    SceneRenderer::Render(painter, m_client, m_camera);
    ++m_frames;
    emit FramePainted();
}

void ViewerWidget::resizeEvent(QResizeEvent *)
{
    m_camera.SetSize(size());
    if (m_keepFit)
        m_camera.Fit(m_fitBox);
}

void ViewerWidget::OnViewRequested(const KEZVisClientChangeRequest &request)
{
    const auto types = request.GetChangeTypes();
    if (types & KEZVisClientChangeRequest::ViewDirectionChange)
        m_camera.SetDirection(request.GetViewDirection());
    if (types & KEZVisClientChangeRequest::ViewOrientationChange)
        m_camera.SetOrientation(request.GetViewOrientation());
    if (types & KEZVisClientChangeRequest::FitChange) {
        m_camera.SetSize(size());
        if (m_camera.Fit(request.GetFitBox())) {
            m_fitBox = request.GetFitBox();
            m_keepFit = true;
        }
    } else if (m_keepFit && (types & (KEZVisClientChangeRequest::ViewDirectionChange
                                      | KEZVisClientChangeRequest::ViewOrientationChange))) {
        m_camera.Fit(m_fitBox);
    }
    update();
}

void ViewerWidget::OnObjectGone(KEZVisObject *object)
{
    if (m_hover == object)
        m_hover = nullptr;
    if (m_context.GetVisObject() == object)
        m_context.SetVisObject(nullptr);
}

SceneClient::Hit ViewerWidget::FillContext(const QPointF &position)
{
    m_camera.SetSize(size());
    const SceneClient::Hit hit = m_client.Pick(m_camera, position);
    const SceneClient::Snap snap = m_client.SnapAt(m_camera, position);

    m_context.SetVisObject(hit.object);
    if (hit.object) {
        m_context.SetMousePoint(hit.point);
    } else {
        double depth = 0.0;
        if (m_gizmo) {
            depth = m_camera.Depth(m_gizmo->GetPosition().GetOrigin());
            if (!std::isfinite(depth))
                depth = 0.0;
        }
        m_context.SetMousePoint(m_camera.FromScreen(position, depth));
    }
    m_context.SetViewDirection(m_camera.GetDirection());
    QFlags<KEZVisMouseContext::SnapType> snapType;
    if (snap.hasPoint) {
        snapType |= KEZVisMouseContext::SnapToPoint;
        m_context.SetSnapPoint(snap.point);
    }
    if (snap.hasAxis) {
        snapType |= KEZVisMouseContext::SnapToAxis;
        m_context.SetSnapAxis(snap.axis);
    }
    m_context.SetSnapType(snapType);
    static const KEZVisMouseContext::NativeGeometrySelectionType kinds[] = {
        KEZVisMouseContext::NoGeometrySelection, KEZVisMouseContext::VertexGeometrySelection,
        KEZVisMouseContext::EdgeGeometrySelection, KEZVisMouseContext::FaceGeometrySelection};
    m_context.SetGeometrySelectionType(kinds[hit.kind]);
    m_context.SetSelectedPoints(hit.object ? QList<KEZMathPoint>{hit.point} : QList<KEZMathPoint>{});
    m_context.SetSelectedAxises(snap.hasAxis ? QList<KEZMathVector>{snap.axis} : QList<KEZMathVector>{});
    return hit;
}

void ViewerWidget::Report(KEZVisMouseEvent::MouseActionFlag action)
{
    KEZVisEnvironment *environment = GetEnvironment();
    if (!environment)
        return;
    const KEZVisMouseEvent event(action, &m_context);
    try {
        emit environment->MouseEvent(event);
    } catch (const std::exception &error) {
        qWarning("kezvis-viewer: a mouse event failed: %s", error.what());
    } catch (...) {
        qWarning("kezvis-viewer: a mouse event failed");
    }
}

void ViewerWidget::Preselect(KEZVisObject *object)
{
    KEZVisEnvironment *environment = GetEnvironment();
    if (!environment || object == m_hover)
        return;
    m_hover = object;
    try {
        environment->SetPreSelectedObjects(object ? QSet<KEZVisObject *>{object} : QSet<KEZVisObject *>{});
    } catch (...) {
        qWarning("kezvis-viewer: the preselection failed");
    }
}

void ViewerWidget::ClickSelect(KEZVisObject *object, bool toggle)
{
    KEZVisEnvironment *environment = GetEnvironment();
    if (!environment || !m_client.IsSelectionEnabled())
        return;
    try {
        if (!object) {
            if (!toggle)
                environment->SetSelection({});
        } else if (toggle) {
            environment->ToggleSelection(object);
        } else {
            environment->SetSelection({object});
        }
    } catch (...) {
        qWarning("kezvis-viewer: the selection failed");
    }
}

void ViewerWidget::mousePressEvent(QMouseEvent *event)
{
    const QPointF position = event->position();
    const SceneClient::Hit hit = FillContext(position);
    m_pressPosition = position;
    m_lastPosition = position;
    m_moved = false;
    m_drag = Drag::None;
    if (event->button() == Qt::LeftButton)
        m_drag = hit.object ? Drag::Objects : Drag::Rotate;
    else if (event->button() == Qt::MiddleButton)
        m_drag = Drag::Pan;
    Report(KEZVisMouseEvent::MousePressed);
}

void ViewerWidget::mouseMoveEvent(QMouseEvent *event)
{
    const QPointF position = event->position();
    const QPointF delta = position - m_lastPosition;
    m_lastPosition = position;
    if (event->buttons() != Qt::NoButton) {
        const QPointF fromPress = position - m_pressPosition;
        if (std::hypot(fromPress.x(), fromPress.y()) > ClickSlop)
            m_moved = true;
        if (m_drag == Drag::Rotate && m_moved) {
            m_camera.Rotate(-delta.x() * 0.01, -delta.y() * 0.01);
            update();
        } else if (m_drag == Drag::Pan) {
            m_camera.Pan(delta);
            m_keepFit = false;
            update();
        }
    }
    const SceneClient::Hit hit = FillContext(position);
    if (event->buttons() == Qt::NoButton)
        Preselect(hit.object);
    Report(KEZVisMouseEvent::MouseMoved);
}

void ViewerWidget::mouseReleaseEvent(QMouseEvent *event)
{
    const QPointF position = event->position();
    FillContext(position);
    const bool click = event->button() == Qt::LeftButton && !m_moved && !m_afterDoubleClick;
    m_drag = Drag::None;
    m_afterDoubleClick = false;
    Report(KEZVisMouseEvent::MouseReleased);
    if (!click)
        return;
    // The release may have changed the scene: pick again for the click.
    const SceneClient::Hit clicked = FillContext(position);
    Report(KEZVisMouseEvent::MouseClicked);
    // Only an object that still lives in the mirror is selected.
    KEZVisObject *object = clicked.object && m_client.FindItem(clicked.object) ? clicked.object : nullptr;
    ClickSelect(object, event->modifiers() & Qt::ControlModifier);
}

void ViewerWidget::mouseDoubleClickEvent(QMouseEvent *event)
{
    const QPointF position = event->position();
    FillContext(position);
    m_pressPosition = position;
    m_lastPosition = position;
    m_moved = false;
    m_afterDoubleClick = true;
    Report(KEZVisMouseEvent::MouseDoubleClicked);
}

void ViewerWidget::wheelEvent(QWheelEvent *event)
{
    const double steps = event->angleDelta().y() / 120.0;
    if (steps == 0.0)
        return;
    m_camera.SetSize(size());
    m_camera.ZoomAt(event->position(), std::pow(1.2, steps));
    m_keepFit = false;
    update();
}
