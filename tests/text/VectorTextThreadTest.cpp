// Fonts constructed and text laid out from eight threads at once, starting
// together on a fresh process, so that the first loads of fonts race through
// the font cache. Run under ThreadSanitizer by ./build.sh tsan.

#include <KEZVisVectorFont.h>
#include <KEZVisVectorText.h>

#include <QList>
#include <QString>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

constexpr int ThreadCount = 8;

KEZVisVectorText Sample(const KEZVisVectorFont &font, int variant)
{
    KEZVisVectorText text(QStringLiteral("Thread %1\nABC abc\n\n0123").arg(variant), font);
    text.SetTextSize(2.0 + variant);
    text.SetAnchor(KEZVisVectorText::Anchor(variant % 9));
    text.SetJustification(KEZVisVectorText::Justification(variant % 3));
    text.SetOrientation(variant % 2 ? KEZVisVectorText::RightToLeft : KEZVisVectorText::LeftToRight);
    text.SetDecorations(QFlags<KEZVisVectorText::Decoration>::fromInt(variant % 8));
    text.SetTiltAngle(0.1 * variant);
    return text;
}

struct ThreadResult
{
    QList<KEZVisVectorFont> fonts;
    QList<QList<KEZMathSetOfPoints>> layouts;
    QList<QString> names;
};

} // namespace

TEST(VectorTextThreads, FontsAndLayoutsFromEightThreadsAtOnceAgreeWithOneThread)
{
    const QList<QString> fontNames{QString(), QStringLiteral("simple"), QStringLiteral("wide"),
                                   QStringLiteral("unknown"), QStringLiteral("Zeta")};
    std::vector<ThreadResult> results(ThreadCount);
    std::atomic<int> waiting{ThreadCount};
    std::vector<std::thread> threads;
    for (int t = 0; t < ThreadCount; ++t) {
        threads.emplace_back([&, t] {
            // Start together, so that the first loads overlap.
            waiting.fetch_sub(1);
            while (waiting.load() > 0)
                std::this_thread::yield();
            ThreadResult &result = results[size_t(t)];
            for (int round = 0; round < 5; ++round) {
                for (const QString &name : fontNames) {
                    const KEZVisVectorFont font(name);
                    result.fonts.append(font);
                    result.layouts.append(Sample(font, t).GetPolylines());
                }
                result.names = KEZVisVectorFont::GetFontNames();
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();

    // The same work on this thread, now that every font is loaded.
    for (int t = 0; t < ThreadCount; ++t) {
        const ThreadResult &result = results[size_t(t)];
        ASSERT_EQ(result.fonts.size(), 5 * fontNames.size());
        EXPECT_EQ(result.names, KEZVisVectorFont::GetFontNames());
        for (qsizetype i = 0; i < result.fonts.size(); ++i) {
            const KEZVisVectorFont font(fontNames.at(i % fontNames.size()));
            // One record per font for all threads: each loaded record has its own name string.
            EXPECT_EQ(result.fonts.at(i).GetName().constData(), font.GetName().constData());
            EXPECT_EQ(result.layouts.at(i), Sample(font, t).GetPolylines());
        }
    }
}

TEST(VectorTextThreads, FinishedTextsAreReadFromEightThreadsAtOnce)
{
    const KEZVisVectorText shared = Sample(KEZVisVectorFont(), 3);
    const QList<KEZMathSetOfPoints> expected = shared.GetPolylines();
    std::vector<int> matches(ThreadCount, 0);
    std::vector<std::thread> threads;
    for (int t = 0; t < ThreadCount; ++t) {
        threads.emplace_back([&, t] {
            for (int round = 0; round < 20; ++round) {
                KEZVisVectorText copy = shared; // shares the record, then detaches on write
                copy.SetTextSize(copy.GetTextSize());
                if (shared.GetPolylines() == expected && copy.GetPolylines() == expected)
                    ++matches[size_t(t)];
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    for (int t = 0; t < ThreadCount; ++t)
        EXPECT_EQ(matches[size_t(t)], 20) << "thread " << t;
}
