#ifndef KEZVIEWER_VIEWCAMERA_H
#define KEZVIEWER_VIEWCAMERA_H

// The orthographic camera of the viewer.
//
// The camera looks along a unit direction; a unit up vector at right angles to
// it and right = direction x up span the screen. A model point p lies on the
// screen at
//
//     x = width / 2  + ((p - centre) . right) * scale
//     y = height / 2 - ((p - centre) . up) * scale
//
// and its depth is (p - centre) . direction: the larger, the farther away.
// The scale is in pixels per model unit.

#include <KEZMathBoundingBox.h>
#include <KEZMathPoint.h>
#include <KEZMathVector.h>

#include <QPointF>
#include <QSize>

class ViewCamera
{
public:
    // The share of the frame that a fitted box fills along its tighter side.
    static constexpr double FitFill = 0.9;

    ViewCamera();

    void SetSize(const QSize &size) { m_size = size; }
    QSize GetSize() const { return m_size; }

    KEZMathVector GetDirection() const { return m_direction; }
    KEZMathVector GetUp() const { return m_up; }
    KEZMathVector GetRight() const { return m_right; }
    KEZMathPoint GetCentre() const { return m_centre; }
    double GetScale() const { return m_scale; }

    // Looks along \a direction; the up vector keeps as much of itself as it
    // can. A direction without magnitude or with NaN is ignored.
    void SetDirection(const KEZMathVector &direction);
    // Turns the view about its direction so that \a orientation points up on
    // the screen, as far as it is at right angles to the direction. Ignored
    // when it has no part at right angles.
    void SetOrientation(const KEZMathVector &orientation);
    void SetCentre(const KEZMathPoint &centre) { m_centre = centre; }
    void SetScale(double scale);

    // Centres \a box and scales it so that its projection fills FitFill of
    // the frame. A box with a non-finite corner is ignored and answers false.
    // A box that projects to a point keeps the scale.
    bool Fit(const KEZMathBoundingBox &box);

    // Turns the view by \a yaw about the up vector and by \a pitch about the
    // right vector, in radians, around the centre.
    void Rotate(double yaw, double pitch);
    // Moves the view by a screen offset in pixels.
    void Pan(const QPointF &pixels);
    // Multiplies the scale by \a factor, keeping the model point under
    // \a screenPoint where it is.
    void ZoomAt(const QPointF &screenPoint, double factor);

    QPointF ToScreen(const KEZMathPoint &point) const;
    QPointF ToScreen(const double *xyz) const;
    double Depth(const KEZMathPoint &point) const;
    double Depth(const double *xyz) const;
    // The model point under \a screenPoint at \a depth.
    KEZMathPoint FromScreen(const QPointF &screenPoint, double depth) const;

private:
    void Orthogonalise();

    QSize m_size{1, 1};
    KEZMathVector m_direction{0.0, 0.0, -1.0};
    KEZMathVector m_up{0.0, 1.0, 0.0};
    KEZMathVector m_right{1.0, 0.0, 0.0};
    KEZMathPoint m_centre;
    double m_scale = 1.0;
};

#endif // KEZVIEWER_VIEWCAMERA_H
