// Tests of KEZVisSurfacePrimitive: meshes from arrays and from a surface, the
// normal rule, the liveness test of the surface, and the stream form.

#include "KEZVisSurfacePrimitive.h"

#include "KEZVisOptions.h"

#include "KEZGeoSurface.h"
#include "KEZSysException.h"
#include "KEZMathBoundingBox.h"
#include "KEZMathSetOfPoints.h"

#include "StreamBytes.h"

#include <QBuffer>
#include <QDataStream>
#include <QMetaType>
#include <QPointer>
#include <QVariant>

#include "KEZTestHelpers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <optional>
#include <random>
#include <vector>

using namespace KEZTest;

namespace {

// A square in the plane z = 1 from two triangles, and a third, tilted triangle.
const std::vector<double> MeshVertices = {0.0, 0.0, 1.0, 2.0, 0.0, 1.0, 2.0, 2.0, 1.0, 0.0, 2.0, 1.0, 1.0, 1.0, 3.0};
const std::vector<int> MeshTriangles = {0, 1, 2, 0, 2, 3, 0, 1, 4};

KEZMathSetOfPoints meshPoints()
{
    KEZMathSetOfPoints points;
    for (size_t i = 0; i < MeshVertices.size(); i += 3)
        points.append(KEZMathPoint(MeshVertices[i], MeshVertices[i + 1], MeshVertices[i + 2]));
    return points;
}

KEZVisSurfacePrimitive *newMeshPrimitive(double *normals = nullptr)
{
    return new KEZVisSurfacePrimitive(5, NewArray(MeshVertices), 3, NewArray(MeshTriangles), normals);
}

// The normal of a triangle by the rule (pc - pa) x (pb - pa), normalised,
// written out component by component.
std::vector<double> expectedNormal(const std::vector<double> &v, int a, int b, int c)
{
    const double ux = v[3 * c] - v[3 * a], uy = v[3 * c + 1] - v[3 * a + 1], uz = v[3 * c + 2] - v[3 * a + 2];
    const double wx = v[3 * b] - v[3 * a], wy = v[3 * b + 1] - v[3 * a + 1], wz = v[3 * b + 2] - v[3 * a + 2];
    const double nx = uy * wz - uz * wy, ny = uz * wx - ux * wz, nz = ux * wy - uy * wx;
    const double length = std::sqrt(nx * nx + ny * ny + nz * nz);
    return {nx / length, ny / length, nz / length};
}

void expectNear(const QList<double> &actual, const std::vector<double> &expected)
{
    ASSERT_EQ(size_t(actual.size()), expected.size());
    for (size_t i = 0; i < expected.size(); ++i)
        EXPECT_NEAR(actual[qsizetype(i)], expected[i], 1e-12) << "value " << i;
}

QByteArray meshStreamBytes()
{
    StreamBytes bytes;
    bytes.Int32(5).Int32(3);
    for (double value : MeshVertices)
        bytes.Double(value);
    for (int index : MeshTriangles)
        bytes.Int32(index);
    return bytes.Bytes();
}

} // namespace

TEST(SurfacePrimitive, EmptyPrimitiveHasNoVerticesNoTrianglesEmptyListsAndTheDefaultBox)
{
    KEZVisSurfacePrimitive primitive;
    EXPECT_EQ(primitive.GetNumVertexes(), 0);
    EXPECT_EQ(primitive.GetNumTriangles(), 0);
    EXPECT_TRUE(primitive.GetVertexCoordinatesAsDouble().isEmpty());
    EXPECT_TRUE(primitive.GetVertexCoordinatesAsFloat().isEmpty());
    EXPECT_TRUE(primitive.GetTriangleVertexIndexes().isEmpty());
    EXPECT_TRUE(primitive.GetTriangleNormalCoordsAsDouble().isEmpty());
    EXPECT_TRUE(primitive.GetTriangleNormalCoordsAsFloat().isEmpty());
    EXPECT_TRUE(primitive.GetVertexNormalCoordsAsDouble().isEmpty());
    EXPECT_EQ(primitive.GetBoundingBox(KEZVisOptions()), KEZMathBoundingBox());
}

TEST(SurfacePrimitive, NullNormalArrayGivesTheNormalAgainstTheRightHandedSense)
{
    KEZVisSurfacePrimitive primitive(3, NewArray<double>({0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0, 0.0}), 1,
                                     NewArray<int>({0, 1, 2}), nullptr);
    const QList<double> normal = primitive.GetTriangleNormalCoordsAsDouble();
    ASSERT_EQ(normal.size(), 3);
    EXPECT_EQ(normal[0], 0.0);
    EXPECT_EQ(normal[1], 0.0);
    EXPECT_EQ(normal[2], -1.0);
    const QList<float> floats = primitive.GetTriangleNormalCoordsAsFloat();
    EXPECT_EQ(floats, (QList<float>{0.0f, 0.0f, -1.0f}));
}

TEST(SurfacePrimitive, ComputedNormalsAreUnitVectorsByTheRule)
{
    std::unique_ptr<KEZVisSurfacePrimitive> primitive(newMeshPrimitive());
    std::vector<double> expected;
    for (size_t t = 0; t < MeshTriangles.size(); t += 3) {
        const std::vector<double> n = expectedNormal(MeshVertices, MeshTriangles[t], MeshTriangles[t + 1],
                                                     MeshTriangles[t + 2]);
        expected.insert(expected.end(), n.begin(), n.end());
    }
    expectNear(primitive->GetTriangleNormalCoordsAsDouble(), expected);
}

TEST(SurfacePrimitive, GivenNormalsAreReturnedAsTheyAreNotNormalised)
{
    const std::vector<double> normals = {0.0, 0.0, 5.0, 3.0, 4.0, 0.0, -1.0, 2.0, 7.5};
    std::unique_ptr<KEZVisSurfacePrimitive> primitive(newMeshPrimitive(NewArray(normals)));
    EXPECT_EQ(primitive->GetTriangleNormalCoordsAsDouble(), QList<double>(normals.begin(), normals.end()));
    EXPECT_EQ(primitive->GetTriangleNormalCoordsAsFloat(),
              (QList<float>{0.0f, 0.0f, 5.0f, 3.0f, 4.0f, 0.0f, -1.0f, 2.0f, 7.5f}));
}

TEST(SurfacePrimitive, ComputedNormalShorterThanTheValidityThresholdIsLeftUnnormalised)
{
    // Legs of 1e-7 make a cross product of length 1e-14, below KEZMathVector's validity threshold of
    // 1e-12: the normal is kept as the cross product gives it.
    KEZVisSurfacePrimitive primitive(3, NewArray<double>({0.0, 0.0, 0.0, 1e-7, 0.0, 0.0, 0.0, 1e-7, 0.0}), 1,
                                     NewArray<int>({0, 1, 2}), nullptr);
    EXPECT_EQ(primitive.GetTriangleNormalCoordsAsDouble(), (QList<double>{0.0, 0.0, -(1e-7 * 1e-7)}));
}

TEST(SurfacePrimitive, DegenerateTriangleAndIndexOutsideTheVerticesGiveTheZeroNormal)
{
    KEZVisSurfacePrimitive primitive(3, NewArray<double>({0.0, 0.0, 0.0, 1.0, 1.0, 1.0, 2.0, 2.0, 2.0}), 2,
                                     NewArray<int>({0, 1, 2, 0, 1, 7}), nullptr);
    EXPECT_EQ(primitive.GetTriangleNormalCoordsAsDouble(), (QList<double>{0.0, 0.0, 0.0, 0.0, 0.0, 0.0}));
}

TEST(SurfacePrimitive, ArraysAreAnsweredAsListsOfTheirValues)
{
    std::unique_ptr<KEZVisSurfacePrimitive> primitive(newMeshPrimitive());
    EXPECT_EQ(primitive->GetNumVertexes(), 5);
    EXPECT_EQ(primitive->GetNumTriangles(), 3);
    EXPECT_EQ(primitive->GetVertexCoordinatesAsDouble(), QList<double>(MeshVertices.begin(), MeshVertices.end()));
    QList<float> floats;
    for (double value : MeshVertices)
        floats.append(float(value));
    EXPECT_EQ(primitive->GetVertexCoordinatesAsFloat(), floats);
    EXPECT_EQ(primitive->GetTriangleVertexIndexes(), (QList<long>{0, 1, 2, 0, 2, 3, 0, 1, 4}));
    EXPECT_TRUE(primitive->GetVertexNormalCoordsAsDouble().isEmpty());
}

TEST(SurfacePrimitive, BoxIsTheBoxOfTheVerticesWhateverTheOptions)
{
    std::unique_ptr<KEZVisSurfacePrimitive> primitive(newMeshPrimitive());
    const KEZMathBoundingBox expected(KEZMathPoint(0.0, 0.0, 1.0), KEZMathPoint(2.0, 2.0, 3.0));
    EXPECT_EQ(primitive->GetBoundingBox(KEZVisOptions()), expected);
    KEZVisOptions other;
    QFont font;
    font.setPointSize(50);
    other.SetFont(font);
    EXPECT_EQ(primitive->GetBoundingBox(other), expected);
}

TEST(SurfacePrimitive, NegativeCountsOrNullArraysCountAsNone)
{
    KEZVisSurfacePrimitive negative(-2, NewArray(MeshVertices), -1, NewArray(MeshTriangles), nullptr);
    EXPECT_EQ(negative.GetNumVertexes(), 0);
    EXPECT_EQ(negative.GetNumTriangles(), 0);
    EXPECT_TRUE(negative.GetVertexCoordinatesAsDouble().isEmpty());
    EXPECT_TRUE(negative.GetTriangleNormalCoordsAsDouble().isEmpty());
    KEZVisSurfacePrimitive null(5, nullptr, 3, nullptr, nullptr);
    EXPECT_EQ(null.GetNumVertexes(), 0);
    EXPECT_EQ(null.GetNumTriangles(), 0);
    EXPECT_EQ(null.GetBoundingBox(KEZVisOptions()), KEZMathBoundingBox());
}

TEST(SurfacePrimitive, CopyOfNonEmptyPrimitiveIsEmpty)
{
    std::unique_ptr<KEZVisSurfacePrimitive> original(newMeshPrimitive());
    KEZVisSurfacePrimitive copy(*original);
    EXPECT_EQ(copy.GetNumVertexes(), 0);
    EXPECT_EQ(copy.GetNumTriangles(), 0);
    EXPECT_TRUE(copy.GetVertexCoordinatesAsDouble().isEmpty());
    EXPECT_EQ(copy.GetBoundingBox(KEZVisOptions()), KEZMathBoundingBox());
    EXPECT_EQ(original->GetNumVertexes(), 5);
}

TEST(SurfacePrimitive, VertexNormalsOfPlainSurfacePrimitiveAreEmpty)
{
    std::unique_ptr<KEZVisSurfacePrimitive> primitive(newMeshPrimitive());
    EXPECT_TRUE(primitive->GetVertexNormalCoordsAsDouble().isEmpty());
    KEZGeoSurface surface(meshPoints(), QList<int>(MeshTriangles.begin(), MeshTriangles.end()));
    KEZVisSurfacePrimitive fromSurface(&surface);
    EXPECT_TRUE(fromSurface.GetVertexNormalCoordsAsDouble().isEmpty());
}

TEST(SurfacePrimitive, FloatVertexListNarrowsWhatTheVirtualDoubleGetterAnswers)
{
    class Shifted : public KEZVisSurfacePrimitive
    {
    public:
        QList<double> GetVertexCoordinatesAsDouble() const override { return {0.1, 1e20, -3.0}; }
    };
    Shifted primitive;
    EXPECT_EQ(primitive.GetVertexCoordinatesAsFloat(), (QList<float>{0.1f, 1e20f, -3.0f}));
}

// --- from a surface -----------------------------------------------------------

TEST(SurfacePrimitive, MeshFromSurfaceIsReadFromIt)
{
    KEZGeoSurface surface(meshPoints(), QList<int>(MeshTriangles.begin(), MeshTriangles.end()));
    KEZVisSurfacePrimitive primitive(&surface);
    EXPECT_EQ(primitive.GetNumVertexes(), 5);
    EXPECT_EQ(primitive.GetNumTriangles(), 3);
    EXPECT_EQ(primitive.GetBoundingBox(KEZVisOptions()), surface.GetBoundingBox());
    EXPECT_EQ(primitive.GetVertexCoordinatesAsDouble(), QList<double>(MeshVertices.begin(), MeshVertices.end()));
    EXPECT_EQ(primitive.GetTriangleVertexIndexes(), (QList<long>{0, 1, 2, 0, 2, 3, 0, 1, 4}));
    EXPECT_EQ(surface.GetReferenceCount(), 0);
}

TEST(SurfacePrimitive, FloatNormalsFromSurfaceAreNotNormalisedWhileDoubleNormalsAre)
{
    KEZGeoSurface surface(meshPoints(), QList<int>(MeshTriangles.begin(), MeshTriangles.end()));
    KEZVisSurfacePrimitive primitive(&surface);
    // The surface's own normal of a triangle is (pb - pa) x (pc - pa), not
    // normalised: for the square halves (0, 0, 4), for the tilted one (0, -4, 2).
    EXPECT_EQ(primitive.GetTriangleNormalCoordsAsFloat(),
              (QList<float>{0.0f, 0.0f, 4.0f, 0.0f, 0.0f, 4.0f, 0.0f, -4.0f, 2.0f}));
    const double s = 1.0 / std::sqrt(20.0);
    expectNear(primitive.GetTriangleNormalCoordsAsDouble(), {0.0, 0.0, 1.0, 0.0, 0.0, 1.0, 0.0, -4.0 * s, 2.0 * s});
}

TEST(SurfacePrimitive, ListsAreEmptyOnceTheSurfaceHasGone)
{
    auto *surface = new KEZGeoSurface(meshPoints(), QList<int>(MeshTriangles.begin(), MeshTriangles.end()));
    KEZVisSurfacePrimitive primitive(surface);
    const KEZMathBoundingBox box = primitive.GetBoundingBox(KEZVisOptions());
    delete surface;
    EXPECT_EQ(primitive.GetNumVertexes(), 5);
    EXPECT_EQ(primitive.GetNumTriangles(), 3);
    EXPECT_EQ(primitive.GetBoundingBox(KEZVisOptions()), box);
    EXPECT_TRUE(primitive.GetVertexCoordinatesAsDouble().isEmpty());
    EXPECT_TRUE(primitive.GetVertexCoordinatesAsFloat().isEmpty());
    EXPECT_TRUE(primitive.GetTriangleVertexIndexes().isEmpty());
    EXPECT_TRUE(primitive.GetTriangleNormalCoordsAsDouble().isEmpty());
    EXPECT_TRUE(primitive.GetTriangleNormalCoordsAsFloat().isEmpty());
}

TEST(SurfacePrimitive, NullSurfaceGivesAnEmptyPrimitive)
{
    KEZVisSurfacePrimitive primitive(static_cast<const KEZGeoSurface *>(nullptr));
    EXPECT_EQ(primitive.GetNumVertexes(), 0);
    EXPECT_TRUE(primitive.GetVertexCoordinatesAsDouble().isEmpty());
    EXPECT_EQ(StreamedAlone(primitive), StreamBytes().Int32(0).Int32(0).Bytes());
}

namespace {

// A surface whose box cannot be worked out; the primitive asks for it last.
class BoxlessSurface : public KEZGeoSurface
{
public:
    using KEZGeoSurface::KEZGeoSurface;
    KEZMathBoundingBox GetBoundingBox() const override { throw KEZSysException(QStringLiteral("no box")); }
};

} // namespace

TEST(SurfacePrimitive, ExceptionOfTheSurfaceReachesTheCallerAndLeavesNothingBehind)
{
    // What the constructor had made before the surface threw is freed again;
    // the sanitizer build checks that nothing leaks.
    const BoxlessSurface surface(meshPoints(), QList<int>(MeshTriangles.begin(), MeshTriangles.end()));
    const std::optional<KEZSysException> thrown =
        ThrownBy<KEZSysException>([&surface] { KEZVisSurfacePrimitive primitive(&surface); });
    ASSERT_TRUE(thrown.has_value());
    EXPECT_EQ(thrown->GetMessage(), QStringLiteral("no box"));
}

// --- stream form --------------------------------------------------------------

TEST(SurfacePrimitive, StreamFormIsCountsVerticesAndIndexesWithoutNormals)
{
    std::unique_ptr<KEZVisSurfacePrimitive> primitive(newMeshPrimitive());
    EXPECT_EQ(StreamedAlone(*primitive), meshStreamBytes());
}

TEST(SurfacePrimitive, StreamFormFollowsLittleEndianStreams)
{
    KEZVisSurfacePrimitive primitive(3, NewArray<double>({1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 9.5}), 1,
                                     NewArray<int>({2, 0, 1}), nullptr);
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    out << primitive;
    StreamBytes expected(StreamBytes::LittleEndian);
    expected.Int32(3).Int32(1);
    for (double value : {1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 9.5})
        expected.Double(value);
    expected.Int32(2).Int32(0).Int32(1);
    EXPECT_EQ(bytes, expected.Bytes());
}

TEST(SurfacePrimitive, PrimitiveFromLiveSurfaceIsWrittenWithTheSurfacesMesh)
{
    KEZGeoSurface surface(meshPoints(), QList<int>(MeshTriangles.begin(), MeshTriangles.end()));
    KEZVisSurfacePrimitive primitive(&surface);
    EXPECT_EQ(StreamedAlone(primitive), meshStreamBytes());
}

TEST(SurfacePrimitive, PrimitiveWhoseSurfaceHasGoneIsWrittenEmpty)
{
    auto *surface = new KEZGeoSurface(meshPoints(), QList<int>(MeshTriangles.begin(), MeshTriangles.end()));
    KEZVisSurfacePrimitive primitive(surface);
    delete surface;
    EXPECT_EQ(StreamedAlone(primitive), StreamBytes().Int32(0).Int32(0).Bytes());
}

TEST(SurfacePrimitive, SubclassWithArraysOfItsOwnIsWrittenWithZeroCounts)
{
    class OwnMesh : public KEZVisSurfacePrimitive
    {
    public:
        int GetNumVertexes() const override { return 3; }
        QList<double> GetVertexCoordinatesAsDouble() const override { return {1, 2, 3, 4, 5, 6, 7, 8, 9}; }
    };
    OwnMesh primitive;
    EXPECT_EQ(StreamedAlone(primitive), StreamBytes().Int32(0).Int32(0).Bytes());
}

TEST(SurfacePrimitive, ReadingRestoresVerticesAndIndexesAndComputesNormals)
{
    const QByteArray bytes = meshStreamBytes();
    QDataStream in(bytes);
    KEZVisSurfacePrimitive primitive;
    in >> primitive;
    EXPECT_EQ(in.status(), QDataStream::Ok);
    EXPECT_TRUE(in.atEnd());
    EXPECT_EQ(primitive.GetNumVertexes(), 5);
    EXPECT_EQ(primitive.GetNumTriangles(), 3);
    EXPECT_EQ(primitive.GetVertexCoordinatesAsDouble(), QList<double>(MeshVertices.begin(), MeshVertices.end()));
    EXPECT_EQ(primitive.GetTriangleVertexIndexes(), (QList<long>{0, 1, 2, 0, 2, 3, 0, 1, 4}));
    EXPECT_EQ(primitive.GetBoundingBox(KEZVisOptions()),
              KEZMathBoundingBox(KEZMathPoint(0.0, 0.0, 1.0), KEZMathPoint(2.0, 2.0, 3.0)));
    EXPECT_EQ(primitive.GetTriangleNormalCoordsAsDouble().size(), 9);
}

TEST(SurfacePrimitive, RoundTripReplacesExplicitNormalsWithComputedOnes)
{
    const std::vector<double> normals = {0.0, 0.0, 5.0, 3.0, 4.0, 0.0, -1.0, 2.0, 7.5};
    std::unique_ptr<KEZVisSurfacePrimitive> original(newMeshPrimitive(NewArray(normals)));
    const QByteArray bytes = StreamedAlone(*original);
    QDataStream in(bytes);
    KEZVisSurfacePrimitive read;
    in >> read;
    ASSERT_EQ(in.status(), QDataStream::Ok);
    std::vector<double> expected;
    for (size_t t = 0; t < MeshTriangles.size(); t += 3) {
        const std::vector<double> n = expectedNormal(MeshVertices, MeshTriangles[t], MeshTriangles[t + 1],
                                                     MeshTriangles[t + 2]);
        expected.insert(expected.end(), n.begin(), n.end());
    }
    expectNear(read.GetTriangleNormalCoordsAsDouble(), expected);
}

TEST(SurfacePrimitive, ReadingReplacesAnEarlierMesh)
{
    KEZVisSurfacePrimitive primitive(3, NewArray<double>({9, 9, 9, 8, 8, 8, 7, 7, 7}), 1, NewArray<int>({0, 1, 2}),
                                     nullptr);
    const QByteArray bytes = StreamBytes().Int32(1).Int32(0).Double(-1.0).Double(-2.0).Double(-3.0).Bytes();
    QDataStream in(bytes);
    in >> primitive;
    EXPECT_EQ(in.status(), QDataStream::Ok);
    EXPECT_EQ(primitive.GetVertexCoordinatesAsDouble(), (QList<double>{-1.0, -2.0, -3.0}));
    EXPECT_EQ(primitive.GetNumTriangles(), 0);
    EXPECT_TRUE(primitive.GetTriangleNormalCoordsAsDouble().isEmpty());
    EXPECT_EQ(primitive.GetBoundingBox(KEZVisOptions()),
              KEZMathBoundingBox(KEZMathPoint(-1.0, -2.0, -3.0)));
}

TEST(SurfacePrimitive, PrimitiveWithLiveSurfaceGoesOnAnsweringFromItAfterReading)
{
    auto *surface = new KEZGeoSurface(meshPoints(), QList<int>(MeshTriangles.begin(), MeshTriangles.end()));
    KEZVisSurfacePrimitive primitive(surface);
    const QByteArray bytes = StreamBytes().Int32(1).Int32(0).Double(-1.0).Double(-2.0).Double(-3.0).Bytes();
    QDataStream in(bytes);
    in >> primitive;
    ASSERT_EQ(in.status(), QDataStream::Ok);
    // The counts are the read ones; the vertices come from the live surface.
    EXPECT_EQ(primitive.GetNumVertexes(), 1);
    EXPECT_EQ(primitive.GetVertexCoordinatesAsDouble(), (QList<double>{0.0, 0.0, 1.0}));
    delete surface;
    EXPECT_EQ(primitive.GetVertexCoordinatesAsDouble(), (QList<double>{-1.0, -2.0, -3.0}));
}

TEST(SurfacePrimitive, ReaderFlagsNegativeCountsAsCorrupt)
{
    for (const auto &counts : {std::pair<qint32, qint32>{-1, 0}, {0, -1}, {-5, -5}}) {
        const QByteArray bytes = StreamBytes().Int32(counts.first).Int32(counts.second).Bytes();
        QDataStream in(bytes);
        std::unique_ptr<KEZVisSurfacePrimitive> primitive(newMeshPrimitive());
        in >> *primitive;
        EXPECT_EQ(in.status(), QDataStream::ReadCorruptData);
        EXPECT_EQ(primitive->GetNumVertexes(), 0);
        EXPECT_EQ(primitive->GetNumTriangles(), 0);
        EXPECT_EQ(primitive->GetBoundingBox(KEZVisOptions()), KEZMathBoundingBox());
    }
}

TEST(SurfacePrimitive, ReaderFlagsIndexOutsideTheVerticesAsCorrupt)
{
    const QByteArray bytes =
        StreamBytes().Int32(1).Int32(1).Double(1.0).Double(2.0).Double(3.0).Int32(0).Int32(0).Int32(1).Bytes();
    QDataStream in(bytes);
    KEZVisSurfacePrimitive primitive;
    in >> primitive;
    EXPECT_EQ(in.status(), QDataStream::ReadCorruptData);
    EXPECT_EQ(primitive.GetNumVertexes(), 0);
    EXPECT_EQ(primitive.GetNumTriangles(), 0);
    EXPECT_TRUE(primitive.GetTriangleVertexIndexes().isEmpty());
}

TEST(SurfacePrimitive, ReaderOfHugeCountsOnShortStreamFailsWithoutAllocatingForTheCounts)
{
    for (const auto &counts : {std::pair<qint32, qint32>{0x7fffffff, 0}, {0, 0x7fffffff}, {0x7fffffff, 0x7fffffff}}) {
        const QByteArray bytes = StreamBytes().Int32(counts.first).Int32(counts.second).Double(1.0).Bytes();
        QDataStream in(bytes);
        KEZVisSurfacePrimitive primitive;
        in >> primitive;
        EXPECT_EQ(in.status(), QDataStream::ReadPastEnd);
        EXPECT_EQ(primitive.GetNumVertexes(), 0);
        EXPECT_EQ(primitive.GetNumTriangles(), 0);
    }
}

TEST(SurfacePrimitive, ReaderSurvivesEveryTruncation)
{
    const QByteArray valid = meshStreamBytes();
    for (qsizetype cut = 0; cut < valid.size(); ++cut) {
        QDataStream in(valid.left(cut));
        std::unique_ptr<KEZVisSurfacePrimitive> primitive(newMeshPrimitive());
        in >> *primitive;
        EXPECT_EQ(in.status(), QDataStream::ReadPastEnd) << "cut at " << cut;
        EXPECT_EQ(primitive->GetNumVertexes(), 0) << "cut at " << cut;
        EXPECT_EQ(primitive->GetNumTriangles(), 0) << "cut at " << cut;
        EXPECT_TRUE(primitive->GetVertexCoordinatesAsDouble().isEmpty()) << "cut at " << cut;
        EXPECT_EQ(primitive->GetBoundingBox(KEZVisOptions()), KEZMathBoundingBox()) << "cut at " << cut;
    }
}

namespace {

// Whatever the verdict, the primitive is consistent with it and never refers
// to a vertex it does not have.
void expectConsistent(const QDataStream &in, const KEZVisSurfacePrimitive &primitive)
{
    if (in.status() != QDataStream::Ok) {
        EXPECT_EQ(primitive.GetNumVertexes(), 0);
        EXPECT_EQ(primitive.GetNumTriangles(), 0);
        return;
    }
    EXPECT_EQ(primitive.GetVertexCoordinatesAsDouble().size(), 3 * qsizetype(primitive.GetNumVertexes()));
    const QList<long> indexes = primitive.GetTriangleVertexIndexes();
    EXPECT_EQ(indexes.size(), 3 * qsizetype(primitive.GetNumTriangles()));
    for (long index : indexes) {
        EXPECT_GE(index, 0);
        EXPECT_LT(index, primitive.GetNumVertexes());
    }
}

} // namespace

TEST(SurfacePrimitive, ReaderSurvivesFlippedBytes)
{
    const QByteArray valid = meshStreamBytes();
    for (qsizetype position = 0; position < valid.size(); ++position) {
        for (char mask : {char(0x01), char(0x40), char(0x80), char(0xff)}) {
            QByteArray corrupt = valid;
            corrupt[position] = char(corrupt[position] ^ mask);
            QDataStream in(corrupt);
            KEZVisSurfacePrimitive primitive;
            in >> primitive;
            expectConsistent(in, primitive);
        }
    }
}

TEST(SurfacePrimitive, ReaderSurvivesRandomBytes)
{
    std::mt19937 generator(424242);
    std::uniform_int_distribution<int> byte(0, 255);
    std::uniform_int_distribution<int> length(0, 300);
    for (int round = 0; round < 2000; ++round) {
        QByteArray data(length(generator), Qt::Uninitialized);
        for (char &c : data)
            c = char(byte(generator));
        // Small counts in front now and then, so that whole meshes get read.
        if (round % 2 == 0 && data.size() >= 8) {
            data[0] = data[1] = data[2] = data[4] = data[5] = data[6] = 0;
            data[3] = char(byte(generator) % 8);
            data[7] = char(byte(generator) % 8);
        }
        QDataStream in(data);
        KEZVisSurfacePrimitive primitive;
        in >> primitive;
        expectConsistent(in, primitive);
    }
}

TEST(SurfacePrimitive, ReaderJudgesItsOwnReadingAndRestoresAnEarlierFailure)
{
    const QByteArray bytes = meshStreamBytes();
    QDataStream in(bytes);
    in.setStatus(QDataStream::ReadCorruptData);
    KEZVisSurfacePrimitive primitive;
    in >> primitive;
    EXPECT_EQ(primitive.GetNumVertexes(), 5);
    EXPECT_EQ(in.status(), QDataStream::ReadCorruptData);
}

TEST(SurfacePrimitive, IsRegisteredWithTheMetaTypeSystemAndStreamsThroughIt)
{
    const QMetaType type = QMetaType::fromName("KEZVisSurfacePrimitive");
    ASSERT_TRUE(type.isValid());
    EXPECT_EQ(type, QMetaType::fromType<KEZVisSurfacePrimitive>());
    EXPECT_TRUE(type.hasRegisteredDataStreamOperators());
}
