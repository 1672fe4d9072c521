#include "Io.h"

#include "KvrFile.h"

#include <KEZVisRepFactory.h>

#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QSaveFile>
#include <QTransform>

#include <charconv>
#include <cmath>

namespace Io {

namespace {

bool Fail(Failure *failure, const QString &path, const QString &problem, int status = 1)
{
    failure->message = path.isEmpty() ? problem : path + QStringLiteral(": ") + problem;
    failure->status = status;
    return false;
}

// Splits a line into its fields at spaces and tabs.
QList<QByteArrayView> Fields(QByteArrayView line)
{
    QList<QByteArrayView> fields;
    qsizetype start = -1;
    for (qsizetype n = 0; n <= line.size(); ++n) {
        const bool blank = n == line.size() || line[n] == ' ' || line[n] == '\t' || line[n] == '\r';
        if (blank && start >= 0) {
            fields.append(line.sliced(start, n - start));
            start = -1;
        } else if (!blank && start < 0) {
            start = n;
        }
    }
    return fields;
}

bool ParseNumber(QByteArrayView field, double *value)
{
    const char *begin = field.data();
    const char *end = begin + field.size();
    if (begin != end && *begin == '+')
        ++begin; // from_chars does not take a leading plus
    const auto [last, error] = std::from_chars(begin, end, *value);
    return error == std::errc() && last == end;
}

} // namespace

bool ParseSize(const QString &text, QSize *size, Failure *failure)
{
    const QStringList parts = text.toLower().split(QLatin1Char('x'));
    bool okWidth = false, okHeight = false;
    const int width = parts.size() == 2 ? parts[0].toInt(&okWidth) : 0;
    const int height = parts.size() == 2 ? parts[1].toInt(&okHeight) : 0;
    if (!okWidth || !okHeight)
        return Fail(failure, QString(), QStringLiteral("size '%1' is not WIDTHxHEIGHT").arg(text), 2);
    if (width < 1 || height < 1 || width > maxPictureSide || height > maxPictureSide
        || qint64(width) * height > maxPicturePixels)
        return Fail(failure, QString(),
                    QStringLiteral("size %1x%2 is out of range (1 to %3 pixels a side, at most %4 megapixels)")
                        .arg(width)
                        .arg(height)
                        .arg(maxPictureSide)
                        .arg(maxPicturePixels / (1024 * 1024)),
                    2);
    *size = QSize(width, height);
    return true;
}

bool FormatOf(const QString &path, const QList<Format> &allowed, Format *format, Failure *failure)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    const Format found = suffix == QLatin1String("png") ? Format::Png
        : suffix == QLatin1String("svg")                ? Format::Svg
                                                        : Format::Kvr;
    QStringList names;
    for (Format each : allowed)
        names.append(each == Format::Png ? QStringLiteral(".png")
                                         : (each == Format::Svg ? QStringLiteral(".svg") : QStringLiteral(".kvr")));
    const bool known = suffix == QLatin1String("png") || suffix == QLatin1String("svg") || suffix == QLatin1String("kvr");
    if (!known || !allowed.contains(found))
        return Fail(failure, path, QStringLiteral("unknown output suffix '%1' (use %2)")
                                       .arg(suffix.isEmpty() ? QString() : QStringLiteral(".") + suffix,
                                            names.join(QStringLiteral(", "))),
                    2);
    *format = found;
    return true;
}

bool OpenForReading(const QString &path, QFile *file, Failure *failure)
{
    const QFileInfo info(path);
    if (!info.exists())
        return Fail(failure, path, QStringLiteral("no such file"));
    if (info.isDir())
        return Fail(failure, path, QStringLiteral("is a directory, not a file"));
    file->setFileName(path);
    if (!file->open(QIODevice::ReadOnly))
        return Fail(failure, path, QStringLiteral("cannot be read: ") + file->errorString());
    if (file->size() == 0)
        return Fail(failure, path, QStringLiteral("is empty"));
    return true;
}

bool ReadWholeFile(const QString &path, QByteArray *bytes, Failure *failure)
{
    QFile file;
    if (!OpenForReading(path, &file, failure))
        return false;
    *bytes = file.readAll();
    if (bytes->isEmpty())
        return Fail(failure, path, QStringLiteral("is empty"));
    return true;
}

bool ReadOutline(const QString &path, KEZMathSetOfPoints *points, Failure *failure)
{
    QByteArray bytes;
    if (!ReadWholeFile(path, &bytes, failure))
        return false;
    points->clear();
    const QByteArrayView all(bytes);
    qsizetype lineStart = 0;
    int lineNumber = 0;
    while (lineStart < all.size()) {
        qsizetype lineEnd = all.indexOf('\n', lineStart);
        if (lineEnd < 0)
            lineEnd = all.size();
        ++lineNumber;
        const QList<QByteArrayView> fields = Fields(all.sliced(lineStart, lineEnd - lineStart));
        lineStart = lineEnd + 1;
        if (fields.isEmpty())
            continue;
        if (fields.size() != 2)
            return Fail(failure, path, QStringLiteral("line %1: expected two numbers \"x y\", found %2 fields")
                                           .arg(lineNumber)
                                           .arg(fields.size()));
        double xy[2];
        for (int k = 0; k < 2; ++k) {
            if (!ParseNumber(fields[k], &xy[k]))
                return Fail(failure, path, QStringLiteral("line %1: '%2' is not a number")
                                               .arg(lineNumber)
                                               .arg(QString::fromUtf8(fields[k].toByteArray()).left(40)));
            if (!std::isfinite(xy[k]))
                return Fail(failure, path, QStringLiteral("line %1: NaN or infinite coordinate").arg(lineNumber));
        }
        points->append(KEZMathPoint(xy[0], xy[1], 0.0));
    }
    if (points->size() < 3)
        return Fail(failure, path, QStringLiteral("an outline needs at least three points, found %1").arg(points->size()));
    return true;
}

bool WriteReps(const QString &path, Format format, const QList<const KEZVisRep *> &reps, const QSize &size,
               Failure *failure)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return Fail(failure, path, QStringLiteral("cannot be written: ") + file.errorString());
    bool written = true;
    QString problem;
    switch (format) {
    case Format::Png: {
        const QImage image = KEZVisRepFactory::CreateImage(size, reps, QColor(Qt::white));
        written = !image.isNull() && image.save(&file, "PNG");
        problem = QStringLiteral("the PNG image could not be written");
        break;
    }
    case Format::Svg: {
        const KEZMathBoundingBox box = KEZVisRepFactory::CalculateRepesentationBoundingBox(reps);
        KEZVisRepFactory::CreateSvgImage(reps, box, KEZVisRepFactory::CalculateViewBox(box), &file);
        written = file.error() == QFileDevice::NoError;
        problem = QStringLiteral("the SVG document could not be written");
        break;
    }
    case Format::Kvr:
        written = Kvr::Write(file, reps, &problem);
        break;
    }
    if (!written) {
        file.cancelWriting();
        return Fail(failure, path, problem);
    }
    if (!file.commit())
        return Fail(failure, path, QStringLiteral("cannot be written: ") + file.errorString());
    return true;
}

QRectF PixelRectOf(const QRectF &model, const KEZMathBoundingBox &box, const QSize &size)
{
    // The fit of CreateImage: the smaller scale wins, the picture is centred
    // in the other direction, y turns over.
    const double width = size.width();
    const double height = size.height();
    const double sx = width / box.GetDeltaX();
    const double sy = height / box.GetDeltaY();
    double tx = -box.GetLowerPoint().GetX();
    double ty = -box.GetUpperPoint().GetY();
    const double aspect = width / height;
    double s = 0.0;
    if (sy > sx) {
        s = sx;
        ty -= (box.GetDeltaX() / aspect - box.GetDeltaY()) * 0.5;
    } else {
        s = sy;
        tx += (box.GetDeltaY() * aspect - box.GetDeltaX()) * 0.5;
    }
    const QTransform transform = QTransform::fromTranslate(tx, ty) * QTransform::fromScale(s, -s);
    return transform.mapRect(model);
}

} // namespace Io
