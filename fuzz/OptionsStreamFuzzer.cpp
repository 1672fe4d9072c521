// Fuzzes the stream reader of KEZVisOptions on any bytes.
//
// Input: one byte of stream settings (see FuzzSupport.h), then the stream.
// Checked: a read that the stream calls good gives a font that a font can
// hold, and what was read writes and reads back good on the same settings.

#include "FuzzSupport.h"

#include "KEZVisOptions.h"

#include <QFont>

namespace {

void CheckFont(const QFont &font)
{
    const double pointSize = font.pointSizeF();
    if (!(pointSize == -1.0 || pointSize > 0.0))
        __builtin_trap();
    if (!(font.pixelSize() == -1 || font.pixelSize() > 0))
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
    if (size < 1)
        return 0;
    const KEZFuzz::StreamSettings settings = KEZFuzz::StreamSettings::FromByte(data[0]);
    const QByteArray bytes = KEZFuzz::Rest(data, size);

    KEZVisOptions options;
    QDataStream in(bytes);
    settings.ApplyTo(in);
    in >> options;
    (void)qHash(options);
    (void)options.ToJson();
    if (in.status() != QDataStream::Ok)
        return 0;
    CheckFont(options.GetFont());

    QByteArray written;
    {
        QDataStream out(&written, QIODevice::WriteOnly);
        settings.ApplyTo(out);
        out << options;
    }
    KEZVisOptions again;
    QDataStream back(written);
    settings.ApplyTo(back);
    back >> again;
    if (back.status() != QDataStream::Ok || !back.atEnd())
        __builtin_trap();
    return 0;
}
