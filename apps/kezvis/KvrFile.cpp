#include "KvrFile.h"

#include <KEZVisOptions.h>
#include <KEZVisPointPrimitive.h>
#include <KEZVisPolylinePrimitive.h>
#include <KEZVisRepGraphics.h>
#include <KEZVisSurfacePrimitive.h>
#include <KEZVisTextPrimitive.h>

#include <QDataStream>
#include <QIODevice>
#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <limits>
#include <vector>

namespace Kvr {

namespace {

const char magic[8] = {'\x89', 'K', 'V', 'R', '\r', '\n', '\x1a', '\n'};
const quint32 formatVersion = 1;

enum RecordKind : quint8 { GraphicsRecord = 1, PointsRecord = 2, TextRecord = 3 };

bool IsStreamable(const KEZVisPrimitive *primitive)
{
    return KEZVisPolylinePrimitive::staticMetaObject.cast(primitive)
        || KEZVisSurfacePrimitive::staticMetaObject.cast(primitive);
}

// Polylines and surfaces [first, last) in the library's rep stream form, as
// KEZVisRepGraphics::Save writes a rep of them.
void WriteGraphics(QDataStream &out, const QList<const KEZVisPrimitive *> &primitives,
                   const QList<KEZVisOptions> &options, qsizetype first, qsizetype last)
{
    out << quint8(GraphicsRecord) << qint32(last - first) << qint32(last - first);
    for (qsizetype n = first; n < last; ++n)
        out << options[n];
    for (qsizetype n = first; n < last; ++n) {
        if (const auto *polyline = qobject_cast<const KEZVisPolylinePrimitive *>(primitives[n]))
            out << QString::fromLatin1(KEZVisPolylinePrimitive::staticMetaObject.className()) << *polyline;
        else
            out << QStringLiteral("KEZVisSurfacePrimitive") << *qobject_cast<const KEZVisSurfacePrimitive *>(primitives[n]);
    }
}

void WritePoints(QDataStream &out, const KEZVisPointPrimitive &points, const KEZVisOptions &options)
{
    const std::vector<double> coords = points.GetCoordsAsDouble();
    out << quint8(PointsRecord) << options << qint32(coords.size() / 3);
    for (size_t n = 0; n + 2 < coords.size(); n += 3)
        out << coords[n] << coords[n + 1] << coords[n + 2];
}

void WriteText(QDataStream &out, const KEZVisTextPrimitive &text, const KEZVisOptions &options)
{
    const KEZMathPoint anchor = text.GetAnchor();
    out << quint8(TextRecord) << options << text.GetText() << anchor.GetX() << anchor.GetY() << anchor.GetZ()
        << qint32(text.GetAnchorLocation()) << qint32(text.GetScalability());
}

// The records of one rep; returns how many were written.
quint32 WriteRep(QDataStream &out, const KEZVisRep &rep)
{
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    rep.GetPrimitives(primitives, options);
    quint32 records = 0;
    qsizetype n = 0;
    while (n < primitives.size()) {
        if (IsStreamable(primitives[n])) {
            qsizetype end = n;
            while (end < primitives.size() && IsStreamable(primitives[end]))
                ++end;
            WriteGraphics(out, primitives, options, n, end);
            n = end;
            ++records;
            continue;
        }
        if (const auto *points = qobject_cast<const KEZVisPointPrimitive *>(primitives[n])) {
            WritePoints(out, *points, options[n]);
            ++records;
        } else if (const auto *text = qobject_cast<const KEZVisTextPrimitive *>(primitives[n])) {
            WriteText(out, *text, options[n]);
            ++records;
        }
        ++n; // any other primitive has no form in the file and is left out
    }
    return records;
}

void Prepare(QDataStream &stream)
{
    stream.setVersion(QDataStream::Qt_6_4);
    stream.setByteOrder(QDataStream::BigEndian);
}

qint64 BytesLeft(const QDataStream &stream)
{
    QIODevice *device = stream.device();
    return device->isSequential() ? std::numeric_limits<qint64>::max() : device->bytesAvailable();
}

// How many values to make room for before reading \a values of them: all
// when the device's size vouches for the count (it was checked against the
// bytes left), otherwise a first piece only. A sequential device tells
// nothing of how many bytes are to come, so there the values grow with what
// actually arrives.
size_t RoomFor(const QDataStream &stream, qint64 values)
{
    const qint64 firstPiece = 1 << 16;
    return size_t(stream.device()->isSequential() ? std::min(values, firstPiece) : values);
}

// Reads a QString, unless its announced length is more than the bytes left:
// QDataStream would allocate the whole announced length first.
bool ReadString(QDataStream &in, QString *text)
{
    const QByteArray head = in.device()->peek(4);
    if (head.size() < 4)
        return false;
    const quint32 bytes = qFromBigEndian<quint32>(head.constData());
    if (bytes != 0xFFFFFFFFu && qint64(bytes) > BytesLeft(in) - 4)
        return false;
    in >> *text;
    return in.status() == QDataStream::Ok;
}

std::unique_ptr<KEZVisRep> ReadPoints(QDataStream &in)
{
    KEZVisOptions options;
    qint32 count = 0;
    in >> options >> count;
    if (in.status() != QDataStream::Ok || count < 0 || qint64(count) * 24 > BytesLeft(in))
        return nullptr;
    KEZMathSetOfPoints points;
    points.reserve(qsizetype(RoomFor(in, count)));
    for (qint32 n = 0; n < count && in.status() == QDataStream::Ok; ++n) {
        double x = 0, y = 0, z = 0;
        in >> x >> y >> z;
        points.append(KEZMathPoint(x, y, z));
    }
    if (in.status() != QDataStream::Ok)
        return nullptr;
    return std::make_unique<KEZVisRepGraphics>(QList<const KEZVisPrimitive *>{new KEZVisPointPrimitive(points)},
                                               options);
}

std::unique_ptr<KEZVisRep> ReadText(QDataStream &in)
{
    KEZVisOptions options;
    QString text;
    double x = 0, y = 0, z = 0;
    qint32 location = 0, scalability = 0;
    in >> options;
    if (in.status() != QDataStream::Ok || !ReadString(in, &text))
        return nullptr;
    in >> x >> y >> z >> location >> scalability;
    if (in.status() != QDataStream::Ok)
        return nullptr;
    auto *primitive = new KEZVisTextPrimitive(text, KEZMathPoint(x, y, z),
                                              static_cast<KEZVisTextPrimitive::AnchorLocation>(location),
                                              static_cast<KEZVisTextPrimitive::Scalability>(scalability));
    return std::make_unique<KEZVisRepGraphics>(QList<const KEZVisPrimitive *>{primitive}, options);
}

// A polyline as operator<<() writes it: the structure as qint32, the point
// count as qint64, the coordinates.
KEZVisPolylinePrimitive *ReadPolyline(QDataStream &in)
{
    qint32 structure = 0;
    qint64 count = 0;
    in >> structure >> count;
    if (in.status() != QDataStream::Ok || count < 0 || count > std::numeric_limits<int>::max()
        || count * 24 > BytesLeft(in))
        return nullptr;
    std::vector<double> values;
    values.reserve(RoomFor(in, 3 * count));
    for (qint64 n = 0; n < 3 * count && in.status() == QDataStream::Ok; ++n) {
        double value = 0.0;
        in >> value;
        values.push_back(value);
    }
    if (in.status() != QDataStream::Ok)
        return nullptr;
    std::unique_ptr<double[]> coords(new double[values.size() + 1]);
    std::copy(values.cbegin(), values.cend(), coords.get());
    return new KEZVisPolylinePrimitive(coords.release(), int(count),
                                       static_cast<KEZVisPolylinePrimitive::Structure>(structure));
}

// A graphics rep in the form KEZVisRepGraphics::Save() writes. It is read
// here rather than by KEZVisRepGraphics::Load(), which reads a polyline's
// point count narrower than Save() writes it and so cannot read a polyline
// back.
std::unique_ptr<KEZVisRep> ReadGraphics(QDataStream &in)
{
    qint32 primitiveCount = 0;
    qint32 optionsCount = 0;
    in >> primitiveCount >> optionsCount;
    // Each primitive takes at least its tag's length, each options entry more.
    if (in.status() != QDataStream::Ok || primitiveCount < 0 || optionsCount < 0
        || qint64(primitiveCount) + optionsCount > BytesLeft(in))
        return nullptr;
    QList<KEZVisOptions> options;
    for (qint32 n = 0; n < optionsCount && in.status() == QDataStream::Ok; ++n) {
        KEZVisOptions entry;
        in >> entry;
        options.append(entry);
    }
    QList<const KEZVisPrimitive *> primitives;
    auto release = [&primitives] { qDeleteAll(primitives); };
    const QString polylineTag = QString::fromLatin1(KEZVisPolylinePrimitive::staticMetaObject.className());
    for (qint32 n = 0; n < primitiveCount && in.status() == QDataStream::Ok; ++n) {
        QString tag;
        KEZVisPrimitive *primitive = nullptr;
        if (!ReadString(in, &tag)) {
            release();
            return nullptr;
        }
        if (tag == polylineTag) {
            primitive = ReadPolyline(in);
        } else if (tag == QLatin1String("KEZVisSurfacePrimitive")) {
            auto surface = std::make_unique<KEZVisSurfacePrimitive>();
            in >> *surface;
            if (in.status() == QDataStream::Ok)
                primitive = surface.release();
        }
        if (!primitive) {
            release();
            return nullptr;
        }
        primitives.append(primitive);
    }
    if (in.status() != QDataStream::Ok) {
        release();
        return nullptr;
    }
    return std::make_unique<KEZVisRepGraphics>(primitives, options);
}

} // namespace

QList<const KEZVisRep *> ReadResult::List() const
{
    QList<const KEZVisRep *> list;
    for (const auto &rep : reps)
        list.append(rep.get());
    return list;
}

bool Write(QIODevice &device, const QList<const KEZVisRep *> &reps, QString *error)
{
    // The count comes first but is known only at the end: the records are
    // written to memory first.
    QByteArray body;
    quint32 records = 0;
    {
        QDataStream out(&body, QIODevice::WriteOnly);
        Prepare(out);
        for (const KEZVisRep *rep : reps)
            if (rep)
                records += WriteRep(out, *rep);
    }
    QByteArray header(magic, sizeof(magic));
    {
        QDataStream out(&header, QIODevice::Append);
        Prepare(out);
        out << formatVersion << records;
    }
    if (device.write(header) != header.size() || device.write(body) != body.size()) {
        *error = device.errorString();
        return false;
    }
    return true;
}

ReadResult Read(QIODevice &device)
{
    ReadResult result;
    char head[sizeof(magic)];
    if (device.read(head, sizeof(head)) != qint64(sizeof(head)) || std::memcmp(head, magic, sizeof(magic)) != 0) {
        result.error = QStringLiteral("not a rep stream file (no .kvr header)");
        return result;
    }
    QDataStream in(&device);
    Prepare(in);
    quint32 version = 0;
    quint32 count = 0;
    in >> version >> count;
    if (in.status() != QDataStream::Ok) {
        result.error = QStringLiteral("truncated .kvr header");
        return result;
    }
    if (version != formatVersion) {
        result.error = QStringLiteral("unsupported .kvr format version %1").arg(version);
        return result;
    }
    // Every record takes at least one byte, so a count beyond the bytes left
    // is a lie that must not reserve memory.
    if (qint64(count) > BytesLeft(in)) {
        result.error = QStringLiteral("the header announces %1 reps, more than the file can hold").arg(count);
        return result;
    }
    for (quint32 n = 0; n < count; ++n) {
        quint8 kind = 0;
        in >> kind;
        std::unique_ptr<KEZVisRep> rep;
        if (in.status() == QDataStream::Ok) {
            switch (kind) {
            case GraphicsRecord: rep = ReadGraphics(in); break;
            case PointsRecord: rep = ReadPoints(in); break;
            case TextRecord: rep = ReadText(in); break;
            default:
                result.reps.clear();
                result.error = QStringLiteral("unknown record kind %1 in rep %2").arg(kind).arg(n + 1);
                return result;
            }
        }
        if (!rep) {
            result.reps.clear();
            result.error = QStringLiteral("truncated or corrupt rep stream at rep %1 of %2").arg(n + 1).arg(count);
            return result;
        }
        result.reps.push_back(std::move(rep));
    }
    if (!in.atEnd()) {
        result.reps.clear();
        result.error = QStringLiteral("unexpected data after the last of %1 reps").arg(count);
    }
    return result;
}

} // namespace Kvr
