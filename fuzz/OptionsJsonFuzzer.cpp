// Fuzzes KEZVisOptions::FromJson on any JSON that Qt's parser makes of the
// bytes, and on the bare values inside it.
//
// Checked: options that FromJson accepted give JSON that FromJson accepts on
// a fresh object.

#include "FuzzSupport.h"

#include "KEZVisOptions.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

namespace {

void ReadAndRoundTrip(const QJsonValue &value)
{
    KEZVisOptions options;
    if (!options.FromJson(value))
        return;
    (void)qHash(options);
    KEZVisOptions fresh;
    if (!fresh.FromJson(options.ToJson()))
        __builtin_trap();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    KEZFuzz::SetUpApplication();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size));
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    if (document.isObject()) {
        const QJsonObject object = document.object();
        ReadAndRoundTrip(object);
        // Each member alone, as a caller that stores options inside a larger
        // document would hand them in.
        for (auto it = object.constBegin(); it != object.constEnd(); ++it)
            ReadAndRoundTrip(it.value());
    } else if (document.isArray()) {
        for (const QJsonValue &value : document.array())
            ReadAndRoundTrip(value);
    } else {
        ReadAndRoundTrip(QJsonValue());
    }
    return 0;
}
