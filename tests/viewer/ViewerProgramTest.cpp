// kezvis-viewer run as a process: screenshots, options and bad files.

#include "KvrFile.h"

#include <KEZVisOptions.h>
#include <KEZVisRepGraphics.h>
#include <KEZVisSurfacePrimitive.h>

#include <QColor>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

struct ProgramRun
{
    int status = -1;
    QString out;
    QString err;
};

ProgramRun Start(const QStringList &arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(KEZVIS_VIEWER_PROGRAM), arguments);
    ProgramRun run;
    if (!process.waitForFinished(120000))
        return run;
    run.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

int DistinctColours(const QImage &image)
{
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); y += 3)
        for (int x = 0; x < image.width(); x += 3)
            colours.insert(image.pixel(x, y));
    return int(colours.size());
}

} // namespace

TEST(ViewerProgram, AScreenshotOfTheDefaultSceneEqualsASecondRunPixelForPixel)
{
    QTemporaryDir folder;
    const QString first = folder.filePath(QStringLiteral("first.png"));
    const QString second = folder.filePath(QStringLiteral("second.png"));
    ASSERT_EQ(Start({QStringLiteral("--screenshot"), first, QStringLiteral("--size"), QStringLiteral("480x320")}).status, 0);
    ASSERT_EQ(Start({QStringLiteral("--screenshot"), second, QStringLiteral("--size"), QStringLiteral("480x320")}).status, 0);
    const QImage a(first);
    const QImage b(second);
    ASSERT_FALSE(a.isNull());
    EXPECT_EQ(a.size(), QSize(480, 320));
    EXPECT_GT(DistinctColours(a), 20) << "the gallery and the gizmo show";
    EXPECT_EQ(a.convertToFormat(QImage::Format_RGB32), b.convertToFormat(QImage::Format_RGB32));
}

TEST(ViewerProgram, AFileThatCannotBeReadShowsTheDefaultSceneAndTheErrorOnStandardError)
{
    QTemporaryDir folder;
    const QString garbage = folder.filePath(QStringLiteral("garbage.kvr"));
    QFile file(garbage);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("not a rep file at all");
    file.close();
    const QString shot = folder.filePath(QStringLiteral("shot.png"));
    const QString reference = folder.filePath(QStringLiteral("reference.png"));
    const ProgramRun run = Start({garbage, QStringLiteral("--screenshot"), shot, QStringLiteral("--size"), QStringLiteral("320x240")});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.err.contains(QStringLiteral("kezvis-viewer: cannot read ") + garbage)) << run.err.toStdString();
    ASSERT_EQ(Start({QStringLiteral("--screenshot"), reference, QStringLiteral("--size"), QStringLiteral("320x240")}).status, 0);
    EXPECT_EQ(QImage(shot).convertToFormat(QImage::Format_RGB32), QImage(reference).convertToFormat(QImage::Format_RGB32));
}

TEST(ViewerProgram, AMissingFileIsReportedWithItsName)
{
    QTemporaryDir folder;
    const QString missing = folder.filePath(QStringLiteral("missing.kvr"));
    const ProgramRun run = Start({missing, QStringLiteral("--screenshot"), folder.filePath(QStringLiteral("s.png")),
                           QStringLiteral("--size"), QStringLiteral("64x64")});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.err.contains(QStringLiteral("kezvis-viewer: cannot open ") + missing)) << run.err.toStdString();
}

TEST(ViewerProgram, RefusesASizeThatIsNotWidthByHeight)
{
    for (const QString &size : {QStringLiteral("0x10"), QStringLiteral("10"), QStringLiteral("99999x2"), QStringLiteral("axb")}) {
        const ProgramRun run = Start({QStringLiteral("--screenshot"), QStringLiteral("unused.png"), QStringLiteral("--size"), size});
        EXPECT_EQ(run.status, 2) << size.toStdString();
        EXPECT_TRUE(run.err.contains(QStringLiteral("bad --size"))) << run.err.toStdString();
    }
}

TEST(ViewerProgram, HelpNamesTheOptionsAndVersionTheProgram)
{
    const ProgramRun help = Start({QStringLiteral("--help")});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.out.contains(QStringLiteral("--screenshot")));
    EXPECT_TRUE(help.out.contains(QStringLiteral("--size")));
    const ProgramRun version = Start({QStringLiteral("--version")});
    EXPECT_EQ(version.status, 0);
    EXPECT_TRUE(version.out.startsWith(QStringLiteral("kezvis-viewer "))) << version.out.toStdString();
}

TEST(ViewerProgram, AScreenshotOfARepFileShowsItsRepsAndNotTheGallery)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("rectangle.kvr"));
    {
        double *coords = new double[12]{-20, -20, 0, 20, -20, 0, 20, 20, 0, -20, 20, 0};
        int *triangles = new int[6]{0, 1, 2, 0, 2, 3};
        KEZVisOptions options;
        options.SetColor(QColor(200, 30, 30));
        const KEZVisRepGraphics rep(
            QList<const KEZVisPrimitive *>{new KEZVisSurfacePrimitive(4, coords, 2, triangles, nullptr)}, options);
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        QString error;
        ASSERT_TRUE(Kvr::Write(file, {&rep}, &error)) << error.toStdString();
    }
    const QString shot = folder.filePath(QStringLiteral("shot.png"));
    const ProgramRun run = Start({path, QStringLiteral("--screenshot"), shot, QStringLiteral("--size"), QStringLiteral("120x90")});
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    const QImage image(shot);
    ASSERT_FALSE(image.isNull());
    // The fitted rectangle fills the middle of the frame, facing the view.
    EXPECT_EQ(image.pixelColor(60, 45), QColor(200, 30, 30));
    EXPECT_EQ(DistinctColours(image), 2) << "the rectangle and the background, nothing else";
}
