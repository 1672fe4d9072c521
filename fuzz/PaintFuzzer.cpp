// Fuzzes the 2D painter and the picture export of KEZVisRepFactory: PaintReps
// and PaintRepsRecursively into a small QImage, CreateImage, and
// CreateSvgImage into a QBuffer with the box and view box that
// CalculateRepesentationBoundingBox and CalculateViewBox make, on reps decoded
// from any bytes.
//
// Input: one byte of layout, the numbers of the plane when bits 3 and 4 ask
// for them (see below), then the reps' bytes.
// - Bit 0 of the layout set: the reps come from the rep stream. One byte of
//   stream settings (see FuzzSupport.h) and one byte that picks the rep (its
//   value modulo 3: a graphics rep, a rep set, a rep set with extra options)
//   follow; the rest is the stream that the rep's Load() reads.
// - Bit 0 clear: the reps are built from numbers, one primitive each until the
//   bytes end. A primitive is a byte of kind (modulo 5: points, separate
//   segments, a connected polyline, a surface, a text), a byte of options
//   (low nibble the line style, high nibble the priority less 8), a byte of
//   count, then numbers: three per point for the first three kinds; for a
//   surface three per vertex, then a byte of triangle count and three bytes of
//   vertex index per triangle (taken modulo the vertex count); for a text the
//   count is that of its Latin-1 characters, which follow, then three numbers
//   of the anchor and a byte of anchor location.
//   A number is one byte: below 16 it picks an odd value (zero, NaN, the
//   infinities, 1e300, denormals, 2^31 ...), up to 127 it is the byte less 72,
//   and from 128 on the next eight bytes are a double in the machine's order.
// - Bit 1: every rep goes into a rep set with extra options, whose fill colour
//   reaches the closed polylines in PaintRepsRecursively and the SVG.
// - Bit 2: CreateImage too (a 48 by 32 picture, fitted to the reps' box).
// - Bits 3 and 4: the plane of PaintReps: the default one, one seen from the
//   side, one tilted, or one whose directions are two points of numbers right
//   after the layout byte (directions that make no plane leave the default).
//
// Checked: the images keep their size; the SVG, when anything was written,
// begins as an XML document.

#include "FuzzSupport.h"

#include "KEZVisOptions.h"
#include "KEZVisPointPrimitive.h"
#include "KEZVisPolylinePrimitive.h"
#include "KEZVisPrimitive.h"
#include "KEZVisRepExtraSet.h"
#include "KEZVisRepFactory.h"
#include "KEZVisRepGraphics.h"
#include "KEZVisRepSet.h"
#include "KEZVisSurfacePrimitive.h"
#include "KEZVisTextPrimitive.h"

#include <KEZMathBoundingBox.h>
#include <KEZMathPlane.h>
#include <KEZMathPoint.h>
#include <KEZMathSetOfPoints.h>
#include <KEZMathVector.h>
#include <KEZMathZeroMagnitudeVectorException.h>

#include <QBuffer>
#include <QColor>
#include <QImage>
#include <QList>
#include <QPainter>

#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <vector>

namespace {

class Reader
{
public:
    Reader(const std::uint8_t *data, std::size_t size)
        : m_data(data)
        , m_size(size)
    {
    }

    bool AtEnd() const { return m_offset >= m_size; }
    std::size_t Offset() const { return m_offset; }

    bool Byte(std::uint8_t &value)
    {
        if (m_offset + 1 > m_size)
            return false;
        value = m_data[m_offset++];
        return true;
    }

    bool Number(double &value)
    {
        static const double odd[16] = {
            0.0,
            -0.0,
            std::numeric_limits<double>::quiet_NaN(),
            std::numeric_limits<double>::infinity(),
            -std::numeric_limits<double>::infinity(),
            1e300,
            -1e300,
            std::numeric_limits<double>::denorm_min(),
            std::numeric_limits<double>::min(),
            std::numeric_limits<double>::max(),
            1e-300,
            2147483648.0,
            -2147483649.0,
            1073741824.0,
            0.5,
            1e15,
        };
        std::uint8_t byte = 0;
        if (!Byte(byte))
            return false;
        if (byte < 16) {
            value = odd[byte];
            return true;
        }
        if (byte < 128) {
            value = double(int(byte) - 72);
            return true;
        }
        if (m_offset + sizeof(double) > m_size)
            return false;
        std::memcpy(&value, m_data + m_offset, sizeof(double));
        m_offset += sizeof(double);
        return true;
    }

    bool Point(KEZMathPoint &point)
    {
        double x = 0.0;
        double y = 0.0;
        double z = 0.0;
        if (!Number(x) || !Number(y) || !Number(z))
            return false;
        point = KEZMathPoint(x, y, z);
        return true;
    }

private:
    const std::uint8_t *m_data;
    std::size_t m_size;
    std::size_t m_offset = 0;
};

KEZVisOptions OptionsFromByte(std::uint8_t byte)
{
    KEZVisOptions options;
    options.SetLineStyle(static_cast<KEZVisOptions::LineStyle>(byte & 15));
    options.SetPriority(int(byte >> 4) - 8);
    options.SetColor(QColor::fromRgb(0x20 * (byte & 7), 0x80, 0xff - byte, 0xc0));
    options.SetLineThickness(1.0 + (byte & 3));
    return options;
}

KEZVisPrimitive *DecodeSurface(Reader &reader, int vertexes)
{
    std::vector<double> coords;
    coords.reserve(size_t(vertexes) * 3);
    for (int i = 0; i < vertexes; ++i) {
        KEZMathPoint point;
        if (!reader.Point(point))
            return nullptr;
        coords.insert(coords.end(), {point.GetX(), point.GetY(), point.GetZ()});
    }
    std::uint8_t triangles = 0;
    if (!reader.Byte(triangles) || vertexes == 0)
        triangles = 0;
    std::vector<int> indexes;
    for (int i = 0; i < 3 * int(triangles); ++i) {
        std::uint8_t index = 0;
        if (!reader.Byte(index))
            return nullptr;
        indexes.push_back(int(index) % vertexes);
    }
    auto *ownedCoords = new double[coords.size() + 1];
    std::copy(coords.begin(), coords.end(), ownedCoords);
    auto *ownedIndexes = new int[indexes.size() + 1];
    std::copy(indexes.begin(), indexes.end(), ownedIndexes);
    return new KEZVisSurfacePrimitive(vertexes, ownedCoords, int(triangles), ownedIndexes, nullptr);
}

KEZVisPrimitive *DecodeText(Reader &reader, int length)
{
    QByteArray latin1;
    for (int i = 0; i < length; ++i) {
        std::uint8_t c = 0;
        if (!reader.Byte(c))
            return nullptr;
        latin1.append(char(c));
    }
    KEZMathPoint anchor;
    std::uint8_t location = 0;
    if (!reader.Point(anchor) || !reader.Byte(location))
        return nullptr;
    return new KEZVisTextPrimitive(QString::fromLatin1(latin1), anchor,
                                   static_cast<KEZVisTextPrimitive::AnchorLocation>(int(location) - 4),
                                   KEZVisTextPrimitive::ScalabilityScalable);
}

// One rep per primitive, until the bytes end or a primitive is cut short.
void DecodePrimitives(Reader &reader, std::vector<std::unique_ptr<KEZVisRep>> &reps)
{
    while (!reader.AtEnd()) {
        std::uint8_t kind = 0;
        std::uint8_t optionsByte = 0;
        std::uint8_t count = 0;
        if (!reader.Byte(kind) || !reader.Byte(optionsByte) || !reader.Byte(count))
            return;
        KEZVisPrimitive *primitive = nullptr;
        switch (kind % 5) {
        case 0:
        case 1:
        case 2: {
            KEZMathSetOfPoints points;
            for (int i = 0; i < count; ++i) {
                KEZMathPoint point;
                if (!reader.Point(point))
                    return;
                points.append(point);
            }
            if (kind % 5 == 0)
                primitive = new KEZVisPointPrimitive(points);
            else
                primitive = new KEZVisPolylinePrimitive(points, kind % 5 == 1
                                                                    ? KEZVisPolylinePrimitive::StructureSeparateSegments
                                                                    : KEZVisPolylinePrimitive::StructureConnected);
            break;
        }
        case 3:
            primitive = DecodeSurface(reader, count);
            break;
        default:
            primitive = DecodeText(reader, count);
            break;
        }
        if (!primitive)
            return;
        reps.push_back(std::make_unique<KEZVisRepGraphics>(QList<const KEZVisPrimitive *>{primitive},
                                                           OptionsFromByte(optionsByte)));
    }
}

std::unique_ptr<KEZVisRep> LoadRep(const std::uint8_t *data, std::size_t size)
{
    if (size < 2)
        return nullptr;
    const KEZFuzz::StreamSettings settings = KEZFuzz::StreamSettings::FromByte(data[0]);
    std::unique_ptr<KEZVisRep> rep;
    switch (data[1] % 3) {
    case 0:
        rep = std::make_unique<KEZVisRepGraphics>();
        break;
    case 1:
        rep = std::make_unique<KEZVisRepSet>(QList<const KEZVisRep *>{});
        break;
    default:
        rep = std::make_unique<KEZVisRepExtraSet>(QList<const KEZVisRep *>{}, KEZVisOptions());
        break;
    }
    QDataStream in(KEZFuzz::Rest(data, size, 2));
    settings.ApplyTo(in);
    rep->Load(in);
    return rep;
}

KEZMathPlane PlaneFromBits(int bits, Reader &reader)
{
    KEZMathPlane plane;
    switch (bits) {
    case 0:
        break;
    case 1:
        plane.SetDirections(KEZMathVector(0, 1, 0), KEZMathVector(0, 0, 1));
        break;
    case 2:
        plane.SetNormal(KEZMathVector(1, 1, 1));
        break;
    default: {
        KEZMathPoint x;
        KEZMathPoint y;
        if (!reader.Point(x) || !reader.Point(y))
            break;
        try {
            plane.SetDirections(KEZMathVector(x.GetX(), x.GetY(), x.GetZ()),
                                KEZMathVector(y.GetX(), y.GetY(), y.GetZ()));
        } catch (const KEZMathZeroMagnitudeVectorException &) {
            // Directions without magnitude, or y along x, make no plane; the
            // plane stays the default one.
        }
        break;
    }
    }
    return plane;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    KEZFuzz::SetUpApplication();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < 1)
        return 0;
    const std::uint8_t layout = data[0];
    Reader reader(data + 1, size - 1);
    const KEZMathPlane plane = PlaneFromBits((layout >> 3) & 3, reader);

    std::vector<std::unique_ptr<KEZVisRep>> reps;
    if (layout & 1) {
        const std::size_t skip = 1 + reader.Offset();
        if (std::unique_ptr<KEZVisRep> rep = LoadRep(data + skip, size - skip))
            reps.push_back(std::move(rep));
    } else {
        DecodePrimitives(reader, reps);
    }

    QList<const KEZVisRep *> list;
    std::unique_ptr<KEZVisRepExtraSet> extraSet;
    if (layout & 2) {
        QList<const KEZVisRep *> children;
        for (std::unique_ptr<KEZVisRep> &rep : reps)
            children.append(rep.release());
        reps.clear();
        KEZVisOptions fill;
        fill.SetColor(QColor(10, 200, 30, 255));
        extraSet = std::make_unique<KEZVisRepExtraSet>(children, fill);
        list.append(extraSet.get());
    } else {
        for (const std::unique_ptr<KEZVisRep> &rep : reps)
            list.append(rep.get());
    }
    list.append(nullptr); // null reps are skipped

    // The painter on a small picture, as it stands and with the fitting
    // transform turned over, where text goes through a pixmap.
    QImage image(64, 64, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        KEZVisRepFactory::PaintReps(plane, &painter, list);
        painter.setTransform(QTransform::fromScale(2.0, -2.0) * QTransform::fromTranslate(32.0, 32.0));
        painter.setBrush(QColor(Qt::red));
        KEZVisRepFactory::PaintRepsRecursively(plane, &painter, list);
    }
    if (image.size() != QSize(64, 64))
        __builtin_trap();

    const KEZMathBoundingBox box = KEZVisRepFactory::CalculateRepesentationBoundingBox(list);
    const QRect viewBox = KEZVisRepFactory::CalculateViewBox(box);

    if (layout & 4) {
        const QImage picture = KEZVisRepFactory::CreateImage(QSize(48, 32), list, QColor(Qt::white));
        if (picture.isNull() || picture.size() != QSize(48, 32))
            __builtin_trap();
    }

    QBuffer svg;
    svg.open(QIODevice::WriteOnly);
    KEZVisRepFactory::CreateSvgImage(list, box, viewBox, &svg);
    if (!svg.data().isEmpty() && !svg.data().startsWith("<?xml"))
        __builtin_trap();
    return 0;
}
