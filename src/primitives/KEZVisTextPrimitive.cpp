#include "KEZVisTextPrimitive.h"
#include "KEZVisTextPrimitive_p.h"

#include "KEZVisOptions.h"
#include "KEZVisTruncate_p.h"

#include <QFontMetrics>
#include <QRect>

KEZVisTextPrimitivePrivate::~KEZVisTextPrimitivePrivate() = default;

KEZVisTextPrimitive::KEZVisTextPrimitive(const QString &text, const KEZMathPoint &anchor,
                                         AnchorLocation anchorLocation, Scalability scalability)
    : d_ptr(new KEZVisTextPrimitivePrivate)
{
    Q_D(KEZVisTextPrimitive);
    d->text = text;
    d->anchor = anchor;
    d->anchorLocation = anchorLocation;
    d->scalability = scalability;
}

KEZVisTextPrimitive::KEZVisTextPrimitive(KEZVisTextPrimitivePrivate *d)
    : d_ptr(d)
{
}

KEZVisTextPrimitive::~KEZVisTextPrimitive()
{
    delete d_ptr;
}

QString KEZVisTextPrimitive::GetText() const
{
    Q_D(const KEZVisTextPrimitive);
    return d->text;
}

KEZMathPoint KEZVisTextPrimitive::GetAnchor() const
{
    Q_D(const KEZVisTextPrimitive);
    return d->anchor;
}

KEZVisTextPrimitive::AnchorLocation KEZVisTextPrimitive::GetAnchorLocation() const
{
    Q_D(const KEZVisTextPrimitive);
    return d->anchorLocation;
}

KEZVisTextPrimitive::Scalability KEZVisTextPrimitive::GetScalability() const
{
    Q_D(const KEZVisTextPrimitive);
    return d->scalability;
}

KEZMathBoundingBox KEZVisTextPrimitive::GetBoundingBox(const KEZVisOptions &options) const
{
    Q_D(const KEZVisTextPrimitive);
    const QFontMetrics metrics(options.GetFont());
    QRect rect = metrics.boundingRect(d->text);
    const double w = rect.width();
    const double h = rect.height();
    const double anchorX = d->anchor.GetX();
    const double anchorY = d->anchor.GetY();
    const double anchorZ = d->anchor.GetZ();

    const int location = int(d->anchorLocation);
    if (location >= 0 && location <= 8) {
        // y points up here: the bottom row adds the height.
        double top = anchorY;
        switch (location % 3) {
        case 0:
            top = anchorY + h;
            break;
        case 1:
            top = anchorY + h * 0.5;
            break;
        default:
            break;
        }
        double left = anchorX;
        switch (location / 3) {
        case 1:
            left = anchorX - w * 0.5;
            break;
        case 2:
            left = anchorX - w;
            break;
        default:
            break;
        }
        rect.moveTo(KEZVisTruncateToInt(left), KEZVisTruncateToInt(top));
    }

    KEZMathBoundingBox box(KEZMathPoint(rect.left(), rect.bottom(), anchorZ));
    box.Expand(KEZMathPoint(rect.right(), rect.top(), anchorZ));
    return box;
}
