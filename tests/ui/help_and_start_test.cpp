// The Help menu's guide window, where the guide is found, the command line, and the design file
// named on it.

#include "FileNames.h"
#include "WindowFixture.h"
#include "command_line.h"
#include "help/HelpWindow.h"

#include "design_file.h"

using rainfold::ui::HelpWindow;

namespace {

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

    void helpEntries() {
        const QString noHelp = "Rainfold|i|0|Unable to display Help Contents. There is no Help "
                               "associated with this project.";
        const struct {
            const char *entry, *guide; // the guide: "real", "none", or "contents only"
            QString box; // the box shown, %1 the guide; ending ": ", its start; empty: help opens
        } cases[] = {
            {"mnuHelpContents", "real", ""},
            {"mnuHelpSearchForHelpOn", "real", ""},
            {"mnuHelpContents", "none", noHelp},
            {"mnuHelpSearchForHelpOn", "none", noHelp},
            // The index page missing: the contents still open, the search tells why it cannot.
            {"mnuHelpContents", "contents only", ""},
            {"mnuHelpSearchForHelpOn", "contents only",
             "Rainfold|-|0|Cannot read %1/keywords.html: "},
        };
        for (const auto& c : cases) {
            const QByteArray guide = c.guide;
            QTemporaryDir dir;
            if (guide == "contents only")
                QVERIFY(WriteFile(dir.filePath("index.html"),
                                  "<ul><li><a href=\"a.html\">A</a></li></ul>"));
            rainfold::ui::SetGuideFolder(guide == "real" ? RAINFOLD_GUIDE_DIR : dir.path());

            WindowFixture f;
            ModalAnswer answer;
            f.trigger(c.entry);
            auto* help = f.w->findChild<HelpWindow*>();
            if (!c.box.isEmpty()) {
                const QString box = QString(c.box).replace("%1", dir.path());
                QCOMPARE(answer.lines().size(), 1);
                QCOMPARE(box.endsWith(": ") ? answer.lines()[0].left(box.size())
                                            : answer.lines()[0],
                         box);
                QVERIFY(!help || !help->isVisible());
                continue;
            }
            QVERIFY(answer.boxes.empty());
            QVERIFY(help && help->isVisible() && help->isWindow());
            if (QByteArray(c.entry) == "mnuHelpContents") {
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
            f.trigger(c.entry);
            QCOMPARE(f.w->findChildren<HelpWindow*>().size(), 1);
        }
    }

    void indexSearch() {
        rainfold::ui::SetGuideFolder(RAINFOLD_GUIDE_DIR);
        WindowFixture f;
        f.trigger("mnuHelpSearchForHelpOn");
        auto* help = f.w->findChild<HelpWindow*>();
        QVERIFY(help);
        const std::pair<QString, QString> cases[] = {
            // typed, and the page shown after Enter; empty: the page does not change
            {"wetted", "inputs.html#wetted-diameter"},         // first letters
            {"SEGMENT", "surface-storage.html#segment-table"}, // any case
            {"time", "results.html#time-to-saturation"},       // beginning before inside
            {"explorer", "explorer.html"},                     // inside a keyword
            {"qqq", ""},
        };
        for (const auto& [typed, shown] : cases) {
            const QString before = Shown(help);
            help->searchField()->selectAll();
            QTest::keyClicks(help->searchField(), typed);
            QTest::keyClick(help->searchField(), Qt::Key_Return);
            QCOMPARE(Shown(help), shown.isEmpty() ? before : shown);
            // Only keywords that hold the typed letters stay listed.
            for (int row = 0; row < help->keywordList()->count(); ++row) {
                const QListWidgetItem* item = help->keywordList()->item(row);
                QCOMPARE(item->isHidden(), !item->text().contains(typed, Qt::CaseInsensitive));
            }
        }
    }

    // The guide folder found beside a program's folder, in a temporary tree.
    void guideIsFound() {
        const struct {
            QString program,
                page;      // the program's folder; the guide's contents page written, if any
            QString found; // the guide folder expected; empty: none
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

    void commandLine() {
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

    // A name's bytes come back from the window's text of it whatever they are, so the window opens
    // a file whose name is not UTF-8 (older Linux file systems) as rainfold-cli does.
    void fileNamesKeepTheirBytes() {
        for (const std::string bytes :
             {"north pivot.rfd", "M\xC3\xBCller \xE2\x80\x93 \xF0\x9F\x8C\xBE.rfd", "caf\xE9.rfd",
              "\xED\xA0\x80 \xC0\xAF \xE2\x82 \xF8\x88\x80\x80\x80 \x80.rfd"})
            QCOMPARE(rainfold::ui::FileNameBytes(rainfold::ui::FileNameText(bytes)), bytes);
        QCOMPARE(rainfold::ui::FileNameText("M\xC3\xBCller.rfd"),
                 QStringLiteral("M\u00FCller.rfd"));

        QTemporaryDir dir;
        const std::string name = "caf\xE9.rfd";
        QVERIFY(rainfold::SaveDesign(dir.path().toStdString() + "/" + name, SampleDesign()).ok);
        const QString previous = QDir::currentPath();
        QDir::setCurrent(dir.path());
        const CommandLine line = ParseCommandLine({rainfold::ui::FileNameText(name)});
        WindowFixture started;
        ModalAnswer answer;
        started.w->openDesignFile(QDir::current().absoluteFilePath(line.designFile));
        QDir::setCurrent(previous);
        QCOMPARE(answer.lines(), Texts());
        QVERIFY(started.w->design() == SampleDesign());
    }

    // The design file named on the command line, and File > Open given the same name, end the same
    // way: a design read whole, or the "Error" box and the design as it was.
    void designFileAtStartUp() {
        const struct {
            QByteArray bytes; // the file; empty: no file at all
            QString message;  // after "Could not open <path>: "; empty: opened
        } cases[] = {
            {"save", ""},
            {"\"P\"\r\n\"L\"\r\n\"C\",\"S\"\r\n\"D\",\"T\"\r\n\"1300\",\"800\"\r\n",
             "record 5 has 2 items, 4 expected."},
            {"", QString::fromLocal8Bit(std::strerror(ENOENT)) + '.'},
        };
        for (const auto& c : cases) {
            QTemporaryDir dir;
            const QString path = dir.filePath("north pivot.rfd");
            if (c.bytes == "save")
                QVERIFY(rainfold::SaveDesign(path.toStdString(), SampleDesign()).ok);
            else if (!c.bytes.isEmpty())
                QVERIFY(WriteFile(path, c.bytes));

            rainfold::DesignRecord before = SampleDesign();
            before.txtDescription = "Old design";
            WindowFixture started, opened;
            QList<FileDialogRequest> requests;
            for (WindowFixture* f : {&started, &opened}) {
                f->w->setDesign(before);
                f->w->setFileDialog([&requests, path](QWidget*, const FileDialogRequest& request) {
                    requests << request;
                    return path;
                });
            }
            Texts startBoxes;
            {
                ModalAnswer answer;
                started.w->openDesignFile(path);
                startBoxes = answer.lines();
            }
            ModalAnswer openAnswer;
            opened.trigger("mnuFileOpen");
            QCOMPARE(startBoxes,
                     c.message.isEmpty()
                         ? Texts()
                         : Texts({"Error|!|0|Could not open " + path + ": " + c.message}));
            QCOMPARE(openAnswer.lines(), startBoxes);
            for (const SeenBox& box : openAnswer.boxes)
                QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
            QVERIFY(started.w->design() == (c.message.isEmpty() ? SampleDesign() : before));
            QVERIFY(opened.w->design() == started.w->design());
            QVERIFY(started.w->isVisible());

            // The next file dialog starts from the design given at start-up, as after Open.
            requests.clear();
            started.trigger("mnuFileSave");
            QCOMPARE(requests.size(), 1);
            QCOMPARE(requests[0].fileName, path);
        }
    }
};

QTEST_MAIN(HelpAndStartTest)
#include "help_and_start_test.moc"
