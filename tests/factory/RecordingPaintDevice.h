#ifndef RECORDINGPAINTDEVICE_H
#define RECORDINGPAINTDEVICE_H

// A paint device whose engine records every draw call together with the pen,
// brush, font and world transform in force, so that a test can see exactly
// what reached the painter. The engine claims every feature, so QPainter hands
// it the primitives untransformed.

#include <QBrush>
#include <QFont>
#include <QLineF>
#include <QList>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPen>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QTransform>

#include <memory>

struct RecordedDrawCall
{
    enum Kind { Points, Lines, Polygon, Polyline, Text, Pixmap };

    Kind kind = Points;
    QList<QPointF> points;   // Points, Polygon, Polyline
    QList<QLineF> lines;     // Lines
    Qt::FillRule fillRule = Qt::OddEvenFill; // Polygon
    QString text;            // Text
    QPointF textPosition;    // Text: the baseline origin QPainter chose
    QRectF target;           // Pixmap
    QPen pen;
    QBrush brush;
    QFont font;
    QTransform transform;
};

class RecordingPaintEngine : public QPaintEngine
{
public:
    RecordingPaintEngine();

    bool begin(QPaintDevice *device) override;
    bool end() override;
    void updateState(const QPaintEngineState &state) override;
    void drawPoints(const QPointF *points, int pointCount) override;
    void drawLines(const QLineF *lines, int lineCount) override;
    void drawPolygon(const QPointF *points, int pointCount, PolygonDrawMode mode) override;
    void drawTextItem(const QPointF &position, const QTextItem &textItem) override;
    void drawPixmap(const QRectF &target, const QPixmap &pixmap, const QRectF &source) override;
    Type type() const override;

    QList<RecordedDrawCall> calls;

private:
    RecordedDrawCall Start(RecordedDrawCall::Kind kind) const;

    QPen m_pen;
    QBrush m_brush;
    QFont m_font;
    QTransform m_transform;
};

class RecordingPaintDevice : public QPaintDevice
{
public:
    explicit RecordingPaintDevice(int width = 400, int height = 300);
    ~RecordingPaintDevice() override;

    QPaintEngine *paintEngine() const override;
    const QList<RecordedDrawCall> &Calls() const { return m_engine->calls; }

protected:
    int metric(PaintDeviceMetric metric) const override;

private:
    int m_width;
    int m_height;
    std::unique_ptr<RecordingPaintEngine> m_engine;
};

#endif // RECORDINGPAINTDEVICE_H
