#pragma once
// Every message box of the program goes through here: a real modal box with the program's
// titles, icons and buttons.

#include <QMessageBox>
#include <QString>

namespace rainfold::ui {

inline const QString kProgramTitle = QStringLiteral("Rainfold"); // the default title
inline const QString kErrorTitle = QStringLiteral("Error");
inline const QString kWarningTitle = QStringLiteral("Warning");

// The one place a box is built and shown. Returns the button pressed.
QMessageBox::StandardButton ShowMessage(QWidget* parent, const QString& text,
                                        QMessageBox::Icon icon,
                                        QMessageBox::StandardButtons buttons, const QString& title);

// A user error: exclamation icon, OK, "Error".
void ShowError(QWidget* parent, const QString& text);

// An excessive value the user may accept: information icon, OK and Cancel, "Warning". True when
// the user pressed OK.
bool AskWarning(QWidget* parent, const QString& text);

// Any other notice: OK, the program's default title, the given icon (none by default).
void ShowNotice(QWidget* parent, const QString& text, QMessageBox::Icon icon = QMessageBox::NoIcon);

} // namespace rainfold::ui
