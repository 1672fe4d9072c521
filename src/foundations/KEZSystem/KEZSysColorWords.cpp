#include "KEZSysColorWords_p.h"

#include <QByteArray>
#include <QDataStream>
#include <QIODevice>

namespace KEZSysColorWords {

// QColor's stream form (a qint8 spec, then five quint16 words) is the one
// public way to reach the words exactly, whatever the spec; a fixed stream
// version keeps it independent of the Qt release at hand.
static constexpr QDataStream::Version streamVersion = QDataStream::Qt_6_0;

Words FromColor(const QColor &color)
{
    QByteArray bytes;
    {
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out.setVersion(streamVersion);
        out << color;
    }
    Words words;
    QDataStream in(bytes);
    in.setVersion(streamVersion);
    in >> words.spec;
    for (quint16 &word : words.word)
        in >> word;
    return words;
}

QColor ToColor(const Words &words)
{
    QByteArray bytes;
    {
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out.setVersion(streamVersion);
        out << words.spec;
        for (quint16 word : words.word)
            out << word;
    }
    QColor color;
    QDataStream in(bytes);
    in.setVersion(streamVersion);
    in >> color;
    return color;
}

} // namespace KEZSysColorWords
