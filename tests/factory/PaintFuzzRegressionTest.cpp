// Inputs of the painter and the picture export that fuzzing found to fail,
// each checked in with the fuzz regressions and decoded here as PaintFuzzer
// decodes its reps built from numbers: one byte of layout, then per primitive
// a byte of kind (modulo 5: points, separate segments, a connected line, a
// surface, a text), a byte of options (low nibble line style, high nibble
// priority less 8), a byte of count and the numbers (for a surface its
// vertices, a byte of triangle count and three index bytes per triangle; for
// a text its Latin-1 characters, the anchor and a byte of anchor location less
// 4). A number is one byte:
// below 16 an odd value of the table below, up to 127 the byte less 72, from
// 128 on the eight bytes that follow as a double.

#include "PaintingTestSupport.h"

#include <KEZVisPointPrimitive.h>
#include <KEZVisPolylinePrimitive.h>
#include <KEZVisRepFactory.h>
#include <KEZVisSurfacePrimitive.h>
#include <KEZVisTextPrimitive.h>

#include <KEZMathBoundingBox.h>
#include <KEZMathPlane.h>
#include <KEZMathPoint.h>
#include <KEZMathSetOfPoints.h>

#include <QBuffer>
#include <QByteArray>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QTransform>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

using namespace KEZPaintTest;

namespace {

QByteArray FuzzRegression(const char *target, const char *name)
{
    QFile file(QStringLiteral(KEZ_FUZZ_REGRESSIONS_DIR "/%1/%2").arg(QLatin1String(target), QLatin1String(name)));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
    return file.readAll();
}

class NumberReader
{
public:
    explicit NumberReader(const QByteArray &bytes, qsizetype offset)
        : m_bytes(bytes)
        , m_offset(offset)
    {
    }

    bool AtEnd() const { return m_offset >= m_bytes.size(); }

    bool Byte(int &value)
    {
        if (m_offset >= m_bytes.size())
            return false;
        value = static_cast<unsigned char>(m_bytes.at(m_offset++));
        return true;
    }

    bool Number(double &value)
    {
        const double odd[16] = {0.0, -0.0, std::numeric_limits<double>::quiet_NaN(),
                                std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
                                1e300, -1e300, std::numeric_limits<double>::denorm_min(),
                                std::numeric_limits<double>::min(), std::numeric_limits<double>::max(), 1e-300,
                                2147483648.0, -2147483649.0, 1073741824.0, 0.5, 1e15};
        int byte = 0;
        if (!Byte(byte))
            return false;
        if (byte < 16) {
            value = odd[byte];
        } else if (byte < 128) {
            value = byte - 72;
        } else {
            if (m_offset + 8 > m_bytes.size())
                return false;
            std::memcpy(&value, m_bytes.constData() + m_offset, 8);
            m_offset += 8;
        }
        return true;
    }

    bool Point(KEZMathPoint &point)
    {
        double x = 0, y = 0, z = 0;
        if (!Number(x) || !Number(y) || !Number(z))
            return false;
        point = KEZMathPoint(x, y, z);
        return true;
    }

private:
    const QByteArray &m_bytes;
    qsizetype m_offset;
};

// A surface of \a vertexes vertices, then a byte of triangle count and three
// bytes of vertex index per triangle, taken modulo the vertex count.
KEZVisSurfacePrimitive *DecodeSurface(NumberReader &reader, int vertexes)
{
    std::vector<double> coords;
    for (int i = 0; i < vertexes; ++i) {
        KEZMathPoint point;
        if (!reader.Point(point))
            return nullptr;
        coords.insert(coords.end(), {point.GetX(), point.GetY(), point.GetZ()});
    }
    int triangles = 0;
    if (!reader.Byte(triangles) || vertexes == 0)
        triangles = 0;
    std::vector<int> indexes;
    for (int i = 0; i < 3 * triangles; ++i) {
        int index = 0;
        if (!reader.Byte(index))
            return nullptr;
        indexes.push_back(index % vertexes);
    }
    auto *ownedCoords = new double[coords.size() + 1];
    std::copy(coords.begin(), coords.end(), ownedCoords);
    auto *ownedIndexes = new int[indexes.size() + 1];
    std::copy(indexes.begin(), indexes.end(), ownedIndexes);
    return new KEZVisSurfacePrimitive(vertexes, ownedCoords, triangles, ownedIndexes, nullptr);
}

// The reps of \a bytes, which hold reps built from numbers. Two points of the
// plane's directions come first when bits 3 and 4 of the layout are both set;
// they are passed over, as CreateImage paints on the default plane.
void DecodeReps(const QByteArray &bytes, RepList &reps)
{
    ASSERT_EQ(bytes.at(0) & 1, 0);
    NumberReader reader(bytes, 1);
    if (((bytes.at(0) >> 3) & 3) == 3) {
        KEZMathPoint x, y;
        ASSERT_TRUE(reader.Point(x) && reader.Point(y));
    }
    while (!reader.AtEnd()) {
        int kind = 0, options = 0, count = 0;
        if (!reader.Byte(kind) || !reader.Byte(options) || !reader.Byte(count))
            return;
        const KEZVisOptions visOptions = Options(QColor::fromRgb(0x20 * (options & 7), 0x80, 0xff - options, 0xc0),
                                                 (options >> 4) - 8, options & 15, 1.0 + (options & 3));
        if (kind % 5 == 3) {
            KEZVisSurfacePrimitive *surface = DecodeSurface(reader, count);
            if (!surface)
                return;
            reps.AddPrimitive(surface, visOptions);
            continue;
        }
        if (kind % 5 == 4) {
            QByteArray latin1;
            int c = 0;
            for (int i = 0; i < count; ++i) {
                if (!reader.Byte(c))
                    return;
                latin1.append(char(c));
            }
            KEZMathPoint anchor;
            int location = 0;
            if (!reader.Point(anchor) || !reader.Byte(location))
                return;
            reps.AddPrimitive(new KEZVisTextPrimitive(QString::fromLatin1(latin1), anchor,
                                                      static_cast<KEZVisTextPrimitive::AnchorLocation>(location - 4),
                                                      KEZVisTextPrimitive::ScalabilityScalable),
                              visOptions);
            continue;
        }
        KEZMathSetOfPoints points;
        for (int i = 0; i < count; ++i) {
            KEZMathPoint point;
            if (!reader.Point(point))
                return;
            points.append(point);
        }
        if (kind % 5 == 0)
            reps.AddPrimitive(new KEZVisPointPrimitive(points), visOptions);
        else
            reps.AddPolyline(points, kind % 5 == 1 ? KEZVisPolylinePrimitive::StructureSeparateSegments
                                                   : KEZVisPolylinePrimitive::StructureConnected,
                             visOptions);
    }
}

bool IsTransparent(const QImage &image)
{
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) != 0)
                return false;
    return true;
}

} // namespace

TEST(PaintFuzzRegression, TextInAPictureOfAModelWithANaNCoordinateIsLeftOutInsteadOfCrashing)
{
    // Found by PaintFuzzer: a connected line with a point whose x is NaN and a
    // long text. The box of the model, and so the transform of CreateImage,
    // held NaN; the text went through a pixmap, and Qt's raster engine read
    // outside its buffers drawing that pixmap through the NaN transform.
    QLoggingCategory::setFilterRules(QStringLiteral("kez.visualization.painter.debug=false"));
    const QByteArray input = FuzzRegression("PaintFuzzer", "text-through-nan-transform");
    ASSERT_EQ(input.at(0), char(0x04)); // reps from numbers, then CreateImage
    RepList reps;
    DecodeReps(input, reps);
    ASSERT_GE(reps.List().size(), 2);
    EXPECT_TRUE(std::isnan(KEZVisRepFactory::CalculateRepesentationBoundingBox(reps.List()).GetLowerPoint().GetX()));

    const QImage picture = KEZVisRepFactory::CreateImage(QSize(48, 32), reps.List(), Qt::white);
    EXPECT_EQ(picture.size(), QSize(48, 32));
    EXPECT_TRUE(IsTransparent(picture));
    QLoggingCategory::setFilterRules(QString());
}

TEST(PaintReps, DrawsNoTextThroughATransformThatIsNotFinite)
{
    QLoggingCategory::setFilterRules(QStringLiteral("kez.visualization.painter.debug=false"));
    RepList reps;
    reps.AddPrimitive(new KEZVisTextPrimitive(QString(40, QChar(0xff)), KEZMathPoint(0, 0, 0),
                                              KEZVisTextPrimitive::AnchorCenter,
                                              KEZVisTextPrimitive::ScalabilityScalable),
                      Options(Qt::black));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    // Both ways of drawing text: into its rect where y runs down, through a
    // pixmap where it runs up.
    for (const QTransform &transform : {QTransform(1, 0, 0, 1, nan, 10), QTransform(0.5, 0, 0, -0.5, nan, 20)}) {
        QImage image(64, 64, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setWorldTransform(transform);
        KEZVisRepFactory::PaintReps(KEZMathPlane(), &painter, reps.List());
        painter.end();
        EXPECT_TRUE(IsTransparent(image));
    }
    QLoggingCategory::setFilterRules(QString());
}

TEST(PaintReps, DrawsNoTextWhoseRectOnTheDeviceReachesBeyondTwoToTheThirty)
{
    QLoggingCategory::setFilterRules(QStringLiteral("kez.visualization.painter.debug=false"));
    RepList reps;
    reps.AddPrimitive(new KEZVisTextPrimitive(QStringLiteral("Far"), KEZMathPoint(0, 0, 0),
                                              KEZVisTextPrimitive::AnchorCenter,
                                              KEZVisTextPrimitive::ScalabilityScalable),
                      Options(Qt::black));
    // Scaled by 1e12 the text's few units cover far more than 2^30 pixels
    // around the middle of the picture.
    QImage image(64, 64, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setWorldTransform(QTransform(1e12, 0, 0, -1e12, 32, 32));
    KEZVisRepFactory::PaintReps(KEZMathPlane(), &painter, reps.List());
    painter.end();
    EXPECT_TRUE(IsTransparent(image));
    QLoggingCategory::setFilterRules(QString());
}

TEST(PaintReps, StillDrawsTextWhoseRectOnTheDeviceIsFiniteAndNear)
{
    QLoggingCategory::setFilterRules(QStringLiteral("kez.visualization.painter.debug=false"));
    RepList reps;
    KEZVisOptions options = Options(Qt::black);
    QFont font = options.GetFont();
    font.setPixelSize(20);
    options.SetFont(font);
    reps.AddPrimitive(new KEZVisTextPrimitive(QStringLiteral("MW"), KEZMathPoint(32, 32, 0),
                                              KEZVisTextPrimitive::AnchorCenter,
                                              KEZVisTextPrimitive::ScalabilityScalable),
                      options);
    // The anchor lands in the middle of the picture either way.
    for (const QTransform &transform : {QTransform(), QTransform(1, 0, 0, -1, 0, 64)}) {
        QImage image(64, 64, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setWorldTransform(transform);
        KEZVisRepFactory::PaintReps(KEZMathPlane(), &painter, reps.List());
        painter.end();
        EXPECT_FALSE(IsTransparent(image)) << transform.m22();
    }
    QLoggingCategory::setFilterRules(QString());
}

TEST(PaintFuzzRegression, UprightTextScaledBelowOnePixelHighInAFittedPictureIsDrawnWithoutReadingOutsideThePixmap)
{
    // Found by PaintFuzzer: a long text among reps whose box, fitted into a
    // picture 48 by 32, gave a scale of about 0.059 with y turned over. The
    // text's pixmap, 810 by 15, came out less than a pixel high, and Qt's fast
    // blit of a scaled pixmap read far outside it.
    QLoggingCategory::setFilterRules(QStringLiteral("kez.visualization.painter.debug=false"));
    const QByteArray input = FuzzRegression("PaintFuzzer", "text-scaled-below-a-pixel");
    ASSERT_EQ(input.at(0), char(0x1c)); // reps from numbers, CreateImage, a plane of given directions
    RepList reps;
    DecodeReps(input, reps);
    ASSERT_GE(reps.List().size(), 2);

    const QImage picture = KEZVisRepFactory::CreateImage(QSize(48, 32), reps.List(), Qt::white);
    EXPECT_EQ(picture.size(), QSize(48, 32));
    QLoggingCategory::setFilterRules(QString());
}

TEST(PaintReps, DrawsUprightTextUnderEveryScaleThatTurnsYOverWithoutReadingOutsideThePixmap)
{
    // Scales from 0.001 to 1 in steps of a few percent, each at offsets that
    // put the text's pixmap across pixel edges in varying ways.
    QLoggingCategory::setFilterRules(QStringLiteral("kez.visualization.painter.debug=false"));
    RepList reps;
    reps.AddPrimitive(new KEZVisTextPrimitive(QString(60, QChar(u'W')), KEZMathPoint(0, 0, 0),
                                              KEZVisTextPrimitive::AnchorBottomLeft,
                                              KEZVisTextPrimitive::ScalabilityScalable),
                      Options(Qt::black));
    int drawn = 0;
    for (double scale = 0.001; scale < 1.0; scale *= 1.03) {
        for (double offset : {0.0, 0.25, 0.5, 0.8}) {
            QImage image(48, 32, QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::transparent);
            QPainter painter(&image);
            painter.setWorldTransform(QTransform(scale, 0, 0, -scale, offset, 16.0 + offset));
            KEZVisRepFactory::PaintReps(KEZMathPlane(), &painter, reps.List());
            painter.end();
            drawn += IsTransparent(image) ? 0 : 1;
        }
    }
    // The text shows, at least where it is larger than a pixel.
    EXPECT_GT(drawn, 0);
    QLoggingCategory::setFilterRules(QString());
}

namespace {

// Truncation towards zero with the clamp to +-2^30 and NaN as 0, written out.
qint64 Truncated(double value)
{
    if (std::isnan(value))
        return 0;
    return qint64(std::clamp(value, -1073741824.0, 1073741824.0));
}

} // namespace

TEST(PaintFuzzRegression, ViewBoxOfABoxFarOutKeepsItsEdgesWithoutOverflowingInt)
{
    // Found by PaintFuzzer: points about 1e248 apart, far from the origin, in
    // an extra set. The view box's x and width were both clamped to 2^30, and
    // QRect's constructor overflowed int summing them for its right edge.
    QLoggingCategory::setFilterRules(QStringLiteral("kez.visualization.painter.debug=false"));
    const QByteArray input = FuzzRegression("PaintFuzzer", "view-box-far-out");
    ASSERT_EQ(input.at(0), char(0x02)); // reps from numbers in an extra set
    RepList reps;
    DecodeReps(input, reps);
    ASSERT_FALSE(reps.List().isEmpty());

    const KEZMathBoundingBox box = KEZVisRepFactory::CalculateRepesentationBoundingBox(reps.List());
    const double margin = 0.02 * box.GetDeltaX();
    const qint64 x = Truncated(box.GetLowerPoint().GetX() - margin);
    const qint64 width = Truncated(box.GetDeltaX() + 2.0 * margin);
    const QRect viewBox = KEZVisRepFactory::CalculateViewBox(box);
    EXPECT_EQ(viewBox.x(), x);
    EXPECT_EQ(viewBox.width(), width);
    EXPECT_EQ(qint64(viewBox.right()), x + width - 1);

    QBuffer svg;
    svg.open(QIODevice::WriteOnly);
    KEZVisRepFactory::CreateSvgImage(reps.List(), box, viewBox, &svg);
    EXPECT_TRUE(svg.data().startsWith("<?xml"));
    QLoggingCategory::setFilterRules(QString());
}

TEST(CalculateViewBox, GivesABoxFarOutItsClampedCornerAndSizeWithTheLargestIntAsFarEdges)
{
    // x = 1e12 - 1.8e11 and y = -(9e12 + (-1e13 - 1.8e11) + 3.6e11) = 8.2e11
    // clamp to 2^30; width and height 9.36e12 clamp to 2^30 as well. The far
    // edges, 2^30 + 2^30 - 1, are the largest int.
    const QRect viewBox = KEZVisRepFactory::CalculateViewBox(
        KEZMathBoundingBox(KEZMathPoint(1e12, -1e13, 0), KEZMathPoint(1e13, -1e12, 0)));
    EXPECT_EQ(viewBox.x(), 1 << 30);
    EXPECT_EQ(viewBox.y(), 1 << 30);
    EXPECT_EQ(viewBox.width(), 1 << 30);
    EXPECT_EQ(viewBox.height(), 1 << 30);
    EXPECT_EQ(viewBox.right(), std::numeric_limits<int>::max());
    EXPECT_EQ(viewBox.bottom(), std::numeric_limits<int>::max());
}

TEST(PaintFuzzRegression, DashedPointsOfAModelWithoutExtentMakeATransparentPictureInsteadOfExhaustingMemory)
{
    // Found by PaintFuzzer: dotted points, all at the origin. The picture's
    // scale was infinite, the pen width NaN, and Qt's dash stroker allocated
    // gigabytes for the first point.
    QLoggingCategory::setFilterRules(QStringLiteral("kez.visualization.painter.debug=false"));
    const QByteArray input = FuzzRegression("PaintFuzzer", "dashed-points-without-extent");
    ASSERT_EQ(input.at(0), char(0x04)); // reps from numbers, then CreateImage
    RepList reps;
    DecodeReps(input, reps);
    ASSERT_FALSE(reps.List().isEmpty());
    const KEZMathBoundingBox box = KEZVisRepFactory::CalculateRepesentationBoundingBox(reps.List());
    ASSERT_EQ(box.GetDeltaX(), 0.0);
    ASSERT_EQ(box.GetDeltaY(), 0.0);

    const QImage picture = KEZVisRepFactory::CreateImage(QSize(48, 32), reps.List(), Qt::white);
    EXPECT_EQ(picture.size(), QSize(48, 32));
    EXPECT_TRUE(IsTransparent(picture));
    QLoggingCategory::setFilterRules(QString());
}

TEST(PaintReps, DrawsNothingUnderATransformThatIsNotFiniteButWritesTheDebugLineOfEachPrimitive)
{
    MessageCapture capture;
    RepList reps;
    const KEZVisOptions dotted = Options(Qt::black, 0, KEZVisOptions::LineStyleDot, 2.0);
    reps.AddPrimitive(new KEZVisPointPrimitive(PointsOf({1, 1, 0})), dotted);
    reps.AddPolyline(PointsOf({0, 0, 0, 5, 5, 0}), KEZVisPolylinePrimitive::StructureSeparateSegments, dotted);
    reps.AddPolyline(PointsOf({0, 0, 0, 5, 0, 0, 5, 5, 0}), KEZVisPolylinePrimitive::StructureConnected, dotted);
    const double inf = std::numeric_limits<double>::infinity();
    for (const QTransform &transform : {QTransform(inf, 0, 0, -inf, 0, 0), QTransform(1, 0, 0, 1, inf, 0)}) {
        QImage image(48, 32, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setWorldTransform(transform);
        KEZVisRepFactory::PaintReps(KEZMathPlane(), &painter, reps.List());
        painter.end();
        EXPECT_TRUE(IsTransparent(image));
    }
    EXPECT_EQ(capture.Matching(QStringLiteral("kez.visualization.painter"),
                               QStringLiteral("  The painter brush color is: "))
                  .size(),
              6);
}
