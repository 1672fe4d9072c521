#include "SceneRenderer.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>

#include <algorithm>
#include <cmath>

namespace {

struct Drawable
{
    double depth;
    int priority;
    bool depthEnabled;
    quint8 kind; // 0 face, 1 line, 2 points, 3 text
    quint64 order;
    const SceneClient::Item *item;
    int index; // of the face among the projected faces, or of the line, points or text in the item
};

inline bool DrawnBefore(const Drawable &a, const Drawable &b)
{
    if (a.depthEnabled != b.depthEnabled)
        return a.depthEnabled;
    if (a.depthEnabled) {
        if (a.depth != b.depth)
            return a.depth > b.depth;
        if (a.priority != b.priority)
            return a.priority < b.priority;
    } else {
        if (a.priority != b.priority)
            return a.priority < b.priority;
        if (a.depth != b.depth)
            return a.depth > b.depth;
    }
    if (a.order != b.order)
        return a.order < b.order;
    if (a.kind != b.kind)
        return a.kind < b.kind;
    return a.index < b.index;
}

QColor ColorOf(const SceneClient::Item &item, const SceneClient::Style &style)
{
    if (item.state == KEZVisObject::PreSelected)
        return SceneRenderer::PreselectedColor;
    if (item.state == KEZVisObject::Selected)
        return SceneRenderer::SelectedColor;
    return style.color;
}

Qt::Alignment AlignmentOf(KEZVisTextPrimitive::AnchorLocation location)
{
    const int column = int(location) / 3;
    const int row = int(location) % 3;
    Qt::Alignment alignment = column == 0 ? Qt::AlignLeft : column == 1 ? Qt::AlignHCenter : Qt::AlignRight;
    alignment |= row == 0 ? Qt::AlignBottom : row == 1 ? Qt::AlignVCenter : Qt::AlignTop;
    return alignment;
}

// The camera's projection as plain numbers, for the inner loops.
struct Projection
{
    explicit Projection(const ViewCamera &camera)
    {
        camera.GetCentre().GetCoord(c[0], c[1], c[2]);
        camera.GetRight().GetCoord(r[0], r[1], r[2]);
        camera.GetUp().GetCoord(u[0], u[1], u[2]);
        camera.GetDirection().GetCoord(d[0], d[1], d[2]);
        for (int k = 0; k < 3; ++k) {
            r[k] *= camera.GetScale();
            u[k] *= camera.GetScale();
        }
        x0 = camera.GetSize().width() / 2.0;
        y0 = camera.GetSize().height() / 2.0;
    }
    QPointF Screen(const double *p) const
    {
        const double x = p[0] - c[0];
        const double y = p[1] - c[1];
        const double z = p[2] - c[2];
        return QPointF(x0 + x * r[0] + y * r[1] + z * r[2], y0 - (x * u[0] + y * u[1] + z * u[2]));
    }
    double Depth(const double *p) const
    {
        return (p[0] - c[0]) * d[0] + (p[1] - c[1]) * d[1] + (p[2] - c[2]) * d[2];
    }
    double c[3], r[3], u[3], d[3];
    double x0, y0;
};

} // namespace

QList<qreal> SceneRenderer::DashPattern(int lineStyle)
{
    switch (lineStyle) {
    case 1: return {3, 2};
    case 2: return {1, 2};
    case 3: return {3, 2, 1, 2};
    case 4: return {5, 1, 3, 1};
    case 5: return {3, 2, 1, 2, 1, 2};
    case 6: return {3, 2, 1, 2, 1, 2, 1, 2};
    case 7: return {3, 2, 3, 2, 1, 2, 1, 2};
    case 8: return {5, 1, 5, 1, 3, 1};
    case 9: return {3, 2, 3, 2, 1, 2, 1, 2, 1, 2};
    case 10: return {7, 2, 1, 2};
    case 11: return {7, 2, 1, 2, 1, 2};
    case 12: return {7, 2, 1, 2, 1, 2, 1, 2};
    default: return {};
    }
}

SceneRenderer::Statistics SceneRenderer::Render(QPainter &painter, const SceneClient &client, const ViewCamera &camera)
{
    Statistics statistics;
    const QSize size = camera.GetSize();
    painter.fillRect(QRect(QPoint(0, 0), size), BackgroundColor);

    double view[3];
    camera.GetDirection().GetCoord(view[0], view[1], view[2]);

    const Projection projection(camera);
    const std::vector<SceneClient::FlatFace> &flatFaces = client.GetFlatFaces();
    std::vector<Drawable> drawables;
    drawables.reserve(flatFaces.size());
    // Faces are projected and shaded while the items are walked in memory
    // order; drawing then only reads this compact list.
    struct Face
    {
        QPointF corners[3];
        QRgb color;
    };
    std::vector<Face> faces;
    faces.reserve(flatFaces.size());
    for (const SceneClient::FlatFace &t : flatFaces) {
        const double depth = (projection.Depth(&t.xyz[0]) + projection.Depth(&t.xyz[3]) + projection.Depth(&t.xyz[6])) / 3.0;
        const double facing = std::abs(t.normal[0] * view[0] + t.normal[1] * view[1] + t.normal[2] * view[2]);
        const double light = 0.35 + 0.65 * facing;
        faces.push_back({{projection.Screen(&t.xyz[0]), projection.Screen(&t.xyz[3]), projection.Screen(&t.xyz[6])},
                         qRgba(int(std::lround(qRed(t.color) * light)), int(std::lround(qGreen(t.color) * light)),
                               int(std::lround(qBlue(t.color) * light)), qAlpha(t.color))});
        drawables.push_back({depth, t.priority, t.depthEnabled, 0, t.order, nullptr, int(faces.size() - 1)});
    }
    for (const auto &owned : client.GetItems()) {
        const SceneClient::Item &item = *owned;
        if (!item.visible)
            continue;
        for (size_t n = 0; n < item.lines.size(); ++n) {
            const auto &line = item.lines[n];
            const auto &style = item.styles[line.style];
            double depth = 0.0;
            const size_t count = line.xyz.size() / 3;
            for (size_t v = 0; v < count; ++v)
                depth += camera.Depth(&line.xyz[3 * v]);
            drawables.push_back({depth / double(count), style.priority, style.depthEnabled, 1, item.order, &item, int(n)});
        }
        for (size_t n = 0; n < item.points.size(); ++n) {
            const auto &points = item.points[n];
            const auto &style = item.styles[points.style];
            double depth = 0.0;
            const size_t count = points.xyz.size() / 3;
            for (size_t v = 0; v < count; ++v)
                depth += camera.Depth(&points.xyz[3 * v]);
            drawables.push_back({depth / double(count), style.priority, style.depthEnabled, 2, item.order, &item, int(n)});
        }
        for (size_t n = 0; n < item.texts.size(); ++n) {
            const auto &text = item.texts[n];
            const auto &style = item.styles[text.style];
            drawables.push_back({camera.Depth(text.anchor.data()), style.priority, style.depthEnabled, 3, item.order,
                                 &item, int(n)});
        }
    }
    std::sort(drawables.begin(), drawables.end(), [](const Drawable &a, const Drawable &b) { return DrawnBefore(a, b); });

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    const QRectF frame(QPointF(-1000.0, -1000.0), QSizeF(size.width() + 2000.0, size.height() + 2000.0));
    QRgb currentFill = 0;
    bool fillSet = false;
    for (const Drawable &d : drawables) {
        if (d.kind == 0) {
            const Face &face = faces[d.index];
            const QRgb shaded = face.color;
            if (!fillSet || shaded != currentFill) {
                const QColor color = QColor::fromRgba(shaded);
                // A hairline of the same colour closes the seams between neighbours.
                painter.setPen(QPen(color, 0));
                painter.setBrush(color);
                currentFill = shaded;
                fillSet = true;
            }
            painter.drawConvexPolygon(face.corners, 3);
            ++statistics.faces;
            continue;
        }
        const SceneClient::Item &item = *d.item;
        switch (d.kind) {
        case 1: {
            fillSet = false;
            const auto &line = item.lines[d.index];
            const auto &style = item.styles[line.style];
            QPen pen(ColorOf(item, style));
            pen.setCosmetic(true);
            pen.setWidthF(std::clamp(std::isfinite(style.thickness) ? style.thickness : 1.0, 1.0, 64.0));
            const QList<qreal> pattern = DashPattern(style.lineStyle);
            if (!pattern.isEmpty())
                pen.setDashPattern(pattern);
            pen.setCapStyle(Qt::FlatCap);
            painter.setPen(pen);
            painter.setBrush(Qt::NoBrush);
            const size_t count = line.xyz.size() / 3;
            QPolygonF polygon;
            polygon.reserve(qsizetype(count));
            for (size_t v = 0; v < count; ++v)
                polygon.append(camera.ToScreen(&line.xyz[3 * v]));
            if (line.connected) {
                painter.drawPolyline(polygon);
            } else {
                painter.drawLines(polygon.constData(), int(polygon.size() / 2));
            }
            ++statistics.lines;
            break;
        }
        case 2: {
            fillSet = false;
            const auto &points = item.points[d.index];
            const auto &style = item.styles[points.style];
            const QColor color = ColorOf(item, style);
            const bool marker = style.pointSymbol == KEZVisOptions::PointSymbolMarker;
            for (size_t v = 0; v + 2 < points.xyz.size(); v += 3) {
                const QPointF s = camera.ToScreen(&points.xyz[v]);
                if (!frame.contains(s))
                    continue;
                if (marker) {
                    // A ring with a cross: the marker stands out from ordinary points.
                    painter.setPen(QPen(color, 2.0));
                    painter.setBrush(Qt::NoBrush);
                    painter.drawEllipse(s, 5.0, 5.0);
                    painter.drawLine(s - QPointF(7.0, 0.0), s + QPointF(7.0, 0.0));
                    painter.drawLine(s - QPointF(0.0, 7.0), s + QPointF(0.0, 7.0));
                } else {
                    painter.fillRect(QRectF(s - QPointF(2.5, 2.5), QSizeF(5.0, 5.0)), color);
                }
            }
            ++statistics.points;
            break;
        }
        case 3: {
            fillSet = false;
            const auto &text = item.texts[d.index];
            const auto &style = item.styles[text.style];
            QFont font = style.font;
            if (text.scalable) {
                // A scalable text is as high in model units as its font in points.
                const double pixels = (font.pointSizeF() > 0 ? font.pointSizeF() : 10.0) * camera.GetScale();
                if (!(pixels >= 1.0 && pixels <= 2000.0))
                    break;
                font.setPixelSize(int(std::lround(pixels)));
            }
            const QPointF s = camera.ToScreen(text.anchor.data());
            if (!frame.contains(s))
                break;
            painter.setFont(font);
            painter.setPen(ColorOf(item, style));
            const QRectF box = QFontMetricsF(font).boundingRect(text.text);
            const Qt::Alignment alignment = AlignmentOf(text.location);
            QPointF origin = s;
            if (alignment & Qt::AlignHCenter)
                origin.rx() -= box.width() / 2.0;
            else if (alignment & Qt::AlignRight)
                origin.rx() -= box.width();
            QFontMetricsF metrics(font);
            if (alignment & Qt::AlignTop)
                origin.ry() += metrics.ascent();
            else if (alignment & Qt::AlignVCenter)
                origin.ry() += (metrics.ascent() - metrics.descent()) / 2.0;
            else
                origin.ry() -= metrics.descent();
            painter.drawText(origin, text.text);
            ++statistics.texts;
            break;
        }
        }
    }
    painter.restore();
    return statistics;
}
