// Tests of KEZVisRepExtraSet: a rep set with extra options.

#include "KEZVisRepExtraSet.h"

#include "KEZVisRepGraphics.h"

#include "TestPrimitives.h"

#include <QPointer>

#include <gtest/gtest.h>

#include <memory>

TEST(RepExtraSet, CarriesACopyOfTheExtraOptions)
{
    KEZVisOptions extra;
    extra.SetColor(Qt::green);
    extra.SetPriority(12);
    KEZVisRepExtraSet set(QList<const KEZVisRep *>{}, extra);
    extra.SetColor(Qt::red);
    const KEZVisOptions answered = set.GetExtraVisOptions();
    EXPECT_EQ(answered.GetColor(), QColor(Qt::green));
    EXPECT_EQ(answered.GetPriority(), 12);
}

TEST(RepExtraSet, ExtraOptionsTakeNoPartInPrimitivesOrBox)
{
    KEZVisPointPrimitive *a = newPoint(1, 2, 3);
    KEZVisRepExtraSet set({new KEZVisRepGraphics({a}, optionsWithPriority(2))}, optionsWithPriority(99));
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    set.GetPrimitives(primitives, options);
    EXPECT_EQ(primitives, (QList<const KEZVisPrimitive *>{a}));
    ASSERT_EQ(options.size(), 1);
    EXPECT_EQ(options[0].GetPriority(), 2);
    EXPECT_EQ(set.GetBoundingBox(), KEZMathBoundingBox(KEZMathPoint(1, 2, 3)));
}

TEST(RepExtraSet, IsARepSetThatOwnsItsChildren)
{
    auto *child = new KEZVisRepGraphics({newPoint(0, 0, 0)}, KEZVisOptions());
    QPointer<KEZVisRepGraphics> watch(child);
    auto set = std::make_unique<KEZVisRepExtraSet>(QList<const KEZVisRep *>{child}, KEZVisOptions());
    EXPECT_TRUE(set->inherits("KEZVisRepSet"));
    EXPECT_NE(qobject_cast<KEZVisRepSet *>(set.get()), nullptr);
    EXPECT_EQ(set->GetChildVisReps(), (QList<const KEZVisRep *>{child}));
    set.reset();
    EXPECT_TRUE(watch.isNull());
}
