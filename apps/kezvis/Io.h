#ifndef KEZVIS_IO_H
#define KEZVIS_IO_H

// Reading the program's input files and writing its pictures, with one clear
// message for whatever goes wrong.

#include <KEZVisRep.h>

#include <KEZMathBoundingBox.h>
#include <KEZMathSetOfPoints.h>

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QRectF>
#include <QSize>
#include <QString>

namespace Io {

// What went wrong, as "FILE: problem", and the exit status for it.
struct Failure
{
    QString message;
    int status = 1;
};

enum class Format { Png, Svg, Kvr };

// The largest picture the program makes: 16384 pixels a side and 64
// megapixels in all (256 MB of image).
constexpr int maxPictureSide = 16384;
constexpr qint64 maxPicturePixels = qint64(64) * 1024 * 1024;

// "WxH" with both sides from 1 to maxPictureSide and at most maxPicturePixels.
bool ParseSize(const QString &text, QSize *size, Failure *failure);

// The format named by the suffix of \a path, if it is one of \a allowed.
bool FormatOf(const QString &path, const QList<Format> &allowed, Format *format, Failure *failure);

// Opens a regular, readable, non-empty file for reading.
bool OpenForReading(const QString &path, QFile *file, Failure *failure);

// The whole content of a regular, readable, non-empty file.
bool ReadWholeFile(const QString &path, QByteArray *bytes, Failure *failure);

// An outline of "x y" lines: two finite numbers a line, blank lines and
// CR LF line ends allowed, at least three points.
bool ReadOutline(const QString &path, KEZMathSetOfPoints *points, Failure *failure);

// Writes \a reps to \a path in \a format, through a temporary file that
// replaces \a path only when everything was written. A picture is fitted to
// \a size; an SVG gets the box and view box that the library computes.
bool WriteReps(const QString &path, Format format, const QList<const KEZVisRep *> &reps, const QSize &size,
               Failure *failure);

// Where a model rectangle lands in a picture of \a size made by
// KEZVisRepFactory::CreateImage from reps with the box \a box.
QRectF PixelRectOf(const QRectF &model, const KEZMathBoundingBox &box, const QSize &size);

} // namespace Io

#endif // KEZVIS_IO_H
