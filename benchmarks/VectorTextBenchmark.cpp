// Laying out vector text of 100 KB, 300 KB and 1 MB, in lines of 100
// characters, and reporting polylines per second. The layout is linear in
// the text: from 100 KB to 1 MB the time may grow about ten times, not more.
// Also the cost of constructing a font that is already cached (a walk of the
// cache, no parsing) and of looking up glyphs.

#include "CpuTimeReporter.h"

#include "KEZVisOptions.h"
#include "KEZVisRep.h"
#include "KEZVisVectorFont.h"
#include "KEZVisVectorText.h"

#include <QCoreApplication>
#include <QString>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>

namespace {

constexpr int LineLength = 100;

// Lines of 99 characters of the built-in font, blanks among them, and a line break.
QString SampleText(int lines)
{
    static const QString pattern =
        QStringLiteral("The quick brown fox jumps over the lazy dog 0123456789 (x + y) * z = 42; ABCDEFGHIJKLMNOPQRSTUVW");
    QString text;
    text.reserve(qsizetype(lines) * LineLength);
    for (int line = 0; line < lines; ++line) {
        text.append(pattern.left(LineLength - 1));
        text.append(QChar(u'\n'));
    }
    return text;
}

KEZVisVectorText SampleLayout(int lines)
{
    KEZVisVectorText text(SampleText(lines), KEZVisVectorFont());
    text.SetTextSize(2.5);
    text.SetTiltAngle(0.2);
    text.SetAnchor(KEZVisVectorText::Middle);
    text.SetJustification(KEZVisVectorText::JustifyCenter);
    text.SetDecorations(KEZVisVectorText::Underline);
    return text;
}

// GetPolylines() of a text of state.range(0) lines.
void Layout(benchmark::State &state)
{
    const KEZVisVectorText text = SampleLayout(int(state.range(0)));
    qsizetype polylines = 0;
    for (auto _ : state) {
        const QList<KEZMathSetOfPoints> result = text.GetPolylines();
        polylines += result.size();
        benchmark::DoNotOptimize(result.constData());
    }
    state.counters["polylines/s"] = benchmark::Counter(double(polylines), benchmark::Counter::kIsRate);
    state.counters["bytes"] = double(text.GetText().size());
}

// CreateRep() with doubled strokes, for the cost of the primitives beside the layout.
void Rep(benchmark::State &state)
{
    const KEZVisVectorText text = SampleLayout(int(state.range(0)));
    for (auto _ : state) {
        const std::unique_ptr<KEZVisRep> rep(text.CreateRep(KEZVisOptions(), true, 0.5));
        benchmark::DoNotOptimize(rep.get());
    }
}

// Constructing a font that is cached already.
void CachedFont(benchmark::State &state)
{
    const KEZVisVectorFont loaded(QStringLiteral("simple"));
    for (auto _ : state) {
        const KEZVisVectorFont font(QStringLiteral("simple"));
        benchmark::DoNotOptimize(&font);
    }
}

// Looking up a glyph that the font has, and one that it lacks.
void GlyphLookup(benchmark::State &state)
{
    const KEZVisVectorFont font;
    const QChar c = state.range(0) ? QChar(u'g') : QChar(u'@');
    for (auto _ : state) {
        const KEZVisVectorFontChar glyph = font.GetCharacter(c);
        benchmark::DoNotOptimize(&glyph);
    }
}

} // namespace

BENCHMARK(Layout)->Arg(1000)->Arg(3000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(Rep)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(CachedFont);
BENCHMARK(GlyphLookup)->Arg(1)->Arg(0);

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    CpuTimeReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    const double small = reporter.Time("Layout/1000");
    const double large = reporter.Time("Layout/10000");
    if (small > 0 && large > 0)
        std::printf("Layout of 1 MB against 100 KB: %.2f times the CPU time\n", large / small);
    const double rep = reporter.Time("Rep/10000");
    if (rep > 0 && large > 0)
        std::printf("Doubled rep of 1 MB against its layout alone: %.2f times the CPU time\n", rep / large);
    benchmark::Shutdown();
    return 0;
}
