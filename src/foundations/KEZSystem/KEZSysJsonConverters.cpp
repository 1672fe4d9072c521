#include "KEZSysJsonConverters.h"

#include "KEZSysColorWords_p.h"

#include <QFloat16>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <cmath>
#include <cstring>

namespace {

using KEZSysColorWords::Words;

// Plain literals rather than QString globals: these may run before this
// file's static initialisation has (from a start-up routine).
constexpr char modelKey[] = "model";
constexpr char alphaKey[] = "a";

// The achromatic hue, which QColor keeps as the word 0xffff and shows as -1.
constexpr quint16 noHue = 0xffff;

struct Model
{
    int colorModel;         // QColor::Rgb, QColor::Hsv, ...
    const char *name;
    const char *keys[4];   // component keys in word order 1..4; null when unused
    int hueIndex;          // word index of a hue, -1 when the model has none
};

const Model models[] = {
    {QColor::Rgb, "rgb", {"r", "g", "b", nullptr}, -1},
    {QColor::Hsv, "hsv", {"h", "s", "v", nullptr}, 1},
    {QColor::Hsl, "hsl", {"h", "s", "l", nullptr}, 1},
    {QColor::Cmyk, "cmyk", {"c", "m", "y", "k"}, -1},
    {QColor::ExtendedRgb, "extendedRgb", {"r", "g", "b", nullptr}, -1},
};

const Model *findModel(int colorModel)
{
    for (const Model &model : models) {
        if (model.colorModel == colorModel)
            return &model;
    }
    return nullptr;
}

const Model *findModel(const QString &name)
{
    for (const Model &model : models) {
        if (name == QLatin1String(model.name))
            return &model;
    }
    return nullptr;
}

// qfloat16 is a standard-layout wrapper of its 16 bits; the bits pass through
// memcpy, the one well-defined way between the word and the value.
static_assert(sizeof(qfloat16) == sizeof(quint16), "qfloat16 holds exactly 16 bits");

double halfToDouble(quint16 bits)
{
    qfloat16 half;
    std::memcpy(static_cast<void *>(&half), &bits, sizeof bits);
    return double(float(half));
}

quint16 doubleToHalf(double value)
{
    const qfloat16 half{float(value)};
    quint16 bits = 0;
    std::memcpy(&bits, static_cast<const void *>(&half), sizeof bits);
    return bits;
}

// Writes one word as its JSON number.
QJsonValue wordToJson(const Model &model, int index, quint16 word)
{
    if (model.colorModel == QColor::ExtendedRgb)
        return halfToDouble(word);
    if (index == model.hueIndex)
        return word == noHue ? -1.0 : word / 100.0;
    return word / 65535.0;
}

// Reads one word from its JSON number; false when it is none or out of range.
bool jsonToWord(const Model &model, int index, const QJsonValue &value, quint16 &word)
{
    if (!value.isDouble())
        return false;
    const double number = value.toDouble();
    if (model.colorModel == QColor::ExtendedRgb) {
        word = doubleToHalf(number);
        return true;
    }
    if (!std::isfinite(number))
        return false;
    if (index == model.hueIndex) {
        if (number == -1.0) {
            word = noHue;
            return true;
        }
        const double hundredths = std::round(number * 100.0);
        if (hundredths < 0.0 || hundredths > 36000.0)
            return false;
        word = quint16(hundredths);
        return true;
    }
    const double scaled = std::round(number * 65535.0);
    if (scaled < 0.0 || scaled > 65535.0)
        return false;
    word = quint16(scaled);
    return true;
}

bool colorFromArray(const QJsonArray &array, QColor &color)
{
    if (array.size() != 3 && array.size() != 4)
        return false;
    int channels[4] = {0, 0, 0, 255};
    for (int i = 0; i < array.size(); ++i) {
        const QJsonValue element = array.at(i);
        if (!element.isDouble())
            return false;
        const double number = element.toDouble();
        if (!(number >= 0.0 && number <= 255.0) || number != std::floor(number))
            return false;
        channels[i] = int(number);
    }
    color = QColor(channels[0], channels[1], channels[2], channels[3]);
    return true;
}

bool colorFromObject(const QJsonObject &object, QColor &color)
{
    const QJsonValue modelValue = object.value(QLatin1String(modelKey));
    if (!modelValue.isString())
        return false;
    const QString modelName = modelValue.toString();
    if (modelName == QLatin1String("invalid")) {
        color = QColor();
        return true;
    }
    const Model *model = findModel(modelName);
    if (!model)
        return false;

    Words words;
    words.colorModel = qint8(model->colorModel);
    if (!jsonToWord(*model, 0, object.value(QLatin1String(alphaKey)), words.word[0]))
        return false;
    for (int i = 0; i < 4; ++i) {
        if (!model->keys[i])
            continue;
        if (!jsonToWord(*model, i + 1, object.value(QLatin1String(model->keys[i])),
                        words.word[i + 1]))
            return false;
    }
    color = KEZSysColorWords::ToColor(words);
    return true;
}

} // namespace

QJsonValue KEZSysJsonConverters::Convert(const QColor &color)
{
    QJsonObject object;
    const Model *model = findModel(KEZSysColorWords::ModelOf(color));
    if (!model) {
        object.insert(QLatin1String(modelKey), QStringLiteral("invalid"));
        return object;
    }
    const Words words = KEZSysColorWords::FromColor(color);
    object.insert(QLatin1String(modelKey), QLatin1String(model->name));
    object.insert(QLatin1String(alphaKey), wordToJson(*model, 0, words.word[0]));
    for (int i = 0; i < 4; ++i) {
        if (model->keys[i])
            object.insert(QLatin1String(model->keys[i]), wordToJson(*model, i + 1, words.word[i + 1]));
    }
    return object;
}

bool KEZSysJsonConverters::Convert(const QJsonValue &value, QColor &color)
{
    if (value.isArray())
        return colorFromArray(value.toArray(), color);
    if (value.isObject())
        return colorFromObject(value.toObject(), color);
    return false;
}
