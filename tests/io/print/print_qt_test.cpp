// The Qt side of printing: the painter surface's measures and marks, the chart picture, the PDF
// file, the preview window, and the rate chart at the sizes it is shown and printed. Runs on the
// offscreen platform.

#include "QPainterSurface.h"
#include "chart_data.h"
#include "chart_picture.h"
#include "dialogs/frmPreview.h"
#include "printing.h"
#include "rate_chart_content.h"

#include <QtCharts>
#include <QtWidgets>

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <set>

namespace rainfold::ui {
using namespace rainfold::render;
namespace {

// An image at 1,440 dots per inch: one pixel is one twip.
QImage TwipImage(int w, int h) {
    QImage image(w, h, QImage::Format_RGB32);
    image.fill(Qt::white);
    image.setDotsPerMeterX(56693); // 1440 / 0.0254
    image.setDotsPerMeterY(56693);
    return image;
}

QImage ImageOf(const Picture& picture) {
    const auto* image = dynamic_cast<const ImagePicture*>(picture.data.get());
    return image ? image->image() : QImage();
}

bool AnyDark(const QImage& image, const QRect& area) {
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            if (qGray(image.pixel(x, y)) < 128)
                return true;
    return false;
}

TEST(QPainterSurface, WritesByTheMeasuredTextAndDrawsInTwips) {
    QImage image = TwipImage(4000, 3000);
    QPainter painter(&image);
    QPainterSurface s(painter, 4000);
    s.SetFontName("Times New Roman");
    s.SetFontSize(12);
    s.SetCurrentX(100);
    s.SetCurrentY(200);
    const double width = s.TextWidth("Rainfold");
    // 12 points is 240 twips; any serif face writes eight letters in 2 to 6 ems.
    EXPECT_GT(width, 480);
    EXPECT_LT(width, 1440);
    s.Write("Rainfold", LineEnd::Continued);
    EXPECT_DOUBLE_EQ(s.CurrentX(), 100 + width);
    EXPECT_DOUBLE_EQ(s.CurrentY(), 200);
    s.Write("", LineEnd::Finished);
    EXPECT_DOUBLE_EQ(s.CurrentX(), 0);
    const double lineHeight = s.CurrentY() - 200;
    EXPECT_GT(lineHeight, 240);
    EXPECT_LT(lineHeight, 400);
    s.SetFontBold(true);
    EXPECT_GT(s.TextWidth("Rainfold"), width);

    s.Line(100, 1500, 2900, 1500);
    QImage red(10, 10, QImage::Format_RGB32);
    red.fill(Qt::red);
    s.PaintPicture(MakePicture(red, 400, 200), 1000, 2000);
    s.PaintPicture(Picture{}, 0, 0); // nothing to paint
    painter.end();
    // The text lies right of and below its top-left corner.
    EXPECT_TRUE(AnyDark(image, QRect(100, 200, static_cast<int>(width), 240)));
    EXPECT_FALSE(AnyDark(image, QRect(0, 0, 4000, 190)));
    EXPECT_TRUE(AnyDark(image, QRect(1500, 1495, 1, 10)));
    EXPECT_FALSE(AnyDark(image, QRect(1500, 1520, 1, 400)));
    EXPECT_EQ(image.pixel(1005, 2005), QColor(Qt::red).rgb());
    EXPECT_EQ(image.pixel(1395, 2195), QColor(Qt::red).rgb());
    EXPECT_EQ(image.pixel(1405, 2100), QColor(Qt::white).rgb());
    EXPECT_EQ(image.pixel(1100, 2205), QColor(Qt::white).rgb());
}

TEST(WritePdf, WritesOneLetterPageOrSaysItCannot) {
    QTemporaryDir dir;
    const QString file = dir.filePath("page.pdf");
    double pageWidth = 0;
    EXPECT_TRUE(WritePdf(file, [&](DrawingSurface& s) {
        pageWidth = s.PageWidth();
        s.Write("Rainfold", LineEnd::Finished);
    }));
    EXPECT_NEAR(pageWidth, 12240, 2); // 8.5 inches, the whole sheet
    QFile pdf(file);
    EXPECT_TRUE(pdf.open(QIODevice::ReadOnly) && pdf.read(5) == "%PDF-");
    EXPECT_FALSE(WritePdf(dir.filePath("no/such/folder/page.pdf"), [](DrawingSurface&) {}));
}

TEST(frmPreview, OpensEmptyAtPageSizeDrawsAndPrintsItsOwnPicture) {
    QWidget main;
    main.setGeometry(100, 50, 1200, 800);
    frmPreview preview(&main);
    preview.Open(&main, "Print Preview", [](DrawingSurface& s) {
        EXPECT_NEAR(s.PageWidth(), 12240, 1);
        s.Line(720, 1440, 11520, 1440);
    });
    EXPECT_EQ(preview.objectName(), "frmPreview");
    EXPECT_EQ(preview.windowTitle(), "Print Preview");
    EXPECT_EQ(preview.height(), preview.TwipsToPixelsY(15840));
    EXPECT_EQ(preview.x(), 100 + (main.frameGeometry().width() - preview.width()) / 2);
    const QImage drawn = preview.picture().toImage();
    EXPECT_TRUE(AnyDark(
        drawn, QRect(preview.TwipsToPixelsX(6000), preview.TwipsToPixelsY(1440) - 2, 1, 5)));
    EXPECT_FALSE(AnyDark(drawn, QRect(0, preview.TwipsToPixelsY(2000), drawn.width(), 50)));

    QStringList entries;
    for (QAction* a : preview.findChild<QMenuBar*>()->actions())
        entries << a->objectName() + "=" + a->text();
    EXPECT_EQ(entries, QStringList({"MnuPrint=Print", "mnuExit=Exit"}));

    // A second preview is a new window and starts white, whatever the first one drew.
    frmPreview next(&main);
    next.Open(&main, "Plot Preview", [](DrawingSurface&) {});
    EXPECT_EQ(next.windowTitle(), "Plot Preview");
    EXPECT_FALSE(AnyDark(next.picture().toImage(), next.picture().rect()));

    // Cancelling the print dialog leaves the preview open; printing closes it.
    preview.show();
    preview.setPrinterChooser([](QPrinter&, QWidget*) { return false; });
    preview.MnuPrint_Click();
    EXPECT_TRUE(preview.isVisible());
    QTemporaryDir dir;
    const QString file = dir.filePath("preview.pdf");
    preview.setPrinterChooser([&](QPrinter& printer, QWidget*) {
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(file);
        return true;
    });
    preview.MnuPrint_Click();
    EXPECT_FALSE(preview.isVisible());
    EXPECT_EQ(preview.width(), preview.TwipsToPixelsX(12240));
    EXPECT_EQ(preview.height(), preview.TwipsToPixelsY(13960));
    // Only the 12,240 by 13,960 twips of the window go to paper.
    EXPECT_EQ(preview.PrintedPicture().size(),
              QSize(preview.TwipsToPixelsX(12240), preview.TwipsToPixelsY(13960)));
    EXPECT_GT(QFile(file).size(), 0);
}

// The rate chart: every axis label reads in full, no two time labels read the same, and each
// curve is named beside itself where it shows. A pass of 2T hours peaking at `peak` in/hr, against
// an intake rate of k t^-0.5 in/hr.
ChartData Pass(double peak, double T, double k) {
    ChartData d;
    for (int i = 0; i <= 100; ++i) {
        const double t = i * 2 * T / 100;
        d.application.push_back({t, peak * std::sqrt(std::fmax(0, 2 * T * t - t * t)) / T});
        d.intake.push_back({t, i == 0 ? 39.3701 : k / std::sqrt(t)});
    }
    d.pondingMarker = {{T / 2, 0}, {T / 2, peak * 0.866}};
    ChartScale(peak * 25.4, d.yMaximum, d.yDivisions);
    return d;
}

// What a chart writes where: its bounds, plot area, axis labels and titles, and curve names.
struct ChartTexts {
    QRectF bounds, plot;
    std::vector<std::pair<QString, QRectF>> labels;
    std::map<QString, QRectF> names;
};

// The chart of the results page, read from its scene's items.
ChartTexts ShownChart(const ChartData& data, const QSizeF& size) {
    QGraphicsScene scene;
    auto* chart = new QChart;
    scene.addItem(chart);
    FillRateChart(chart, data, true);
    LayOutRateChart(chart, size);
    ChartTexts c{QRectF(QPointF(0, 0), size), chart->plotArea(), {}, {}};
    for (QGraphicsItem* item : scene.items()) {
        const auto* text = dynamic_cast<QGraphicsTextItem*>(item);
        const auto* name = dynamic_cast<QGraphicsSimpleTextItem*>(item);
        if (!item->isVisible() || (!text && !name))
            continue;
        if (name)
            c.names[name->text()] = item->sceneBoundingRect();
        else if (!text->toPlainText().isEmpty())
            c.labels.emplace_back(text->toPlainText(), item->sceneBoundingRect());
    }
    return c;
}

// The printed plot's picture, read from the layout it is painted from.
ChartTexts PrintedChart(const ChartData& data, const QSizeF& size) {
    const ChartLayout layout = LayOutChartPicture(data, true, size);
    ChartTexts c{QRectF(QPointF(0, 0), size), layout.plot, {}, {}};
    for (const ChartText& t : layout.texts)
        if (t.kind == ChartText::CurveName)
            c.names[t.text] = t.box;
        else
            c.labels.emplace_back(t.text, t.box);
    return c;
}

TEST(RateChart, LabelsReadInFullAtEverySizeTheChartIsShownAndPrinted) {
    const struct {
        double peak, T, k; // in/hr, h, in/hr at 1 h
        bool intakeShows;
    } passes[] = {
        {2, 0.17, 0.5, true},      // 3 in/hr, 6 divisions
        {8.4, 0.075, 0.6, true},   // 9 in/hr, 18 divisions
        {9.3, 0.075, 0.6, true},   // 10 in/hr, 20 divisions
        {45, 0.0036, 0.6, true},   // 48 in/hr, 12 divisions, a pass of 0.0072 h
        {176, 0.00115, 0.6, true}, // 180 in/hr, 18 divisions, a pass of 0.0023 h
        {2.9, 1.6, 40, false},     // an intake wholly above the scale, a pass of 3.2 h
    };
    // The chart's smallest size on the results page, its size in the window at the window's
    // default size, and the printed plot's picture (6,800 by 5,100 twips at 96 dpi).
    const QSizeF sizes[] = {{360, 300}, {370, 480}, {453.3, 340}};
    const struct {
        const char* name;
        ChartTexts (*read)(const ChartData&, const QSizeF&);
    } charts[] = {{"shown", ShownChart}, {"printed", PrintedChart}};
    for (const auto& p : passes)
        for (const QSizeF& size : sizes)
            for (const auto& chart : charts) {
                SCOPED_TRACE(testing::Message()
                             << chart.name << ", peak " << p.peak << " in/hr, pass " << 2 * p.T
                             << " h, " << size.width() << " x " << size.height());
                const ChartData data = Pass(p.peak, p.T, p.k);
                const ChartTexts c = chart.read(data, size);
                // The axis labels, left to right and bottom to top; titles carry a unit.
                QMap<double, QString> times, rates;
                for (const auto& [s, at] : c.labels) {
                    EXPECT_FALSE(s.contains(QChar(0x2026))) << s.toStdString();
                    EXPECT_TRUE(c.bounds.contains(at)) << s.toStdString();
                    if (s.contains('('))
                        continue;
                    if (at.top() >= c.plot.bottom())
                        times[at.center().x()] = s;
                    else if (at.right() <= c.plot.left())
                        rates[-at.center().y()] = s;
                }
                const QStringList timeLabels = times.values(), rateLabels = rates.values();

                // Labels from 0 up, on the scale's steps, thinned if need be but at least three.
                ASSERT_GE(rateLabels.size(), 3);
                EXPECT_EQ(rateLabels.front(), "0");
                const double step = data.yMaximum / data.yDivisions;
                for (const QString& s : rateLabels) {
                    const double divisions = s.toDouble() / step;
                    EXPECT_NEAR(divisions, std::round(divisions), 1e-9) << s.toStdString();
                }

                ASSERT_GE(timeLabels.size(), 3);
                EXPECT_EQ(std::set<QString>(timeLabels.begin(), timeLabels.end()).size(),
                          size_t(timeLabels.size()))
                    << timeLabels.join(' ').toStdString();
                EXPECT_NEAR(timeLabels.back().toDouble(), 2 * p.T, 2 * p.T / 50);

                EXPECT_EQ(c.names.count("Application Rate"), 1u);
                EXPECT_EQ(c.names.count("Intake Rate"), p.intakeShows ? 1u : 0u);
                for (const auto& [name, box] : c.names)
                    EXPECT_TRUE(c.plot.contains(box)) << name.toStdString();
            }
}

// The printed plot from the window and from rainfold-cli must be the same page, so the chart
// picture may not follow the window's application font.
TEST(ChartPicture, IsTheSameWhateverTheApplicationFont) {
    const ChartData data = Pass(2, 0.17, 0.5);
    const QFont original = QGuiApplication::font();
    const QImage before = ImageOf(ChartPicture(data, true));
    QFont large(QStringLiteral("Serif"));
    large.setPointSize(14);
    QApplication::setFont(large);
    const QImage after = ImageOf(ChartPicture(data, true));
    QApplication::setFont(original);
    ASSERT_FALSE(before.isNull());
    EXPECT_EQ(before, after);
    // The picture holds the chart: dark curves and labels on white.
    EXPECT_TRUE(AnyDark(before, before.rect()));
}

} // namespace
} // namespace rainfold::ui

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
