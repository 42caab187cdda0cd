#include "Messages.h"

namespace rainfold::ui {

QMessageBox::StandardButton ShowMessage(QWidget* parent, const QString& text,
                                        QMessageBox::Icon icon,
                                        QMessageBox::StandardButtons buttons,
                                        const QString& title) {
    QMessageBox box(icon, title, text, buttons, parent);
    box.setObjectName(QStringLiteral("msgBox"));
    box.setTextFormat(Qt::PlainText);
    box.setWindowModality(Qt::ApplicationModal);
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

void ShowError(QWidget* parent, const QString& text) {
    ShowMessage(parent, text, QMessageBox::Warning, QMessageBox::Ok, kErrorTitle);
}

bool AskWarning(QWidget* parent, const QString& text) {
    return ShowMessage(parent, text, QMessageBox::Information,
                       QMessageBox::Ok | QMessageBox::Cancel, kWarningTitle) == QMessageBox::Ok;
}

void ShowNotice(QWidget* parent, const QString& text, QMessageBox::Icon icon) {
    ShowMessage(parent, text, icon, QMessageBox::Ok, kProgramTitle);
}

} // namespace rainfold::ui
