// Tests of KEZVisRepSet: ownership of children, depth-first flattening, the
// box, and the absence of a stream form.

#include "KEZVisRepSet.h"

#include "KEZVisRepGraphics.h"

#include "TestPrimitives.h"

#include <QDataStream>
#include <QIODevice>
#include <QPointer>

#include <gtest/gtest.h>

#include <memory>

TEST(RepSet, EmptySetHasTheDefaultBoxAndNoPrimitives)
{
    KEZVisRepSet set(QList<const KEZVisRep *>{});
    EXPECT_EQ(set.GetBoundingBox(), KEZMathBoundingBox());
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    set.GetPrimitives(primitives, options);
    EXPECT_TRUE(primitives.isEmpty());
    EXPECT_TRUE(options.isEmpty());
}

TEST(RepSet, NullChildrenAreSkipped)
{
    KEZVisPointPrimitive *a = newPoint(1, 1, 1);
    KEZVisRepSet set({nullptr, new KEZVisRepGraphics({a}, optionsWithPriority(3)), nullptr});
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    set.GetPrimitives(primitives, options);
    EXPECT_EQ(primitives, (QList<const KEZVisPrimitive *>{a}));
    ASSERT_EQ(options.size(), 1);
    EXPECT_EQ(options[0].GetPriority(), 3);
    EXPECT_EQ(set.GetBoundingBox(), KEZMathBoundingBox(KEZMathPoint(1, 1, 1)));
    KEZVisRepSet onlyNull(QList<const KEZVisRep *>{nullptr});
    EXPECT_EQ(onlyNull.GetBoundingBox(), KEZMathBoundingBox());
}

TEST(RepSet, SetInsideASetFlattensDepthFirstInOrder)
{
    KEZVisPointPrimitive *a = newPoint(0, 0, 0);
    KEZVisPointPrimitive *b = newPoint(1, 0, 0);
    KEZVisPointPrimitive *c = newPoint(2, 0, 0);
    KEZVisPointPrimitive *d = newPoint(3, 0, 0);
    auto *inner = new KEZVisRepSet({new KEZVisRepGraphics({b, c}, QList<KEZVisOptions>{optionsWithPriority(2),
                                                                                        optionsWithPriority(3)})});
    KEZVisRepSet outer({new KEZVisRepGraphics({a}, optionsWithPriority(1)), inner,
                        new KEZVisRepGraphics({d}, optionsWithPriority(4))});
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    outer.GetPrimitives(primitives, options);
    EXPECT_EQ(primitives, (QList<const KEZVisPrimitive *>{a, b, c, d}));
    QList<int> priorities;
    for (const KEZVisOptions &entry : options)
        priorities.append(entry.GetPriority());
    EXPECT_EQ(priorities, (QList<int>{1, 2, 3, 4}));
}

TEST(RepSet, AskingAppendsToWhatTheListsHold)
{
    KEZVisPointPrimitive *a = newPoint(0, 0, 0);
    KEZVisRepSet set({new KEZVisRepGraphics({a}, KEZVisOptions())});
    std::unique_ptr<KEZVisPointPrimitive> earlier(newPoint(5, 5, 5));
    QList<const KEZVisPrimitive *> primitives{earlier.get()};
    QList<KEZVisOptions> options{optionsWithPriority(9)};
    set.GetPrimitives(primitives, options);
    set.GetPrimitives(primitives, options);
    EXPECT_EQ(primitives, (QList<const KEZVisPrimitive *>{earlier.get(), a, a}));
    EXPECT_EQ(options.size(), 3);
}

TEST(RepSet, BoxCoversAllChildren)
{
    KEZVisRepSet set({new KEZVisRepGraphics({newPoint(1, 2, 3)}, KEZVisOptions()),
                      new KEZVisRepSet({new KEZVisRepGraphics({newPoint(-4, 6, 0)}, KEZVisOptions())})});
    EXPECT_EQ(set.GetBoundingBox(), KEZMathBoundingBox(KEZMathPoint(-4, 2, 0), KEZMathPoint(1, 6, 3)));
}

TEST(RepSet, ChildrenAreHandedOutAsTheyWereGiven)
{
    auto *first = new KEZVisRepGraphics();
    auto *second = new KEZVisRepGraphics();
    KEZVisRepSet set({first, nullptr, second});
    EXPECT_EQ(set.GetChildVisReps(), (QList<const KEZVisRep *>{first, nullptr, second}));
}

TEST(RepSet, DeletingTheSetDeletesItsChildrenAndTheirPrimitives)
{
    KEZVisPointPrimitive *a = newPoint(0, 0, 0);
    auto *child = new KEZVisRepGraphics({a}, KEZVisOptions());
    QPointer<KEZVisPointPrimitive> watchPrimitive(a);
    QPointer<KEZVisRepGraphics> watchChild(child);
    auto set = std::make_unique<KEZVisRepSet>(QList<const KEZVisRep *>{child, nullptr});
    set.reset();
    EXPECT_TRUE(watchChild.isNull());
    EXPECT_TRUE(watchPrimitive.isNull());
}

TEST(RepSet, SetSavesNothingAndLoadsNothing)
{
    KEZVisRepSet set({new KEZVisRepGraphics({newPoint(1, 2, 3)}, KEZVisOptions())});
    QByteArray bytes;
    {
        QDataStream out(&bytes, QIODevice::WriteOnly);
        set.Save(out);
    }
    EXPECT_TRUE(bytes.isEmpty());
    const QByteArray input("\x00\x00\x00\x01", 4);
    QDataStream in(input);
    set.Load(in);
    EXPECT_EQ(in.device()->pos(), 0);
    EXPECT_EQ(set.GetChildVisReps().size(), 1);
}
