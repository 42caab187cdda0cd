#include "command_line.h"

CommandLine ParseCommandLine(const QStringList& arguments) {
    CommandLine line;
    bool version = false;
    bool help = false;
    bool optionsEnded = false;
    QStringList files;
    for (const QString& argument : arguments) {
        if (!optionsEnded && argument == QLatin1String("--")) {
            optionsEnded = true;
        } else if (!optionsEnded &&
                   (argument == QLatin1String("--version") || argument == QLatin1String("-v"))) {
            version = true;
        } else if (!optionsEnded &&
                   (argument == QLatin1String("--help") || argument == QLatin1String("-h"))) {
            help = true;
        } else if (!optionsEnded && argument.startsWith(QLatin1Char('-')) && argument.size() > 1) {
            if (line.error.isEmpty())
                line.error = QStringLiteral("unknown option %1").arg(argument);
        } else {
            files << argument;
        }
    }
    if (files.size() > 1 && line.error.isEmpty())
        line.error = QStringLiteral("one design file at most, %1 given").arg(files.size());

    if (version || help) {
        line.action = version ? CommandLine::Action::Version : CommandLine::Action::Help;
        line.error.clear();
    } else if (!line.error.isEmpty()) {
        line.action = CommandLine::Action::UsageError;
    } else if (!files.isEmpty()) {
        line.designFile = files.first();
    }
    return line;
}

QString UsageText() {
    return QStringLiteral(
        "Usage: rainfold [FILE.rfd]\n"
        "Estimates the potential runoff of a center-pivot design. With a design file, the window\n"
        "opens that design as File > Open... would.\n"
        "\n"
        "  -h, --help     show this help and exit\n"
        "  -v, --version  show the program's name and version and exit\n");
}
