#pragma once
// What `rainfold` was asked to do by its arguments.

#include <QString>
#include <QStringList>

struct CommandLine {
    enum class Action { Run, Version, Help, UsageError };
    Action action = Action::Run;
    QString designFile; // the design to open at start-up; empty: start with an empty design
    QString error;      // why the arguments were refused
};

// `arguments` without the program's name. --version and --help answer whatever else is given, so
// they can be asked before the windowing system is reached.
CommandLine ParseCommandLine(const QStringList& arguments);

QString UsageText();
