// Tests of the library's load-time start-up: the loaded flag, the names
// registered with Qt's meta-type system and the resource of the built-in
// vector fonts.

#include <KEZVisGlobal.h>
#include <KEZVisOptions.h>

#include <QByteArray>
#include <QDir>
#include <QFileInfo>
#include <QList>
#include <QMetaType>

#include <gtest/gtest.h>

namespace {

// The names that the start-up routine registers.
const QList<QByteArray> &RegisteredNames()
{
    static const QList<QByteArray> names{
        QByteArrayLiteral("KEZVisOptions"),
        QByteArrayLiteral("KEZVisOptions::PointSymbol"),
        QByteArrayLiteral("KEZVisOptions::LineStyle"),
    };
    return names;
}

// What the process saw before main(): the library's initialisers have run by
// then (it is loaded before the test program initialises), while no test has
// touched the meta-types yet, so a name found here was registered at load.
struct StateBeforeMain
{
    bool loaded = false;
    QList<QByteArray> namesFound;
    bool fontFileFound = false;

    StateBeforeMain()
    {
        loaded = _KEZVisualizationLoaded;
        for (const QByteArray &name : RegisteredNames()) {
            if (QMetaType::fromName(name).isValid())
                namesFound.append(name);
        }
        fontFileFound = QFileInfo(QStringLiteral(":/vector-fonts/simple.vct")).isFile();
    }
};

const StateBeforeMain stateBeforeMain;

} // namespace

TEST(Startup, LibraryIsMarkedLoadedBeforeMainRuns)
{
    EXPECT_TRUE(stateBeforeMain.loaded);
}

TEST(Startup, LibraryStaysMarkedLoaded)
{
    EXPECT_TRUE(_KEZVisualizationLoaded);
}

TEST(Startup, MetaTypeNamesAreRegisteredBeforeMainRuns)
{
    EXPECT_EQ(stateBeforeMain.namesFound, RegisteredNames());
}

TEST(Startup, EachRegisteredNameFindsAValidMetaType)
{
    for (const QByteArray &name : RegisteredNames()) {
        const QMetaType type = QMetaType::fromName(name);
        EXPECT_TRUE(type.isValid()) << name.constData();
        EXPECT_EQ(QByteArray(type.name()), name);
    }
}

TEST(Startup, RegisteredNamesStandForTheirTypes)
{
    EXPECT_EQ(QMetaType::fromName("KEZVisOptions"), QMetaType::fromType<KEZVisOptions>());
    EXPECT_EQ(QMetaType::fromName("KEZVisOptions::PointSymbol"),
              QMetaType::fromType<KEZVisOptions::PointSymbol>());
    EXPECT_EQ(QMetaType::fromName("KEZVisOptions::LineStyle"),
              QMetaType::fromType<KEZVisOptions::LineStyle>());
}

TEST(Startup, EnumerationsAreRegisteredAsEnumerations)
{
    EXPECT_TRUE(QMetaType::fromName("KEZVisOptions::PointSymbol").flags().testFlag(QMetaType::IsEnumeration));
    EXPECT_TRUE(QMetaType::fromName("KEZVisOptions::LineStyle").flags().testFlag(QMetaType::IsEnumeration));
}

TEST(Startup, UnknownNamesAreNotFound)
{
    // Guards the checks above: fromName answers invalid for names nobody registered.
    EXPECT_FALSE(QMetaType::fromName("KEZVisOptions::NoSuchThing").isValid());
}

TEST(Startup, BuiltInFontResourceIsRegisteredBeforeMainRuns)
{
    EXPECT_TRUE(stateBeforeMain.fontFileFound);
}

TEST(Startup, VectorFontDirectoryHoldsTheBuiltInFontFile)
{
    EXPECT_EQ(QDir(QStringLiteral(":/vector-fonts")).entryList(), QStringList{QStringLiteral("simple.vct")});
}
