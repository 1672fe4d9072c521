// Tests of KEZSysException: message, what(), copies, clone() and raise().

#include <KEZSysException.h>

#include <QException>

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

TEST(SysException, KeepsTheMessageGivenToTheConstructor)
{
    const KEZSysException exception(QStringLiteral("batch count already zero"));
    EXPECT_EQ(exception.GetMessage(), QStringLiteral("batch count already zero"));
}

TEST(SysException, WhatAnswersTheMessageAsUtf8)
{
    // "Maß" is M, a, then U+00DF, which UTF-8 writes as the two bytes C3 9F.
    const KEZSysException exception(QStringLiteral("Ma\u00DF"));
    EXPECT_STREQ(exception.what(), "Ma\xC3\x9F");
}

TEST(SysException, WhatOfAnEmptyMessageIsAnEmptyString)
{
    const KEZSysException exception{QString()};
    ASSERT_NE(exception.what(), nullptr);
    EXPECT_STREQ(exception.what(), "");
}

TEST(SysException, WhatStaysValidWhileTheExceptionLives)
{
    const char *text = nullptr;
    auto exception = std::make_unique<KEZSysException>(QStringLiteral("first"));
    text = exception->what();
    // Another exception built and dropped in between must not disturb the bytes.
    { KEZSysException other(QStringLiteral("second, longer message")); (void)other.what(); }
    EXPECT_STREQ(text, "first");
}

TEST(SysException, CopyAndAssignmentCarryTheMessage)
{
    const KEZSysException original(QStringLiteral("original"));
    const KEZSysException copy(original);
    EXPECT_EQ(copy.GetMessage(), QStringLiteral("original"));
    EXPECT_STREQ(copy.what(), "original");

    KEZSysException assigned(QStringLiteral("other"));
    assigned = original;
    EXPECT_EQ(assigned.GetMessage(), QStringLiteral("original"));
    EXPECT_STREQ(assigned.what(), "original");
}

TEST(SysException, IsAQException)
{
    try {
        throw KEZSysException(QStringLiteral("misuse"));
    } catch (const QException &exception) {
        EXPECT_STREQ(exception.what(), "misuse");
        return;
    }
    FAIL() << "KEZSysException was not caught as QException";
}

TEST(SysException, CloneGivesAnIndependentCopyOfTheSameType)
{
    const KEZSysException original(QStringLiteral("cloned"));
    const std::unique_ptr<QException> clone(static_cast<const QException &>(original).clone());
    ASSERT_NE(clone.get(), nullptr);
    EXPECT_NE(clone.get(), static_cast<const QException *>(&original));
    EXPECT_EQ(typeid(*clone), typeid(KEZSysException));
    EXPECT_STREQ(clone->what(), "cloned");
}

TEST(SysException, RaiseThrowsACopyByValue)
{
    const KEZSysException original(QStringLiteral("raised"));
    try {
        static_cast<const QException &>(original).raise();
    } catch (const KEZSysException &caught) {
        EXPECT_NE(&caught, &original);
        EXPECT_EQ(caught.GetMessage(), QStringLiteral("raised"));
        return;
    }
    FAIL() << "raise() did not throw a KEZSysException";
}
