// The Help menu's guide window, where the guide is found, the About box's licence line, and the
// design file named on the command line.

#include "WindowFixture.h"
#include "command_line.h"
#include "dialogs/frmAbout.h"
#include "help/HelpWindow.h"

#include "design_file.h"

#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTextBrowser>

using rainfold::ui::HelpWindow;

namespace {

bool WriteFile(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

// The page and anchor a help window shows, relative to the guide: "inputs.html#wetted-diameter".
QString Shown(const HelpWindow* help) {
    const QUrl source = help->browser()->source();
    const QString page = QFileInfo(source.toLocalFile()).fileName();
    return source.hasFragment() ? page + '#' + source.fragment() : page;
}

} // namespace

class HelpAndStartTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { rainfold::ui::SetGuideFolder(QString()); }
    void helpEntries_data();
    void helpEntries();
    void indexSearch_data();
    void indexSearch();
    void guideIsFound();
    void aboutNamesTheLicence();
    void commandLine();
    void designFileAtStartUp_data();
    void designFileAtStartUp();
};

void HelpAndStartTest::helpEntries_data() {
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("guide"); // "real", "none", or "contents only"
    QTest::addColumn<QString>("box");   // the message shown; empty: the help window opens
    const QString noHelp =
        "Unable to display Help Contents. There is no Help associated with this project.";
    // clang-format off
    for (const char* entry : {"mnuHelpContents", "mnuHelpSearchForHelpOn"}) {
        QTest::addRow("%s, guide", entry) << entry << "real" << "";
        QTest::addRow("%s, no guide", entry) << entry << "none" << noHelp;
    }
    // The index page missing: the contents still open, the search tells why it cannot.
    QTest::addRow("contents, index missing") << "mnuHelpContents" << "contents only" << "";
    QTest::addRow("search, index missing") << "mnuHelpSearchForHelpOn" << "contents only"
                                           << "Cannot read %1/keywords.html: ";
    // clang-format on
}

void HelpAndStartTest::helpEntries() {
    QFETCH(QString, entry);
    QFETCH(QString, guide);
    QFETCH(QString, box);
    QTemporaryDir dir;
    if (guide == "real")
        rainfold::ui::SetGuideFolder(RAINFOLD_GUIDE_DIR);
    else if (guide == "contents only")
        QVERIFY(
            WriteFile(dir.filePath("index.html"), "<ul><li><a href=\"a.html\">A</a></li></ul>"));
    if (guide != "real")
        rainfold::ui::SetGuideFolder(dir.path());

    WindowFixture f;
    ModalAnswer answer;
    f.trigger(entry);
    auto* help = f.w->findChild<HelpWindow*>();
    if (!box.isEmpty()) {
        QCOMPARE(answer.boxes.size(), size_t(1));
        QVERIFY2(answer.boxes[0].text.startsWith(QString(box).replace("%1", dir.path())),
                 qPrintable(answer.boxes[0].text));
        QCOMPARE(answer.boxes[0].title, QStringLiteral("Rainfold"));
        // The no-help message carries the information icon, a failure none.
        QCOMPARE(answer.boxes[0].icon,
                 guide == "none" ? QMessageBox::Information : QMessageBox::NoIcon);
        QVERIFY(!help || !help->isVisible());
        return;
    }
    QVERIFY(answer.boxes.empty());
    QVERIFY(help && help->isVisible());
    QVERIFY(help->isWindow());
    if (entry == "mnuHelpContents") {
        QCOMPARE(Shown(help), QStringLiteral("index.html"));
        QCOMPARE(help->panels()->currentIndex(), 0);
        QVERIFY(help->contentsList()->count() >= (guide == "real" ? 10 : 1));
    } else {
        QCOMPARE(help->panels()->currentIndex(), 1);
        QVERIFY(help->keywordList()->count() > 20);
        // Where the help window puts the focus when it is active.
        QCOMPARE(help->focusWidget(), help->searchField());
    }
    // Asking again reuses the one window.
    f.trigger(entry);
    QCOMPARE(f.w->findChildren<HelpWindow*>().size(), 1);
}

void HelpAndStartTest::indexSearch_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown"); // after Enter; empty: the page does not change
    // clang-format off
    QTest::newRow("first letters") << "wetted" << "inputs.html#wetted-diameter";
    QTest::newRow("any case") << "SEGMENT" << "surface-storage.html#segment-table";
    QTest::newRow("beginning before inside") << "time" << "results.html#rate-chart";
    QTest::newRow("inside a keyword") << "explorer" << "explorer.html#explorer-output";
    QTest::newRow("no such keyword") << "qqq" << "";
    // clang-format on
}

void HelpAndStartTest::indexSearch() {
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    rainfold::ui::SetGuideFolder(RAINFOLD_GUIDE_DIR);
    WindowFixture f;
    f.trigger("mnuHelpSearchForHelpOn");
    auto* help = f.w->findChild<HelpWindow*>();
    QVERIFY(help);
    const QString before = Shown(help);
    QTest::keyClicks(help->searchField(), typed);
    QTest::keyClick(help->searchField(), Qt::Key_Return);
    QCOMPARE(Shown(help), shown.isEmpty() ? before : shown);
    // Only keywords that hold the typed letters stay listed.
    for (int row = 0; row < help->keywordList()->count(); ++row) {
        const QListWidgetItem* item = help->keywordList()->item(row);
        QCOMPARE(item->isHidden(), !item->text().contains(typed, Qt::CaseInsensitive));
    }
}

// The guide folder found beside a program's folder, in a temporary tree.
void HelpAndStartTest::guideIsFound() {
    const struct {
        QString program, page; // the program's folder; the guide's contents page written, if any
        QString found;         // the guide folder expected; empty: none
    } cases[] = {
        {"usr/bin", "usr/share/rainfold/guide/index.html", "usr/share/rainfold/guide"},
        {"build/src/app", "build/src/app/guide/index.html", "build/src/app/guide"},
        {"usr/bin", "usr/share/rainfold/guide/x.html", ""}, // no contents page
        {"usr/bin", "", ""},
    };
    for (const auto& c : cases) {
        QTemporaryDir root;
        QVERIFY(QDir().mkpath(root.filePath(c.program)));
        if (!c.page.isEmpty())
            QVERIFY(WriteFile(root.filePath(c.page), "<html></html>"));
        QCOMPARE(rainfold::ui::FindGuide(root.filePath(c.program)),
                 c.found.isEmpty() ? QString() : root.filePath(c.found));
    }
    // The program in the build tree finds the source tree's guide.
    QCOMPARE(QFileInfo(rainfold::ui::FindGuide(RAINFOLD_APP_DIR)).canonicalFilePath(),
             QFileInfo(RAINFOLD_GUIDE_DIR).canonicalFilePath());
}

void HelpAndStartTest::aboutNamesTheLicence() {
    WindowFixture f;
    frmAbout about(f.w.get());
    const QString text = about.findChild<QLabel*>("lblDescription")->text();
    QVERIFY(text.endsWith("\n\nRainfold is free software: GNU General Public License version 3 "
                          "or later."));
}

void HelpAndStartTest::commandLine() {
    using A = CommandLine::Action;
    const struct {
        QStringList arguments;
        A action;
        QString file;
    } cases[] = {
        {{}, A::Run, ""},
        {{"north.rfd"}, A::Run, "north.rfd"},
        {{"--version"}, A::Version, ""},
        {{"-v"}, A::Version, ""},
        {{"a.rfd", "--help"}, A::Help, ""},
        {{"--bogus", "--version"}, A::Version, ""}, // the version wins over a bad option
        {{"--bogus"}, A::UsageError, ""},
        {{"a.rfd", "b.rfd"}, A::UsageError, ""},
        {{"--", "-odd.rfd"}, A::Run, "-odd.rfd"},
        {{"-"}, A::Run, "-"}, // a lone dash is a name
    };
    for (const auto& c : cases) {
        const CommandLine line = ParseCommandLine(c.arguments);
        QVERIFY2(line.action == c.action && line.designFile == c.file &&
                     line.error.isEmpty() == (c.action != A::UsageError),
                 qPrintable(c.arguments.join(' ')));
    }
}

void HelpAndStartTest::designFileAtStartUp_data() {
    QTest::addColumn<QByteArray>("bytes"); // the file; empty: no file at all
    QTest::addColumn<QString>("message");  // the "Error" box expected, %1 the file; empty: none
    QTest::newRow("a design") << QByteArray("save") << "";
    QTest::newRow("record 5 short")
        << QByteArray("\"P\"\r\n\"L\"\r\n\"C\",\"S\"\r\n\"D\",\"T\"\r\n\"1300\",\"800\"\r\n")
        << "Could not open %1: record 5 has 2 items, 4 expected.";
    QTest::newRow("no such file") << QByteArray() << "Could not open %1: ";
}

void HelpAndStartTest::designFileAtStartUp() {
    QFETCH(QByteArray, bytes);
    QFETCH(QString, message);
    QTemporaryDir dir;
    const QString path = dir.filePath("north pivot.rfd");
    if (bytes == "save")
        QVERIFY(rainfold::SaveDesign(path.toStdString(), SampleDesign()).ok);
    else if (!bytes.isEmpty())
        QVERIFY(WriteFile(path, bytes));

    // The command-line path and File > Open given the same name end the same way.
    WindowFixture started, opened;
    QList<FileDialogRequest> requests;
    for (WindowFixture* f : {&started, &opened})
        f->w->setFileDialog([&requests, path](QWidget*, const FileDialogRequest& request) {
            requests << request;
            return path;
        });
    std::vector<SeenBox> startBoxes;
    {
        ModalAnswer answer;
        started.w->openDesignFile(path);
        startBoxes = answer.boxes;
    }
    ModalAnswer openAnswer;
    opened.trigger("mnuFileOpen");

    QCOMPARE(startBoxes.size(), size_t(message.isEmpty() ? 0 : 1));
    QCOMPARE(openAnswer.boxes.size(), startBoxes.size());
    if (!message.isEmpty()) {
        QVERIFY2(startBoxes[0].text.startsWith(message.arg(path)), qPrintable(startBoxes[0].text));
        QCOMPARE(startBoxes[0].text, openAnswer.boxes[0].text);
        QCOMPARE(startBoxes[0].title, QStringLiteral("Error"));
        QVERIFY(started.w->design() == WindowFixture().w->design()); // nothing changed
    } else {
        QVERIFY(started.w->design() == SampleDesign());
    }
    QVERIFY(started.w->design() == opened.w->design());
    QVERIFY(started.w->isVisible());

    // The next file dialog starts from the design given at start-up, as after Open.
    requests.clear();
    started.trigger("mnuFileSave");
    QCOMPARE(requests.size(), 1);
    QCOMPARE(requests[0].fileName, path);
}

QTEST_MAIN(HelpAndStartTest)
#include "help_and_start_test.moc"
