// Tests of what KEZVisRep itself does: the box over GetPrimitives, and the
// empty stream operations of the base.

#include "KEZVisRep.h"

#include "TestPrimitives.h"

#include <QDataStream>
#include <QIODevice>

#include <gtest/gtest.h>

namespace {

// A rep that answers fixed lists, as a subclass outside the library would.
class ListRep : public KEZVisRep
{
public:
    ListRep(const QList<const KEZVisPrimitive *> &primitives, const QList<KEZVisOptions> &options)
        : m_primitives(primitives), m_options(options)
    {
    }

    void GetPrimitives(QList<const KEZVisPrimitive *> &primitives, QList<KEZVisOptions> &options) const override
    {
        primitives.append(m_primitives);
        options.append(m_options);
    }

private:
    QList<const KEZVisPrimitive *> m_primitives;
    QList<KEZVisOptions> m_options;
};

} // namespace

TEST(Rep, BoxOfARepWithoutPrimitivesIsTheDefaultBox)
{
    ListRep rep({}, {});
    EXPECT_EQ(rep.GetBoundingBox(), KEZMathBoundingBox());
}

TEST(Rep, BoxStartsFromTheFirstPrimitiveAndTakesInTheOthers)
{
    OptionsBoxPrimitive a(0.0, 0.0, 0.0);
    OptionsBoxPrimitive b(5.0, -3.0, 2.0);
    ListRep rep({&a, &b}, {KEZVisOptions(), KEZVisOptions()});
    // Default priority 1 shifts each cube by 1 along x.
    EXPECT_EQ(rep.GetBoundingBox(), KEZMathBoundingBox(KEZMathPoint(1.0, -3.0, 0.0), KEZMathPoint(7.0, 1.0, 3.0)));
}

TEST(Rep, EachPrimitiveIsAskedWithItsOwnOptions)
{
    OptionsBoxPrimitive a(0.0, 0.0, 0.0);
    OptionsBoxPrimitive b(0.0, 0.0, 0.0);
    ListRep rep({&a, &b}, {optionsWithPriority(10), optionsWithPriority(-4)});
    EXPECT_EQ(rep.GetBoundingBox(), KEZMathBoundingBox(KEZMathPoint(-4.0, 0.0, 0.0), KEZMathPoint(11.0, 1.0, 1.0)));
    ASSERT_EQ(a.asked.size(), 1);
    ASSERT_EQ(b.asked.size(), 1);
    EXPECT_EQ(a.asked.first().GetPriority(), 10);
    EXPECT_EQ(b.asked.first().GetPriority(), -4);
}

TEST(Rep, BoxDoesNotTakeInTheOriginOfTheDefaultBox)
{
    OptionsBoxPrimitive a(10.0, 10.0, 10.0);
    ListRep rep({&a}, {optionsWithPriority(0)});
    EXPECT_EQ(rep.GetBoundingBox(), KEZMathBoundingBox(KEZMathPoint(10.0, 10.0, 10.0), KEZMathPoint(11.0, 11.0, 11.0)));
}

TEST(Rep, NullPrimitivesAreSkippedByTheBox)
{
    OptionsBoxPrimitive a(2.0, 2.0, 2.0);
    ListRep rep({nullptr, &a, nullptr}, {optionsWithPriority(0), optionsWithPriority(0), optionsWithPriority(0)});
    EXPECT_EQ(rep.GetBoundingBox(), KEZMathBoundingBox(KEZMathPoint(2.0, 2.0, 2.0), KEZMathPoint(3.0, 3.0, 3.0)));
    ListRep onlyNull({nullptr}, {KEZVisOptions()});
    EXPECT_EQ(onlyNull.GetBoundingBox(), KEZMathBoundingBox());
}

TEST(Rep, BaseSaveWritesNothingAndBaseLoadReadsNothing)
{
    ListRep rep({}, {});
    QByteArray bytes;
    {
        QDataStream out(&bytes, QIODevice::WriteOnly);
        rep.Save(out);
        EXPECT_EQ(out.status(), QDataStream::Ok);
    }
    EXPECT_TRUE(bytes.isEmpty());
    const QByteArray input("\x01\x02\x03\x04", 4);
    QDataStream in(input);
    rep.Load(in);
    EXPECT_EQ(in.device()->pos(), 0);
    EXPECT_EQ(in.status(), QDataStream::Ok);
}

TEST(Rep, HasNoParent)
{
    ListRep rep({}, {});
    EXPECT_EQ(rep.parent(), nullptr);
    EXPECT_TRUE(rep.inherits("KEZVisRep"));
}
