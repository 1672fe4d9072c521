// kezvis-viewer: shows the gallery scene with a gizmo, or the reps of a .kvr
// file, and lets the mouse turn, pan and zoom the view, preselect, select and
// drag the gizmo.

#include "ViewerEnvironment.h"
#include "ViewerScene.h"
#include "ViewerWidget.h"
#include "ViewerWindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QRegularExpression>
#include <QStatusBar>

#include <cstdio>

namespace {

bool ParseSize(const QString &text, QSize &size)
{
    const QRegularExpressionMatch match = QRegularExpression(QStringLiteral("^(\\d{1,5})x(\\d{1,5})$")).match(text);
    if (!match.hasMatch())
        return false;
    const int width = match.captured(1).toInt();
    const int height = match.captured(2).toInt();
    if (width < 1 || height < 1 || width > 16384 || height > 16384)
        return false;
    size = QSize(width, height);
    return true;
}

void PrintError(const QString &message)
{
    std::fprintf(stderr, "kezvis-viewer: %s\n", qPrintable(message));
}

} // namespace

// Whether the command line asks for a screenshot, or only for text (help,
// version): then the program needs no display and draws off screen.
bool NeedsNoDisplay(int argc, char **argv)
{
    for (int n = 1; n < argc; ++n) {
        const QByteArray argument(argv[n]);
        if (argument == "--screenshot" || argument.startsWith("--screenshot=") || argument == "--help"
            || argument == "-h" || argument == "--version" || argument == "-v")
            return true;
    }
    return false;
}

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && NeedsNoDisplay(argc, argv))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("kezvis-viewer"));
    QApplication::setApplicationVersion(QStringLiteral(KEZVIS_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Shows the gallery scene with a gizmo, or the reps of FILE.kvr.\n"
        "Left drag turns the view (or drags the gizmo), middle drag pans, the wheel zooms,\n"
        "a click selects and Ctrl+click toggles. A file that cannot be read leaves the\n"
        "gallery scene on screen and the reason in the status bar; with --screenshot the\n"
        "frame is still written and the exit status is 1."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption screenshotOption(QStringLiteral("screenshot"),
                                              QStringLiteral("Render one frame into <file> (PNG) and exit."),
                                              QStringLiteral("file"));
    const QCommandLineOption sizeOption(QStringLiteral("size"),
                                        QStringLiteral("Size of the window or screenshot, WxH (default 1200x800)."),
                                        QStringLiteral("WxH"), QStringLiteral("1200x800"));
    parser.addOption(screenshotOption);
    parser.addOption(sizeOption);
    parser.addPositionalArgument(QStringLiteral("FILE.kvr"), QStringLiteral("Rep file to show instead of the gallery."),
                                 QStringLiteral("[FILE.kvr]"));
    parser.process(application);

    QSize size;
    if (!ParseSize(parser.value(sizeOption), size)) {
        PrintError(QStringLiteral("bad --size %1: expected WxH, each from 1 to 16384").arg(parser.value(sizeOption)));
        return 2;
    }
    const QStringList files = parser.positionalArguments();
    if (files.size() > 1) {
        PrintError(QStringLiteral("at most one file, got %1").arg(files.size()));
        return 2;
    }

    ViewerEnvironment environment;
    environment.SetSelectionEnabled(true);
    ViewerScene scene(&environment);
    QString error;
    if (!files.isEmpty())
        error = scene.LoadFile(files.first());
    if (files.isEmpty() || !error.isEmpty())
        scene.LoadGallery();
    if (!error.isEmpty())
        PrintError(error);

    const QString title = files.isEmpty() || !error.isEmpty()
                              ? QStringLiteral("kezvis-viewer")
                              : QStringLiteral("kezvis-viewer - %1").arg(files.first());
    ViewerWindow window(&environment, scene.GetGizmo(), title, error);
    ViewerWidget *view = window.GetView();
    view->resize(size);
    environment.FitToObjects(environment.GetObjects());

    if (parser.isSet(screenshotOption)) {
        const QString out = parser.value(screenshotOption);
        if (!view->RenderImage().save(out, "PNG")) {
            PrintError(QStringLiteral("cannot write %1").arg(out));
            return 1;
        }
        return error.isEmpty() ? 0 : 1;
    }

    window.resize(size + QSize(0, window.statusBar()->sizeHint().height()));
    window.show();
    return application.exec();
}
