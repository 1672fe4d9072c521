#ifndef KEZFUZZSUPPORT_H
#define KEZFUZZSUPPORT_H

// What every fuzz target shares: a QGuiApplication on the offscreen platform
// (fonts and colours need one), silence from Qt's message log (the library's
// debug lines and Qt's warnings about odd values would swamp the fuzzer's
// output and slow it down), and the stream settings that a target takes from
// the first byte of its input.

#include <QByteArray>
#include <QDataStream>
#include <QGuiApplication>
#include <QIODevice>
#include <QLoggingCategory>
#include <QtGlobal>

#include <cstddef>
#include <cstdint>

// Fontconfig, which Qt's font database loads on first use, keeps caches that it
// never frees; LeakSanitizer's check at exit would take them for leaks of the
// library. One definition per target: each target includes this header once.
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libfontconfig.so\n";
}

namespace KEZFuzz {

inline void IgnoreMessage(QtMsgType, const QMessageLogContext &, const QString &)
{
}

// Makes the application once; it lives until the process ends.
inline void SetUpApplication()
{
    static bool done = false;
    if (done)
        return;
    done = true;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(IgnoreMessage);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    static int argc = 1;
    static char name[] = "kez-fuzz";
    static char *argv[] = {name, nullptr};
    new QGuiApplication(argc, argv);
}

/*
    The settings of a stream, from one byte: the low three bits pick the
    version (the current one, then older ones where the forms of QFont and
    QColor differ), bit 3 asks for little-endian order, bit 4 for
    single-precision floating point. The seed corpus writer uses the same
    encoding, so that each seed is a valid stream of its settings.
*/
struct StreamSettings
{
    int version = QDataStream::Qt_DefaultCompiledVersion;
    QDataStream::ByteOrder byteOrder = QDataStream::BigEndian;
    QDataStream::FloatingPointPrecision precision = QDataStream::DoublePrecision;

    static StreamSettings FromByte(std::uint8_t byte)
    {
        static const int versions[] = {
            QDataStream::Qt_DefaultCompiledVersion, QDataStream::Qt_6_0, QDataStream::Qt_5_15,
            QDataStream::Qt_5_12, QDataStream::Qt_5_6, QDataStream::Qt_4_6,
            QDataStream::Qt_4_0, QDataStream::Qt_1_0,
        };
        StreamSettings settings;
        settings.version = versions[byte & 7];
        settings.byteOrder = (byte & 8) ? QDataStream::LittleEndian : QDataStream::BigEndian;
        settings.precision = (byte & 16) ? QDataStream::SinglePrecision : QDataStream::DoublePrecision;
        return settings;
    }

    void ApplyTo(QDataStream &stream) const
    {
        stream.setVersion(version);
        stream.setByteOrder(byteOrder);
        stream.setFloatingPointPrecision(precision);
    }
};

// The bytes after the first skip ones, without a copy.
inline QByteArray Rest(const std::uint8_t *data, std::size_t size, std::size_t skip = 1)
{
    if (size <= skip)
        return QByteArray();
    return QByteArray::fromRawData(reinterpret_cast<const char *>(data + skip), qsizetype(size - skip));
}

} // namespace KEZFuzz

#endif // KEZFUZZSUPPORT_H
