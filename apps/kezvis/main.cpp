// kezvis: the command-line tool of KEZVisualization. It builds the gallery
// scene, exports saved rep streams as pictures, fills polygons with holes and
// lays out vector text, using only the installed library's public API.

#include "Commands.h"

#include <QCommandLineParser>
#include <QGuiApplication>

#include <cstdio>

namespace {

const char *const summary =
    "Commands:\n"
    "  gallery   the gallery scene as PNG, SVG and rep stream\n"
    "  render    exports a saved rep stream (.kvr) as a picture\n"
    "  fill      fills a polygon with holes read from text files of \"x y\" lines\n"
    "  text      lays out vector text and exports it\n"
    "\n"
    "Run \"kezvis COMMAND --help\" for the options of a command.";

// Qt's own notices that say nothing to a user of the tool: the SVG export
// asks for antialiasing before its painter begins, and a session without a
// runtime folder is normal for a command-line program. Everything else goes
// to standard error as usual.
void FilterMessages(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (message.startsWith(QLatin1String("QPainter::setRenderHint: Painter must be active"))
        || message.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set")))
        return;
    std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, message)));
}

} // namespace

int main(int argc, char **argv)
{
    // A command-line tool draws off screen, whatever display there is.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(FilterMessages);
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("kezvis"));
    QGuiApplication::setApplicationVersion(QStringLiteral(KEZVIS_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Builds, renders and exports KEZVisualization reps.\n\n") + QString::fromLatin1(summary));
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("command"), QStringLiteral("gallery, render, fill or text"),
                                 QStringLiteral("COMMAND [OPTIONS...]"));
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);

    const QStringList arguments = QGuiApplication::arguments();
    if (!parser.parse(arguments))
        return Commands::UsageError(parser.errorText());
    if (parser.isSet(version))
        parser.showVersion();
    const QStringList positional = parser.positionalArguments();
    if (parser.isSet(help) || positional.isEmpty()) {
        if (positional.isEmpty() && !parser.isSet(help)) {
            std::fputs(qPrintable(parser.helpText()), stderr);
            return 2;
        }
        parser.showHelp(0);
    }

    const QString command = positional.first();
    QStringList commandArguments{arguments.first() + QLatin1Char(' ') + command};
    commandArguments.append(positional.mid(1));
    if (command == QLatin1String("gallery"))
        return Commands::Gallery(commandArguments);
    if (command == QLatin1String("render"))
        return Commands::Render(commandArguments);
    if (command == QLatin1String("fill"))
        return Commands::Fill(commandArguments);
    if (command == QLatin1String("text"))
        return Commands::Text(commandArguments);
    return Commands::UsageError(QStringLiteral("unknown command '%1' (use gallery, render, fill or text)").arg(command));
}
