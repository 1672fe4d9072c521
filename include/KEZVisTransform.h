#ifndef KEZVISTRANSFORM_H
#define KEZVISTRANSFORM_H

#include "kezvisualization_export.h"

#include "KEZMathPoint.h"

#include <QSharedDataPointer>

class KEZVisTransformData;

/*!
 * \class KEZVisTransform
 * \brief A display transform as plain data: an anchor point, a scale in
 * pixels and a behaviour.
 *
 * An implicitly shared value: copies share one record until one of them is
 * changed, and every setter detaches first, cloning all three fields. The
 * library never applies a transform itself; KEZVisRepTransformedGraphics
 * hands one per primitive to the clients, which decide what the values mean.
 *
 * Defaults: the default point as anchor, a pixel scale of 1.5 and the
 * behaviour -1 (none chosen).
 */
class KEZVISUALIZATION_EXPORT KEZVisTransform
{
public:
    /*!
     * The kind of transform. Int-sized; -1 means that no behaviour was
     * chosen. The further values are agreed between the application and its
     * clients: the library stores and compares them only, and keeps any int
     * value as it is.
     */
    enum DisplayTransformBehavior : int {
        DisplayTransformNone = -1,          ///< no behaviour chosen (the default)
        DisplayTransformFixedPixelSize = 0, ///< keep pixelScale pixels per unit round the anchor point
        DisplayTransformFixedScreenPosition = 1 ///< keep the anchor point at a fixed place on the screen
    };

    /*! The default transform: default anchor point, pixel scale 1.5, behaviour -1. */
    KEZVisTransform();
    /*! Shares the record of \a other. */
    KEZVisTransform(const KEZVisTransform &other);
    /*! Shares the record of \a other; nothing happens when it is already shared or is this one. */
    KEZVisTransform &operator=(const KEZVisTransform &other);
    ~KEZVisTransform();

    /*! The point the transform is anchored at; the default point by default. */
    KEZMathPoint GetAnchorPoint() const;
    /*! Sets the point that GetAnchorPoint() answers, after detaching. */
    void SetAnchorPoint(const KEZMathPoint &anchorPoint);

    /*! The scale in pixels; 1.5 by default. */
    double GetPixelScale() const;
    /*! Sets the scale that GetPixelScale() answers, after detaching; any value is kept as it is. */
    void SetPixelScale(double pixelScale);

    /*! The kind of transform; DisplayTransformNone (-1) by default. */
    DisplayTransformBehavior GetDisplayTransformBehavior() const;
    /*! Sets the behaviour that GetDisplayTransformBehavior() answers, after detaching; any int value is kept. */
    void SetDisplayTransformBehavior(DisplayTransformBehavior behavior);

    /*!
     * True at once for copies that share their record. Otherwise the anchor
     * points compare with KEZMathPoint::operator==, which has a tolerance,
     * while the pixel scales compare exactly, with none: two scales that
     * differ in the last bit are unequal. Then the behaviours. A NaN pixel
     * scale makes two transforms that don't share their record unequal.
     */
    bool operator==(const KEZVisTransform &other) const;
    /*! The negation of operator==. */
    bool operator!=(const KEZVisTransform &other) const;

private:
    QSharedDataPointer<KEZVisTransformData> d;
};

#endif // KEZVISTRANSFORM_H
