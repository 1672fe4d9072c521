// KEZVisRepFactory's picture export: the boxes, the raster image fitted to a
// size, the SVG document, and bad input to all of them.

#include "PaintingTestSupport.h"

#include "KEZVisPointPrimitive.h"
#include "KEZVisPolylinePrimitive.h"
#include "KEZVisRepExtraSet.h"
#include "KEZVisRepFactory.h"
#include "KEZVisRepGraphics.h"
#include "KEZVisTextPrimitive.h"

#include <KEZMathBoundingBox.h>
#include <KEZMathPlane.h>

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace KEZPaintTest;

namespace {

const KEZVisPolylinePrimitive::Structure Separate = KEZVisPolylinePrimitive::StructureSeparateSegments;
const KEZVisPolylinePrimitive::Structure Connected = KEZVisPolylinePrimitive::StructureConnected;

KEZMathBoundingBox Box(double x0, double y0, double z0, double x1, double y1, double z1)
{
    return KEZMathBoundingBox(KEZMathPoint(x0, y0, z0), KEZMathPoint(x1, y1, z1));
}

bool HasInk(const QImage &image, double x, double y)
{
    // The pixel and its neighbours, so that antialiasing at a line's edge
    // does not decide the answer.
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx) {
            const int px = int(std::floor(x)) + dx;
            const int py = int(std::floor(y)) + dy;
            if (image.rect().contains(px, py) && qAlpha(image.pixel(px, py)) > 100)
                return true;
        }
    return false;
}

bool IsTransparentEverywhere(const QImage &image)
{
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) != 0)
                return false;
    return true;
}

// The attributes of the document's root element.
QXmlStreamAttributes SvgRootAttributes(const QByteArray &svg)
{
    QXmlStreamReader reader(svg);
    while (reader.readNextStartElement())
        if (reader.name() == QLatin1String("svg"))
            return reader.attributes();
    return {};
}

// Every element of the document with its attributes, in document order.
QList<std::pair<QString, QXmlStreamAttributes>> SvgElements(const QByteArray &svg)
{
    QList<std::pair<QString, QXmlStreamAttributes>> elements;
    QXmlStreamReader reader(svg);
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement)
            elements.append({reader.name().toString(), reader.attributes()});
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    return elements;
}

QByteArray SvgOf(const QList<const KEZVisRep *> &reps)
{
    const KEZMathBoundingBox box = KEZVisRepFactory::CalculateRepesentationBoundingBox(reps);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    KEZVisRepFactory::CreateSvgImage(reps, box, KEZVisRepFactory::CalculateViewBox(box), &buffer);
    return buffer.data();
}

// A diagonal from (0, 0) to (100, 100), three units thick: it tells a y
// turned over from a y kept, for (25, 75) lies on the other diagonal only.
void AddDiagonal(RepList &reps)
{
    reps.AddPolyline(PointsOf({0, 0, 0, 100, 100, 0}), Connected, Options(QColor(200, 0, 0), 0, 0, 3.0));
}

} // namespace

// ---------------------------------------------------------------------------
// Boxes

TEST(CalculateRepesentationBoundingBox, GivesTheDefaultBoxForAnEmptyList)
{
    EXPECT_EQ(KEZVisRepFactory::CalculateRepesentationBoundingBox({}), KEZMathBoundingBox());
}

TEST(CalculateRepesentationBoundingBox, GivesTheDefaultBoxForAListOfNulls)
{
    EXPECT_EQ(KEZVisRepFactory::CalculateRepesentationBoundingBox({nullptr, nullptr}), KEZMathBoundingBox());
}

TEST(CalculateRepesentationBoundingBox, TakesTheFirstRepsBoxAsItStandsAndExpandsByTheOthers)
{
    // The default box holds the origin; the first rep's box replaces it
    // instead of growing it, so the result does not reach (0, 0, 0).
    RepList reps;
    reps.AddPolyline(PointsOf({5, 6, 7, 8, 9, 10}), Separate, Options(Qt::red));
    reps.AddPolyline(PointsOf({4, 12, 8, 4, 12, 8}), Separate, Options(Qt::red));
    EXPECT_EQ(KEZVisRepFactory::CalculateRepesentationBoundingBox(reps.List()), Box(4, 6, 7, 8, 12, 10));
}

TEST(CalculateRepesentationBoundingBox, IgnoresALeadingNull)
{
    RepList reps;
    reps.AddPolyline(PointsOf({5, 6, 7, 8, 9, 10}), Separate, Options(Qt::red));
    reps.AddPolyline(PointsOf({1, 2, 3, 1, 2, 3}), Separate, Options(Qt::red));
    QList<const KEZVisRep *> withNull = reps.List();
    withNull.prepend(nullptr);
    EXPECT_EQ(KEZVisRepFactory::CalculateRepesentationBoundingBox(withNull),
              KEZVisRepFactory::CalculateRepesentationBoundingBox(reps.List()));
}

TEST(CalculateViewBox, TakesTheSameMarginOnAllSidesFromTheWidthAlone)
{
    // 100 wide and 10 high: a margin of 2.
    const QRect viewBox = KEZVisRepFactory::CalculateViewBox(Box(10, 20, 0, 110, 30, 0));
    EXPECT_EQ(viewBox.x(), 8);
    EXPECT_EQ(viewBox.y(), -(10 + (20 - 2) + 4));
    EXPECT_EQ(viewBox.width(), 104);
    EXPECT_EQ(viewBox.height(), 14);
}

TEST(CalculateViewBox, TruncatesTowardsZero)
{
    // x = 0.9 - 0.02 = 0.88 gives 0, not 1; y = -(1 + 0.88 + 0.04) = -1.92
    // gives -1, not -2; width and height 1.04 give 1.
    const QRect viewBox = KEZVisRepFactory::CalculateViewBox(Box(0.9, 0.9, 0, 1.9, 1.9, 0));
    EXPECT_EQ(viewBox.x(), 0);
    EXPECT_EQ(viewBox.y(), -1);
    EXPECT_EQ(viewBox.width(), 1);
    EXPECT_EQ(viewBox.height(), 1);
}

TEST(CalculateViewBox, TruncatesNegativeCoordinatesTowardsZeroToo)
{
    // x = -0.5 - 0.02 = -0.52 gives 0, not -1.
    const QRect viewBox = KEZVisRepFactory::CalculateViewBox(Box(-0.5, 3, 0, 0.5, 4, 0));
    EXPECT_EQ(viewBox.x(), 0);
    EXPECT_EQ(viewBox.y(), -4); // -(1 + 2.98 + 0.04) = -4.02
}

TEST(CalculateViewBox, ClampsHugeValuesAndTakesNaNAsZero)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const QRect huge = KEZVisRepFactory::CalculateViewBox(Box(-1e300, -1e300, 0, 1e300, 1e300, 0));
    EXPECT_EQ(huge.x(), -(1 << 30));
    EXPECT_EQ(huge.width(), 1 << 30);
    const QRect notANumber = KEZVisRepFactory::CalculateViewBox(Box(nan, nan, nan, nan, nan, nan));
    EXPECT_EQ(notANumber, QRect(0, 0, 0, 0));
}

// ---------------------------------------------------------------------------
// CreateImage

TEST(CreateImage, CentresAModelHorizontallyInAWidePicture)
{
    // 100 by 50 and a model 10 by 10 from (3, 1): s = 5, tx = -3 + 5, ty = -11.
    RepList reps;
    reps.AddPolyline(PointsOf({3, 1, 0, 13, 11, 0}), Connected, Options(QColor(0, 0, 200), 0, 0, 3.0));
    const QImage image = KEZVisRepFactory::CreateImage(QSize(100, 50), reps.List(), Qt::white);
    ASSERT_EQ(image.size(), QSize(100, 50));
    auto pixel = [](double x, double y) { return QPointF((x - 3 + 5) * 5, (y - 11) * -5); };
    for (double t : {0.2, 0.5, 0.8}) {
        const QPointF onLine = pixel(3 + 10 * t, 1 + 10 * t);
        EXPECT_TRUE(HasInk(image, onLine.x(), onLine.y())) << "t " << t;
    }
    // The picture leaves 25 pixels free on either side, and the other
    // diagonal is empty.
    EXPECT_FALSE(HasInk(image, 10, 25));
    EXPECT_FALSE(HasInk(image, 90, 25));
    const QPointF offLine = pixel(5.5, 8.5);
    EXPECT_FALSE(HasInk(image, offLine.x(), offLine.y()));
}

TEST(CreateImage, CentresAModelVerticallyInATallPicture)
{
    // 50 by 100 and a model 10 by 10 from (3, 1): s = 5, tx = -3,
    // ty = -11 - (10 / 0.5 - 10) * 0.5 = -16.
    RepList reps;
    reps.AddPolyline(PointsOf({3, 1, 0, 13, 11, 0}), Connected, Options(QColor(0, 0, 200), 0, 0, 3.0));
    const QImage image = KEZVisRepFactory::CreateImage(QSize(50, 100), reps.List(), Qt::white);
    ASSERT_EQ(image.size(), QSize(50, 100));
    auto pixel = [](double x, double y) { return QPointF((x - 3) * 5, (y - 16) * -5); };
    for (double t : {0.2, 0.5, 0.8}) {
        const QPointF onLine = pixel(3 + 10 * t, 1 + 10 * t);
        EXPECT_TRUE(HasInk(image, onLine.x(), onLine.y())) << "t " << t;
    }
    EXPECT_FALSE(HasInk(image, 25, 10));
    EXPECT_FALSE(HasInk(image, 25, 90));
    const QPointF offLine = pixel(5.5, 8.5);
    EXPECT_FALSE(HasInk(image, offLine.x(), offLine.y()));
}

TEST(CreateImage, LeavesTheBackgroundTransparentWhateverTheColourSays)
{
    RepList reps;
    AddDiagonal(reps);
    const QImage image = KEZVisRepFactory::CreateImage(QSize(80, 80), reps.List(), QColor(255, 255, 0));
    EXPECT_EQ(qAlpha(image.pixel(70, 70)), 0);
    EXPECT_EQ(qAlpha(image.pixel(10, 10)), 0);
    EXPECT_TRUE(HasInk(image, 40, 40));
}

TEST(CreateImage, DrawsByPriorityWithoutTheFillsOfExtraSets)
{
    RepList reps;
    auto *square = new KEZVisRepGraphics(
        QList<const KEZVisPrimitive *>{new KEZVisPolylinePrimitive(PointsOf({0, 0, 0, 10, 0, 0, 10, 10, 0, 0, 10, 0, 0, 0, 0}),
                                                                   Connected)},
        Options(Qt::black));
    reps.Add(new KEZVisRepExtraSet(QList<const KEZVisRep *>{square}, Options(Qt::green)));
    const QImage image = KEZVisRepFactory::CreateImage(QSize(100, 100), reps.List(), Qt::white);
    EXPECT_EQ(qAlpha(image.pixel(50, 50)), 0);
}

TEST(CreateImage, GivesATransparentImageOfTheSizeForAnEmptyList)
{
    const QImage image = KEZVisRepFactory::CreateImage(QSize(30, 20), {}, Qt::red);
    EXPECT_EQ(image.size(), QSize(30, 20));
    EXPECT_TRUE(IsTransparentEverywhere(image));
}

TEST(CreateImage, GivesAnImageOfTheSizeForAModelWithoutExtent)
{
    RepList reps;
    reps.AddPrimitive(new KEZVisPointPrimitive(PointsOf({4, 4, 4})), Options(Qt::red));
    reps.AddPolyline(PointsOf({4, 4, 4, 4, 4, 4}), Connected, Options(Qt::red));
    const QImage image = KEZVisRepFactory::CreateImage(QSize(30, 20), reps.List(), Qt::red);
    EXPECT_EQ(image.size(), QSize(30, 20));
}

TEST(CreateImage, GivesANullImageForAnEmptyOrNegativeSize)
{
    MessageCapture capture;
    RepList reps;
    AddDiagonal(reps);
    EXPECT_TRUE(KEZVisRepFactory::CreateImage(QSize(0, 10), reps.List(), Qt::red).isNull());
    EXPECT_TRUE(KEZVisRepFactory::CreateImage(QSize(10, 0), reps.List(), Qt::red).isNull());
    EXPECT_TRUE(KEZVisRepFactory::CreateImage(QSize(-5, 10), reps.List(), Qt::red).isNull());
    EXPECT_TRUE(KEZVisRepFactory::CreateImage(QSize(), reps.List(), Qt::red).isNull());
    EXPECT_EQ(capture.Matching(QStringLiteral("kez.visualization.painter"), QString()).size(), 4);
}

// ---------------------------------------------------------------------------
// CreateSvgImage

TEST(CreateSvgImage, WritesTheViewBoxAndTheTruncatedSizeOfTheBox)
{
    RepList reps;
    AddDiagonal(reps);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    KEZVisRepFactory::CreateSvgImage(reps.List(), Box(0, 0, 0, 30.9, 20.5, 0), QRect(-3, -40, 50, 60), &buffer);
    const QXmlStreamAttributes root = SvgRootAttributes(buffer.data());
    EXPECT_EQ(root.value(QLatin1String("viewBox")).toString(), QStringLiteral("-3 -40 50 60"));
    // QSvgGenerator gives the size in millimetres at its 72 dots per inch.
    const QString width = root.value(QLatin1String("width")).toString();
    const QString height = root.value(QLatin1String("height")).toString();
    ASSERT_TRUE(width.endsWith(QLatin1String("mm")));
    ASSERT_TRUE(height.endsWith(QLatin1String("mm")));
    EXPECT_NEAR(width.chopped(2).toDouble(), 30 * 25.4 / 72, 1e-4);
    EXPECT_NEAR(height.chopped(2).toDouble(), 20 * 25.4 / 72, 1e-4);
}

TEST(CreateSvgImage, NegatesModelY)
{
    RepList reps;
    reps.AddPolyline(PointsOf({1, 5, 0, 10, 7, 0}), Connected, Options(Qt::red));
    const QByteArray svg = SvgOf(reps.List());
    bool found = false;
    for (const auto &[name, attributes] : SvgElements(svg))
        if (name == QLatin1String("polyline") || name == QLatin1String("path")) {
            const QString data = attributes.hasAttribute(QLatin1String("d"))
                ? attributes.value(QLatin1String("d")).toString()
                : attributes.value(QLatin1String("points")).toString();
            EXPECT_TRUE(data.contains(QLatin1String("1,-5"))) << data.toStdString();
            EXPECT_TRUE(data.contains(QLatin1String("10,-7"))) << data.toStdString();
            found = true;
        }
    EXPECT_TRUE(found) << svg.toStdString();
}

TEST(CreateSvgImage, WritesTheDashArraysOfTheLineStylesInPenWidths)
{
    // Style 3 is 3, 2, 1, 2 pen widths; at thickness 2 that is 6, 4, 2, 4.
    RepList reps;
    reps.AddPolyline(PointsOf({0, 0, 0, 10, 10, 0}), Connected, Options(Qt::red, 0, 3, 2.0));
    reps.AddPolyline(PointsOf({0, 10, 0, 10, 0, 0}), Connected, Options(Qt::blue, 1, 1, 1.0));
    QStringList dashArrays;
    for (const auto &[name, attributes] : SvgElements(SvgOf(reps.List())))
        if (attributes.hasAttribute(QLatin1String("stroke-dasharray")))
            dashArrays.append(attributes.value(QLatin1String("stroke-dasharray")).toString());
    EXPECT_EQ(dashArrays, (QStringList{QStringLiteral("6,4,2,4"), QStringLiteral("3,2")}));
}

TEST(CreateSvgImage, FillsTheClosedLinesOfAnExtraSetWithItsColour)
{
    RepList reps;
    auto *square = new KEZVisRepGraphics(
        QList<const KEZVisPrimitive *>{new KEZVisPolylinePrimitive(PointsOf({0, 0, 0, 10, 0, 0, 10, 10, 0, 0, 10, 0, 0, 0, 0}),
                                                                   Connected)},
        Options(QColor(200, 10, 20)));
    reps.Add(new KEZVisRepExtraSet(QList<const KEZVisRep *>{square}, Options(QColor(0, 128, 255))));
    QString fillOfTheSquare;
    QXmlStreamAttributes group;
    for (const auto &[name, attributes] : SvgElements(SvgOf(reps.List()))) {
        if (name == QLatin1String("g"))
            group = attributes;
        if (name == QLatin1String("path") || name == QLatin1String("polygon"))
            fillOfTheSquare = group.value(QLatin1String("fill")).toString();
    }
    EXPECT_EQ(fillOfTheSquare, QStringLiteral("#0080ff"));
}

TEST(CreateSvgImage, AsksForAntialiasingBeforeThePainterBegins)
{
    MessageCapture capture;
    RepList reps;
    AddDiagonal(reps);
    SvgOf(reps.List());
    int early = 0;
    for (const LoggedMessage &message : capture.Messages())
        if (message.type == QtWarningMsg && message.text.contains(QLatin1String("setRenderHint")))
            ++early;
    EXPECT_EQ(early, 2);
}

TEST(CreateSvgImage, PutsFeaturesWhereCreateImagePutsThem)
{
    RepList reps;
    AddDiagonal(reps);
    const QByteArray svg = SvgOf(reps.List());

    // The view box is (-2, -102, 104, 104); rendered into 208 by 208 pixels a
    // model point (x, y) lands at ((x + 2) * 2, (-y + 102) * 2).
    QSvgRenderer renderer(svg);
    ASSERT_TRUE(renderer.isValid());
    QImage fromSvg(208, 208, QImage::Format_ARGB32_Premultiplied);
    fromSvg.fill(Qt::transparent);
    QPainter painter(&fromSvg);
    renderer.render(&painter);
    painter.end();

    // 200 by 100 fitted: s = 1, tx = 0 + (100 * 2 - 100) * 0.5 = 50,
    // ty = -100.
    const QImage image = KEZVisRepFactory::CreateImage(QSize(200, 100), reps.List(), Qt::white);

    auto svgPixel = [](double x, double y) { return QPointF((x + 2) * 2, (-y + 102) * 2); };
    auto imagePixel = [](double x, double y) { return QPointF(x + 50, (y - 100) * -1); };
    for (const QPointF model : {QPointF(25, 25), QPointF(50, 50), QPointF(80, 80)}) {
        const QPointF inSvg = svgPixel(model.x(), model.y());
        const QPointF inImage = imagePixel(model.x(), model.y());
        EXPECT_TRUE(HasInk(fromSvg, inSvg.x(), inSvg.y())) << model.x();
        EXPECT_TRUE(HasInk(image, inImage.x(), inImage.y())) << model.x();
    }
    for (const QPointF model : {QPointF(25, 75), QPointF(75, 25)}) {
        const QPointF inSvg = svgPixel(model.x(), model.y());
        const QPointF inImage = imagePixel(model.x(), model.y());
        EXPECT_FALSE(HasInk(fromSvg, inSvg.x(), inSvg.y())) << model.x();
        EXPECT_FALSE(HasInk(image, inImage.x(), inImage.y())) << model.x();
    }
}

TEST(CreateSvgImage, WritesNothingWithoutADevice)
{
    MessageCapture capture;
    RepList reps;
    AddDiagonal(reps);
    KEZVisRepFactory::CreateSvgImage(reps.List(), Box(0, 0, 0, 100, 100, 0), QRect(0, -100, 100, 100), nullptr);
    EXPECT_EQ(capture.Matching(QStringLiteral("kez.visualization.painter"), QStringLiteral("Cannot")).size(), 1);
}

TEST(CreateSvgImage, WritesNothingToADeviceOpenForReadingOnly)
{
    RepList reps;
    AddDiagonal(reps);
    QByteArray bytes("unchanged");
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    KEZVisRepFactory::CreateSvgImage(reps.List(), Box(0, 0, 0, 100, 100, 0), QRect(0, -100, 100, 100), &buffer);
    EXPECT_EQ(bytes, QByteArray("unchanged"));
}

TEST(CreateSvgImage, WritesNothingToAFileThatCannotBeOpened)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    QFile file(dir.filePath(QStringLiteral("missing-folder/picture.svg")));
    RepList reps;
    AddDiagonal(reps);
    KEZVisRepFactory::CreateSvgImage(reps.List(), Box(0, 0, 0, 100, 100, 0), QRect(0, -100, 100, 100), &file);
    EXPECT_FALSE(file.exists());
}

// ---------------------------------------------------------------------------
// Coordinates that are not finite or are huge

namespace {

// Reps of every drawable kind with \a value as some of their coordinates,
// in line style \a style.
void AddWildReps(RepList &reps, double value, int style)
{
    const KEZVisOptions options = Options(Qt::red, style % 3, style, 2.0);
    reps.AddPolyline(PointsOf({0, 0, 0, value, 1, 0, 2, value, 0, 0, 0, 0}), Connected, options);
    reps.AddPolyline(PointsOf({value, 0, 0, 1, value, 0, 0, 0, 0, 5, 5, 0}), Separate, options);
    reps.AddPolyline(PointsOf({0, 0, 0, value, value, value, 0.0001, 0, 0}), Connected, options);
    reps.AddPrimitive(new KEZVisPointPrimitive(PointsOf({value, value, 0, 1, 1, 1})), options);
    reps.AddPrimitive(new KEZVisTextPrimitive(QStringLiteral("Wild"), KEZMathPoint(value, -value, 0),
                                              KEZVisTextPrimitive::AnchorCenter,
                                              KEZVisTextPrimitive::ScalabilityScalable),
                      options);
}

const double wildValues[] = {std::numeric_limits<double>::quiet_NaN(),
                             std::numeric_limits<double>::infinity(),
                             -std::numeric_limits<double>::infinity(),
                             1e300,
                             -1e300,
                             std::numeric_limits<double>::denorm_min()};

} // namespace

TEST(PaintReps, SurvivesCoordinatesThatAreNotFiniteOrHugeInEveryLineStyle)
{
    QLoggingCategory::setFilterRules(QStringLiteral("kez.visualization.painter.debug=false"));
    Watchdog watchdog(std::chrono::seconds(10), "painting wild coordinates");
    for (double value : wildValues)
        for (int style = 0; style <= 13; ++style) {
            RepList reps;
            AddWildReps(reps, value, style);
            for (const QTransform &transform : {QTransform(), QTransform(3, 0, 0, -3, 50, 50)}) {
                QImage image(100, 100, QImage::Format_ARGB32_Premultiplied);
                image.fill(Qt::transparent);
                QPainter painter(&image);
                painter.setWorldTransform(transform);
                KEZVisRepFactory::PaintReps(KEZMathPlane(), &painter, reps.List());
                KEZVisRepFactory::PaintRepsRecursively(KEZMathPlane(), &painter, reps.List());
                painter.end();
                EXPECT_EQ(image.size(), QSize(100, 100));
            }
        }
    QLoggingCategory::setFilterRules(QString());
}

TEST(CreateImage, SurvivesCoordinatesThatAreNotFiniteOrHugeInEveryLineStyle)
{
    QLoggingCategory::setFilterRules(QStringLiteral("kez.visualization.painter.debug=false"));
    Watchdog watchdog(std::chrono::seconds(10), "an image of wild coordinates");
    for (double value : wildValues)
        for (int style = 0; style <= 13; ++style) {
            RepList reps;
            AddWildReps(reps, value, style);
            EXPECT_EQ(KEZVisRepFactory::CreateImage(QSize(64, 48), reps.List(), Qt::red).size(), QSize(64, 48));
        }
    QLoggingCategory::setFilterRules(QString());
}

TEST(CreateSvgImage, SurvivesCoordinatesThatAreNotFiniteOrHugeInEveryLineStyle)
{
    QLoggingCategory::setFilterRules(QStringLiteral("kez.visualization.painter.debug=false"));
    Watchdog watchdog(std::chrono::seconds(10), "an SVG image of wild coordinates");
    for (double value : wildValues)
        for (int style = 0; style <= 13; ++style) {
            RepList reps;
            AddWildReps(reps, value, style);
            EXPECT_FALSE(SvgOf(reps.List()).isEmpty());
        }
    QLoggingCategory::setFilterRules(QString());
}
