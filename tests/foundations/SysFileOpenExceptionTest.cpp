// Tests of KEZSysFileOpenException: path, error text, message, clone() and raise().

#include <KEZSysFileOpenException.h>

#include <gtest/gtest.h>

#include <memory>
#include <typeinfo>

TEST(SysFileOpenException, KeepsThePathAndTheErrorText)
{
    const KEZSysFileOpenException exception(QStringLiteral("fonts/simple.vct"),
                                            QStringLiteral("No such file or directory"));
    EXPECT_EQ(exception.GetPath(), QStringLiteral("fonts/simple.vct"));
    EXPECT_EQ(exception.GetErrorText(), QStringLiteral("No such file or directory"));
}

TEST(SysFileOpenException, MessageNamesThePathAndTheError)
{
    const KEZSysFileOpenException exception(QStringLiteral("a.vct"), QStringLiteral("Permission denied"));
    EXPECT_EQ(exception.GetMessage(), QStringLiteral("cannot open file \"a.vct\": Permission denied"));
    EXPECT_STREQ(exception.what(), "cannot open file \"a.vct\": Permission denied");
}

TEST(SysFileOpenException, PercentSignsInThePathAreKeptAsTheyAre)
{
    const KEZSysFileOpenException exception(QStringLiteral("%2%1.vct"), QStringLiteral("gone"));
    EXPECT_EQ(exception.GetMessage(), QStringLiteral("cannot open file \"%2%1.vct\": gone"));
}

TEST(SysFileOpenException, IsCaughtAsFileAndAsSystemException)
{
    try {
        throw KEZSysFileOpenException(QStringLiteral("p"), QStringLiteral("e"));
    } catch (const KEZSysFileException &exception) {
        EXPECT_EQ(exception.GetMessage(), QStringLiteral("cannot open file \"p\": e"));
    }
    try {
        throw KEZSysFileOpenException(QStringLiteral("p"), QStringLiteral("e"));
    } catch (const KEZSysException &exception) {
        EXPECT_EQ(exception.GetMessage(), QStringLiteral("cannot open file \"p\": e"));
        return;
    }
    FAIL() << "not caught as KEZSysException";
}

TEST(SysFileOpenException, CloneKeepsTypePathAndErrorText)
{
    const KEZSysFileOpenException original(QStringLiteral("p"), QStringLiteral("e"));
    const std::unique_ptr<KEZSysException> clone(static_cast<const KEZSysException &>(original).clone());
    ASSERT_EQ(typeid(*clone), typeid(KEZSysFileOpenException));
    const auto &typed = static_cast<const KEZSysFileOpenException &>(*clone);
    EXPECT_EQ(typed.GetPath(), QStringLiteral("p"));
    EXPECT_EQ(typed.GetErrorText(), QStringLiteral("e"));
}

TEST(SysFileOpenException, RaiseThrowsTheDerivedTypeWithItsFields)
{
    const KEZSysFileOpenException original(QStringLiteral("p"), QStringLiteral("e"));
    try {
        static_cast<const KEZSysException &>(original).raise();
    } catch (const KEZSysFileOpenException &caught) {
        EXPECT_EQ(caught.GetPath(), QStringLiteral("p"));
        EXPECT_EQ(caught.GetErrorText(), QStringLiteral("e"));
        return;
    } catch (...) {
    }
    FAIL() << "raise() did not throw a KEZSysFileOpenException";
}

TEST(SysFileOpenException, CopyAndAssignmentCarryTheFields)
{
    const KEZSysFileOpenException original(QStringLiteral("p"), QStringLiteral("e"));
    KEZSysFileOpenException assigned(QStringLiteral("x"), QStringLiteral("y"));
    assigned = original;
    const KEZSysFileOpenException copy(original);
    EXPECT_EQ(assigned.GetPath(), QStringLiteral("p"));
    EXPECT_EQ(assigned.GetErrorText(), QStringLiteral("e"));
    EXPECT_STREQ(assigned.what(), "cannot open file \"p\": e");
    EXPECT_EQ(copy.GetPath(), QStringLiteral("p"));
}
