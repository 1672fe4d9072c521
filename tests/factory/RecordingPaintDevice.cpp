#include "RecordingPaintDevice.h"

#include <QTextItem>

RecordingPaintEngine::RecordingPaintEngine() : QPaintEngine(QPaintEngine::AllFeatures) {}

bool RecordingPaintEngine::begin(QPaintDevice *)
{
    return true;
}

bool RecordingPaintEngine::end()
{
    return true;
}

void RecordingPaintEngine::updateState(const QPaintEngineState &state)
{
    const DirtyFlags flags = state.state();
    if (flags & DirtyPen)
        m_pen = state.pen();
    if (flags & DirtyBrush)
        m_brush = state.brush();
    if (flags & DirtyFont)
        m_font = state.font();
    if (flags & DirtyTransform)
        m_transform = state.transform();
}

RecordedDrawCall RecordingPaintEngine::Start(RecordedDrawCall::Kind kind) const
{
    RecordedDrawCall call;
    call.kind = kind;
    call.pen = m_pen;
    call.brush = m_brush;
    call.font = m_font;
    call.transform = m_transform;
    return call;
}

void RecordingPaintEngine::drawPoints(const QPointF *points, int pointCount)
{
    RecordedDrawCall call = Start(RecordedDrawCall::Points);
    call.points = QList<QPointF>(points, points + pointCount);
    calls.append(call);
}

void RecordingPaintEngine::drawLines(const QLineF *lines, int lineCount)
{
    RecordedDrawCall call = Start(RecordedDrawCall::Lines);
    call.lines = QList<QLineF>(lines, lines + lineCount);
    calls.append(call);
}

void RecordingPaintEngine::drawPolygon(const QPointF *points, int pointCount, PolygonDrawMode mode)
{
    RecordedDrawCall call = Start(mode == PolylineMode ? RecordedDrawCall::Polyline : RecordedDrawCall::Polygon);
    call.points = QList<QPointF>(points, points + pointCount);
    call.fillRule = mode == WindingMode ? Qt::WindingFill : Qt::OddEvenFill;
    if (mode == ConvexMode)
        call.fillRule = Qt::WindingFill; // not asked for by anything under test; recorded as winding
    calls.append(call);
}

void RecordingPaintEngine::drawTextItem(const QPointF &position, const QTextItem &textItem)
{
    RecordedDrawCall call = Start(RecordedDrawCall::Text);
    call.text = textItem.text();
    call.textPosition = position;
    calls.append(call);
}

void RecordingPaintEngine::drawPixmap(const QRectF &target, const QPixmap &, const QRectF &)
{
    RecordedDrawCall call = Start(RecordedDrawCall::Pixmap);
    call.target = target;
    calls.append(call);
}

QPaintEngine::Type RecordingPaintEngine::type() const
{
    return QPaintEngine::User;
}

RecordingPaintDevice::RecordingPaintDevice(int width, int height)
    : m_width(width), m_height(height), m_engine(std::make_unique<RecordingPaintEngine>())
{
}

RecordingPaintDevice::~RecordingPaintDevice() = default;

QPaintEngine *RecordingPaintDevice::paintEngine() const
{
    return m_engine.get();
}

int RecordingPaintDevice::metric(PaintDeviceMetric metric) const
{
    switch (metric) {
    case PdmWidth: return m_width;
    case PdmHeight: return m_height;
    case PdmWidthMM: return m_width * 254 / 960;
    case PdmHeightMM: return m_height * 254 / 960;
    case PdmNumColors: return 0;
    case PdmDepth: return 32;
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY: return 96;
    case PdmDevicePixelRatio: return 1;
    case PdmDevicePixelRatioScaled: return int(QPaintDevice::devicePixelRatioFScale());
    default: return QPaintDevice::metric(metric);
    }
}
