#include "KEZVisRepGraphics.h"
#include "KEZVisRepGraphics_p.h"

#include "KEZVisPolylinePrimitive.h"
#include "KEZVisPrimitive.h"
#include "KEZVisSurfacePrimitive.h"

#include <QDataStream>
#include <QtAlgorithms>

namespace {

// Reserved ahead for the options of a stream at most; a longer list grows as
// its entries actually arrive, so a huge count costs nothing up front.
constexpr qint32 OptionsReserveLimit = 1024;

// Reads the options list as Qt's list readers do: the status is judged for the
// list alone, and a failing entry leaves the list empty. The count is a
// qint32; a negative one is corrupt data.
void readOptions(QDataStream &stream, QList<KEZVisOptions> &options)
{
    const QDataStream::Status previous = stream.status();
    if (!stream.isDeviceTransactionStarted())
        stream.resetStatus();

    options.clear();
    qint32 count = 0;
    stream >> count;
    if (count < 0) {
        stream.setStatus(QDataStream::ReadCorruptData);
    } else {
        options.reserve(qMin(count, OptionsReserveLimit));
        for (qint32 i = 0; i < count; ++i) {
            KEZVisOptions entry;
            stream >> entry;
            if (stream.status() != QDataStream::Ok) {
                options.clear();
                break;
            }
            options.append(entry);
        }
    }

    if (previous != QDataStream::Ok) {
        stream.resetStatus();
        stream.setStatus(previous);
    }
}

} // namespace

KEZVisRepGraphicsPrivate::~KEZVisRepGraphicsPrivate()
{
    qDeleteAll(primitives);
}

KEZVisRepGraphics::KEZVisRepGraphics()
    : KEZVisRep(new KEZVisRepGraphicsPrivate)
{
}

KEZVisRepGraphics::KEZVisRepGraphics(const QList<const KEZVisPrimitive *> &primitives,
                                     const QList<KEZVisOptions> &options)
    : KEZVisRep(new KEZVisRepGraphicsPrivate)
{
    Q_D(KEZVisRepGraphics);
    d->primitives = primitives;
    d->options = options;
}

KEZVisRepGraphics::KEZVisRepGraphics(const QList<const KEZVisPrimitive *> &primitives, const KEZVisOptions &options)
    : KEZVisRep(new KEZVisRepGraphicsPrivate)
{
    Q_D(KEZVisRepGraphics);
    d->primitives = primitives;
    d->options.append(options);
}

KEZVisRepGraphics::KEZVisRepGraphics(KEZVisRepGraphicsPrivate *d)
    : KEZVisRep(d)
{
}

KEZVisRepGraphics::~KEZVisRepGraphics() = default;

void KEZVisRepGraphics::GetPrimitives(QList<const KEZVisPrimitive *> &primitives,
                                      QList<KEZVisOptions> &options) const
{
    Q_D(const KEZVisRepGraphics);
    primitives.append(d->primitives);
    const qsizetype count = d->primitives.size();
    const KEZVisOptions fallback = d->options.isEmpty() ? KEZVisOptions() : d->options.first();
    for (qsizetype i = 0; i < count; ++i)
        options.append(i < d->options.size() ? d->options.at(i) : fallback);
}

void KEZVisRepGraphics::Save(QDataStream &stream) const
{
    KEZVisRep::Save(stream);
    Q_D(const KEZVisRepGraphics);
    stream << qint32(d->primitives.size()) << qint32(d->options.size());
    for (const KEZVisOptions &options : d->options)
        stream << options;
    for (const KEZVisPrimitive *primitive : d->primitives) {
        if (const QObject *polyline = KEZVisPolylinePrimitive::staticMetaObject.cast(primitive)) {
            stream << QString::fromLatin1(KEZVisPolylinePrimitive::staticMetaObject.className())
                   << *static_cast<const KEZVisPolylinePrimitive *>(polyline);
        } else if (const auto *surface = qobject_cast<const KEZVisSurfacePrimitive *>(primitive)) {
            stream << QStringLiteral("KEZVisSurfacePrimitive") << *surface;
        } else {
            // Deliberately a one-way street: the narrow form with nothing
            // after it, which Load() does not expect. Such primitives vanish.
            stream << "KEZVisPrimitive";
        }
    }
}

void KEZVisRepGraphics::Load(QDataStream &stream)
{
    KEZVisRep::Load(stream);
    Q_D(KEZVisRepGraphics);

    qint32 count = 0;
    stream >> count;
    if (count < 0)
        stream.setStatus(QDataStream::ReadCorruptData);

    readOptions(stream, d->options);

    const QString polylineTag = QString::fromLatin1(KEZVisPolylinePrimitive::staticMetaObject.className());
    const QString surfaceTag = QStringLiteral("KEZVisSurfacePrimitive");
    for (qint32 i = 0; i < count; ++i) {
        // Nothing more can come from a failed or exhausted stream; stopping
        // here keeps a huge announced count from spinning on empty reads.
        if (stream.status() != QDataStream::Ok)
            break;
        if (stream.atEnd()) {
            stream.setStatus(QDataStream::ReadPastEnd);
            break;
        }
        QString tag;
        stream >> tag;
        if (tag == polylineTag) {
            auto *polyline = new KEZVisPolylinePrimitive(KEZMathSetOfPoints(),
                                                         KEZVisPolylinePrimitive::StructureConnected);
            stream >> *polyline;
            d->primitives.append(polyline);
        } else if (tag == surfaceTag) {
            auto *surface = new KEZVisSurfacePrimitive();
            stream >> *surface;
            d->primitives.append(surface);
        }
        // Any other tag is skipped: nothing tells how long its data is.
    }
}

void KEZVisRepGraphics::RemovePrimitive(const KEZVisPrimitive *primitive)
{
    Q_D(KEZVisRepGraphics);
    if (d->primitives.isEmpty())
        return;

    // The index starts at -1 and counts every element looked at; without a
    // match it is left on the last element, and the options step below runs
    // all the same. Callers rely on this walk as it is.
    qsizetype index = -1;
    bool found = false;
    for (const KEZVisPrimitive *candidate : std::as_const(d->primitives)) {
        ++index;
        if (candidate == primitive) {
            found = true;
            break;
        }
    }
    if (found)
        d->primitives.removeAt(index);

    if (index >= d->options.size())
        return;
    // A single entry that serves all remaining primitives stays.
    if (d->primitives.isEmpty() || d->options.size() > 1)
        d->options.removeAt(index);
}

void KEZVisRepGraphics::SetColor(const QColor &color)
{
    Q_D(KEZVisRepGraphics);
    for (KEZVisOptions &options : d->options)
        options.SetColor(color);
}
