// The picture export of KEZVisRepFactory: bounding and view boxes, a raster
// image fitted to a size and an SVG document. The drawing itself is the 2D
// painter's.

#include "KEZVisRepFactory.h"
#include "factory/KEZVisPainterLogging_p.h"
#include "primitives/KEZVisTruncate_p.h"

#include <KEZMathPlane.h>

#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>
#include <QSvgGenerator>
#include <QTransform>

#include <algorithm>
#include <limits>

namespace {

// The world transform that fits the box into a page of \a size: the smaller
// scale wins and the picture is centred in the other direction; first
// translate, then scale with y turned over.
QTransform FitTransform(const QSize &size, const KEZMathBoundingBox &box)
{
    const double width = size.width();
    const double height = size.height();
    const double sx = width / box.GetDeltaX();
    const double sy = height / box.GetDeltaY();
    double tx = -box.GetLowerPoint().GetX();
    double ty = -box.GetUpperPoint().GetY();
    const double aspect = width / height;
    double s = 0.0;
    if (sy > sx) {
        s = sx;
        ty -= (box.GetDeltaX() / aspect - box.GetDeltaY()) * 0.5;
    } else {
        s = sy;
        tx += (box.GetDeltaY() * aspect - box.GetDeltaX()) * 0.5;
    }
    return QTransform::fromTranslate(tx, ty) * QTransform::fromScale(s, -s);
}

// The rectangle of \a x, \a y, \a width and \a height, built from its edges:
// QRect keeps x + width - 1 and y + height - 1, whose sums overflow int when
// both terms are 2^30. Here they are summed in 64 bits and kept within int,
// which only a length of -2^30 at -2^30 needs.
QRect RectFromEdges(int x, int y, int width, int height)
{
    const auto farEdge = [](int start, int length) {
        return int(std::clamp<qint64>(qint64(start) + length - 1, std::numeric_limits<int>::min(),
                                      std::numeric_limits<int>::max()));
    };
    return QRect(QPoint(x, y), QPoint(farEdge(x, width), farEdge(y, height)));
}

} // namespace

KEZMathBoundingBox KEZVisRepFactory::CalculateRepesentationBoundingBox(const QList<const KEZVisRep *> &reps)
{
    KEZMathBoundingBox box;
    bool first = true;
    for (const KEZVisRep *rep : reps) {
        if (!rep)
            continue;
        if (first)
            box = rep->GetBoundingBox();
        else
            box.Expand(rep->GetBoundingBox());
        first = false;
    }
    return box;
}

QRect KEZVisRepFactory::CalculateViewBox(const KEZMathBoundingBox &box)
{
    const double margin = 0.02 * box.GetDeltaX();
    const KEZMathPoint lower = box.GetLowerPoint();
    return RectFromEdges(KEZVisTruncateToInt(lower.GetX() - margin),
                 KEZVisTruncateToInt(-(box.GetDeltaY() + (lower.GetY() - margin) + 2.0 * margin)),
                 KEZVisTruncateToInt(box.GetDeltaX() + 2.0 * margin),
                 KEZVisTruncateToInt(box.GetDeltaY() + 2.0 * margin));
}

QImage KEZVisRepFactory::CreateImage(const QSize &size, const QList<const KEZVisRep *> &reps, const QColor &color)
{
    Q_UNUSED(color) // the background is always transparent
    if (size.isEmpty()) {
        qCWarning(lcKezPainter) << "Cannot create an image of the empty size" << size;
        return QImage();
    }
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance())) {
        qCWarning(lcKezPainter) << "Cannot create an image without a QGuiApplication";
        return QImage();
    }
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    {
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::TextAntialiasing, true);
        painter.setRenderHint(QPainter::Antialiasing, true);
        painter.setWorldTransform(FitTransform(size, CalculateRepesentationBoundingBox(reps)), false);
        PaintReps(KEZMathPlane(), &painter, reps);
    }
    return pixmap.toImage();
}

void KEZVisRepFactory::CreateSvgImage(const QList<const KEZVisRep *> &reps, const KEZMathBoundingBox &box,
                                      const QRect &viewBox, QIODevice *device)
{
    if (!device) {
        qCWarning(lcKezPainter) << "Cannot write an SVG image without a device";
        return;
    }
    QSvgGenerator generator;
    generator.setOutputDevice(device);
    generator.setSize(QSize(KEZVisTruncateToInt(box.GetDeltaX()), KEZVisTruncateToInt(box.GetDeltaY())));
    generator.setViewBox(viewBox);

    // The hints are set before the painter begins, so they do not reach the
    // output; the order is kept as it is.
    QPainter painter;
    painter.setRenderHint(QPainter::TextAntialiasing, true);
    painter.setRenderHint(QPainter::Antialiasing, true);

    KEZMathPlane plane;
    plane.SetDirections(KEZMathVector(1.0, 0.0, 0.0), KEZMathVector(0.0, -1.0, 0.0));

    painter.begin(&generator); // an unwritable device leaves it inactive, and nothing is drawn
    PaintRepsRecursively(plane, &painter, reps);
    if (painter.isActive())
        painter.end();
}
