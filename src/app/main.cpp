// The desktop program: one main window, driven by its events until it is closed.

#include "main/Icons.h"
#include "main/ROAnalysis.h"

#include <QApplication>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Rainfold"));
    QApplication::setApplicationVersion(QStringLiteral(RAINFOLD_VERSION));
    QApplication::setWindowIcon(rainfold::ui::ProgramIcon());

    ROAnalysis window;
    window.show();
    return QApplication::exec();
}
