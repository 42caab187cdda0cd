// The desktop program: one main window, driven by its events until it is closed.

#include "command_line.h"

#include "file_access.h"
#include "main/FileNames.h"
#include "main/Icons.h"
#include "main/ROAnalysis.h"

#include <QApplication>
#include <QDir>
#include <QTimer>

#include <cstdio>

namespace {

constexpr int kUsageError = 64;

// The arguments after the program's name. A file name keeps its bytes whatever they are (a name
// that is not UTF-8 still opens); on Windows Qt reads them from the system in UTF-16.
QStringList Arguments(int argc, char** argv) {
#ifdef Q_OS_WIN
    if (QCoreApplication::instance())
        return QCoreApplication::arguments().mid(1);
#endif
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << rainfold::ui::FileNameText(argv[i]);
    return arguments;
}

// --version and --help answer without a display; a usage error is told on one, too.
int Answer(const CommandLine& line) {
    switch (line.action) {
    case CommandLine::Action::Version:
        std::printf("Rainfold %s\n", RAINFOLD_VERSION);
        return 0;
    case CommandLine::Action::Help:
        std::fputs(UsageText().toLocal8Bit().constData(), stdout);
        return 0;
    default:
        std::fprintf(stderr, "rainfold: %s\n%s", line.error.toLocal8Bit().constData(),
                     UsageText().toLocal8Bit().constData());
        return kUsageError;
    }
}

} // namespace

int main(int argc, char** argv) {
    // Qt's own options (-platform, -style ...) are known only to QApplication, so before it
    // exists only --version and --help are taken at their word.
    const CommandLine early = ParseCommandLine(Arguments(argc, argv));
    if (early.action == CommandLine::Action::Version || early.action == CommandLine::Action::Help)
        return Answer(early);

    // A file-size limit makes a save fail with its reason instead of ending the program.
    rainfold::PrepareStandardStreams();
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Rainfold"));
    QApplication::setApplicationVersion(QStringLiteral(RAINFOLD_VERSION));
    QApplication::setWindowIcon(rainfold::ui::ProgramIcon());

    // QApplication has taken its own options (-platform, -style ...) out of argv.
    const CommandLine line = ParseCommandLine(Arguments(argc, argv));
    if (line.action != CommandLine::Action::Run)
        return Answer(line);

    ROAnalysis window;
    window.show();
    if (!line.designFile.isEmpty()) {
        // Once the window is up, so that an "Error" box stands over it.
        const QString file = QDir::current().absoluteFilePath(line.designFile);
        QTimer::singleShot(0, &window, [&window, file] { window.openDesignFile(file); });
    }
    return QApplication::exec();
}
