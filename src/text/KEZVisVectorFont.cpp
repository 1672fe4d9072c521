#include "KEZVisVectorFont.h"
#include "KEZVisVectorFont_p.h"

#include <KEZSysException.h>
#include <KEZSysFileOpenException.h>

#include <QByteArrayList>
#include <QDir>
#include <QFile>
#include <QMutex>
#include <QMutexLocker>

#include <cmath>

namespace {

const QString &FontDirectory()
{
    static const QString directory = QStringLiteral(":/vector-fonts");
    return directory;
}

const QString &BuiltInFontName()
{
    static const QString name = QStringLiteral("simple");
    return name;
}

// One glyph for every character that a font lacks; built once per process, and
// shared by every answer of GetCharacter() that needs it.
const KEZVisVectorFontChar &FallbackGlyph()
{
    static const KEZVisVectorFontChar glyph;
    return glyph;
}

} // namespace

// The process-wide list of loaded fonts, in order of loading. Entries are never
// removed or replaced, so every font stays loaded until the library goes. The
// lock makes finding and loading one step, so that two threads asking for the
// same new font load it once.
class KEZVisVectorFontCache
{
public:
    static KEZVisVectorFont Find(const QString &name)
    {
        KEZVisVectorFontCache &cache = Instance();
        QMutexLocker locker(&cache.m_mutex);
        return cache.FindLocked(name);
    }

    // A font of a record that stays out of the cache.
    static KEZVisVectorFont Wrap(KEZVisVectorFontPrivate *record)
    {
        return KEZVisVectorFont(record);
    }

private:
    static KEZVisVectorFontCache &Instance()
    {
        static KEZVisVectorFontCache cache;
        return cache;
    }

    KEZVisVectorFont FindLocked(const QString &name)
    {
        for (const KEZVisVectorFont &font : std::as_const(m_fonts)) {
            if (font.d->name == name)
                return font;
        }

        // An unknown name falls back to the built-in font. Should the built-in
        // font itself be missing, it is not asked for again: its load below
        // reports it as a font that could not be loaded.
        if (name != BuiltInFontName() && !KEZVisVectorFont::GetFontNames().contains(name))
            return FindLocked(BuiltInFontName());

        auto *record = new KEZVisVectorFontPrivate;
        KEZVisVectorFont font(record); // owns the record, also when loading throws
        QFileInfo entry;
        const QFileInfoList entries = QDir(FontDirectory()).entryInfoList();
        for (const QFileInfo &candidate : entries) {
            if (candidate.baseName() == name) {
                entry = candidate;
                break;
            }
        }
        record->Load(entry);
        m_fonts.append(font);
        return font;
    }

    QMutex m_mutex;
    QList<KEZVisVectorFont> m_fonts;
};

void KEZVisVectorFontPrivate::Load(const QFileInfo &entry)
{
    if (!entry.exists())
        throw KEZSysException(QStringLiteral("Could not load the font."));

    name = entry.baseName();
    const QString path = entry.absoluteFilePath();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw KEZSysFileOpenException(path, file.errorString());
    Read(file);
}

KEZVisVectorFont KEZVisVectorFontPrivate::Adopt(KEZVisVectorFontPrivate *record)
{
    return KEZVisVectorFontCache::Wrap(record);
}

void KEZVisVectorFontPrivate::Read(QIODevice &device)
{
    // Lines are counted from the start of the record in hand. A record is
    // complete at a line without a blank once the count reaches 3: its
    // character line and count line are behind it, and coordinate lines all
    // hold a blank. The record's own character line is added to the buffer
    // before the count restarts, so it is not counted; only in the first
    // record of a file is it counted, which makes the loop examine that
    // record's first coordinate line as well.
    int counter = 0;
    QByteArray buffer;
    while (!device.atEnd()) {
        QByteArray line = device.readLine().simplified();
        ++counter;
        if (counter >= 3 && !line.contains(' ')) {
            const KEZVisVectorFontChar glyph(buffer);
            characters.insert(glyph.GetCharacter(), glyph); // a later record of a character wins
            buffer.clear();
            counter = 0;
            if (line.isEmpty()) {
                // The empty line ends the glyphs; the header follows, split as it stands.
                line = device.readLine();
                const QByteArrayList parts = line.split(' ');
                if (!parts.isEmpty())
                    height = parts.at(0).toInt(nullptr, 10);
                if (parts.size() > 1)
                    defaultWidth = parts.at(1).toInt(nullptr, 10);
            }
        }
        buffer.append(line);
        buffer.append('\n');
    }
    // Whatever is still in the buffer is not a complete record and is dropped.
}

KEZVisVectorFont::KEZVisVectorFont(const QString &name)
    : d(KEZVisVectorFontCache::Find(name).d)
{
}

KEZVisVectorFont::KEZVisVectorFont(KEZVisVectorFontPrivate *record)
    : d(record)
{
}

KEZVisVectorFont::KEZVisVectorFont(const KEZVisVectorFont &other) = default;

KEZVisVectorFont &KEZVisVectorFont::operator=(const KEZVisVectorFont &other) = default;

KEZVisVectorFont::~KEZVisVectorFont() = default;

KEZVisVectorFontChar KEZVisVectorFont::GetCharacter(const QChar &c) const
{
    const auto found = d->characters.constFind(c);
    if (found == d->characters.cend())
        return FallbackGlyph();
    return found.value();
}

double KEZVisVectorFont::GetCharacterHeight() const
{
    return double(d->height);
}

double KEZVisVectorFont::GetCharacterWidth(const QChar &c) const
{
    const double width = GetCharacter(c).GetCharWidth();
    if (std::isnan(width))
        return double(d->defaultWidth);
    return width;
}

const QString KEZVisVectorFont::GetName() const
{
    return d->name;
}

QList<QString> KEZVisVectorFont::GetFontNames()
{
    QList<QString> names;
    const QFileInfoList entries = QDir(FontDirectory()).entryInfoList();
    for (const QFileInfo &entry : entries) {
        if (entry.suffix() == QLatin1String("vct"))
            names.append(entry.baseName());
    }
    return names;
}
