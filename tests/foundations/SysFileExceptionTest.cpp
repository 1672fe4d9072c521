// Tests of KEZSysFileException: a KEZSysException with its own clone() and raise().

#include <KEZSysFileException.h>

#include <gtest/gtest.h>

#include <memory>
#include <typeinfo>

TEST(SysFileException, KeepsItsMessage)
{
    const KEZSysFileException exception(QStringLiteral("disk full"));
    EXPECT_EQ(exception.GetMessage(), QStringLiteral("disk full"));
    EXPECT_STREQ(exception.what(), "disk full");
}

TEST(SysFileException, IsCaughtAsKEZSysException)
{
    try {
        throw KEZSysFileException(QStringLiteral("disk full"));
    } catch (const KEZSysException &exception) {
        EXPECT_EQ(exception.GetMessage(), QStringLiteral("disk full"));
        return;
    }
    FAIL() << "KEZSysFileException was not caught as KEZSysException";
}

TEST(SysFileException, CloneThroughTheBaseKeepsTheDerivedType)
{
    const KEZSysFileException original(QStringLiteral("disk full"));
    const std::unique_ptr<KEZSysException> clone(static_cast<const KEZSysException &>(original).clone());
    EXPECT_EQ(typeid(*clone), typeid(KEZSysFileException));
    EXPECT_EQ(clone->GetMessage(), QStringLiteral("disk full"));
}

TEST(SysFileException, RaiseThroughTheBaseThrowsTheDerivedType)
{
    const KEZSysFileException original(QStringLiteral("disk full"));
    try {
        static_cast<const KEZSysException &>(original).raise();
    } catch (const KEZSysFileException &caught) {
        EXPECT_EQ(caught.GetMessage(), QStringLiteral("disk full"));
        return;
    } catch (...) {
    }
    FAIL() << "raise() did not throw a KEZSysFileException";
}

TEST(SysFileException, AssignmentCarriesTheMessage)
{
    KEZSysFileException target(QStringLiteral("a"));
    target = KEZSysFileException(QStringLiteral("b"));
    EXPECT_STREQ(target.what(), "b");
}
