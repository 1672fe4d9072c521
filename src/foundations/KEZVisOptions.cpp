#include "KEZVisOptions.h"
#include "KEZVisOptions_p.h"

#include "KEZVisOptionsStream_p.h"

#include <KEZSysColorHash.h>
#include <KEZSysJsonConverters.h>

#include <QDataStream>
#include <QHash>
#include <QJsonObject>
#include <QLatin1String>

#include <cmath>
#include <cstdint>

namespace {

// Tolerance of the thickness comparison in operator== and operator!=.
constexpr double thicknessTolerance = 0.001;

// Mixes an integer the way Qt's qHash of an integer does with seed 0, after
// sign-extending it to 64 bits. Written out so that the hash of the options
// stays the same whatever Qt does with its own integer hash later.
size_t HashInteger(qint64 value)
{
    quint64 x = static_cast<quint64>(value);
    x ^= x >> 32;
    x *= Q_UINT64_C(0xd6e8feb86659fd93);
    x ^= x >> 32;
    x *= Q_UINT64_C(0xd6e8feb86659fd93);
    x ^= x >> 32;
    return static_cast<size_t>(x);
}

// The low byte of a stored or streamed integer, as the one-byte enumerations keep it.
qint8 LowByte(qint64 value)
{
    return static_cast<qint8>(static_cast<quint8>(value & 0xff));
}

} // namespace

KEZVisOptions::KEZVisOptions()
    : d(new KEZVisOptionsData)
{
}

KEZVisOptions::KEZVisOptions(const KEZVisOptions &other) = default;

KEZVisOptions &KEZVisOptions::operator=(const KEZVisOptions &other) = default;

KEZVisOptions::~KEZVisOptions() = default;

QColor KEZVisOptions::GetColor() const
{
    return d->color;
}

void KEZVisOptions::SetColor(const QColor &color)
{
    d->color = color;
}

KEZVisOptions::LineStyle KEZVisOptions::GetLineStyle() const
{
    return d->lineStyle;
}

void KEZVisOptions::SetLineStyle(LineStyle lineStyle)
{
    d->lineStyle = lineStyle;
}

double KEZVisOptions::GetLineThickness() const
{
    return d->lineThickness;
}

void KEZVisOptions::SetLineThickness(double lineThickness)
{
    d->lineThickness = lineThickness;
}

KEZVisOptions::PointSymbol KEZVisOptions::GetPointSymbol() const
{
    return d->pointSymbol;
}

void KEZVisOptions::SetPointSymbol(PointSymbol pointSymbol)
{
    d->pointSymbol = pointSymbol;
}

bool KEZVisOptions::IsFixedPerspective() const
{
    return d->fixedPerspective;
}

void KEZVisOptions::SetFixedPerspective(bool fixedPerspective)
{
    d->fixedPerspective = fixedPerspective;
}

QFont KEZVisOptions::GetFont() const
{
    return d->font;
}

void KEZVisOptions::SetFont(const QFont &font)
{
    d->font = font;
}

bool KEZVisOptions::IsDepthEnabled() const
{
    return d->depthEnabled;
}

void KEZVisOptions::SetDepthEnabled(bool depthEnabled)
{
    d->depthEnabled = depthEnabled;
}

int KEZVisOptions::GetPriority() const
{
    return d->priority;
}

void KEZVisOptions::SetPriority(int priority)
{
    d->priority = priority;
}

bool KEZVisOptions::operator==(const KEZVisOptions &other) const
{
    const KEZVisOptionsData *mine = d.constData();
    const KEZVisOptionsData *theirs = other.d.constData();
    if (mine == theirs)
        return true;
    if (!(mine->color == theirs->color))
        return false;
    if (mine->lineStyle != theirs->lineStyle)
        return false;
    // Strictly below the tolerance; a NaN thickness is never equal.
    if (!(std::fabs(mine->lineThickness - theirs->lineThickness) < thicknessTolerance))
        return false;
    if (mine->pointSymbol != theirs->pointSymbol)
        return false;
    if (!(mine->font == theirs->font))
        return false;
    if (mine->depthEnabled != theirs->depthEnabled)
        return false;
    return mine->priority == theirs->priority;
}

// Deliberately not the negation of operator==: thicknesses exactly at the
// tolerance, or NaN, are neither equal nor unequal. Both operators keep their
// own written-out rule, as the header documents.
bool KEZVisOptions::operator!=(const KEZVisOptions &other) const
{
    const KEZVisOptionsData *mine = d.constData();
    const KEZVisOptionsData *theirs = other.d.constData();
    if (mine == theirs)
        return false;
    return mine->color != theirs->color
        || mine->lineStyle != theirs->lineStyle
        || std::fabs(mine->lineThickness - theirs->lineThickness) > thicknessTolerance
        || mine->pointSymbol != theirs->pointSymbol
        || mine->font != theirs->font
        || mine->depthEnabled != theirs->depthEnabled
        || mine->priority != theirs->priority;
}

QJsonValue KEZVisOptions::ToJson() const
{
    QJsonObject object;
    object.insert(QLatin1String("c"), KEZSysJsonConverters::Convert(d->color));
    object.insert(QLatin1String("ls"), static_cast<int>(d->lineStyle));
    object.insert(QLatin1String("lt"), d->lineThickness);
    object.insert(QLatin1String("ps"), static_cast<int>(d->pointSymbol));
    object.insert(QLatin1String("fp"), d->fixedPerspective);
    object.insert(QLatin1String("f"), d->font.toString());
    object.insert(QLatin1String("de"), d->depthEnabled);
    object.insert(QLatin1String("p"), d->priority);
    return object;
}

bool KEZVisOptions::FromJson(const QJsonValue &value)
{
    KEZVisOptionsData *data = d.data();
    const QJsonObject object = value.toObject();

    // First stage: colour and font go straight into the record. The colour is
    // not rolled back when a later check fails.
    if (!KEZSysJsonConverters::Convert(object.value(QLatin1String("c")), data->color))
        return false;
    static const char *const requiredKeys[] = { "ls", "lt", "ps", "fp", "de", "p" };
    for (const char *key : requiredKeys) {
        if (!object.contains(QLatin1String(key)))
            return false;
    }
    if (!data->font.fromString(object.value(QLatin1String("f")).toString()))
        return false;

    // Second stage: the plain fields, only once everything else succeeded.
    data->lineStyle = static_cast<LineStyle>(LowByte(object.value(QLatin1String("ls")).toInt(0)));
    data->lineThickness = object.value(QLatin1String("lt")).toDouble(0.0);
    data->pointSymbol = static_cast<PointSymbol>(LowByte(object.value(QLatin1String("ps")).toInt(0)));
    data->fixedPerspective = object.value(QLatin1String("fp")).toBool(false);
    data->depthEnabled = object.value(QLatin1String("de")).toBool(false);
    data->priority = object.value(QLatin1String("p")).toInt(0);
    return true;
}

QDataStream &operator<<(QDataStream &stream, const KEZVisOptions &options)
{
    stream << options.GetColor()
           << static_cast<qint32>(options.GetLineStyle())
           << options.GetLineThickness()
           << static_cast<qint32>(options.GetPointSymbol())
           << options.GetFont()
           << options.IsDepthEnabled()
           << static_cast<qint32>(options.GetPriority());
    return stream;
}

QDataStream &operator>>(QDataStream &stream, KEZVisOptions &options)
{
    KEZVisOptionsData *data = options.d.data();
    qint32 lineStyle = 0;
    qint32 pointSymbol = 0;
    qint32 priority = 0;
    // The colour and the font go through checked readers: Qt's own would trust
    // the colour model, counts and sizes inside them. A refused value stays as it was,
    // and the stream's status says why; the fields after it are read all the same.
    KEZVisOptionsStream::ReadColor(stream, data->color);
    stream >> lineStyle
           >> data->lineThickness
           >> pointSymbol;
    KEZVisOptionsStream::ReadFont(stream, data->font);
    stream >> data->depthEnabled
           >> priority;
    data->lineStyle = static_cast<KEZVisOptions::LineStyle>(LowByte(lineStyle));
    data->pointSymbol = static_cast<KEZVisOptions::PointSymbol>(LowByte(pointSymbol));
    data->priority = priority;
    return stream;
}

size_t qHash(const KEZVisOptions &options)
{
    return HashInteger(options.GetPriority())
        ^ HashInteger(options.GetPointSymbol())
        ^ HashInteger(options.GetLineStyle())
        ^ qHash(options.GetFont(), 0)
        ^ qHash(options.GetLineThickness(), 0)
        ^ qHash(options.GetColor());
}
