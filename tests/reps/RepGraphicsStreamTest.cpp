// Tests of the rep stream: KEZVisRepGraphics::Save and Load, byte for byte,
// and Load on truncated and corrupted streams.

#include "KEZVisRepGraphics.h"

#include "KEZVisPointPrimitive.h"
#include "KEZVisPolylinePrimitive.h"
#include "KEZVisSurfacePrimitive.h"

#include "KEZTestHelpers.h"
#include "StreamBytes.h"
#include "TestPrimitives.h"

#include <QBuffer>
#include <QDataStream>

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

using namespace KEZTest;

namespace {

// The stream form of options written out field by field: colour, line style
// as qint32, thickness, point symbol as qint32, font, depth as one byte,
// priority as qint32.
void appendOptions(StreamBytes &bytes, const QColor &color, qint32 lineStyle, double thickness, qint32 pointSymbol,
                   const QFont &font, bool depth, qint32 priority,
                   QDataStream::ByteOrder order = QDataStream::BigEndian)
{
    bytes.Raw(StreamedAlone(color, order))
        .Int32(lineStyle)
        .Double(thickness)
        .Int32(pointSymbol)
        .Raw(StreamedAlone(font, order))
        .UInt8(depth ? 1 : 0)
        .Int32(priority);
}

KEZVisOptions sampleOptions()
{
    KEZVisOptions options;
    options.SetColor(QColor(200, 100, 50, 255));
    options.SetLineStyle(KEZVisOptions::LineStyleDashDot);
    options.SetLineThickness(2.5);
    options.SetPointSymbol(KEZVisOptions::PointSymbolMarker);
    QFont font(QStringLiteral("Sans"), 11);
    font.setBold(true);
    options.SetFont(font);
    options.SetDepthEnabled(false);
    options.SetPriority(7);
    return options;
}

void appendSampleOptions(StreamBytes &bytes, QDataStream::ByteOrder order = QDataStream::BigEndian)
{
    QFont font(QStringLiteral("Sans"), 11);
    font.setBold(true);
    appendOptions(bytes, QColor(200, 100, 50, 255), 3, 2.5, 1, font, false, 7, order);
}

QByteArray saved(const KEZVisRep &rep, QDataStream::ByteOrder order = QDataStream::BigEndian)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setByteOrder(order);
    rep.Save(out);
    EXPECT_EQ(out.status(), QDataStream::Ok);
    return bytes;
}

struct Mesh
{
    std::vector<double> vertices;
    std::vector<int> triangles;
};

// Two meshes: a tetrahedron and a fan of four triangles round a centre.
const Mesh Tetrahedron = {{0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1}, {0, 2, 1, 0, 1, 3, 0, 3, 2, 1, 2, 3}};
const Mesh Fan = {{0, 0, 5, 1, 0, 5, 0, 1, 5, -1, 0, 5, 0, -1, 5.5}, {0, 1, 2, 0, 2, 3, 0, 3, 4, 0, 4, 1}};

KEZVisSurfacePrimitive *newSurface(const Mesh &mesh)
{
    return new KEZVisSurfacePrimitive(int(mesh.vertices.size() / 3), NewArray(mesh.vertices),
                                      int(mesh.triangles.size() / 3), NewArray(mesh.triangles), nullptr);
}

void appendSurface(StreamBytes &bytes, const Mesh &mesh)
{
    bytes.String(QStringLiteral("KEZVisSurfacePrimitive"));
    bytes.Int32(qint32(mesh.vertices.size() / 3)).Int32(qint32(mesh.triangles.size() / 3));
    for (double value : mesh.vertices)
        bytes.Double(value);
    for (int index : mesh.triangles)
        bytes.Int32(index);
}

QByteArray surfacesRepBytes()
{
    StreamBytes bytes;
    bytes.Int32(2).Int32(2);
    appendSampleOptions(bytes);
    appendOptions(bytes, QColor(), 0, 1.0, 0, QFont(), true, 1);
    appendSurface(bytes, Tetrahedron);
    appendSurface(bytes, Fan);
    return bytes.Bytes();
}

std::unique_ptr<KEZVisRepGraphics> newSurfacesRep()
{
    return std::make_unique<KEZVisRepGraphics>(QList<const KEZVisPrimitive *>{newSurface(Tetrahedron), newSurface(Fan)},
                                               QList<KEZVisOptions>{sampleOptions(), KEZVisOptions()});
}

void expectMesh(const KEZVisPrimitive *primitive, const Mesh &mesh)
{
    const auto *surface = qobject_cast<const KEZVisSurfacePrimitive *>(primitive);
    ASSERT_NE(surface, nullptr);
    EXPECT_EQ(surface->GetNumVertexes(), int(mesh.vertices.size() / 3));
    EXPECT_EQ(surface->GetNumTriangles(), int(mesh.triangles.size() / 3));
    EXPECT_EQ(surface->GetVertexCoordinatesAsDouble(), QList<double>(mesh.vertices.begin(), mesh.vertices.end()));
    EXPECT_EQ(surface->GetTriangleVertexIndexes(), QList<long>(mesh.triangles.begin(), mesh.triangles.end()));
}

// Whatever the stream held, the loaded rep answers primitives that are
// consistent in themselves.
void expectConsistent(const KEZVisRepGraphics &rep)
{
    const PrimitiveLists lists = AskPrimitives(rep);
    EXPECT_EQ(lists.primitives.size(), lists.options.size());
    for (const KEZVisPrimitive *primitive : lists.primitives) {
        if (const auto *surface = qobject_cast<const KEZVisSurfacePrimitive *>(primitive)) {
            EXPECT_EQ(surface->GetVertexCoordinatesAsDouble().size(), 3 * qsizetype(surface->GetNumVertexes()));
            for (long index : surface->GetTriangleVertexIndexes()) {
                EXPECT_GE(index, 0);
                EXPECT_LT(index, surface->GetNumVertexes());
            }
        } else if (const auto *polyline = qobject_cast<const KEZVisPolylinePrimitive *>(primitive)) {
            EXPECT_EQ(polyline->GetCoordsAsDouble().size(), 3 * size_t(polyline->GetNumPoints()));
        } else {
            ADD_FAILURE() << "Load made a primitive of another kind";
        }
    }
}

} // namespace

// --- Save ---------------------------------------------------------------------

TEST(RepGraphicsStream, SaveWritesExactBytesForAPolylineASurfaceAndAPoint)
{
    auto *polyline = new KEZVisPolylinePrimitive(NewArray<double>({1.0, 2.0, 3.0, 4.0, 5.0, 6.5}), 2,
                                                 KEZVisPolylinePrimitive::StructureSeparateSegments);
    auto *surface = new KEZVisSurfacePrimitive(3, NewArray<double>({0, 0, 0, 1, 0, 0, 0, 1, 0}), 1,
                                               NewArray<int>({0, 1, 2}), nullptr);
    KEZVisRepGraphics rep({polyline, surface, newPoint(7, 8, 9)}, sampleOptions());

    StreamBytes expected;
    expected.Int32(3).Int32(1);
    appendSampleOptions(expected);
    expected.String(QStringLiteral("KEZVisPolylinePrimitive"))
        .Int32(0)
        .Int64(2)
        .Double(1.0).Double(2.0).Double(3.0).Double(4.0).Double(5.0).Double(6.5);
    expected.String(QStringLiteral("KEZVisSurfacePrimitive"))
        .Int32(3)
        .Int32(1)
        .Double(0).Double(0).Double(0).Double(1).Double(0).Double(0).Double(0).Double(1).Double(0)
        .Int32(0).Int32(1).Int32(2);
    expected.CString("KEZVisPrimitive");
    EXPECT_EQ(saved(rep), expected.Bytes());
}

TEST(RepGraphicsStream, SaveFollowsALittleEndianStream)
{
    KEZVisRepGraphics rep({new KEZVisSurfacePrimitive(1, NewArray<double>({1.5, -2.0, 3.0}), 0, nullptr, nullptr)},
                          sampleOptions());
    StreamBytes expected(StreamBytes::LittleEndian);
    expected.Int32(1).Int32(1);
    appendSampleOptions(expected, QDataStream::LittleEndian);
    expected.String(QStringLiteral("KEZVisSurfacePrimitive")).Int32(1).Int32(0).Double(1.5).Double(-2.0).Double(3.0);
    EXPECT_EQ(saved(rep, QDataStream::LittleEndian), expected.Bytes());
}

TEST(RepGraphicsStream, PointPrimitiveIsTaggedWithTheNarrowFormAndNothingAfter)
{
    KEZVisRepGraphics rep({newPoint(1, 2, 3), nullptr}, QList<KEZVisOptions>{});
    const QByteArray expected =
        StreamBytes().Int32(2).Int32(0).CString("KEZVisPrimitive").CString("KEZVisPrimitive").Bytes();
    EXPECT_EQ(saved(rep), expected);
    // The narrow form: length 16 with the closing NUL, then the bytes.
    EXPECT_EQ(expected.mid(8, 4), QByteArray("\x00\x00\x00\x10", 4));
    EXPECT_EQ(expected.mid(12, 16), QByteArray("KEZVisPrimitive\0", 16));
}

TEST(RepGraphicsStream, SubclassOfSurfaceIsWrittenUnderTheSurfaceTagWithoutGeometry)
{
    class Shape : public KEZVisSurfacePrimitive
    {
    public:
        int GetNumVertexes() const override { return 1; }
        QList<double> GetVertexCoordinatesAsDouble() const override { return {1.0, 2.0, 3.0}; }
    };
    KEZVisRepGraphics rep({new Shape}, QList<KEZVisOptions>{});
    EXPECT_EQ(saved(rep),
              StreamBytes().Int32(1).Int32(0).String(QStringLiteral("KEZVisSurfacePrimitive")).Int32(0).Int32(0).Bytes());
}

TEST(RepGraphicsStream, EmptyRepWritesTwoZeroCounts)
{
    KEZVisRepGraphics rep;
    EXPECT_EQ(saved(rep), StreamBytes().Int32(0).Int32(0).Bytes());
}

// --- Load ---------------------------------------------------------------------

TEST(RepGraphicsStream, SaveOfSurfacesWritesTheExpectedBytes)
{
    EXPECT_EQ(saved(*newSurfacesRep()), surfacesRepBytes());
}

TEST(RepGraphicsStream, LoadOfARepOfSurfacesRestoresEveryVertexAndIndex)
{
    const QByteArray bytes = saved(*newSurfacesRep());
    QDataStream in(bytes);
    KEZVisRepGraphics loaded;
    loaded.Load(in);
    EXPECT_EQ(in.status(), QDataStream::Ok);
    EXPECT_TRUE(in.atEnd());
    const PrimitiveLists lists = AskPrimitives(loaded);
    ASSERT_EQ(lists.primitives.size(), 2);
    expectMesh(lists.primitives[0], Tetrahedron);
    expectMesh(lists.primitives[1], Fan);
    ASSERT_EQ(lists.options.size(), 2);
    EXPECT_TRUE(lists.options[0] == sampleOptions());
    EXPECT_TRUE(lists.options[1] == KEZVisOptions());
    EXPECT_EQ(lists.options[0].GetColor(), QColor(200, 100, 50));
    EXPECT_EQ(lists.options[0].GetLineStyle(), KEZVisOptions::LineStyleDashDot);
    EXPECT_EQ(lists.options[0].GetPriority(), 7);
    EXPECT_FALSE(lists.options[0].IsDepthEnabled());
    EXPECT_EQ(loaded.GetBoundingBox(), KEZMathBoundingBox(KEZMathPoint(-1, -1, 0), KEZMathPoint(1, 1, 5.5)));
}

TEST(RepGraphicsStream, LoadAddsToThePrimitivesAndReplacesTheOptions)
{
    KEZVisPointPrimitive *existing = newPoint(9, 9, 9);
    KEZVisRepGraphics rep({existing}, QList<KEZVisOptions>{optionsWithPriority(3), optionsWithPriority(4),
                                                           optionsWithPriority(5)});
    const QByteArray bytes = surfacesRepBytes();
    QDataStream in(bytes);
    rep.Load(in);
    EXPECT_EQ(in.status(), QDataStream::Ok);
    const PrimitiveLists lists = AskPrimitives(rep);
    ASSERT_EQ(lists.primitives.size(), 3);
    EXPECT_EQ(lists.primitives[0], existing);
    expectMesh(lists.primitives[1], Tetrahedron);
    expectMesh(lists.primitives[2], Fan);
    EXPECT_EQ(lists.options[0].GetPriority(), 7);
    EXPECT_EQ(lists.options[1].GetPriority(), 1);
    EXPECT_EQ(lists.options[2].GetPriority(), 7);
}

TEST(RepGraphicsStream, LoadedPrimitiveIsThePlainClassOfItsTag)
{
    class Shape : public KEZVisSurfacePrimitive
    {
    public:
        int GetNumVertexes() const override { return 1; }
    };
    KEZVisRepGraphics rep({new Shape}, KEZVisOptions());
    const QByteArray bytes = saved(rep);
    QDataStream in(bytes);
    KEZVisRepGraphics loaded;
    loaded.Load(in);
    const PrimitiveLists lists = AskPrimitives(loaded);
    ASSERT_EQ(lists.primitives.size(), 1);
    EXPECT_STREQ(lists.primitives[0]->metaObject()->className(), "KEZVisSurfacePrimitive");
    EXPECT_EQ(qobject_cast<const KEZVisSurfacePrimitive *>(lists.primitives[0])->GetNumVertexes(), 0);
}

TEST(RepGraphicsStream, PolylineComesBackWithNoPointsAndTheStreamOutOfStep)
{
    auto *polyline = new KEZVisPolylinePrimitive(NewArray<double>({1.0, 2.0, 3.0, 4.0, 5.0, 6.0}), 2,
                                                 KEZVisPolylinePrimitive::StructureConnected);
    KEZVisRepGraphics rep({polyline, newSurface(Tetrahedron)}, KEZVisOptions());
    const QByteArray bytes = saved(rep);
    QDataStream in(bytes);
    KEZVisRepGraphics loaded;
    loaded.Load(in);
    const PrimitiveLists lists = AskPrimitives(loaded);
    // The polyline read the upper half of its count: no points. The lower
    // half (2) was then taken as the byte length of the next tag, which thus
    // did not match, and the surface was lost.
    ASSERT_EQ(lists.primitives.size(), 1);
    const auto *read = qobject_cast<const KEZVisPolylinePrimitive *>(lists.primitives[0]);
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->GetNumPoints(), 0);
    EXPECT_EQ(in.status(), QDataStream::Ok);
    EXPECT_FALSE(in.atEnd());
}

TEST(RepGraphicsStream, UnknownTagIsSkippedWithNothingMoreRead)
{
    StreamBytes bytes;
    bytes.Int32(3).Int32(0).String(QStringLiteral("KEZVisMystery"));
    appendSurface(bytes, Fan);
    bytes.String(QStringLiteral("kezvissurfaceprimitive"));
    const QByteArray data = bytes.Bytes();
    QDataStream in(data);
    KEZVisRepGraphics loaded;
    loaded.Load(in);
    EXPECT_EQ(in.status(), QDataStream::Ok);
    EXPECT_TRUE(in.atEnd());
    const PrimitiveLists lists = AskPrimitives(loaded);
    // The mystery tag is skipped and the next tag read right after it; the
    // tags are compared case-sensitively.
    ASSERT_EQ(lists.primitives.size(), 1);
    expectMesh(lists.primitives[0], Fan);
}

TEST(RepGraphicsStream, NarrowTagOfAPointIsSkippedOnLoadAndTheNextPrimitiveRead)
{
    KEZVisRepGraphics rep({newPoint(1, 2, 3), newSurface(Tetrahedron)}, KEZVisOptions());
    const QByteArray bytes = saved(rep);
    QDataStream in(bytes);
    KEZVisRepGraphics loaded;
    loaded.Load(in);
    EXPECT_EQ(in.status(), QDataStream::Ok);
    EXPECT_TRUE(in.atEnd());
    // The narrow tag reads as a QString of 8 characters that match nothing;
    // the point does not come back.
    const PrimitiveLists lists = AskPrimitives(loaded);
    ASSERT_EQ(lists.primitives.size(), 1);
    expectMesh(lists.primitives[0], Tetrahedron);
}

TEST(RepGraphicsStream, FailingOptionsEntryLeavesTheOptionsEmpty)
{
    StreamBytes bytes;
    bytes.Int32(1).Int32(2);
    appendSampleOptions(bytes);
    const QByteArray full = bytes.Bytes();
    const QByteArray data = full + QByteArray("\x00\x01", 2); // the second entry breaks off
    QDataStream in(data);
    KEZVisRepGraphics loaded({newPoint(0, 0, 0)}, optionsWithPriority(5));
    loaded.Load(in);
    EXPECT_EQ(in.status(), QDataStream::ReadPastEnd);
    const PrimitiveLists lists = AskPrimitives(loaded);
    ASSERT_EQ(lists.primitives.size(), 1);
    // No options left: the one primitive is answered with default options.
    EXPECT_TRUE(lists.options[0] == KEZVisOptions());
}

TEST(RepGraphicsStream, NegativePrimitiveCountIsCorruptAndTheOptionsAreStillRead)
{
    StreamBytes bytes;
    bytes.Int32(-1).Int32(1);
    appendSampleOptions(bytes);
    const QByteArray data = bytes.Bytes();
    QDataStream in(data);
    KEZVisRepGraphics loaded;
    loaded.Load(in);
    EXPECT_EQ(in.status(), QDataStream::ReadCorruptData);
    EXPECT_TRUE(in.atEnd());
    EXPECT_TRUE(AskPrimitives(loaded).primitives.isEmpty());
    // The options came in: saving the rep writes them again.
    StreamBytes expected;
    expected.Int32(0).Int32(1);
    appendSampleOptions(expected);
    EXPECT_EQ(saved(loaded), expected.Bytes());
}

TEST(RepGraphicsStream, NegativeOptionsCountIsCorruptAndLeavesNoOptions)
{
    const QByteArray data = StreamBytes().Int32(1).Int32(-7).Bytes();
    QDataStream in(data);
    KEZVisRepGraphics loaded({newPoint(0, 0, 0)}, optionsWithPriority(5));
    loaded.Load(in);
    EXPECT_EQ(in.status(), QDataStream::ReadCorruptData);
    const PrimitiveLists lists = AskPrimitives(loaded);
    ASSERT_EQ(lists.primitives.size(), 1);
    EXPECT_TRUE(lists.options[0] == KEZVisOptions());
}

TEST(RepGraphicsStream, HugePrimitiveCountOnAShortStreamEndsAtOnce)
{
    StreamBytes bytes;
    bytes.Int32(0x7fffffff).Int32(0);
    appendSurface(bytes, Fan);
    const QByteArray data = bytes.Bytes();
    QDataStream in(data);
    KEZVisRepGraphics loaded;
    loaded.Load(in);
    EXPECT_EQ(in.status(), QDataStream::ReadPastEnd);
    const PrimitiveLists lists = AskPrimitives(loaded);
    ASSERT_EQ(lists.primitives.size(), 1);
    expectMesh(lists.primitives[0], Fan);
}

TEST(RepGraphicsStream, HugeOptionsCountOnAShortStreamFailsWithoutReservingForIt)
{
    StreamBytes bytes;
    bytes.Int32(0).Int32(0x7fffffff);
    appendSampleOptions(bytes);
    const QByteArray data = bytes.Bytes();
    QDataStream in(data);
    KEZVisRepGraphics loaded;
    loaded.Load(in);
    EXPECT_EQ(in.status(), QDataStream::ReadPastEnd);
    EXPECT_TRUE(AskPrimitives(loaded).options.isEmpty());
}

TEST(RepGraphicsStream, FontWithMoreFamiliesThanTheDataCouldHoldEndsTheOptions)
{
    // From version Qt_5_13 on a font ends with its list of families; for a
    // font of the one family "A" that is the count 1 and the string "A".
    const QFont font(QStringLiteral("A"));
    const QByteArray fontBytes = StreamedAlone(font);
    ASSERT_EQ(fontBytes.right(10), StreamBytes().UInt32(1).String(QStringLiteral("A")).Bytes());

    for (quint32 families : {0x7fffffffu, 0xfffffffeu, 0xffffffffu, 1000u}) {
        QByteArray corruptFont = fontBytes;
        const QByteArray count = StreamBytes().UInt32(families).Bytes();
        corruptFont.replace(corruptFont.size() - 10, 4, count);
        StreamBytes bytes;
        bytes.Int32(1).Int32(1);
        bytes.Raw(StreamedAlone(QColor(Qt::red))).Int32(0).Double(1.0).Int32(0).Raw(corruptFont).UInt8(1).Int32(1);
        appendSurface(bytes, Fan);
        const QByteArray data = bytes.Bytes();
        QDataStream in(data);
        KEZVisRepGraphics loaded;
        // Reserving for the announced families would ask for gigabytes; the
        // sanitizer build fails on any such request.
        loaded.Load(in);
        // The strings taken for families run into the data after the font,
        // whose lengths end the reading either at the data's end or as
        // corrupt, longer than what is left.
        EXPECT_TRUE(in.status() == QDataStream::ReadPastEnd || in.status() == QDataStream::ReadCorruptData)
            << families << " " << in.status();
        EXPECT_TRUE(AskPrimitives(loaded).primitives.isEmpty()) << families;
    }
}

TEST(RepGraphicsStream, RepComesBackOnStreamsOfEveryVersionAndPrecision)
{
    KEZVisOptions options = sampleOptions();
    QFont font(QStringLiteral("Some Family Name"), 13);
    font.setFamilies({QStringLiteral("Some Family Name"), QStringLiteral("Fallback"), QStringLiteral("Third")});
    font.setStyleName(QStringLiteral("Condensed Oblique"));
    options.SetFont(font);
    const KEZVisRepGraphics rep({newSurface(Tetrahedron)}, options);
    for (int version : {int(QDataStream::Qt_4_0), int(QDataStream::Qt_5_0), int(QDataStream::Qt_5_12),
                        int(QDataStream::Qt_5_13), int(QDataStream::Qt_5_15), int(QDataStream::Qt_6_0),
                        int(QDataStream::Qt_DefaultCompiledVersion)}) {
        for (auto precision : {QDataStream::DoublePrecision, QDataStream::SinglePrecision}) {
            QByteArray bytes;
            {
                QDataStream out(&bytes, QIODevice::WriteOnly);
                out.setVersion(version);
                out.setFloatingPointPrecision(precision);
                rep.Save(out);
            }
            QDataStream in(bytes);
            in.setVersion(version);
            in.setFloatingPointPrecision(precision);
            KEZVisRepGraphics loaded;
            loaded.Load(in);
            EXPECT_EQ(in.status(), QDataStream::Ok) << version << " " << precision;
            EXPECT_TRUE(in.atEnd()) << version << " " << precision;
            const PrimitiveLists lists = AskPrimitives(loaded);
            ASSERT_EQ(lists.primitives.size(), 1);
            expectMesh(lists.primitives[0], Tetrahedron);
            EXPECT_EQ(lists.options[0].GetFont().family(), QStringLiteral("Some Family Name"));
            EXPECT_EQ(lists.options[0].GetPriority(), 7);
        }
    }
}

TEST(RepGraphicsStream, EarlierFailureStaysAndNoPrimitiveIsRead)
{
    const QByteArray data = surfacesRepBytes();
    QDataStream in(data);
    in.setStatus(QDataStream::ReadCorruptData);
    KEZVisRepGraphics loaded({newPoint(0, 0, 0)}, optionsWithPriority(5));
    loaded.Load(in);
    // The options are judged on their own, as Qt's list readers do, and come
    // in; the earlier failure is set again, so no primitive is read.
    EXPECT_EQ(in.status(), QDataStream::ReadCorruptData);
    const PrimitiveLists lists = AskPrimitives(loaded);
    ASSERT_EQ(lists.primitives.size(), 1);
    EXPECT_EQ(lists.options[0].GetPriority(), 7);
}

TEST(RepGraphicsStream, LoadInADeviceTransactionCanBeRetriedOnceTheRestHasArrived)
{
    const QByteArray full = surfacesRepBytes();
    QBuffer buffer;
    buffer.setData(full.left(full.size() / 2));
    buffer.open(QIODevice::ReadOnly);
    QDataStream in(&buffer);

    in.startTransaction();
    {
        KEZVisRepGraphics attempt;
        attempt.Load(in);
    }
    EXPECT_FALSE(in.commitTransaction());
    EXPECT_EQ(buffer.pos(), 0);

    buffer.buffer().append(full.mid(full.size() / 2));
    in.startTransaction();
    KEZVisRepGraphics loaded;
    loaded.Load(in);
    EXPECT_TRUE(in.commitTransaction());
    const PrimitiveLists lists = AskPrimitives(loaded);
    ASSERT_EQ(lists.primitives.size(), 2);
    expectMesh(lists.primitives[0], Tetrahedron);
    expectMesh(lists.primitives[1], Fan);
}

TEST(RepGraphicsStream, LoadSurvivesEveryTruncation)
{
    StreamBytes bytes;
    bytes.Int32(3).Int32(2);
    appendSampleOptions(bytes);
    appendOptions(bytes, QColor(), 0, 1.0, 0, QFont(), true, 1);
    appendSurface(bytes, Tetrahedron);
    bytes.String(QStringLiteral("KEZVisPolylinePrimitive")).Int32(1).Int32(2);
    for (double value : {1.0, 2.0, 3.0, 4.0, 5.0, 6.0})
        bytes.Double(value);
    appendSurface(bytes, Fan);
    const QByteArray valid = bytes.Bytes();

    for (qsizetype cut = 0; cut < valid.size(); ++cut) {
        QDataStream in(valid.left(cut));
        KEZVisRepGraphics loaded;
        loaded.Load(in);
        EXPECT_NE(in.status(), QDataStream::Ok) << "cut at " << cut;
        expectConsistent(loaded);
    }
    QDataStream in(valid);
    KEZVisRepGraphics loaded;
    loaded.Load(in);
    EXPECT_EQ(in.status(), QDataStream::Ok);
    const PrimitiveLists lists = AskPrimitives(loaded);
    ASSERT_EQ(lists.primitives.size(), 3);
    expectMesh(lists.primitives[0], Tetrahedron);
    EXPECT_EQ(qobject_cast<const KEZVisPolylinePrimitive *>(lists.primitives[1])->GetNumPoints(), 2);
    expectMesh(lists.primitives[2], Fan);
}

TEST(RepGraphicsStream, LoadSurvivesFlippedBytes)
{
    const QByteArray valid = surfacesRepBytes();
    for (qsizetype position = 0; position < valid.size(); ++position) {
        for (char mask : {char(0x01), char(0x80), char(0xff)}) {
            QByteArray corrupt = valid;
            corrupt[position] = char(corrupt[position] ^ mask);
            QDataStream in(corrupt);
            KEZVisRepGraphics loaded;
            loaded.Load(in);
            expectConsistent(loaded);
        }
    }
}

TEST(RepGraphicsStream, LoadSurvivesRandomBytes)
{
    std::mt19937 generator(7031);
    std::uniform_int_distribution<int> byte(0, 255);
    std::uniform_int_distribution<int> length(0, 400);
    const QByteArray valid = surfacesRepBytes();
    for (int round = 0; round < 1000; ++round) {
        QByteArray data(length(generator), Qt::Uninitialized);
        for (char &c : data)
            c = char(byte(generator));
        // Every other round keeps a valid beginning, so that the reader gets
        // deep into the stream before the noise starts.
        if (round % 2 == 1)
            data = valid.left(qsizetype(byte(generator)) * valid.size() / 256) + data;
        QDataStream in(data);
        KEZVisRepGraphics loaded;
        loaded.Load(in);
        expectConsistent(loaded);
    }
}
