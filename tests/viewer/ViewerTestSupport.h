#ifndef KEZVIEWER_TESTSUPPORT_H
#define KEZVIEWER_TESTSUPPORT_H

// A shown viewer widget of 400 x 400 pixels on an environment, fitted to the
// box from (-100, -100, 0) to (100, 100, 0) and looking down the z axis. The
// fitted box fills 0.9 of the frame, so one model unit is 1.8 pixels and the
// model point (x, y, 0) lies at the pixel (200 + 1.8 x, 200 - 1.8 y).

#include "SceneRenderer.h"
#include "ViewerEnvironment.h"
#include "ViewerWidget.h"

#include <KEZVisOptions.h>
#include <KEZVisPointPrimitive.h>
#include <KEZVisRepGraphics.h>
#include <KEZVisSurfacePrimitive.h>
#include <KEZVisVirtualObject.h>

#include <KEZMathBoundingBox.h>
#include <KEZMathPoint.h>

#include <QColor>
#include <QImage>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <vector>

namespace ViewerTest {

constexpr double PixelsPerUnit = 1.8;

inline QPoint Pixel(double x, double y)
{
    return QPoint(int(std::lround(200.0 + PixelsPerUnit * x)), int(std::lround(200.0 - PixelsPerUnit * y)));
}

// A rep of a flat rectangle in the plane z, facing +z, in one colour.
inline KEZVisRep *Rectangle(double x0, double y0, double x1, double y1, const KEZVisOptions &options, double z = 0.0)
{
    double *coords = new double[12]{x0, y0, z, x1, y0, z, x1, y1, z, x0, y1, z};
    int *triangles = new int[6]{0, 1, 2, 0, 2, 3};
    return new KEZVisRepGraphics(
        QList<const KEZVisPrimitive *>{new KEZVisSurfacePrimitive(4, coords, 2, triangles, nullptr)}, options);
}

inline KEZVisRep *Rectangle(double x0, double y0, double x1, double y1, const QColor &color, double z = 0.0)
{
    KEZVisOptions options;
    options.SetColor(color);
    return Rectangle(x0, y0, x1, y1, options, z);
}

class Viewer : public ::testing::Test
{
protected:
    void SetUp() override
    {
        widget = std::make_unique<ViewerWidget>();
        widget->resize(400, 400);
        widget->SetEnvironment(&environment);
        environment.SetSelectionEnabled(true);
        widget->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(widget.get()));
        environment.FitToBoundingBox(KEZMathBoundingBox(KEZMathPoint(-100, -100, 0), KEZMathPoint(100, 100, 0)));
    }

    void TearDown() override
    {
        objects.clear();
        widget.reset();
    }

    KEZVisVirtualObject *Add(KEZVisRep *rep, bool selectable = true)
    {
        auto object = std::make_unique<KEZVisVirtualObject>(&environment);
        object->SetRep(rep);
        object->SetSelectability(selectable);
        environment.AddVirtualObject(object.get());
        objects.push_back(std::move(object));
        return objects.back().get();
    }

    QImage Frame() { return widget->grab().toImage(); }
    QColor At(const QPoint &pixel) { return Frame().pixelColor(pixel); }

    ViewerEnvironment environment;
    std::unique_ptr<ViewerWidget> widget;
    std::vector<std::unique_ptr<KEZVisVirtualObject>> objects;
};

} // namespace ViewerTest

#endif // KEZVIEWER_TESTSUPPORT_H
