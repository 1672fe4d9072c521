// Tests of KEZMathZeroMagnitudeVectorException.

#include <KEZMathZeroMagnitudeVectorException.h>

#include <gtest/gtest.h>

#include <memory>
#include <typeinfo>

TEST(MathZeroMagnitudeVectorException, DefaultHasAMessage)
{
    const KEZMathZeroMagnitudeVectorException exception;
    EXPECT_EQ(exception.GetMessage(), QStringLiteral("vector has zero magnitude"));
    EXPECT_STREQ(exception.what(), "vector has zero magnitude");
}

TEST(MathZeroMagnitudeVectorException, IsCaughtAsKEZSysException)
{
    try {
        throw KEZMathZeroMagnitudeVectorException();
    } catch (const KEZSysException &exception) {
        EXPECT_EQ(exception.GetMessage(), QStringLiteral("vector has zero magnitude"));
        return;
    }
    FAIL() << "not caught as KEZSysException";
}

TEST(MathZeroMagnitudeVectorException, CloneAndRaiseKeepTheType)
{
    const KEZMathZeroMagnitudeVectorException original;
    const std::unique_ptr<KEZSysException> clone(static_cast<const KEZSysException &>(original).clone());
    EXPECT_EQ(typeid(*clone), typeid(KEZMathZeroMagnitudeVectorException));
    EXPECT_THROW(static_cast<const KEZSysException &>(original).raise(), KEZMathZeroMagnitudeVectorException);
}

TEST(MathZeroMagnitudeVectorException, CopyAndAssignmentKeepTheMessage)
{
    const KEZMathZeroMagnitudeVectorException original;
    KEZMathZeroMagnitudeVectorException assigned;
    assigned = original;
    const KEZMathZeroMagnitudeVectorException copy(original);
    EXPECT_STREQ(assigned.what(), "vector has zero magnitude");
    EXPECT_STREQ(copy.what(), "vector has zero magnitude");
}
