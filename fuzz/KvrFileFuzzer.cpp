// Fuzzes the .kvr reader of kezvis (Kvr::Read) on any bytes, from a buffer
// whose size the reader can see and from a sequential device, whose size it
// cannot; then writes what was read and reads that again.
//
// Input: one byte that picks the device (bit 0 set: a sequential device;
// clear: a QBuffer), then the bytes of the file.
//
// Checked: the reader gives either reps and no error or an error and no reps;
// reps read write again, and what they write reads back without an error.

#include "FuzzSupport.h"
#include "KEZPipeLikeDevice.h"

#include "KvrFile.h"

#include <QBuffer>
#include <QIODevice>

namespace {

void Check(const Kvr::ReadResult &result)
{
    if (!result.error.isEmpty() && !result.reps.empty())
        __builtin_trap();
    for (const auto &rep : result.reps) {
        if (!rep)
            __builtin_trap();
        (void)rep->GetBoundingBox();
    }
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
    const bool sequential = data[0] & 1;
    const QByteArray bytes = KEZFuzz::Rest(data, size);

    Kvr::ReadResult result;
    if (sequential) {
        KEZTest::PipeLikeDevice device(bytes);
        result = Kvr::Read(device);
    } else {
        QBuffer buffer;
        buffer.setData(bytes);
        buffer.open(QIODevice::ReadOnly);
        result = Kvr::Read(buffer);
    }
    Check(result);
    if (!result.error.isEmpty())
        return 0;

    QByteArray written;
    {
        QBuffer buffer(&written);
        buffer.open(QIODevice::WriteOnly);
        QString error;
        if (!Kvr::Write(buffer, result.List(), &error))
            __builtin_trap();
    }
    QBuffer again(&written);
    again.open(QIODevice::ReadOnly);
    const Kvr::ReadResult reread = Kvr::Read(again);
    Check(reread);
    if (!reread.error.isEmpty())
        __builtin_trap();
    return 0;
}
