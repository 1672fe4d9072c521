#ifndef KEZVISVECTORFONT_P_H
#define KEZVISVECTORFONT_P_H

#include "KEZVisVectorFont.h"
#include "KEZVisVectorFontChar.h"
#include "kezvisualization_export.h"

#include <QChar>
#include <QFileInfo>
#include <QHash>
#include <QSharedData>
#include <QString>

QT_BEGIN_NAMESPACE
class QIODevice;
QT_END_NAMESPACE

// The shared record of a font. Filled once while loading, never changed after.
class KEZVisVectorFontPrivate : public QSharedData
{
public:
    QString name;
    QHash<QChar, KEZVisVectorFontChar> characters;
    qint32 defaultWidth = -1;
    qint32 height = -1;

    /*
        Loads the font file that \a entry names: sets the name to the entry's
        base name and reads the file. Throws KEZSysException("Could not load the
        font.") when the file does not exist and KEZSysFileOpenException when it
        cannot be opened. Exported for the tests only.
    */
    KEZVISUALIZATION_EXPORT void Load(const QFileInfo &entry);

    /*
        Reads glyph records and the header line from \a device, open for
        reading, up to its end: the line-by-line loop of the file format.
        Exported for the tests only, which feed it arbitrary bytes.
    */
    KEZVISUALIZATION_EXPORT void Read(QIODevice &device);

    /*
        A font that owns \a record, made with new and filled by Load() or
        Read(), outside the process-wide cache: no name finds it, and the record
        goes with the font's last copy. Exported for the tests and the fuzz
        targets only, which lay out text in fonts read from arbitrary bytes
        without filling the cache with them.
    */
    KEZVISUALIZATION_EXPORT static KEZVisVectorFont Adopt(KEZVisVectorFontPrivate *record);
};

#endif // KEZVISVECTORFONT_P_H
