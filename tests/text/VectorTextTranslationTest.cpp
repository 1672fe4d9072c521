// Tests of the translated labels of KEZVisVectorText: with the German
// translation that the library ships installed, the labels come in German;
// without it, in English.

#include <KEZVisVectorText.h>

#include <QCoreApplication>
#include <QDir>
#include <QTranslator>

#include <gtest/gtest.h>

#include <memory>

namespace {

// Installs the German translation compiled by the build for the length of a test.
class GermanLabels : public testing::Test
{
protected:
    void SetUp() override
    {
        m_translator = std::make_unique<QTranslator>();
        ASSERT_TRUE(m_translator->load(QStringLiteral("KEZVisualization_de"), QStringLiteral(KEZ_TRANSLATIONS_DIR)));
        ASSERT_TRUE(QCoreApplication::installTranslator(m_translator.get()));
    }

    void TearDown() override
    {
        if (m_translator)
            QCoreApplication::removeTranslator(m_translator.get());
    }

    std::unique_ptr<QTranslator> m_translator;
};

} // namespace

TEST_F(GermanLabels, AnchorLabelsAreGerman)
{
    const QStringList expected{QStringLiteral("Unten links"), QStringLiteral("Unten Mitte"),
                               QStringLiteral("Unten rechts"), QStringLiteral("Mitte links"),
                               QStringLiteral("Mitte"), QStringLiteral("Mitte rechts"),
                               QStringLiteral("Oben links"), QStringLiteral("Oben Mitte"),
                               QStringLiteral("Oben rechts")};
    QStringList actual;
    for (KEZVisVectorText::Anchor anchor : KEZVisVectorText::GetAnchors())
        actual.append(KEZVisVectorText::GetAnchorLabel(anchor));
    EXPECT_EQ(actual, expected);
}

TEST_F(GermanLabels, JustificationLabelsAreGerman)
{
    EXPECT_EQ(KEZVisVectorText::GetJustificationLabel(KEZVisVectorText::JustifyLeft), QStringLiteral("Links"));
    EXPECT_EQ(KEZVisVectorText::GetJustificationLabel(KEZVisVectorText::JustifyCenter), QStringLiteral("zentriert"));
    EXPECT_EQ(KEZVisVectorText::GetJustificationLabel(KEZVisVectorText::JustifyRight), QStringLiteral("rechts"));
}

TEST_F(GermanLabels, OrientationLabelsAreGerman)
{
    EXPECT_EQ(KEZVisVectorText::GetOrientationLabel(KEZVisVectorText::LeftToRight),
              QStringLiteral("Links nach rechts"));
    EXPECT_EQ(KEZVisVectorText::GetOrientationLabel(KEZVisVectorText::RightToLeft),
              QStringLiteral("Rechts nach links"));
    EXPECT_EQ(KEZVisVectorText::GetOrientationLabel(KEZVisVectorText::Orientation(0)),
              QString::fromUtf8("Ungültige Ausrichtung"));
}

TEST_F(GermanLabels, LabelsOutsideTheRangeStayEmpty)
{
    EXPECT_TRUE(KEZVisVectorText::GetAnchorLabel(KEZVisVectorText::Anchor(9)).isEmpty());
    EXPECT_TRUE(KEZVisVectorText::GetJustificationLabel(KEZVisVectorText::Justification(3)).isEmpty());
}

TEST_F(GermanLabels, TrTranslatesInTheClassContext)
{
    EXPECT_EQ(KEZVisVectorText::tr("Middle"), QStringLiteral("Mitte"));
}

TEST(VectorTextTranslation, RemovingTheTranslatorBringsTheEnglishLabelsBack)
{
    QTranslator translator;
    ASSERT_TRUE(translator.load(QStringLiteral("KEZVisualization_de"), QStringLiteral(KEZ_TRANSLATIONS_DIR)));
    QCoreApplication::installTranslator(&translator);
    const QString german = KEZVisVectorText::GetAnchorLabel(KEZVisVectorText::TopRight);
    QCoreApplication::removeTranslator(&translator);
    EXPECT_EQ(german, QStringLiteral("Oben rechts"));
    EXPECT_EQ(KEZVisVectorText::GetAnchorLabel(KEZVisVectorText::TopRight), QStringLiteral("Top Right"));
}
