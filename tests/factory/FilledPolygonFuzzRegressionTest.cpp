// Inputs of the filled-polygon factory that fuzzing found to fail, each checked
// in with the fuzz regressions and decoded here as FilledPolygonFuzzer decodes
// it: one byte of layout (bit 0 raw doubles, bits 1 to 3 the number of rings
// less one), then per ring a byte of point count and the points, as x, y, z
// doubles in the machine's byte order for raw doubles.

#include <KEZVisRepFactory.h>
#include <KEZVisSurfacePrimitive.h>

#include <KEZMathPoint.h>
#include <KEZMathSetOfPoints.h>

#include <QByteArray>
#include <QFile>
#include <QList>

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

namespace {

QByteArray FuzzRegression(const char *target, const char *name)
{
    QFile file(QStringLiteral(KEZ_FUZZ_REGRESSIONS_DIR "/%1/%2").arg(QLatin1String(target), QLatin1String(name)));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
    return file.readAll();
}

// The rings of raw doubles; the inputs kept here all use that layout.
QList<KEZMathSetOfPoints> RawRings(const QByteArray &bytes)
{
    QList<KEZMathSetOfPoints> rings;
    EXPECT_EQ(bytes.at(0) & 1, 1);
    const int ringCount = ((static_cast<unsigned char>(bytes.at(0)) >> 1) & 7) + 1;
    qsizetype offset = 1;
    for (int r = 0; r < ringCount && offset < bytes.size(); ++r) {
        const int count = static_cast<unsigned char>(bytes.at(offset++));
        KEZMathSetOfPoints ring;
        for (int i = 0; i < count && offset + 24 <= bytes.size(); ++i, offset += 24) {
            double xyz[3];
            std::memcpy(xyz, bytes.constData() + offset, sizeof xyz);
            ring.append(KEZMathPoint(xyz[0], xyz[1], xyz[2]));
        }
        rings.append(ring);
    }
    return rings;
}

} // namespace

TEST(FilledPolygonFuzzRegression, OutlineThatTurnsFlatWhenScaledGivesItsVerticesWithoutTriangles)
{
    // Found by FilledPolygonFuzzer: an outline about 1e300 high and at most 1
    // wide. Scaled into the triangulator's range its x coordinates all
    // rounded to 0, the artificial points fell onto the line of the points,
    // and the sweep wrote before the start of its vertex links.
    const QList<KEZMathSetOfPoints> rings = RawRings(FuzzRegression("FilledPolygonFuzzer", "flat-after-scaling"));
    ASSERT_EQ(rings.size(), 1);
    ASSERT_EQ(rings[0].size(), 5);
    EXPECT_EQ(rings[0][4].GetY(), 9.685306282223173e+299);

    std::unique_ptr<KEZVisSurfacePrimitive> surface(KEZVisRepFactory::CreateFilledPolygonPrimitive(rings));
    ASSERT_NE(surface, nullptr);
    EXPECT_EQ(surface->GetNumTriangles(), 0);
    EXPECT_GT(surface->GetNumVertexes(), 0);
}

TEST(FilledPolygonFuzzRegression, RingsBeyondTheExactRangeOfThePredicatesGiveAConsistentSurface)
{
    // Found by FilledPolygonFuzzer: rings about 1e299 high and 20 wide, one x
    // coordinate near 1e-304. Scaled into the triangulator's range, some
    // orientation tests round, incremental insertion tangled the mesh, and
    // marking a constrained edge met a neighbour without that edge and
    // shifted by -1. That neighbour now counts as one that does not point back.
    const QList<KEZMathSetOfPoints> rings = RawRings(FuzzRegression("FilledPolygonFuzzer", "beyond-exact-range"));
    ASSERT_EQ(rings.size(), 2);
    ASSERT_EQ(rings[0].size(), 10);
    EXPECT_EQ(rings[0][0].GetY(), -8.371160993642713e+298);
    EXPECT_EQ(rings[0][3].GetX(), 3.19013011107427e-304);

    std::unique_ptr<KEZVisSurfacePrimitive> surface(KEZVisRepFactory::CreateFilledPolygonPrimitive(rings));
    ASSERT_NE(surface, nullptr);
    const QList<long> indexes = surface->GetTriangleVertexIndexes();
    EXPECT_EQ(indexes.size(), 3 * qsizetype(surface->GetNumTriangles()));
    for (long index : indexes) {
        EXPECT_GE(index, 0);
        EXPECT_LT(index, surface->GetNumVertexes());
    }
}
