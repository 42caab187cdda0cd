#include "page_output.h"

#include "QPainterSurface.h"

#include <QBuffer>
#include <QDate>
#include <QLocale>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

namespace rainfold::render {

QString VersionText() {
    return QStringLiteral(RAINFOLD_RENDER_VERSION);
}

QString ShortDateToday() {
    return QLocale::system().toString(QDate::currentDate(), QLocale::ShortFormat);
}

bool RenderPdfPage(const SurfaceDrawing& draw, std::string& bytes) {
    QByteArray pdf;
    QBuffer buffer(&pdf);
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setResolution(1200);
        writer.setPageLayout(QPageLayout(QPageSize(QPageSize::Letter), QPageLayout::Portrait,
                                         QMarginsF(0, 0, 0, 0)));
        writer.setCreator(QStringLiteral("Rainfold ") + VersionText());
        QPainter painter;
        if (!painter.begin(&writer))
            return false;
        const double twipsPerPixel = 1440.0 / writer.logicalDpiX();
        QPainterSurface surface(painter, writer.width() * twipsPerPixel);
        draw(surface);
        if (!painter.end())
            return false;
    }
    bytes.assign(pdf.constData(), static_cast<size_t>(pdf.size()));
    return !bytes.empty();
}

} // namespace rainfold::render
