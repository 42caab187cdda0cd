#pragma once
// The printed pages as files: one Letter page drawn on a PDF writer in memory, and the texts
// every printed page carries (the program's version, today's date).

#include "drawing_surface.h"

#include <QString>

#include <functional>
#include <string>

namespace rainfold::render {

using SurfaceDrawing = std::function<void(DrawingSurface&)>;

// The program's version as the printed pages show it: "major.minor.revision".
QString VersionText();

// Today's date in the system's short date form.
QString ShortDateToday();

// One Letter page as PDF bytes, drawn in memory so that nothing reaches the file system until
// the whole document exists. The layout matches the printer's: 1200 dpi, the whole sheet.
// False when the page cannot be drawn.
bool RenderPdfPage(const SurfaceDrawing& draw, std::string& bytes);

} // namespace rainfold::render
