// Tests of KEZVisRepGraphics: ownership, GetPrimitives with one options entry
// serving many primitives, RemovePrimitive with its index walk, SetColor.

#include "KEZVisRepGraphics.h"

#include "KEZVisPointPrimitive.h"

#include "TestPrimitives.h"

#include <QPointer>

#include <gtest/gtest.h>

#include <memory>

namespace {

QList<int> priorities(const QList<KEZVisOptions> &options)
{
    QList<int> result;
    for (const KEZVisOptions &entry : options)
        result.append(entry.GetPriority());
    return result;
}

} // namespace

TEST(RepGraphics, EmptyRepAnswersNothingAndTheDefaultBox)
{
    KEZVisRepGraphics rep;
    const PrimitiveLists lists = AskPrimitives(rep);
    EXPECT_TRUE(lists.primitives.isEmpty());
    EXPECT_TRUE(lists.options.isEmpty());
    EXPECT_EQ(rep.GetBoundingBox(), KEZMathBoundingBox());
}

TEST(RepGraphics, ThreePrimitivesWithOneOptionsEntryAnswerThreeEqualOptions)
{
    KEZVisPointPrimitive *a = newPoint(0, 0, 0);
    KEZVisPointPrimitive *b = newPoint(1, 0, 0);
    KEZVisPointPrimitive *c = newPoint(2, 0, 0);
    KEZVisOptions options;
    options.SetColor(Qt::blue);
    options.SetPriority(4);
    KEZVisRepGraphics rep({a, b, c}, options);
    const PrimitiveLists lists = AskPrimitives(rep);
    EXPECT_EQ(lists.primitives, (QList<const KEZVisPrimitive *>{a, b, c}));
    ASSERT_EQ(lists.options.size(), 3);
    for (const KEZVisOptions &entry : lists.options)
        EXPECT_TRUE(entry == options);
}

TEST(RepGraphics, ThirdOfThreePrimitivesWithTwoOptionsGetsTheFirstEntry)
{
    KEZVisRepGraphics rep({newPoint(0, 0, 0), newPoint(1, 1, 1), newPoint(2, 2, 2)},
                          QList<KEZVisOptions>{optionsWithPriority(7), optionsWithPriority(8)});
    EXPECT_EQ(priorities(AskPrimitives(rep).options), (QList<int>{7, 8, 7}));
}

TEST(RepGraphics, RepWithoutOptionsAnswersDefaultOptions)
{
    KEZVisRepGraphics rep({newPoint(0, 0, 0), newPoint(1, 1, 1)}, QList<KEZVisOptions>{});
    const PrimitiveLists lists = AskPrimitives(rep);
    ASSERT_EQ(lists.options.size(), 2);
    EXPECT_TRUE(lists.options[0] == KEZVisOptions());
    EXPECT_TRUE(lists.options[1] == KEZVisOptions());
}

TEST(RepGraphics, AskingTwiceWithTheSameListsDoublesThem)
{
    KEZVisPointPrimitive *a = newPoint(0, 0, 0);
    KEZVisPointPrimitive *b = newPoint(1, 0, 0);
    KEZVisRepGraphics rep({a, b}, QList<KEZVisOptions>{optionsWithPriority(1), optionsWithPriority(2)});
    PrimitiveLists lists;
    rep.GetPrimitives(lists.primitives, lists.options);
    rep.GetPrimitives(lists.primitives, lists.options);
    EXPECT_EQ(lists.primitives, (QList<const KEZVisPrimitive *>{a, b, a, b}));
    EXPECT_EQ(priorities(lists.options), (QList<int>{1, 2, 1, 2}));
}

TEST(RepGraphics, OptionsShareTheirDataWithTheRep)
{
    KEZVisOptions options;
    options.SetLineThickness(3.0);
    KEZVisRepGraphics rep({newPoint(0, 0, 0)}, options);
    PrimitiveLists lists = AskPrimitives(rep);
    // Changing the copy handed out leaves the rep's entry as it was.
    lists.options[0].SetLineThickness(9.0);
    EXPECT_EQ(AskPrimitives(rep).options[0].GetLineThickness(), 3.0);
}

TEST(RepGraphics, DeletingTheRepDeletesItsPrimitives)
{
    KEZVisPointPrimitive *a = newPoint(0, 0, 0);
    KEZVisPointPrimitive *b = newPoint(1, 0, 0);
    QPointer<KEZVisPointPrimitive> watchA(a);
    QPointer<KEZVisPointPrimitive> watchB(b);
    auto rep = std::make_unique<KEZVisRepGraphics>(QList<const KEZVisPrimitive *>{a, nullptr, b}, KEZVisOptions());
    rep.reset();
    EXPECT_TRUE(watchA.isNull());
    EXPECT_TRUE(watchB.isNull());
}

TEST(RepGraphics, BoxIsTheBoxOfItsPrimitives)
{
    KEZVisRepGraphics rep({newPoint(1, 2, 3), newPoint(-1, 5, 0)}, KEZVisOptions());
    EXPECT_EQ(rep.GetBoundingBox(), KEZMathBoundingBox(KEZMathPoint(-1, 2, 0), KEZMathPoint(1, 5, 3)));
}

// --- RemovePrimitive --------------------------------------------------------

TEST(RepGraphics, RemovingTheOnlyPrimitiveLeavesBothListsEmpty)
{
    std::unique_ptr<KEZVisPointPrimitive> a(newPoint(0, 0, 0));
    KEZVisRepGraphics rep({a.get()}, KEZVisOptions());
    rep.RemovePrimitive(a.get());
    const PrimitiveLists lists = AskPrimitives(rep);
    EXPECT_TRUE(lists.primitives.isEmpty());
    EXPECT_TRUE(lists.options.isEmpty());
    // A later primitive gets default options: the entry went too.
    EXPECT_EQ(rep.GetBoundingBox(), KEZMathBoundingBox());
}

TEST(RepGraphics, RemovingOneOfTwoPrimitivesThatShareOneEntryKeepsTheEntry)
{
    KEZVisPointPrimitive *a = newPoint(0, 0, 0);
    std::unique_ptr<KEZVisPointPrimitive> b(newPoint(1, 0, 0));
    KEZVisRepGraphics rep({a, b.get()}, optionsWithPriority(6));
    rep.RemovePrimitive(b.get());
    const PrimitiveLists lists = AskPrimitives(rep);
    EXPECT_EQ(lists.primitives, (QList<const KEZVisPrimitive *>{a}));
    EXPECT_EQ(priorities(lists.options), (QList<int>{6}));
}

TEST(RepGraphics, RemovingAPrimitiveTakesItsOwnEntryWhenEachHasOne)
{
    KEZVisPointPrimitive *a = newPoint(0, 0, 0);
    std::unique_ptr<KEZVisPointPrimitive> b(newPoint(1, 0, 0));
    KEZVisPointPrimitive *c = newPoint(2, 0, 0);
    KEZVisRepGraphics rep({a, b.get(), c},
                          QList<KEZVisOptions>{optionsWithPriority(1), optionsWithPriority(2), optionsWithPriority(3)});
    rep.RemovePrimitive(b.get());
    const PrimitiveLists lists = AskPrimitives(rep);
    EXPECT_EQ(lists.primitives, (QList<const KEZVisPrimitive *>{a, c}));
    EXPECT_EQ(priorities(lists.options), (QList<int>{1, 3}));
}

TEST(RepGraphics, RemovingAPointerThatIsNotThereRemovesTheLastEntryAndNoPrimitive)
{
    KEZVisPointPrimitive *a = newPoint(0, 0, 0);
    KEZVisPointPrimitive *b = newPoint(1, 0, 0);
    KEZVisPointPrimitive *c = newPoint(2, 0, 0);
    std::unique_ptr<KEZVisPointPrimitive> stranger(newPoint(9, 9, 9));
    KEZVisRepGraphics rep({a, b, c},
                          QList<KEZVisOptions>{optionsWithPriority(1), optionsWithPriority(2), optionsWithPriority(3)});
    rep.RemovePrimitive(stranger.get());
    const PrimitiveLists lists = AskPrimitives(rep);
    EXPECT_EQ(lists.primitives, (QList<const KEZVisPrimitive *>{a, b, c}));
    // The walk ended on the last element: its entry is gone, and the third
    // primitive now falls back to entry 0.
    EXPECT_EQ(priorities(lists.options), (QList<int>{1, 2, 1}));
}

TEST(RepGraphics, RemovingAPointerThatIsNotThereWithOneSharedEntryChangesNothing)
{
    KEZVisPointPrimitive *a = newPoint(0, 0, 0);
    KEZVisPointPrimitive *b = newPoint(1, 0, 0);
    std::unique_ptr<KEZVisPointPrimitive> stranger(newPoint(9, 9, 9));
    KEZVisRepGraphics rep({a, b}, optionsWithPriority(5));
    rep.RemovePrimitive(stranger.get());
    const PrimitiveLists lists = AskPrimitives(rep);
    EXPECT_EQ(lists.primitives, (QList<const KEZVisPrimitive *>{a, b}));
    EXPECT_EQ(priorities(lists.options), (QList<int>{5, 5}));
}

TEST(RepGraphics, RemovingFromAnEmptyRepDoesNothing)
{
    std::unique_ptr<KEZVisPointPrimitive> stranger(newPoint(9, 9, 9));
    KEZVisRepGraphics rep;
    rep.RemovePrimitive(stranger.get());
    rep.RemovePrimitive(nullptr);
    const PrimitiveLists lists = AskPrimitives(rep);
    EXPECT_TRUE(lists.primitives.isEmpty());
    EXPECT_TRUE(lists.options.isEmpty());
}

TEST(RepGraphics, RemovedPrimitiveIsStillValidAfterTheRepIsDeleted)
{
    KEZVisPointPrimitive *a = newPoint(4, 5, 6);
    KEZVisPointPrimitive *b = newPoint(1, 0, 0);
    QPointer<KEZVisPointPrimitive> watchA(a);
    QPointer<KEZVisPointPrimitive> watchB(b);
    auto rep = std::make_unique<KEZVisRepGraphics>(QList<const KEZVisPrimitive *>{a, b}, KEZVisOptions());
    rep->RemovePrimitive(a);
    rep.reset();
    ASSERT_FALSE(watchA.isNull());
    EXPECT_TRUE(watchB.isNull());
    EXPECT_EQ(a->GetCoordsAsDouble(), (std::vector<double>{4, 5, 6}));
    delete a;
}

// --- SetColor -----------------------------------------------------------------

TEST(RepGraphics, SetColorOnARepWithoutOptionsDoesNothing)
{
    KEZVisRepGraphics rep({newPoint(0, 0, 0)}, QList<KEZVisOptions>{});
    rep.SetColor(Qt::red);
    const PrimitiveLists lists = AskPrimitives(rep);
    ASSERT_EQ(lists.options.size(), 1);
    EXPECT_FALSE(lists.options[0].GetColor().isValid());
}

TEST(RepGraphics, SetColorSetsEveryEntryAndNothingElse)
{
    KEZVisOptions first = optionsWithPriority(1);
    first.SetLineThickness(2.0);
    const KEZVisOptions second = optionsWithPriority(2);
    KEZVisRepGraphics rep({newPoint(0, 0, 0), newPoint(1, 1, 1)}, QList<KEZVisOptions>{first, second});
    rep.SetColor(QColor(10, 20, 30));
    const PrimitiveLists lists = AskPrimitives(rep);
    ASSERT_EQ(lists.options.size(), 2);
    EXPECT_EQ(lists.options[0].GetColor(), QColor(10, 20, 30));
    EXPECT_EQ(lists.options[1].GetColor(), QColor(10, 20, 30));
    EXPECT_EQ(lists.options[0].GetLineThickness(), 2.0);
    EXPECT_EQ(priorities(lists.options), (QList<int>{1, 2}));
    // The options given to the constructor are values of their own.
    EXPECT_FALSE(first.GetColor().isValid());
}
