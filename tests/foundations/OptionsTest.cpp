// Tests of KEZVisOptions: defaults, implicit sharing, comparison, hash, stream
// form, JSON form and meta-type declarations.

#include <KEZVisOptions.h>

#include <KEZSysColorHash.h>
#include <KEZSysJsonConverters.h>

#include <QByteArray>
#include <QDataStream>
#include <QFont>
#include <QHash>
#include <QIODevice>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QMetaType>
#include <QStringList>
#include <QVariant>

#include "KEZTestHelpers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

using namespace KEZTest;

namespace {

// Expected contents of an options value, written down by each test.
struct Fields
{
    QColor color;
    int lineStyle = 0;
    double lineThickness = 1.0;
    int pointSymbol = 0;
    bool fixedPerspective = false;
    QFont font;
    bool depthEnabled = true;
    int priority = 1;
};

void ExpectFields(const KEZVisOptions &options, const Fields &expected)
{
    EXPECT_EQ(options.GetColor(), expected.color);
    EXPECT_EQ(static_cast<int>(options.GetLineStyle()), expected.lineStyle);
    EXPECT_EQ(options.GetLineThickness(), expected.lineThickness);
    EXPECT_EQ(static_cast<int>(options.GetPointSymbol()), expected.pointSymbol);
    EXPECT_EQ(options.IsFixedPerspective(), expected.fixedPerspective);
    EXPECT_EQ(options.GetFont(), expected.font);
    EXPECT_EQ(options.IsDepthEnabled(), expected.depthEnabled);
    EXPECT_EQ(options.GetPriority(), expected.priority);
}

KEZVisOptions::LineStyle LineStyleByte(int value)
{
    return static_cast<KEZVisOptions::LineStyle>(static_cast<qint8>(value));
}

KEZVisOptions::PointSymbol PointSymbolByte(int value)
{
    return static_cast<KEZVisOptions::PointSymbol>(static_cast<qint8>(value));
}

QFont SampleFont()
{
    QFont font(QStringLiteral("Sample Sans"), 14);
    font.setBold(true);
    return font;
}

// Every field away from its default.
Fields SampleFields()
{
    Fields fields;
    fields.color = QColor(10, 20, 30, 40);
    fields.lineStyle = 3;
    fields.lineThickness = 2.5;
    fields.pointSymbol = 1;
    fields.fixedPerspective = true;
    fields.font = SampleFont();
    fields.depthEnabled = false;
    fields.priority = -3;
    return fields;
}

KEZVisOptions MakeOptions(const Fields &fields)
{
    KEZVisOptions options;
    options.SetColor(fields.color);
    options.SetLineStyle(LineStyleByte(fields.lineStyle));
    options.SetLineThickness(fields.lineThickness);
    options.SetPointSymbol(PointSymbolByte(fields.pointSymbol));
    options.SetFixedPerspective(fields.fixedPerspective);
    options.SetFont(fields.font);
    options.SetDepthEnabled(fields.depthEnabled);
    options.SetPriority(fields.priority);
    return options;
}

// Qt's hash of an integer with seed 0 on a 64-bit size_t, applied to the value
// sign-extended to 64 bits.
size_t MixInteger(std::int64_t value)
{
    std::uint64_t x = static_cast<std::uint64_t>(value);
    x ^= x >> 32;
    x *= UINT64_C(0xd6e8feb86659fd93);
    x ^= x >> 32;
    x *= UINT64_C(0xd6e8feb86659fd93);
    x ^= x >> 32;
    return static_cast<size_t>(x);
}

size_t ExpectedHash(const Fields &fields)
{
    return MixInteger(fields.priority) ^ MixInteger(fields.pointSymbol) ^ MixInteger(fields.lineStyle)
        ^ qHash(fields.font, 0) ^ qHash(fields.lineThickness, 0) ^ qHash(fields.color);
}

// Makes options from the sample fields, calls set on a copy of them and
// expects the original to keep every field and the copy to hold the fields
// that change gives: the detached record keeps the fields not set.
template <typename Set, typename Change>
void ExpectSetDetaches(Set set, Change change)
{
    const Fields fields = SampleFields();
    const KEZVisOptions original = MakeOptions(fields);
    KEZVisOptions copy(original);
    set(copy);
    ExpectFields(original, fields);
    Fields changed = fields;
    change(changed);
    ExpectFields(copy, changed);
}

} // namespace

// --- Defaults --------------------------------------------------------------

TEST(Options, DefaultConstructedHoldsInvalidColourSolidLineUnitThicknessDefaultSymbolDefaultFontDepthAndPriorityOne)
{
    const KEZVisOptions options;
    EXPECT_FALSE(options.GetColor().isValid());
    EXPECT_EQ(options.GetColor(), QColor());
    EXPECT_EQ(options.GetLineStyle(), KEZVisOptions::LineStyleSolid);
    EXPECT_EQ(static_cast<int>(options.GetLineStyle()), 0);
    EXPECT_EQ(options.GetLineThickness(), 1.0);
    EXPECT_EQ(options.GetPointSymbol(), KEZVisOptions::PointSymbolDefault);
    EXPECT_EQ(static_cast<int>(options.GetPointSymbol()), 0);
    EXPECT_FALSE(options.IsFixedPerspective());
    EXPECT_EQ(options.GetFont(), QFont());
    EXPECT_TRUE(options.IsDepthEnabled());
    EXPECT_EQ(options.GetPriority(), 1);
}

TEST(Options, EnumeratorsHaveTheirDocumentedValues)
{
    EXPECT_EQ(static_cast<int>(KEZVisOptions::LineStyleSolid), 0);
    EXPECT_EQ(static_cast<int>(KEZVisOptions::LineStyleDash), 1);
    EXPECT_EQ(static_cast<int>(KEZVisOptions::LineStyleDot), 2);
    EXPECT_EQ(static_cast<int>(KEZVisOptions::LineStyleDashDot), 3);
    EXPECT_EQ(static_cast<int>(KEZVisOptions::LineStyleLongShort), 4);
    EXPECT_EQ(static_cast<int>(KEZVisOptions::LineStyleDashDotDot), 5);
    EXPECT_EQ(static_cast<int>(KEZVisOptions::LineStyleDashDotDotDot), 6);
    EXPECT_EQ(static_cast<int>(KEZVisOptions::LineStyleDashDashDotDot), 7);
    EXPECT_EQ(static_cast<int>(KEZVisOptions::LineStyleLongLongShort), 8);
    EXPECT_EQ(static_cast<int>(KEZVisOptions::LineStyleDashDashDotDotDot), 9);
    EXPECT_EQ(static_cast<int>(KEZVisOptions::LineStyleLongDashDot), 10);
    EXPECT_EQ(static_cast<int>(KEZVisOptions::LineStyleLongDashDotDot), 11);
    EXPECT_EQ(static_cast<int>(KEZVisOptions::LineStyleLongDashDotDotDot), 12);
    EXPECT_EQ(static_cast<int>(KEZVisOptions::PointSymbolDefault), 0);
    EXPECT_EQ(static_cast<int>(KEZVisOptions::PointSymbolMarker), 1);
    EXPECT_EQ(static_cast<int>(KEZVisOptions::VisibleVertices), 1);
    EXPECT_EQ(static_cast<int>(KEZVisOptions::VisibleEdges), 2);
    EXPECT_EQ(static_cast<int>(KEZVisOptions::VisibleFaces), 4);
    const QFlags<KEZVisOptions::VisibleGeometry> edgesAndFaces = KEZVisOptions::VisibleEdges | KEZVisOptions::VisibleFaces;
    EXPECT_EQ(edgesAndFaces.toInt(), 6);
}

TEST(Options, EnumerationsAndPrioritiesAreKeptInTheirDocumentedSizes)
{
    EXPECT_EQ(sizeof(KEZVisOptions::LineStyle), 1u);
    EXPECT_EQ(sizeof(KEZVisOptions::PointSymbol), 1u);
    EXPECT_TRUE(std::is_signed_v<std::underlying_type_t<KEZVisOptions::LineStyle>>);
    EXPECT_TRUE(std::is_signed_v<std::underlying_type_t<KEZVisOptions::PointSymbol>>);
    EXPECT_TRUE(std::has_virtual_destructor_v<KEZVisOptions>);
}

TEST(Options, SettersStoreValuesWithoutValidation)
{
    KEZVisOptions options;
    options.SetLineStyle(LineStyleByte(-7));
    options.SetPointSymbol(PointSymbolByte(99));
    options.SetLineThickness(-4.0);
    options.SetPriority(std::numeric_limits<int>::min());
    EXPECT_EQ(static_cast<int>(options.GetLineStyle()), -7);
    EXPECT_EQ(static_cast<int>(options.GetPointSymbol()), 99);
    EXPECT_EQ(options.GetLineThickness(), -4.0);
    EXPECT_EQ(options.GetPriority(), std::numeric_limits<int>::min());
}

TEST(Options, SettersAndGettersRoundTripEveryField)
{
    const Fields fields = SampleFields();
    ExpectFields(MakeOptions(fields), fields);
}

// --- Implicit sharing ------------------------------------------------------

TEST(Options, CopyAndAssignmentCarryEveryFieldIncludingFixedPerspective)
{
    const Fields fields = SampleFields();
    const KEZVisOptions original = MakeOptions(fields);
    const KEZVisOptions copy(original);
    KEZVisOptions assigned;
    assigned = original;
    ExpectFields(copy, fields);
    ExpectFields(assigned, fields);
}

TEST(Options, SelfAssignmentKeepsTheFields)
{
    const Fields fields = SampleFields();
    KEZVisOptions options = MakeOptions(fields);
    const KEZVisOptions &alias = options;
    options = alias;
    ExpectFields(options, fields);
}

TEST(Options, DetachOnSetColorLeavesTheOriginalAsItWas)
{
    ExpectSetDetaches([](KEZVisOptions &copy) { copy.SetColor(QColor(1, 2, 3)); },
                      [](Fields &changed) { changed.color = QColor(1, 2, 3); });
}

TEST(Options, DetachOnSetLineStyleLeavesTheOriginalAsItWas)
{
    ExpectSetDetaches([](KEZVisOptions &copy) { copy.SetLineStyle(KEZVisOptions::LineStyleLongDashDotDotDot); },
                      [](Fields &changed) { changed.lineStyle = 12; });
}

TEST(Options, DetachOnSetLineThicknessLeavesTheOriginalAsItWas)
{
    ExpectSetDetaches([](KEZVisOptions &copy) { copy.SetLineThickness(7.25); },
                      [](Fields &changed) { changed.lineThickness = 7.25; });
}

TEST(Options, DetachOnSetPointSymbolLeavesTheOriginalAsItWas)
{
    ExpectSetDetaches([](KEZVisOptions &copy) { copy.SetPointSymbol(PointSymbolByte(42)); },
                      [](Fields &changed) { changed.pointSymbol = 42; });
}

TEST(Options, DetachOnSetFixedPerspectiveLeavesTheOriginalAsItWas)
{
    ExpectSetDetaches([](KEZVisOptions &copy) { copy.SetFixedPerspective(false); },
                      [](Fields &changed) { changed.fixedPerspective = false; });
}

TEST(Options, DetachOnSetFontLeavesTheOriginalAsItWas)
{
    const QFont other(QStringLiteral("Other Serif"), 9);
    ExpectSetDetaches([&](KEZVisOptions &copy) { copy.SetFont(other); },
                      [&](Fields &changed) { changed.font = other; });
}

TEST(Options, DetachOnSetDepthEnabledLeavesTheOriginalAsItWas)
{
    ExpectSetDetaches([](KEZVisOptions &copy) { copy.SetDepthEnabled(true); },
                      [](Fields &changed) { changed.depthEnabled = true; });
}

TEST(Options, DetachOnSetPriorityLeavesTheOriginalAsItWas)
{
    ExpectSetDetaches([](KEZVisOptions &copy) { copy.SetPriority(12345); },
                      [](Fields &changed) { changed.priority = 12345; });
}

TEST(Options, DetachOnStreamReadLeavesTheOriginalAsItWas)
{
    const Fields fields = SampleFields();
    const KEZVisOptions original = MakeOptions(fields);
    KEZVisOptions copy(original);
    const QByteArray bytes = StreamedAlone(KEZVisOptions());
    QDataStream in(bytes);
    in >> copy;
    ExpectFields(original, fields);
    Fields read;                        // defaults, but the flag stays as the copy had it
    read.fixedPerspective = true;
    ExpectFields(copy, read);
}

TEST(Options, DetachOnFromJsonLeavesTheOriginalAsItWas)
{
    const Fields fields = SampleFields();
    const KEZVisOptions original = MakeOptions(fields);
    KEZVisOptions copy(original);
    ASSERT_TRUE(copy.FromJson(KEZVisOptions().ToJson()));
    ExpectFields(original, fields);
    ExpectFields(copy, Fields());
}

TEST(Options, DetachOnFailingFromJsonLeavesTheOriginalAsItWas)
{
    const Fields fields = SampleFields();
    const KEZVisOptions original = MakeOptions(fields);
    KEZVisOptions copy(original);
    QJsonObject object;
    object.insert(QStringLiteral("c"), KEZSysJsonConverters::Convert(QColor(200, 100, 50)));
    ASSERT_FALSE(copy.FromJson(object));
    ExpectFields(original, fields);
    EXPECT_EQ(copy.GetColor(), QColor(200, 100, 50));
}

// --- Equality --------------------------------------------------------------

TEST(Options, CopiesAreEqualAndNotUnequal)
{
    const KEZVisOptions original = MakeOptions(SampleFields());
    const KEZVisOptions copy(original);
    EXPECT_TRUE(original == copy);
    EXPECT_FALSE(original != copy);
}

TEST(Options, SeparatelyBuiltOptionsWithTheSameFieldsAreEqual)
{
    const KEZVisOptions first = MakeOptions(SampleFields());
    const KEZVisOptions second = MakeOptions(SampleFields());
    EXPECT_TRUE(first == second);
    EXPECT_FALSE(first != second);
}

TEST(Options, SharedDataIsEqualEvenWithANaNThickness)
{
    KEZVisOptions original;
    original.SetLineThickness(std::numeric_limits<double>::quiet_NaN());
    const KEZVisOptions copy(original);
    EXPECT_TRUE(original == copy);
    EXPECT_FALSE(original != copy);
    EXPECT_TRUE(original == original);
    EXPECT_FALSE(original != original);
}

TEST(Options, OptionsDifferingOnlyInFixedPerspectiveCompareEqual)
{
    KEZVisOptions first = MakeOptions(SampleFields());
    KEZVisOptions second = MakeOptions(SampleFields());
    first.SetFixedPerspective(false);
    second.SetFixedPerspective(true);
    EXPECT_TRUE(first == second);
    EXPECT_FALSE(first != second);
}

TEST(Options, OptionsDifferingOnlyInFixedPerspectiveHashAlike)
{
    KEZVisOptions first = MakeOptions(SampleFields());
    KEZVisOptions second = MakeOptions(SampleFields());
    first.SetFixedPerspective(false);
    second.SetFixedPerspective(true);
    EXPECT_EQ(qHash(first), qHash(second));
}

TEST(Options, OptionsDifferingOnlyInFixedPerspectiveStreamTheSameBytes)
{
    KEZVisOptions first = MakeOptions(SampleFields());
    KEZVisOptions second = MakeOptions(SampleFields());
    first.SetFixedPerspective(false);
    second.SetFixedPerspective(true);
    EXPECT_EQ(StreamedAlone(first), StreamedAlone(second));
}

TEST(Options, OptionsDifferingOnlyInFixedPerspectiveHaveDifferentJson)
{
    KEZVisOptions first = MakeOptions(SampleFields());
    KEZVisOptions second = MakeOptions(SampleFields());
    first.SetFixedPerspective(false);
    second.SetFixedPerspective(true);
    const QJsonObject firstJson = first.ToJson().toObject();
    const QJsonObject secondJson = second.ToJson().toObject();
    EXPECT_NE(firstJson, secondJson);
    EXPECT_EQ(firstJson.value(QStringLiteral("fp")), QJsonValue(false));
    EXPECT_EQ(secondJson.value(QStringLiteral("fp")), QJsonValue(true));
}

TEST(Options, OptionsDifferingOnlyInDepthEnabledCompareUnequal)
{
    KEZVisOptions first;
    KEZVisOptions second;
    second.SetDepthEnabled(false);
    EXPECT_FALSE(first == second);
    EXPECT_TRUE(first != second);
}

TEST(Options, OptionsDifferingOnlyInDepthEnabledHashAlike)
{
    KEZVisOptions first;
    KEZVisOptions second;
    second.SetDepthEnabled(false);
    EXPECT_EQ(qHash(first), qHash(second));
}

TEST(Options, ThicknessesHalfAThousandthApartCompareEqual)
{
    KEZVisOptions first;
    KEZVisOptions second;
    first.SetLineThickness(1.0);
    second.SetLineThickness(1.0005);
    EXPECT_TRUE(first == second);
    EXPECT_FALSE(first != second);
}

TEST(Options, ThicknessesHalfAThousandthApartHashDifferently)
{
    KEZVisOptions first;
    KEZVisOptions second;
    first.SetLineThickness(1.0);
    second.SetLineThickness(1.0005);
    EXPECT_NE(qHash(first), qHash(second));
}

TEST(Options, ThicknessesTwoThousandthsApartCompareUnequal)
{
    KEZVisOptions first;
    KEZVisOptions second;
    first.SetLineThickness(1.0);
    second.SetLineThickness(1.002);
    EXPECT_FALSE(first == second);
    EXPECT_TRUE(first != second);
}

TEST(Options, ThicknessesExactlyAThousandthApartAreNeitherEqualNorUnequal)
{
    KEZVisOptions first;
    KEZVisOptions second;
    first.SetLineThickness(0.001);
    second.SetLineThickness(0.002);
    // 0.002 is exactly twice the double 0.001, so the difference is exactly 0.001.
    ASSERT_EQ(std::fabs(0.002 - 0.001), 0.001);
    EXPECT_FALSE(first == second);
    EXPECT_FALSE(first != second);
    EXPECT_FALSE(second == first);
    EXPECT_FALSE(second != first);
}

TEST(Options, ThicknessZeroAgainstOneThousandthIsNeitherEqualNorUnequal)
{
    KEZVisOptions first;
    KEZVisOptions second;
    first.SetLineThickness(0.0);
    second.SetLineThickness(0.001);
    EXPECT_FALSE(first == second);
    EXPECT_FALSE(first != second);
}

TEST(Options, NaNThicknessIsNeitherEqualNorUnequal)
{
    KEZVisOptions first;
    KEZVisOptions second;
    second.SetLineThickness(std::numeric_limits<double>::quiet_NaN());
    EXPECT_FALSE(first == second);
    EXPECT_FALSE(first != second);
    EXPECT_FALSE(second == first);
    EXPECT_FALSE(second != first);
}

TEST(Options, TwoSeparateNaNThicknessesAreNeitherEqualNorUnequal)
{
    KEZVisOptions first;
    KEZVisOptions second;
    first.SetLineThickness(std::numeric_limits<double>::quiet_NaN());
    second.SetLineThickness(std::numeric_limits<double>::quiet_NaN());
    EXPECT_FALSE(first == second);
    EXPECT_FALSE(first != second);
}

TEST(Options, NaNThicknessDoesNotHideADifferenceElsewhere)
{
    KEZVisOptions first;
    KEZVisOptions second;
    second.SetLineThickness(std::numeric_limits<double>::quiet_NaN());
    second.SetPriority(5);
    EXPECT_FALSE(first == second);
    EXPECT_TRUE(first != second);
}

TEST(Options, EachComparedFieldMakesOptionsUnequal)
{
    const Fields base = SampleFields();
    const KEZVisOptions reference = MakeOptions(base);

    Fields changed = base;
    changed.color = QColor(10, 20, 31, 40);
    EXPECT_TRUE(reference != MakeOptions(changed)) << "colour";
    EXPECT_FALSE(reference == MakeOptions(changed)) << "colour";

    changed = base;
    changed.lineStyle = 4;
    EXPECT_TRUE(reference != MakeOptions(changed)) << "line style";
    EXPECT_FALSE(reference == MakeOptions(changed)) << "line style";

    changed = base;
    changed.pointSymbol = 0;
    EXPECT_TRUE(reference != MakeOptions(changed)) << "point symbol";
    EXPECT_FALSE(reference == MakeOptions(changed)) << "point symbol";

    changed = base;
    changed.font.setPointSize(15);
    EXPECT_TRUE(reference != MakeOptions(changed)) << "font";
    EXPECT_FALSE(reference == MakeOptions(changed)) << "font";

    changed = base;
    changed.depthEnabled = true;
    EXPECT_TRUE(reference != MakeOptions(changed)) << "depth";
    EXPECT_FALSE(reference == MakeOptions(changed)) << "depth";

    changed = base;
    changed.priority = -4;
    EXPECT_TRUE(reference != MakeOptions(changed)) << "priority";
    EXPECT_FALSE(reference == MakeOptions(changed)) << "priority";
}

TEST(Options, InvalidAndValidColourCompareUnequal)
{
    KEZVisOptions first;
    KEZVisOptions second;
    second.SetColor(Qt::black);
    EXPECT_FALSE(first == second);
    EXPECT_TRUE(first != second);
}

// --- Hash ------------------------------------------------------------------

TEST(Options, HashIsTheExclusiveOrOfSixTerms)
{
    Fields fields = SampleFields();
    fields.lineStyle = -56;
    EXPECT_EQ(qHash(MakeOptions(fields)), ExpectedHash(fields));
}

TEST(Options, HashOfDefaultOptionsIsTheExclusiveOrOfSixTerms)
{
    EXPECT_EQ(qHash(KEZVisOptions()), ExpectedHash(Fields()));
}

TEST(Options, IntegerTermsSignExtendNegativeValues)
{
    // -1 sign-extended is all ones, unlike its 32-bit pattern zero-extended.
    Fields fields;
    fields.priority = -1;
    fields.lineStyle = -1;
    fields.pointSymbol = -1;
    const size_t hash = qHash(MakeOptions(fields));
    EXPECT_EQ(hash, ExpectedHash(fields));
    const size_t zeroExtended = MixInteger(0xffffffffLL) ^ MixInteger(0xffLL) ^ MixInteger(0xffLL)
        ^ qHash(fields.font, 0) ^ qHash(fields.lineThickness, 0) ^ qHash(fields.color);
    EXPECT_NE(hash, zeroExtended);
}

TEST(Options, IntegerMixAgreesWithQtsIntegerHashWithSeedZero)
{
    for (const qint64 value : { qint64(0), qint64(1), qint64(-1), qint64(-56), qint64(12345678),
                                qint64(std::numeric_limits<int>::min()) })
        EXPECT_EQ(MixInteger(value), qHash(value, 0)) << value;
}

TEST(Options, HashIgnoresDepthAndFixedPerspective)
{
    Fields fields = SampleFields();
    const size_t reference = qHash(MakeOptions(fields));
    fields.depthEnabled = !fields.depthEnabled;
    fields.fixedPerspective = !fields.fixedPerspective;
    EXPECT_EQ(qHash(MakeOptions(fields)), reference);
}

TEST(Options, OptionsServeAsHashKeys)
{
    QHash<KEZVisOptions, int> table;
    table.insert(MakeOptions(SampleFields()), 7);
    table.insert(KEZVisOptions(), 8);
    EXPECT_EQ(table.size(), 2);
    EXPECT_EQ(table.value(MakeOptions(SampleFields())), 7);
    EXPECT_EQ(table.value(KEZVisOptions()), 8);
}

// --- Stream form -----------------------------------------------------------

TEST(Options, StreamFormOfNonDefaultOptionsHasTheExactBytes)
{
    Fields fields = SampleFields();
    fields.lineStyle = 200;             // kept as the byte -56
    const QByteArray fontBytes = StreamedAlone(fields.font);
    ASSERT_FALSE(fontBytes.isEmpty());

    QByteArray expected;
    // QColor: colour model (qint8, 1 = Rgb), then alpha, red, green, blue, pad as quint16,
    // each 8-bit channel c stored as c * 0x101.
    expected += QByteArray::fromHex("01" "2828" "0a0a" "1414" "1e1e" "0000");
    expected += QByteArray::fromHex("ffffffc8");            // line style -56 as qint32
    expected += QByteArray::fromHex("4004000000000000");    // 2.5, big-endian IEEE double
    expected += QByteArray::fromHex("00000001");            // point symbol 1 as qint32
    expected += fontBytes;                                  // QFont's own form
    expected += QByteArray::fromHex("00");                  // depth test off
    expected += QByteArray::fromHex("fffffffd");            // priority -3

    EXPECT_EQ(StreamedAlone(MakeOptions(fields)).toHex(), expected.toHex());
}

TEST(Options, StreamFormOfDefaultOptionsHasTheExactBytes)
{
    QByteArray expected;
    // The invalid colour: model 0 (Invalid), alpha 0xffff, the rest zero.
    expected += QByteArray::fromHex("00" "ffff" "0000" "0000" "0000" "0000");
    expected += QByteArray::fromHex("00000000");            // solid line
    expected += QByteArray::fromHex("3ff0000000000000");    // 1.0
    expected += QByteArray::fromHex("00000000");            // default symbol
    expected += StreamedAlone(QFont());
    expected += QByteArray::fromHex("01");                  // depth test on
    expected += QByteArray::fromHex("00000001");            // priority 1

    EXPECT_EQ(StreamedAlone(KEZVisOptions()).toHex(), expected.toHex());
}

TEST(Options, LineStyle200StreamsAsMinus56AndComesBackAsTheSameByte)
{
    KEZVisOptions options;
    options.SetLineStyle(static_cast<KEZVisOptions::LineStyle>(200));
    const QByteArray bytes = StreamedAlone(options);

    // The line style follows the 11 bytes of the colour.
    ASSERT_GE(bytes.size(), 15);
    EXPECT_EQ(bytes.mid(11, 4).toHex(), QByteArray("ffffffc8"));
    QDataStream probe(bytes);
    probe.skipRawData(11);
    qint32 streamed = 0;
    probe >> streamed;
    EXPECT_EQ(streamed, -56);

    KEZVisOptions read;
    QDataStream in(bytes);
    in >> read;
    EXPECT_EQ(in.status(), QDataStream::Ok);
    EXPECT_EQ(static_cast<int>(read.GetLineStyle()), -56);
    EXPECT_EQ(static_cast<quint8>(read.GetLineStyle()), 200u);
    EXPECT_EQ(read.GetLineStyle(), options.GetLineStyle());
}

TEST(Options, StreamReadTakesTheLowByteOfEachEnumeration)
{
    QByteArray bytes;
    {
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out << QColor(Qt::red) << qint32(0x1234) << 3.0 << qint32(-255) << QFont() << true << qint32(9);
    }
    KEZVisOptions read;
    QDataStream in(bytes);
    in >> read;
    EXPECT_EQ(in.status(), QDataStream::Ok);
    EXPECT_EQ(static_cast<int>(read.GetLineStyle()), 0x34);
    EXPECT_EQ(static_cast<int>(read.GetPointSymbol()), 1);      // -255 is 0xffffff01
    EXPECT_EQ(read.GetColor(), QColor(Qt::red));
    EXPECT_EQ(read.GetLineThickness(), 3.0);
    EXPECT_EQ(read.GetPriority(), 9);
}

TEST(Options, StreamRoundTripRestoresTheSevenStreamedFields)
{
    const Fields fields = SampleFields();
    const QByteArray bytes = StreamedAlone(MakeOptions(fields));
    KEZVisOptions read;
    QDataStream in(bytes);
    in >> read;
    EXPECT_EQ(in.status(), QDataStream::Ok);
    EXPECT_TRUE(in.atEnd());
    Fields expected = fields;
    expected.fixedPerspective = false;  // not streamed: the fresh target keeps its default
    ExpectFields(read, expected);
}

TEST(Options, StreamReadLeavesFixedPerspectiveAsItWas)
{
    KEZVisOptions source;
    source.SetFixedPerspective(false);
    KEZVisOptions target;
    target.SetFixedPerspective(true);
    const QByteArray bytes = StreamedAlone(source);
    QDataStream in(bytes);
    in >> target;
    EXPECT_TRUE(target.IsFixedPerspective());
}

TEST(Options, StreamOperatorsReturnTheirStream)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    EXPECT_EQ(&(out << KEZVisOptions()), &out);
    QDataStream in(bytes);
    KEZVisOptions read;
    EXPECT_EQ(&(in >> read), &in);
}

TEST(Options, TruncatedStreamReadsNeverCrashAndReportThroughTheStream)
{
    const QByteArray bytes = StreamedAlone(MakeOptions(SampleFields()));
    for (int length = 0; length < bytes.size(); ++length) {
        KEZVisOptions read;
        QDataStream in(bytes.left(length));
        in >> read;
        EXPECT_NE(in.status(), QDataStream::Ok) << "length " << length;
    }
}

TEST(Options, FlippedBytesInPlainFieldsAreReadWithoutValidation)
{
    const Fields fields = SampleFields();
    const QByteArray bytes = StreamedAlone(MakeOptions(fields));
    const int fontSize = StreamedAlone(fields.font).size();
    // Offsets of the fixed-width values around the font.
    const int lineStyleOffset = 11;
    const int thicknessOffset = 15;
    const int pointSymbolOffset = 23;
    const int depthOffset = 27 + fontSize;
    const int priorityOffset = depthOffset + 1;
    ASSERT_EQ(bytes.size(), priorityOffset + 4);

    const auto readFlipped = [&bytes](int offset, KEZVisOptions &read) {
        QByteArray corrupt = bytes;
        corrupt[offset] = static_cast<char>(~static_cast<unsigned char>(corrupt.at(offset)));
        QDataStream in(corrupt);
        in >> read;
        EXPECT_EQ(in.status(), QDataStream::Ok) << "offset " << offset;
        EXPECT_TRUE(in.atEnd()) << "offset " << offset;
    };

    // Only the low byte of each enumeration's qint32 counts.
    for (int offset = lineStyleOffset; offset < lineStyleOffset + 4; ++offset) {
        KEZVisOptions read;
        readFlipped(offset, read);
        const int expected = offset == lineStyleOffset + 3 ? static_cast<qint8>(~3) : 3;
        EXPECT_EQ(static_cast<int>(read.GetLineStyle()), expected) << "offset " << offset;
        EXPECT_EQ(read.GetLineThickness(), fields.lineThickness) << "offset " << offset;
    }
    for (int offset = pointSymbolOffset; offset < pointSymbolOffset + 4; ++offset) {
        KEZVisOptions read;
        readFlipped(offset, read);
        const int expected = offset == pointSymbolOffset + 3 ? static_cast<qint8>(~1) : 1;
        EXPECT_EQ(static_cast<int>(read.GetPointSymbol()), expected) << "offset " << offset;
        EXPECT_EQ(read.GetFont(), fields.font) << "offset " << offset;
    }
    // Any bit pattern is taken as the thickness, NaN included.
    for (int offset = thicknessOffset; offset < thicknessOffset + 8; ++offset) {
        KEZVisOptions read;
        readFlipped(offset, read);
        QByteArray expected = bytes.mid(thicknessOffset, 8);
        expected[offset - thicknessOffset] = static_cast<char>(~static_cast<unsigned char>(expected.at(offset - thicknessOffset)));
        QByteArray actual;
        QDataStream(&actual, QIODevice::WriteOnly) << read.GetLineThickness();
        EXPECT_EQ(actual.toHex(), expected.toHex()) << "offset " << offset;
    }
    {
        KEZVisOptions read;
        readFlipped(depthOffset, read);
        EXPECT_TRUE(read.IsDepthEnabled());
        EXPECT_EQ(read.GetPriority(), fields.priority);
    }
    for (int offset = priorityOffset; offset < priorityOffset + 4; ++offset) {
        KEZVisOptions read;
        readFlipped(offset, read);
        const int shift = 8 * (priorityOffset + 3 - offset);
        const int expected = static_cast<int>(static_cast<quint32>(fields.priority) ^ (0xffu << shift));
        EXPECT_EQ(read.GetPriority(), expected) << "offset " << offset;
        EXPECT_FALSE(read.IsDepthEnabled()) << "offset " << offset;
    }
}

// --- JSON form -------------------------------------------------------------

TEST(Options, ToJsonWritesExactlyTheEightKeys)
{
    Fields fields = SampleFields();
    fields.lineStyle = -56;
    fields.pointSymbol = -2;
    const QJsonValue value = MakeOptions(fields).ToJson();
    ASSERT_TRUE(value.isObject());
    const QJsonObject object = value.toObject();

    QStringList keys = object.keys();
    keys.sort();
    QStringList expectedKeys{ QStringLiteral("c"), QStringLiteral("ls"), QStringLiteral("lt"),
                              QStringLiteral("ps"), QStringLiteral("fp"), QStringLiteral("f"),
                              QStringLiteral("de"), QStringLiteral("p") };
    expectedKeys.sort();
    EXPECT_EQ(keys, expectedKeys);

    EXPECT_EQ(object.value(QStringLiteral("c")), KEZSysJsonConverters::Convert(fields.color));
    EXPECT_EQ(object.value(QStringLiteral("ls")), QJsonValue(-56));
    EXPECT_EQ(object.value(QStringLiteral("lt")), QJsonValue(2.5));
    EXPECT_EQ(object.value(QStringLiteral("ps")), QJsonValue(-2));
    EXPECT_EQ(object.value(QStringLiteral("fp")), QJsonValue(true));
    EXPECT_EQ(object.value(QStringLiteral("f")), QJsonValue(fields.font.toString()));
    EXPECT_EQ(object.value(QStringLiteral("de")), QJsonValue(false));
    EXPECT_EQ(object.value(QStringLiteral("p")), QJsonValue(-3));
}

TEST(Options, ToJsonThenFromJsonOnAFreshObjectRestoresAllEightFields)
{
    const Fields fields = SampleFields();
    KEZVisOptions restored;
    EXPECT_TRUE(restored.FromJson(MakeOptions(fields).ToJson()));
    ExpectFields(restored, fields);
}

TEST(Options, ToJsonThenFromJsonKeepsAnInvalidColourAndNegativeBytes)
{
    Fields fields;
    fields.lineStyle = -56;
    fields.pointSymbol = -1;
    fields.fixedPerspective = true;
    KEZVisOptions restored;
    restored.SetColor(Qt::green);
    EXPECT_TRUE(restored.FromJson(MakeOptions(fields).ToJson()));
    ExpectFields(restored, fields);
}

TEST(Options, FromJsonWithoutLineStyleFailsButTheColourIsTakenAllTheSame)
{
    const Fields fields = SampleFields();
    QJsonObject object = MakeOptions(fields).ToJson().toObject();
    object.remove(QStringLiteral("ls"));
    KEZVisOptions target;
    EXPECT_FALSE(target.FromJson(object));
    Fields expected;                    // everything else untouched
    expected.color = fields.color;
    ExpectFields(target, expected);
}

TEST(Options, FromJsonMissingAnyRequiredKeyFailsAndLeavesPlainFieldsAndFont)
{
    const Fields fields = SampleFields();
    const QJsonObject complete = MakeOptions(fields).ToJson().toObject();
    for (const char *key : { "ls", "lt", "ps", "fp", "de", "p" }) {
        QJsonObject object = complete;
        object.remove(QLatin1String(key));
        KEZVisOptions target;
        EXPECT_FALSE(target.FromJson(object)) << key;
        Fields expected;
        expected.color = fields.color;
        ExpectFields(target, expected);
    }
}

TEST(Options, FromJsonOnANonObjectValueFails)
{
    const QJsonValue values[] = { QJsonValue(), QJsonValue(QJsonValue::Undefined), QJsonValue(3),
                                  QJsonValue(true), QJsonValue(QStringLiteral("options")),
                                  QJsonValue(QJsonArray{ 1, 2, 3 }) };
    for (const QJsonValue &value : values) {
        KEZVisOptions target;
        EXPECT_FALSE(target.FromJson(value)) << value.type();
        ExpectFields(target, Fields());
    }
}

TEST(Options, FromJsonWithAColourThatIsNoColourFailsAndChangesNothing)
{
    const Fields fields = SampleFields();
    QJsonObject object = MakeOptions(fields).ToJson().toObject();
    object.insert(QStringLiteral("c"), 17);
    KEZVisOptions target;
    EXPECT_FALSE(target.FromJson(object));
    ExpectFields(target, Fields());
}

TEST(Options, FromJsonWithoutFontFailsAndKeepsTheFontAndPlainFields)
{
    const Fields fields = SampleFields();
    QJsonObject object = MakeOptions(fields).ToJson().toObject();
    object.remove(QStringLiteral("f"));
    KEZVisOptions target;
    EXPECT_FALSE(target.FromJson(object));
    Fields expected;
    expected.color = fields.color;
    ExpectFields(target, expected);
}

TEST(Options, FromJsonWithAFontThatIsNoStringFails)
{
    const Fields fields = SampleFields();
    QJsonObject object = MakeOptions(fields).ToJson().toObject();
    object.insert(QStringLiteral("f"), 12);
    KEZVisOptions target;
    EXPECT_FALSE(target.FromJson(object));
    Fields expected;
    expected.color = fields.color;
    ExpectFields(target, expected);
}

TEST(Options, FromJsonWithKeysOfTheWrongTypeGivesZeroOrFalseAndSucceeds)
{
    const Fields fields = SampleFields();
    QJsonObject object = MakeOptions(fields).ToJson().toObject();
    object.insert(QStringLiteral("ls"), QStringLiteral("dash"));
    object.insert(QStringLiteral("lt"), true);
    object.insert(QStringLiteral("ps"), QJsonArray{ 1 });
    object.insert(QStringLiteral("fp"), 1);
    object.insert(QStringLiteral("de"), QStringLiteral("true"));
    object.insert(QStringLiteral("p"), QJsonValue());
    KEZVisOptions target;
    target.SetFixedPerspective(true);
    EXPECT_TRUE(target.FromJson(object));
    Fields expected = fields;
    expected.lineStyle = 0;
    expected.lineThickness = 0.0;
    expected.pointSymbol = 0;
    expected.fixedPerspective = false;
    expected.depthEnabled = false;
    expected.priority = 0;
    ExpectFields(target, expected);
}

TEST(Options, FromJsonKeepsTheLowByteOfLineStyleAndPointSymbol)
{
    QJsonObject object = KEZVisOptions().ToJson().toObject();
    object.insert(QStringLiteral("ls"), 0x1c8);     // low byte 0xc8 is -56
    object.insert(QStringLiteral("ps"), 255);       // low byte 0xff is -1
    KEZVisOptions target;
    EXPECT_TRUE(target.FromJson(object));
    EXPECT_EQ(static_cast<int>(target.GetLineStyle()), -56);
    EXPECT_EQ(static_cast<int>(target.GetPointSymbol()), -1);
}

// --- Meta-type declarations ------------------------------------------------

TEST(Options, MetaTypeNamesAreTheClassAndEnumerationNames)
{
    EXPECT_STREQ(QMetaType::fromType<KEZVisOptions>().name(), "KEZVisOptions");
    EXPECT_STREQ(QMetaType::fromType<KEZVisOptions::LineStyle>().name(), "KEZVisOptions::LineStyle");
    EXPECT_STREQ(QMetaType::fromType<KEZVisOptions::PointSymbol>().name(), "KEZVisOptions::PointSymbol");
}

TEST(Options, MetaTypeStreamFormOfLineStyleIsOneSignedByte)
{
    const QMetaType type = QMetaType::fromName("KEZVisOptions::LineStyle");
    ASSERT_TRUE(type.isValid());
    const KEZVisOptions::LineStyle value = static_cast<KEZVisOptions::LineStyle>(200);
    QByteArray bytes;
    {
        QDataStream out(&bytes, QIODevice::WriteOnly);
        ASSERT_TRUE(type.save(out, &value));
    }
    EXPECT_EQ(bytes.toHex(), QByteArray("c8"));
    KEZVisOptions::LineStyle read = KEZVisOptions::LineStyleSolid;
    QDataStream in(bytes);
    ASSERT_TRUE(type.load(in, &read));
    EXPECT_EQ(static_cast<int>(read), -56);
}

TEST(Options, MetaTypeStreamFormOfPointSymbolIsOneSignedByte)
{
    const QMetaType type = QMetaType::fromName("KEZVisOptions::PointSymbol");
    ASSERT_TRUE(type.isValid());
    const KEZVisOptions::PointSymbol value = PointSymbolByte(-3);
    QByteArray bytes;
    {
        QDataStream out(&bytes, QIODevice::WriteOnly);
        ASSERT_TRUE(type.save(out, &value));
    }
    EXPECT_EQ(bytes.toHex(), QByteArray("fd"));
    KEZVisOptions::PointSymbol read = KEZVisOptions::PointSymbolDefault;
    QDataStream in(bytes);
    ASSERT_TRUE(type.load(in, &read));
    EXPECT_EQ(static_cast<int>(read), -3);
}

TEST(Options, MetaTypeStreamFormOfOptionsIsTheStreamOperatorsForm)
{
    const QMetaType type = QMetaType::fromName("KEZVisOptions");
    ASSERT_TRUE(type.isValid());
    const KEZVisOptions options = MakeOptions(SampleFields());
    QByteArray bytes;
    {
        QDataStream out(&bytes, QIODevice::WriteOnly);
        ASSERT_TRUE(type.save(out, &options));
    }
    EXPECT_EQ(bytes, StreamedAlone(options));
}

TEST(Options, OptionsTravelInAVariant)
{
    const KEZVisOptions options = MakeOptions(SampleFields());
    const QVariant variant = QVariant::fromValue(options);
    EXPECT_EQ(variant.metaType(), QMetaType::fromName("KEZVisOptions"));
    EXPECT_TRUE(variant.value<KEZVisOptions>() == options);
}
