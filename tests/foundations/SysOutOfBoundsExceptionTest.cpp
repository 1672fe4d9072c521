// Tests of KEZSysOutOfBoundsException: its accessors, message, clone() and raise().

#include <KEZSysOutOfBoundsException.h>

#include <QSize>

#include <gtest/gtest.h>

#include <memory>
#include <typeinfo>

TEST(SysOutOfBoundsException, KeepsValueLimitsAndFlags)
{
    const KEZSysOutOfBoundsException exception(7, 0, 4, true, false);
    EXPECT_EQ(exception.GetValue(), QVariant(7));
    EXPECT_EQ(exception.GetLowerLimit(), QVariant(0));
    EXPECT_EQ(exception.GetUpperLimit(), QVariant(4));
    EXPECT_TRUE(exception.IsLowerLimitIncluded());
    EXPECT_FALSE(exception.IsUpperLimitIncluded());
}

TEST(SysOutOfBoundsException, InvalidLimitsStayInvalid)
{
    const KEZSysOutOfBoundsException exception(0.0, 0.0, QVariant(), false, false);
    EXPECT_TRUE(exception.GetLowerLimit().isValid());
    EXPECT_FALSE(exception.GetUpperLimit().isValid());
    EXPECT_FALSE(exception.IsLowerLimitIncluded());
    EXPECT_FALSE(exception.IsUpperLimitIncluded());
}

TEST(SysOutOfBoundsException, MessageOfAnInclusiveRangeUsesBrackets)
{
    const KEZSysOutOfBoundsException exception(7, 0, 4, true, true);
    EXPECT_EQ(exception.GetMessage(), QStringLiteral("value 7 is out of bounds [0, 4]"));
}

TEST(SysOutOfBoundsException, MessageOfAnExclusiveRangeUsesParentheses)
{
    const KEZSysOutOfBoundsException exception(-1.5, 0.0, 10.0, false, false);
    EXPECT_EQ(exception.GetMessage(), QStringLiteral("value -1.5 is out of bounds (0, 10)"));
}

TEST(SysOutOfBoundsException, MessageShowsAMissingLimitAsInfinity)
{
    const KEZSysOutOfBoundsException above(0.0, 0.0, QVariant(), false, false);
    EXPECT_EQ(above.GetMessage(), QStringLiteral("value 0 is out of bounds (0, +inf)"));
    const KEZSysOutOfBoundsException below(12, QVariant(), 10, true, true);
    EXPECT_EQ(below.GetMessage(), QStringLiteral("value 12 is out of bounds (-inf, 10]"));
}

TEST(SysOutOfBoundsException, MessageNamesAValueWithoutTextByItsType)
{
    const KEZSysOutOfBoundsException exception(QVariant::fromValue(QSize(1, 2)), 0, 1, true, true);
    EXPECT_EQ(exception.GetMessage(), QStringLiteral("value <QSize> is out of bounds [0, 1]"));
}

TEST(SysOutOfBoundsException, CloneKeepsTypeAndFields)
{
    const KEZSysOutOfBoundsException original(5, 1, 3, true, false);
    const std::unique_ptr<KEZSysException> clone(static_cast<const KEZSysException &>(original).clone());
    ASSERT_EQ(typeid(*clone), typeid(KEZSysOutOfBoundsException));
    const auto &typed = static_cast<const KEZSysOutOfBoundsException &>(*clone);
    EXPECT_EQ(typed.GetValue(), QVariant(5));
    EXPECT_EQ(typed.GetLowerLimit(), QVariant(1));
    EXPECT_EQ(typed.GetUpperLimit(), QVariant(3));
    EXPECT_TRUE(typed.IsLowerLimitIncluded());
    EXPECT_FALSE(typed.IsUpperLimitIncluded());
    EXPECT_EQ(typed.GetMessage(), original.GetMessage());
}

TEST(SysOutOfBoundsException, RaiseThrowsTheDerivedTypeWithItsFields)
{
    const KEZSysOutOfBoundsException original(5, 1, 3, false, true);
    try {
        static_cast<const KEZSysException &>(original).raise();
    } catch (const KEZSysOutOfBoundsException &caught) {
        EXPECT_EQ(caught.GetValue(), QVariant(5));
        EXPECT_FALSE(caught.IsLowerLimitIncluded());
        EXPECT_TRUE(caught.IsUpperLimitIncluded());
        return;
    } catch (...) {
    }
    FAIL() << "raise() did not throw a KEZSysOutOfBoundsException";
}

TEST(SysOutOfBoundsException, AssignmentCarriesEveryField)
{
    KEZSysOutOfBoundsException target(0, 0, 0, false, false);
    target = KEZSysOutOfBoundsException(9, 2, 8, true, true);
    EXPECT_EQ(target.GetValue(), QVariant(9));
    EXPECT_EQ(target.GetLowerLimit(), QVariant(2));
    EXPECT_EQ(target.GetUpperLimit(), QVariant(8));
    EXPECT_TRUE(target.IsLowerLimitIncluded());
    EXPECT_TRUE(target.IsUpperLimitIncluded());
    EXPECT_STREQ(target.what(), "value 9 is out of bounds [2, 8]");
}
