#pragma once
// The program's icon and the toolbar images, drawn in code so the program ships no image files.

#include <QIcon>
#include <QString>

namespace rainfold::ui {

QIcon ProgramIcon();

// Image of a toolbar button by its image key ("New", "Open", "Save", "Preview", "Print",
// "Drawing", "Help"): the desktop theme's icon where there is one, a standard or drawn one
// otherwise.
QIcon ToolbarIcon(const QString& imageKey);

} // namespace rainfold::ui
