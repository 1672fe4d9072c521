// The 2D painter of KEZVisRepFactory: reps drawn with a QPainter, seen on a
// plane. Points, polylines and text reach the painter; surfaces never do.

#include "KEZVisRepFactory.h"
#include "factory/KEZVisPainterLogging_p.h"
#include "primitives/KEZVisTruncate_p.h"

#include "KEZVisPointPrimitive.h"
#include "KEZVisPolylinePrimitive.h"
#include "KEZVisRepExtraSet.h"
#include "KEZVisRepSet.h"
#include "KEZVisSurfacePrimitive.h"
#include "KEZVisTextPrimitive.h"

#include <KEZMathPlane.h>
#include <KEZMathPoint2D.h>

#include <QFontMetrics>
#include <QLineF>
#include <QPainter>
#include <QPixmap>
#include <QPointF>
#include <QTransform>

#include <cmath>
#include <utility>
#include <vector>

Q_LOGGING_CATEGORY(lcKezPainter, "kez.visualization.painter", QtDebugMsg)

namespace {

// The flat work lists of one paint call, parallel by position.
struct PaintWork
{
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    QList<int> priorities;
};

// The dash pattern of each line style, in pen widths; styles outside the
// table are solid.
QList<qreal> DashPatternOf(int lineStyle)
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

// Swaps elements i and j of a parallel list, unless the list is empty.
template<typename T>
void SwapIfPresent(QList<T> &list, qsizetype i, qsizetype j)
{
    if (!list.isEmpty())
        list.swapItemsAt(i, j);
}

// One partition step of the quicksort: the middle element's key, read once,
// is the pivot. Returns the meeting points (i, j).
std::pair<qsizetype, qsizetype> Partition(QList<int> &keys, QList<KEZVisOptions> &options,
                                          QList<const KEZVisPrimitive *> &primitives, QList<bool> &extra,
                                          qsizetype low, qsizetype high)
{
    qsizetype i = low;
    qsizetype j = high;
    const int pivot = keys[(i + j) / 2];
    while (i <= j) {
        while (keys[i] < pivot)
            ++i;
        while (pivot < keys[j])
            --j;
        if (i > j)
            break;
        keys.swapItemsAt(i, j);
        SwapIfPresent(options, i, j);
        SwapIfPresent(primitives, i, j);
        SwapIfPresent(extra, i, j);
        ++i;
        --j;
    }
    return {i, j};
}

// An in-place quicksort of ascending key. It is not stable, and the order it
// gives to equal keys is part of what the painter promises, so the partition
// above is kept exactly. The two ranges left after a partition are disjoint
// and sorted independently, so the smaller one is taken by recursion and the
// larger one by the loop: the same order as always recursing to the left,
// with a stack of logarithmic depth on any input.
void SortByPriority(QList<int> &keys, QList<KEZVisOptions> &options, QList<const KEZVisPrimitive *> &primitives,
                    QList<bool> &extra, qsizetype low, qsizetype high)
{
    while (low < high) {
        const auto [i, j] = Partition(keys, options, primitives, extra, low, high);
        if (j - low < high - i) {
            if (low < j)
                SortByPriority(keys, options, primitives, extra, low, j);
            low = i;
        } else {
            if (i < high)
                SortByPriority(keys, options, primitives, extra, i, high);
            high = j;
        }
    }
}

// The one empty list of flags that every paint call passes to the sort. A
// function-local static is initialised once, safely across threads.
QList<bool> &NoExtraFlags()
{
    static QList<bool> none;
    return none;
}

// Whether every entry of \a transform is a finite number. Through one that is
// not (as that of a picture fitted to a model without extent, whose scale is
// infinite) nothing can be seen, and Qt's dash stroker, given the pen width
// that follows from it, allocates without bound: nothing is drawn then.
bool IsFinite(const QTransform &transform)
{
    for (double entry : {transform.m11(), transform.m12(), transform.m13(), transform.m21(), transform.m22(),
                         transform.m23(), transform.m31(), transform.m32(), transform.m33()}) {
        if (!std::isfinite(entry))
            return false;
    }
    return true;
}

double UnitScaleOf(const QPainter *painter)
{
    const QTransform transform = painter->transform();
    return QLineF(transform.map(QPointF(0.0, 0.0)), transform.map(QPointF(1.0, 0.0))).length();
}

void ApplyOptionsToPainter(const KEZVisOptions &options, QPainter *painter, double unitScale)
{
    QPen pen = painter->pen();
    pen.setDashPattern(DashPatternOf(options.GetLineStyle()));
    pen.setCosmetic(false);
    pen.setWidthF(options.GetLineThickness() / unitScale);
    QBrush brush = pen.brush();
    brush.setColor(options.GetColor());
    pen.setBrush(brush);
    painter->setPen(pen);
    painter->setFont(options.GetFont());
}

QPointF Project(const KEZMathPlane &plane, const double *xyz)
{
    KEZMathPoint2D point2D;
    plane.Project(KEZMathPoint(xyz[0], xyz[1], xyz[2]), point2D);
    return QPointF(point2D.GetX(), point2D.GetY());
}

QPointF Project(const KEZMathPlane &plane, const KEZMathPoint &point)
{
    KEZMathPoint2D point2D;
    plane.Project(point, point2D);
    return QPointF(point2D.GetX(), point2D.GetY());
}

// The first point drawn as many times as there are points: the loop never
// moves on, so the other points are not shown.
void PaintPointPrimitive(const KEZMathPlane &plane, QPainter *painter, const KEZVisPointPrimitive *primitive)
{
    const int numPoints = primitive->GetNumPoints();
    const std::vector<double> coords = primitive->GetCoordsAsDouble();
    for (int n = 0; n < numPoints && coords.size() >= 3; ++n) {
        const QPointF point = Project(plane, coords.data());
        painter->drawPoints(&point, 1);
    }
}

void PaintSeparateSegments(const KEZMathPlane &plane, QPainter *painter, const std::vector<double> &coords,
                           int numPoints)
{
    if (numPoints < 2)
        return;
    const int numPairs = (numPoints - 2) / 2 + 1;
    for (int pair = 0; pair < numPairs; ++pair) {
        const double *first = coords.data() + 6 * pair;
        const double *second = first + 3;
        if (KEZMathPoint(first[0], first[1], first[2]) == KEZMathPoint(second[0], second[1], second[2]))
            continue;
        const QLineF line(Project(plane, first), Project(plane, second));
        painter->drawLines(&line, 1);
    }
}

void PaintConnectedLine(const KEZMathPlane &plane, QPainter *painter, const std::vector<double> &coords,
                        int numPoints)
{
    if (numPoints < 1)
        return;
    QList<QPointF> points(numPoints);
    for (int n = 0; n < numPoints; ++n)
        points[n] = Project(plane, coords.data() + 3 * n);
    const QPointF gap = points.last() - points.first();
    if (std::abs(gap.x()) < 0.001 && std::abs(gap.y()) < 0.001)
        painter->drawPolygon(points.constData(), numPoints, Qt::OddEvenFill);
    else
        painter->drawPolyline(points.constData(), numPoints);
}

void PaintPolylinePrimitive(const KEZMathPlane &plane, QPainter *painter, const KEZVisPolylinePrimitive *primitive)
{
    // The count and the coordinates are read together, and a count beyond the
    // coordinates there are is cut back to them.
    const std::vector<double> coords = primitive->GetCoordsAsDouble();
    const int numPoints = std::min(primitive->GetNumPoints(), int(coords.size() / 3));
    if (primitive->GetStructure() == KEZVisPolylinePrimitive::StructureSeparateSegments)
        PaintSeparateSegments(plane, painter, coords, numPoints);
    else
        PaintConnectedLine(plane, painter, coords, numPoints);
}

// Places \a rect at \a pt by the anchor location; other values leave it where
// it is.
void PlaceByAnchor(QRect &rect, const QPoint &pt, int anchorLocation)
{
    switch (anchorLocation) {
    case KEZVisTextPrimitive::AnchorBottomLeft: rect.moveBottomLeft(pt); break;
    case KEZVisTextPrimitive::AnchorLeft: rect.moveCenter(pt); rect.moveLeft(pt.x()); break;
    case KEZVisTextPrimitive::AnchorTopLeft: rect.moveTopLeft(pt); break;
    case KEZVisTextPrimitive::AnchorBottom: rect.moveCenter(pt); rect.moveBottom(pt.y()); break;
    case KEZVisTextPrimitive::AnchorCenter: rect.moveCenter(pt); break;
    case KEZVisTextPrimitive::AnchorTop: rect.moveCenter(pt); rect.moveTop(pt.y()); break;
    case KEZVisTextPrimitive::AnchorBottomRight: rect.moveBottomRight(pt); break;
    case KEZVisTextPrimitive::AnchorRight: rect.moveCenter(pt); rect.moveRight(pt.x()); break;
    case KEZVisTextPrimitive::AnchorTopRight: rect.moveTopRight(pt); break;
    default: break;
    }
}

// On a page whose y runs up the text would stand on its head: it is drawn
// upright into a pixmap that is then placed on the page.
void DrawTextThroughPixmap(QPainter *painter, const QRect &rect, const QString &text)
{
    if (rect.width() <= 0 || rect.height() <= 0)
        return; // nothing to show, and no pixmap to paint on
    QPixmap pixmap(rect.width(), rect.height());
    pixmap.fill(Qt::transparent);
    {
        QPainter pixmapPainter(&pixmap);
        pixmapPainter.setPen(painter->pen());
        pixmapPainter.setFont(painter->font());
        pixmapPainter.setRenderHint(QPainter::TextAntialiasing);
        pixmapPainter.setRenderHint(QPainter::Antialiasing);
        pixmapPainter.setWorldTransform(QTransform::fromTranslate(0, -rect.height()) * QTransform::fromScale(1, -1));
        pixmapPainter.drawText(QRect(0, 0, rect.width(), rect.height()), 0, text);
    }
    // Under a scale that turns y over, Qt's raster engine blits a pixmap with
    // a fast routine that reads outside the pixmap for some scales below one
    // (a long text in a small fitted picture); with a smooth transformation
    // it takes its general path, which does not. The painter is restored
    // after every primitive, so the hint goes with the text.
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawPixmap(rect.x(), rect.y(), rect.width(), rect.height(), pixmap);
}

// Whether \a rect lands on the painter's device as a finite rectangle within
// +-KEZVisPixelLimit. Text that would land elsewhere (through a transform that
// is not finite, as that of a picture fitted to a box of NaN, or an absurdly
// large one) is not drawn: none of it could be seen on any device, and Qt's
// fixed-point rasterisation is not made for such rectangles.
bool LandsOnDevice(const QPainter *painter, const QRect &rect)
{
    const QRectF device = painter->combinedTransform().mapRect(QRectF(rect));
    for (double edge : {device.left(), device.top(), device.right(), device.bottom()}) {
        if (!(std::abs(edge) <= double(KEZVisPixelLimit)))
            return false;
    }
    return true;
}

void PaintTextPrimitive(const KEZMathPlane &plane, QPainter *painter, const KEZVisTextPrimitive *primitive)
{
    const QPointF anchor = Project(plane, primitive->GetAnchor());
    const QString text = primitive->GetText();
    QRect rect = QFontMetrics(painter->font()).boundingRect(text);
    const QPoint pt(KEZVisTruncateToInt(anchor.x()), KEZVisTruncateToInt(anchor.y()));
    PlaceByAnchor(rect, pt, primitive->GetAnchorLocation());
    if (!LandsOnDevice(painter, rect))
        return;
    if (painter->transform().m22() >= 0)
        painter->drawText(rect, 0, text);
    else
        DrawTextThroughPixmap(painter, rect, text);
}

void PaintPrimitive(const KEZMathPlane &plane, QPainter *painter, const KEZVisPrimitive *primitive)
{
    if (const auto *points = qobject_cast<const KEZVisPointPrimitive *>(primitive))
        PaintPointPrimitive(plane, painter, points);
    else if (const auto *polyline = qobject_cast<const KEZVisPolylinePrimitive *>(primitive))
        PaintPolylinePrimitive(plane, painter, polyline);
    else if (qobject_cast<const KEZVisSurfacePrimitive *>(primitive))
        return; // surfaces of every kind are passed over
    else if (const auto *text = qobject_cast<const KEZVisTextPrimitive *>(primitive))
        PaintTextPrimitive(plane, painter, text);
}

bool CanPaintWith(const QPainter *painter)
{
    if (!painter) {
        qCWarning(lcKezPainter) << "Cannot paint reps without a painter";
        return false;
    }
    if (!painter->isActive()) {
        qCWarning(lcKezPainter) << "Cannot paint reps with a painter that is not active";
        return false;
    }
    return true;
}

void PaintActive(const KEZMathPlane &plane, QPainter *painter, const QList<const KEZVisRep *> &reps)
{
    PaintWork work;
    for (const KEZVisRep *rep : reps) {
        if (!rep)
            continue;
        const qsizetype first = work.primitives.size();
        rep->GetPrimitives(work.primitives, work.options);
        for (qsizetype n = first; n < work.options.size(); ++n)
            work.priorities.append(work.options[n].GetPriority());
    }
    if (!work.primitives.isEmpty())
        SortByPriority(work.priorities, work.options, work.primitives, NoExtraFlags(), 0,
                       work.primitives.size() - 1);

    const double unitScale = UnitScaleOf(painter);
    const bool canShow = IsFinite(painter->combinedTransform());
    for (qsizetype n = 0; n < work.primitives.size(); ++n) {
        painter->save();
        ApplyOptionsToPainter(work.options[n], painter, unitScale);
        qCDebug(lcKezPainter).nospace().noquote() << "  The painter brush color is: " << painter->brush().color();
        if (canShow)
            PaintPrimitive(plane, painter, work.primitives[n]);
        painter->restore();
    }
}

void PaintRecursively(const KEZMathPlane &plane, QPainter *painter, const QList<const KEZVisRep *> &reps)
{
    for (const KEZVisRep *rep : reps) {
        if (const auto *extraSet = qobject_cast<const KEZVisRepExtraSet *>(rep)) {
            painter->save();
            const QColor fill = extraSet->GetExtraVisOptions().GetColor();
            qCDebug(lcKezPainter).nospace().noquote() << "The fill color is: " << fill;
            QBrush brush = painter->brush();
            brush.setColor(fill);
            brush.setStyle(Qt::SolidPattern);
            painter->setBrush(brush);
            PaintRecursively(plane, painter, extraSet->GetChildVisReps());
            painter->restore();
        } else if (const auto *set = qobject_cast<const KEZVisRepSet *>(rep)) {
            PaintRecursively(plane, painter, set->GetChildVisReps());
        } else if (rep) {
            PaintActive(plane, painter, {rep});
        }
    }
}

} // namespace

void KEZVisRepFactory::PaintRep(const KEZMathPlane &plane, QPainter *painter, const KEZVisRep *rep)
{
    PaintReps(plane, painter, QList<const KEZVisRep *>{rep});
}

void KEZVisRepFactory::PaintReps(const KEZMathPlane &plane, QPainter *painter, const QList<const KEZVisRep *> &reps)
{
    if (CanPaintWith(painter))
        PaintActive(plane, painter, reps);
}

void KEZVisRepFactory::PaintRepsRecursively(const KEZMathPlane &plane, QPainter *painter,
                                            const QList<const KEZVisRep *> &reps)
{
    if (CanPaintWith(painter))
        PaintRecursively(plane, painter, reps);
}
