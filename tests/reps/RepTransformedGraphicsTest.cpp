// Tests of KEZVisRepTransformedGraphics: one display transform per primitive,
// handed out only by the three-list GetPrimitives.

#include "KEZVisRepGraphics.h"
#include "KEZVisRepTransformedGraphics.h"
#include "KEZVisTransform.h"

#include "TestPrimitives.h"

#include <QBuffer>
#include <QDataStream>

#include <gtest/gtest.h>

namespace {

KEZVisTransform transformWithScale(double scale)
{
    KEZVisTransform transform;
    transform.SetPixelScale(scale);
    return transform;
}

} // namespace

TEST(RepTransformedGraphics, SingleTransformConstructorWithThreePrimitivesAnswersThreeEqualTransforms)
{
    KEZVisTransform transform = transformWithScale(3.0);
    const KEZVisRepTransformedGraphics rep({newPoint(0, 0, 0), newPoint(1, 0, 0), newPoint(2, 0, 0)},
                                           optionsWithPriority(4), transform);
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    QList<KEZVisTransform> transforms;
    rep.GetPrimitives(primitives, options, transforms);
    ASSERT_EQ(transforms.size(), 3);
    EXPECT_TRUE(transforms[0] == transforms[1]);
    EXPECT_TRUE(transforms[1] == transforms[2]);
    EXPECT_EQ(transforms[2].GetPixelScale(), 3.0);
}

TEST(RepTransformedGraphics, TwoListFormGivesTheSamePrimitivesAndOptionsAsTheThreeListForm)
{
    QList<KEZVisOptions> options{optionsWithPriority(1), optionsWithPriority(2)};
    QList<KEZVisTransform> transforms{transformWithScale(1.0)};
    const KEZVisRepTransformedGraphics rep({newPoint(0, 0, 0), newPoint(1, 0, 0), newPoint(2, 0, 0)}, options,
                                           transforms);
    QList<const KEZVisPrimitive *> primitives2;
    QList<KEZVisOptions> options2;
    rep.GetPrimitives(primitives2, options2);
    QList<const KEZVisPrimitive *> primitives3;
    QList<KEZVisOptions> options3;
    QList<KEZVisTransform> transforms3;
    rep.GetPrimitives(primitives3, options3, transforms3);
    EXPECT_EQ(primitives2, primitives3);
    EXPECT_EQ(options2, options3);
    ASSERT_EQ(options3.size(), 3);
    EXPECT_EQ(options3[2].GetPriority(), 1);
}

TEST(RepTransformedGraphics, PrimitivesBeyondTheTransformListGetTransformZero)
{
    QList<KEZVisOptions> options{optionsWithPriority(0)};
    QList<KEZVisTransform> transforms{transformWithScale(10.0), transformWithScale(20.0)};
    const KEZVisRepTransformedGraphics rep({newPoint(0, 0, 0), newPoint(1, 0, 0), newPoint(2, 0, 0)}, options,
                                           transforms);
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> optionsOut;
    QList<KEZVisTransform> transformsOut;
    rep.GetPrimitives(primitives, optionsOut, transformsOut);
    ASSERT_EQ(transformsOut.size(), 3);
    EXPECT_EQ(transformsOut[0].GetPixelScale(), 10.0);
    EXPECT_EQ(transformsOut[1].GetPixelScale(), 20.0);
    EXPECT_EQ(transformsOut[2].GetPixelScale(), 10.0);
}

TEST(RepTransformedGraphics, ThreeListFormAppendsAndNeverClears)
{
    KEZVisTransform transform = transformWithScale(2.0);
    const KEZVisRepTransformedGraphics rep({newPoint(0, 0, 0)}, optionsWithPriority(5), transform);
    QList<const KEZVisPrimitive *> primitives{nullptr};
    QList<KEZVisOptions> options{optionsWithPriority(9)};
    QList<KEZVisTransform> transforms{transformWithScale(99.0)};
    rep.GetPrimitives(primitives, options, transforms);
    rep.GetPrimitives(primitives, options, transforms);
    ASSERT_EQ(primitives.size(), 3);
    ASSERT_EQ(options.size(), 3);
    ASSERT_EQ(transforms.size(), 3);
    EXPECT_EQ(primitives[0], nullptr);
    EXPECT_EQ(options[0].GetPriority(), 9);
    EXPECT_EQ(transforms[0].GetPixelScale(), 99.0);
    EXPECT_EQ(transforms[1].GetPixelScale(), 2.0);
    EXPECT_EQ(transforms[2].GetPixelScale(), 2.0);
}

TEST(RepTransformedGraphics, ConstructorWritesNothingToTheListsItIsGiven)
{
    QList<KEZVisOptions> options{optionsWithPriority(3)};
    QList<KEZVisTransform> transforms{transformWithScale(6.0)};
    const KEZVisRepTransformedGraphics rep({newPoint(0, 0, 0)}, options, transforms);
    ASSERT_EQ(options.size(), 1);
    EXPECT_EQ(options[0].GetPriority(), 3);
    ASSERT_EQ(transforms.size(), 1);
    EXPECT_EQ(transforms[0].GetPixelScale(), 6.0);
}

TEST(RepTransformedGraphics, EmptyTransformListGivesDefaultTransformsInsteadOfReadingPastTheList)
{
    QList<KEZVisOptions> options;
    QList<KEZVisTransform> transforms;
    const KEZVisRepTransformedGraphics rep({newPoint(0, 0, 0), newPoint(1, 0, 0)}, options, transforms);
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> optionsOut;
    QList<KEZVisTransform> transformsOut;
    rep.GetPrimitives(primitives, optionsOut, transformsOut);
    ASSERT_EQ(transformsOut.size(), 2);
    EXPECT_EQ(transformsOut[0].GetPixelScale(), 1.5);
    EXPECT_EQ(int(transformsOut[1].GetDisplayTransformBehavior()), -1);
}

TEST(RepTransformedGraphics, StreamFormIsThatOfAPlainGraphicsRepWithoutTransforms)
{
    KEZVisTransform transform = transformWithScale(4.0);
    const KEZVisRepTransformedGraphics transformed({}, optionsWithPriority(2), transform);
    const KEZVisRepGraphics plain({}, optionsWithPriority(2));

    QByteArray transformedBytes;
    {
        QDataStream stream(&transformedBytes, QIODevice::WriteOnly);
        transformed.Save(stream);
    }
    QByteArray plainBytes;
    {
        QDataStream stream(&plainBytes, QIODevice::WriteOnly);
        plain.Save(stream);
    }
    EXPECT_FALSE(transformedBytes.isEmpty());
    EXPECT_EQ(transformedBytes, plainBytes);
}

TEST(RepTransformedGraphics, LoadingReadsThePlainFormAndLeavesTheTransformsAsTheyWere)
{
    KEZVisTransform transform = transformWithScale(4.0);
    KEZVisRepTransformedGraphics rep({newPoint(0, 0, 0)}, optionsWithPriority(2), transform);
    const KEZVisRepGraphics source({}, optionsWithPriority(8));
    QByteArray bytes;
    {
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        source.Save(stream);
    }
    QDataStream in(bytes);
    rep.Load(in);
    EXPECT_EQ(in.status(), QDataStream::Ok);

    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    QList<KEZVisTransform> transforms;
    rep.GetPrimitives(primitives, options, transforms);
    ASSERT_EQ(options.size(), 1);
    EXPECT_EQ(options[0].GetPriority(), 8);
    ASSERT_EQ(transforms.size(), 1);
    EXPECT_EQ(transforms[0].GetPixelScale(), 4.0);
}
