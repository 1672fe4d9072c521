// Tests of KEZVisSelectionFilter, KEZVisCompoundFilter and KEZVisFunctionFilter.

#include "SceneTestSupport.h"

#include "KEZVisCompoundFilter.h"
#include "KEZVisFunctionFilter.h"
#include "KEZVisVirtualObject.h"

#include <QPointer>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

using namespace SceneTest;

namespace {

// A filter with a fixed answer that counts its questions and reports its death.
class AnswerFilter : public KEZVisSelectionFilter
{
public:
    AnswerFilter(bool answer, int *questions = nullptr, bool *deleted = nullptr)
        : KEZVisSelectionFilter(false)
        , m_answer(answer)
        , m_questions(questions)
        , m_deleted(deleted)
    {
    }
    ~AnswerFilter() override
    {
        if (m_deleted)
            *m_deleted = true;
    }
    bool IsSelectable(const KEZVisObject *) const override
    {
        if (m_questions)
            ++*m_questions;
        return m_answer;
    }

private:
    bool m_answer;
    int *m_questions;
    bool *m_deleted;
};

// A filter that describes itself.
class DescribedFilter : public KEZVisSelectionFilter
{
public:
    DescribedFilter()
        : KEZVisSelectionFilter(true)
    {
    }
    bool IsSelectable(const KEZVisObject *) const override { return true; }

protected:
    QString GetAutoDescription() const override { return QStringLiteral("automatic"); }
};

} // namespace

TEST(CompoundFilter, DefaultFilterAcceptsEverythingIsMultiSelectionAndHasNoDescription)
{
    KEZVisCompoundFilter filter;
    KEZVisVirtualObject object(nullptr);
    EXPECT_TRUE(filter.IsSelectable(&object));
    EXPECT_TRUE(filter.IsSelectable(nullptr));
    EXPECT_TRUE(filter.IsAcceptAll());
    EXPECT_TRUE(filter.IsMultiSelection());
    EXPECT_TRUE(filter.GetDescription().isEmpty());
    EXPECT_TRUE(filter.GetSubFilters().isEmpty());
    EXPECT_EQ(filter.parent(), nullptr);
}

TEST(CompoundFilter, AllOfAndAnyOfWithoutSubFiltersBothAccept)
{
    KEZVisCompoundFilter allOf(true, {}, KEZVisCompoundFilter::AllOf);
    KEZVisCompoundFilter anyOf(true, {}, KEZVisCompoundFilter::AnyOf);
    KEZVisVirtualObject object(nullptr);
    EXPECT_TRUE(allOf.IsSelectable(&object));
    EXPECT_TRUE(anyOf.IsSelectable(&object));
}

TEST(CompoundFilter, AnyOfWithOnlyRefusingSubFiltersRefusesAndAsksEachOnce)
{
    int first = 0;
    int second = 0;
    int third = 0;
    KEZVisCompoundFilter filter(true,
                                {new AnswerFilter(false, &first), new AnswerFilter(false, &second),
                                 new AnswerFilter(false, &third)},
                                KEZVisCompoundFilter::AnyOf);
    EXPECT_FALSE(filter.IsSelectable(nullptr));
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 1);
    EXPECT_EQ(third, 1);
}

TEST(CompoundFilter, AnyOfStopsAtTheFirstYes)
{
    int first = 0;
    int second = 0;
    int third = 0;
    KEZVisCompoundFilter filter(true,
                                {new AnswerFilter(false, &first), new AnswerFilter(true, &second),
                                 new AnswerFilter(true, &third)},
                                KEZVisCompoundFilter::AnyOf);
    EXPECT_TRUE(filter.IsSelectable(nullptr));
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 1);
    EXPECT_EQ(third, 0);
}

TEST(CompoundFilter, AllOfStopsAtTheFirstNo)
{
    int first = 0;
    int second = 0;
    int third = 0;
    KEZVisCompoundFilter filter(true,
                                {new AnswerFilter(true, &first), new AnswerFilter(false, &second),
                                 new AnswerFilter(false, &third)},
                                KEZVisCompoundFilter::AllOf);
    EXPECT_FALSE(filter.IsSelectable(nullptr));
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 1);
    EXPECT_EQ(third, 0);
}

TEST(CompoundFilter, AllOfWithOnlyAcceptingSubFiltersAccepts)
{
    KEZVisCompoundFilter filter(true, {new AnswerFilter(true), new AnswerFilter(true)}, KEZVisCompoundFilter::AllOf);
    EXPECT_TRUE(filter.IsSelectable(nullptr));
}

TEST(CompoundFilter, EveryTypeOtherThanAnyOfActsLikeAllOf)
{
    int second = 0;
    KEZVisCompoundFilter filter(true, {new AnswerFilter(true), new AnswerFilter(false, &second)},
                                static_cast<KEZVisCompoundFilter::Type>(7));
    EXPECT_FALSE(filter.IsSelectable(nullptr));
    EXPECT_EQ(second, 1);
}

TEST(CompoundFilter, RemoveSubFilterOfAFilterListedTwiceRemovesBothAndTheFilterSurvivesTheCompound)
{
    bool deleted = false;
    auto *twice = new AnswerFilter(false, nullptr, &deleted);
    auto *other = new AnswerFilter(true);
    {
        KEZVisCompoundFilter filter(true, {twice, other, twice}, KEZVisCompoundFilter::AllOf);
        filter.RemoveSubFilter(twice);
        EXPECT_EQ(filter.GetSubFilters(), QList<const KEZVisSelectionFilter *>({other}));
    }
    EXPECT_FALSE(deleted);
    delete twice;
    EXPECT_TRUE(deleted);
}

TEST(CompoundFilter, RemovingTheLastSubFilterMakesItAcceptEverything)
{
    auto *refusing = new AnswerFilter(false);
    KEZVisCompoundFilter filter(true, {refusing}, KEZVisCompoundFilter::AnyOf);
    EXPECT_FALSE(filter.IsAcceptAll());
    EXPECT_FALSE(filter.IsSelectable(nullptr));
    filter.RemoveSubFilter(refusing);
    EXPECT_TRUE(filter.IsAcceptAll());
    EXPECT_TRUE(filter.IsSelectable(nullptr));
    delete refusing;
}

TEST(CompoundFilter, AddSubFilterAppendsWithoutCheckForRepeats)
{
    KEZVisCompoundFilter filter;
    auto *sub = new AnswerFilter(true);
    filter.AddSubFilter(sub);
    filter.AddSubFilter(sub);
    EXPECT_EQ(filter.GetSubFilters(), QList<const KEZVisSelectionFilter *>({sub, sub}));
    filter.RemoveSubFilter(sub);  // one owner: take it out before the compound dies
    delete sub;
}

TEST(CompoundFilter, DestructorDeletesEverySubFilter)
{
    bool firstDeleted = false;
    bool secondDeleted = false;
    {
        KEZVisCompoundFilter filter(true, {new AnswerFilter(true, nullptr, &firstDeleted), nullptr},
                                    KEZVisCompoundFilter::AnyOf);
        filter.AddSubFilter(new AnswerFilter(true, nullptr, &secondDeleted));
    }
    EXPECT_TRUE(firstDeleted);
    EXPECT_TRUE(secondDeleted);
}

TEST(CompoundFilter, ConstructorFromFunctionsWrapsEachInAFunctionFilterInOrder)
{
    QList<int> calls;
    QList<std::function<bool(const KEZVisObject *)>> functions{
        [&calls](const KEZVisObject *) {
            calls.append(1);
            return false;
        },
        [&calls](const KEZVisObject *) {
            calls.append(2);
            return true;
        },
    };
    KEZVisCompoundFilter filter(false, functions, KEZVisCompoundFilter::AnyOf);
    EXPECT_FALSE(filter.IsMultiSelection());
    const QList<const KEZVisSelectionFilter *> subFilters = filter.GetSubFilters();
    ASSERT_EQ(subFilters.size(), 2);
    for (const KEZVisSelectionFilter *sub : subFilters) {
        ASSERT_NE(qobject_cast<const KEZVisFunctionFilter *>(sub), nullptr);
        EXPECT_FALSE(sub->IsMultiSelection());
    }
    calls.clear();
    EXPECT_TRUE(filter.IsSelectable(nullptr));
    EXPECT_EQ(calls, QList<int>({1, 2}));
}

TEST(CompoundFilter, MultiSelectionOfSubFiltersCountsForNothing)
{
    KEZVisCompoundFilter filter(true, {new AnswerFilter(true)}, KEZVisCompoundFilter::AnyOf);
    EXPECT_TRUE(filter.IsMultiSelection());
    EXPECT_FALSE(filter.GetSubFilters().first()->IsMultiSelection());
}

TEST(SelectionFilter, SetDescriptionEmptyBringsBackTheAutoDescription)
{
    DescribedFilter filter;
    EXPECT_EQ(filter.GetDescription(), QStringLiteral("automatic"));
    filter.SetDescription(QStringLiteral("walls only"));
    EXPECT_EQ(filter.GetDescription(), QStringLiteral("walls only"));
    filter.SetDescription(QStringLiteral(""));
    EXPECT_EQ(filter.GetDescription(), QStringLiteral("automatic"));
}

TEST(SelectionFilter, FiltersHaveNoSignalsSlotsOrPropertiesOfTheirOwn)
{
    for (const QMetaObject *meta : {&KEZVisSelectionFilter::staticMetaObject, &KEZVisCompoundFilter::staticMetaObject,
                                    &KEZVisFunctionFilter::staticMetaObject}) {
        EXPECT_EQ(meta->methodCount(), meta->methodOffset()) << meta->className();
        EXPECT_EQ(meta->propertyCount(), meta->propertyOffset()) << meta->className();
    }
}

TEST(FunctionFilter, AsksItsFunctionWithTheObject)
{
    KEZVisVirtualObject wanted(nullptr);
    KEZVisVirtualObject other(nullptr);
    const KEZVisObject *asked = nullptr;
    KEZVisFunctionFilter filter(true, [&](const KEZVisObject *object) {
        asked = object;
        return object == &wanted;
    });
    EXPECT_TRUE(filter.IsSelectable(&wanted));
    EXPECT_EQ(asked, &wanted);
    EXPECT_FALSE(filter.IsSelectable(&other));
    EXPECT_EQ(asked, &other);
    EXPECT_TRUE(filter.IsMultiSelection());
}

TEST(FunctionFilter, KeepsACopyOfTheFunction)
{
    std::function<bool(const KEZVisObject *)> function = [](const KEZVisObject *) { return true; };
    KEZVisFunctionFilter filter(false, function);
    function = [](const KEZVisObject *) { return false; };
    EXPECT_TRUE(filter.IsSelectable(nullptr));
    EXPECT_FALSE(filter.IsMultiSelection());
}

TEST(FunctionFilter, EmptyFunctionRaisesBadFunctionCall)
{
    KEZVisFunctionFilter filter(true, std::function<bool(const KEZVisObject *)>());
    EXPECT_THROW(filter.IsSelectable(nullptr), std::bad_function_call);
}
