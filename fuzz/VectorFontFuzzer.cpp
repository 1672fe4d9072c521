// Fuzzes the vector font's file reader and its loader, then lays out text in
// the font that was read. The loader reads the bytes from a Qt resource that
// is built here, in memory, for each input and registered under a root of its
// own, so the real font directory and the process-wide font cache stay as they
// are: the font read goes into a record of its own (KEZVisVectorFontPrivate),
// and the layout gets it through KEZVisVectorFontPrivate::Adopt().
//
// Input: four bytes of settings, the text to lay out, then the font file.
// - Byte 0: bit 0 set loads the file through the resource (Load()), clear
//   reads it from a QBuffer (Read()); bit 1 stores the resource compressed
//   (unless the file is empty);
//   bits 2 to 5 pick the anchor (modulo 9); bit 6 the orientation; bit 7 a
//   plane tilted out of the xy plane.
// - Byte 1: bits 0 and 1 the justification (3 stays out of range), bits 2 to
//   4 the decorations, bits 5 to 7 the text size from a table of odd values
//   (0, NaN, infinity, 1e300 ...).
// - Byte 2: bits 0 to 2 the tilt angle and bits 3 to 5 the character and line
//   spacing, from the same table.
// - Byte 3: the length of the text, whose Latin-1 characters follow.
//
// Checked: the loader names the font after the file and refuses nothing that
// is there; every glyph's polylines can be asked for; the rep of the layout has
// a primitive for each of its polylines (two when doubled).

#include "FuzzSupport.h"

#include "KEZVisVectorFont_p.h"

#include "KEZVisOptions.h"
#include "KEZVisPrimitive.h"
#include "KEZVisRep.h"
#include "KEZVisVectorFont.h"
#include "KEZVisVectorFontChar.h"
#include "KEZVisVectorText.h"

#include <KEZMathPlane.h>
#include <KEZMathPoint.h>
#include <KEZMathSetOfPoints.h>
#include <KEZMathVector.h>
#include <KEZSysException.h>

#include <QBuffer>
#include <QFileInfo>
#include <QList>
#include <QResource>
#include <QString>
#include <QtEndian>

#include <cmath>
#include <limits>
#include <memory>

namespace {

const double OddValues[8] = {
    0.0, 1.0, 7.0, -3.5, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
    1e300, 1e-300,
};

void AppendBigEndian16(QByteArray &bytes, quint16 value)
{
    char raw[2];
    qToBigEndian(value, raw);
    bytes.append(raw, 2);
}

void AppendBigEndian32(QByteArray &bytes, quint32 value)
{
    char raw[4];
    qToBigEndian(value, raw);
    bytes.append(raw, 4);
}

/*
    A compiled Qt resource (the binary form that rcc writes, version 2) of one
    folder that holds one file, \a name, with \a content, stored compressed
    with qCompress() when \a compressed is true. Its parts, each big-endian:
    the header ("qres", version, offsets of the tree, the data and the names),
    the tree of nodes of 22 bytes (the root folder, then the file), the names
    (length, hash, UTF-16) and the data (size, bytes).
*/
QByteArray CompiledResource(const QString &name, const QByteArray &content, bool compressed)
{
    enum : quint16 { CompressedFlag = 1, DirectoryFlag = 2 };
    const int headerSize = 20;
    const int nodeSize = 22;

    QByteArray names;
    AppendBigEndian16(names, quint16(name.size()));
    AppendBigEndian32(names, qt_hash(name));
    for (QChar c : name)
        AppendBigEndian16(names, c.unicode());

    const QByteArray stored = compressed ? qCompress(content) : content;
    QByteArray data;
    AppendBigEndian32(data, quint32(stored.size()));
    data.append(stored);

    QByteArray tree;
    // The root: a folder of one child, the node at index 1.
    AppendBigEndian32(tree, 0);
    AppendBigEndian16(tree, DirectoryFlag);
    AppendBigEndian32(tree, 1);
    AppendBigEndian32(tree, 1);
    tree.append(8, '\0'); // last modified
    // The file: any territory, the C language, its data at offset 0.
    AppendBigEndian32(tree, 0);
    AppendBigEndian16(tree, compressed ? CompressedFlag : 0);
    AppendBigEndian16(tree, 0);
    AppendBigEndian16(tree, 1);
    AppendBigEndian32(tree, 0);
    tree.append(8, '\0');
    Q_ASSERT(tree.size() == 2 * nodeSize);

    QByteArray resource("qres");
    const quint32 treeOffset = headerSize;
    const quint32 namesOffset = treeOffset + quint32(tree.size());
    const quint32 dataOffset = namesOffset + quint32(names.size());
    AppendBigEndian32(resource, 2);
    AppendBigEndian32(resource, treeOffset);
    AppendBigEndian32(resource, dataOffset);
    AppendBigEndian32(resource, namesOffset);
    resource.append(tree);
    resource.append(names);
    resource.append(data);
    return resource;
}

// The font's record from the file's bytes, through the loader and a resource
// or through the reader and a buffer; null when the loader refuses.
KEZVisVectorFontPrivate *ReadFont(const QByteArray &file, bool throughResource, bool compressed)
{
    auto record = std::make_unique<KEZVisVectorFontPrivate>();
    if (!throughResource) {
        QBuffer buffer;
        buffer.setData(file);
        buffer.open(QIODevice::ReadOnly);
        record->Read(buffer);
        return record.release();
    }
    static const QString root = QStringLiteral("/kez-fuzz-fonts");
    // An empty file is never stored compressed, as rcc would not either: Qt
    // cannot open a compressed resource of no bytes.
    const QByteArray resource = CompiledResource(QStringLiteral("fuzzed.vct"), file, compressed && !file.isEmpty());
    const auto *rccData = reinterpret_cast<const uchar *>(resource.constData());
    if (!QResource::registerResource(rccData, root))
        __builtin_trap(); // the resource built above is always valid
    bool loaded = true;
    try {
        record->Load(QFileInfo(QStringLiteral(":/kez-fuzz-fonts/fuzzed.vct")));
    } catch (const KEZSysException &) {
        loaded = false;
    }
    QResource::unregisterResource(rccData, root);
    if (!loaded)
        __builtin_trap(); // the file is there, so loading it cannot fail
    if (record->name != QLatin1String("fuzzed"))
        __builtin_trap();
    return record.release();
}

void CheckGlyphs(const KEZVisVectorFontPrivate &record)
{
    for (auto it = record.characters.cbegin(); it != record.characters.cend(); ++it) {
        const KEZVisVectorFontChar &glyph = it.value();
        const int polylines = glyph.GetNumPolylines();
        if (polylines < 0)
            __builtin_trap();
        for (int i = 0; i < polylines; ++i)
            (void)glyph.GetPolyline(i);
        (void)glyph.GetCharWidth();
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
    if (size < 4)
        return 0;
    const std::uint8_t mode = data[0];
    const std::uint8_t layout = data[1];
    const std::uint8_t spacing = data[2];
    const std::size_t textLength = std::min<std::size_t>(data[3], size - 4);
    const QString text = QString::fromLatin1(reinterpret_cast<const char *>(data + 4), qsizetype(textLength));
    const QByteArray file = KEZFuzz::Rest(data, size, 4 + textLength);

    KEZVisVectorFontPrivate *record = ReadFont(file, mode & 1, mode & 2);
    CheckGlyphs(*record);
    const KEZVisVectorFont font = KEZVisVectorFontPrivate::Adopt(record);
    (void)font.GetCharacterHeight();
    for (QChar c : text)
        (void)font.GetCharacterWidth(c);

    KEZVisVectorText layoutText(text, font);
    layoutText.SetAnchor(static_cast<KEZVisVectorText::Anchor>(((mode >> 2) & 15) % 9));
    layoutText.SetOrientation((mode & 64) ? KEZVisVectorText::RightToLeft : KEZVisVectorText::LeftToRight);
    if (mode & 128) {
        KEZMathPlane plane;
        plane.SetNormal(KEZMathVector(0.0, -1.0, 1.0));
        plane.SetOrigin(KEZMathPoint(1.0, 2.0, 3.0));
        layoutText.SetPlane(plane);
    }
    layoutText.SetJustification(static_cast<KEZVisVectorText::Justification>(layout & 3));
    layoutText.SetDecorations(KEZVisVectorText::Decorations::fromInt((layout >> 2) & 7));
    layoutText.SetTextSize(OddValues[(layout >> 5) & 7]);
    layoutText.SetTiltAngle(OddValues[spacing & 7]);
    layoutText.SetCharacterSpacing(OddValues[(spacing >> 3) & 7]);
    layoutText.SetLineSpacing(OddValues[(spacing >> 3) & 7]);

    const QList<KEZMathSetOfPoints> polylines = layoutText.GetPolylines();
    std::unique_ptr<KEZVisRep> rep(layoutText.CreateRep(KEZVisOptions(), spacing & 64, 0.5));
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    rep->GetPrimitives(primitives, options);
    if (primitives.size() != polylines.size() * ((spacing & 64) ? 2 : 1))
        __builtin_trap();
    return 0;
}
