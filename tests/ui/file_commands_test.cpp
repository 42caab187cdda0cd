// The File-menu flows on the window (Open, Save, Exit), saves that cannot finish, and the About
// box. A file that cannot be opened is in help_and_start_test, with the file named at start-up.

#include "WindowFixture.h"
#include "dialogs/frmAbout.h"

#include "design_file.h"

#include <csignal>
#include <sys/resource.h>

namespace {

// Every entry below a folder with its bytes, so nothing added, removed or changed goes unseen.
QStringList Snapshot(const QString& folder) {
    QStringList entries;
    for (const QFileInfo& info : QDir(folder).entryInfoList(
             QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Name))
        entries << (info.isDir() ? info.fileName() + "/" + Snapshot(info.filePath()).join(' ')
                                 : info.fileName() + "=" + ReadAll(info.filePath()).toHex());
    return entries;
}

// Files may not grow beyond `bytes` while it lives: a disk that fills up part-way.
struct FileSizeLimit {
    explicit FileSizeLimit(rlim_t bytes) {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &saved);
        rlimit small = saved;
        small.rlim_cur = bytes;
        ok = setrlimit(RLIMIT_FSIZE, &small) == 0;
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &saved); }
    rlimit saved{};
    bool ok = false;
};

} // namespace

class FileCommandsTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        dir_ = std::make_unique<QTemporaryDir>();
        f_ = std::make_unique<WindowFixture>();
        requests_.clear();
        answer_.clear();
        f_->w->setFileDialog([this](QWidget*, const FileDialogRequest& request) {
            requests_ << request;
            return answer_;
        });
    }

    void openSaveAndExit() {
        const rainfold::DesignRecord saved = SampleDesign();
        QVERIFY(rainfold::SaveDesign(path("sample.rfd").toStdString(), saved).ok);
        f_->trigger("mnuOptionsGreenAmpt");
        f_->trigger("mnuOptionsSR2");
        const rainfold::DesignRecord before = f_->w->design();
        ModalAnswer answer;
        f_->trigger("mnuFileOpen"); // both dialogs cancelled: nothing changes, nothing is written
        f_->trigger("mnuFileSave");
        QVERIFY(f_->w->design() == before);
        QCOMPARE(QDir(dir_->path()).entryList(QDir::Files), Texts({"sample.rfd"}));

        answer_ = path("sample.rfd");
        f_->trigger("mnuFileOpen");
        rainfold::DesignRecord expected = saved;
        expected.greenAmpt = true; // not in files: stays as it was
        QVERIFY(f_->w->design() == expected);
        QVERIFY(!f_->get("frmUNUK")->isHidden());
        QVERIFY(f_->action("mnuOptionsSR1")->isChecked() &&
                !f_->action("mnuOptionsSR2")->isChecked());
        // The page follows the restored option; the table's current cell ends on row 10, column 2.
        auto* grid = f_->get<QTableWidget>("msgSurfStore");
        QVERIFY(!grid->isHidden() && f_->field("txtSurfStore")->isHidden());
        QCOMPARE(grid->item(10, 0)->text(), QStringLiteral("1170 - 1300"));
        QCOMPARE(QPoint(grid->currentRow(), grid->currentColumn()), QPoint(10, 2));

        // Saved again under another name, the file is the same byte for byte.
        answer_ = path("again.rfd");
        f_->trigger("mnuFileSave");
        QCOMPARE(ReadAll(path("again.rfd")), ReadAll(path("sample.rfd")));

        // The first dialog starts in the program's folder; later ones keep the last name.
        QCOMPARE(requests_.size(), 4);
        QCOMPARE(requests_[0].fileName, QCoreApplication::applicationDirPath());
        QCOMPARE(requests_[0].filter, QStringLiteral("All Files (*.*);;Rainfold Files (*.rfd)"));
        QCOMPARE(requests_[0].selectedFilter, QStringLiteral("Rainfold Files (*.rfd)"));
        QVERIFY(!requests_[0].save && requests_[1].save && requests_[3].save);
        QCOMPARE(requests_[3].fileName, path("sample.rfd"));
        f_->trigger("mnuFileExit");
        QVERIFY(!f_->w->isVisible());
        QVERIFY(answer.boxes.empty());
    }

    // Whatever stood at the chosen path stays byte for byte, the "Error" box says why, and the next
    // save works.
    void failedSaveKeepsWhatStood() {
        const auto systemError = [](int code) {
            return QString::fromLocal8Bit(std::strerror(code)) + '.';
        };
        const struct {
            const char* target; // relative to a folder holding old.rfd and sub/inside.rfd
            bool diskFull;
            const char* designer;
            QString says; // after "Could not save <path>: "
        } cases[] = {
            {"old.rfd", true, "JD", systemError(EFBIG)},
            {"old.rfd/new.rfd", false, "JD", systemError(ENOTDIR)},
            {"sub", false, "JD", systemError(EISDIR)},
            {"old.rfd", false, "J \"Ace\" D",
             "the Designer contains a double quote, which a design file cannot hold."},
        };
        for (const auto& c : cases) {
            init();
            QVERIFY(QDir(dir_->path()).mkdir("sub"));
            rainfold::DesignRecord old = SampleDesign();
            old.txtDescription = "Old design";
            for (const char* name : {"old.rfd", "sub/inside.rfd"})
                QVERIFY(rainfold::SaveDesign(path(name).toStdString(), old).ok);
            const QStringList before = Snapshot(dir_->path());

            rainfold::DesignRecord design = SampleDesign();
            design.txtDesigner = c.designer;
            f_->w->setDesign(design);
            answer_ = path(c.target);
            ModalAnswer boxes;
            {
                FileSizeLimit limit(c.diskFull ? 64 : RLIM_INFINITY);
                QVERIFY(limit.ok);
                f_->trigger("mnuFileSave");
            }
            QCOMPARE(Snapshot(dir_->path()), before); // no temporary file left behind either
            QCOMPARE(boxes.lines(), Texts({"Error|!|0|Could not save " + answer_ + ": " + c.says}));

            // The failure holds nothing open: the next save, to a sound path, is written.
            design.txtDesigner = "JD";
            f_->w->setDesign(design);
            answer_ = path("next.rfd");
            f_->trigger("mnuFileSave");
            QCOMPARE(boxes.boxes.size(), size_t(1));
            rainfold::DesignRecord reopened;
            QVERIFY(rainfold::OpenDesign(answer_.toStdString(), reopened).ok);
            QVERIFY(reopened == design);
        }
    }

    void aboutBox() {
        frmAbout about(f_->w.get());
        auto text = [&about](const char* name) { return about.findChild<QLabel*>(name)->text(); };
        QCOMPARE(about.windowTitle(), QStringLiteral("About Rainfold"));
        QCOMPARE(text("lblTitle"), QStringLiteral("Rainfold"));
        QCOMPARE(text("lblVersion"), QStringLiteral("Version 1.0.0")); // all three parts of 1.0.0
        QCOMPARE(
            text("lblDescription"),
            QStringLiteral("Determines runoff potential from a Center Pivot application.\n\n"
                           "Rainfold is free software: GNU General Public License version 3 or "
                           "later."));
        QVERIFY(text("lblDisclaimer")
                    .contains("Suitability of Reduced Pressure Center-Pivots, 1-23-89"));
        QCOMPARE(about.findChild<QPushButton*>("cmdOK")->text(), QStringLiteral("OK"));
        QCOMPARE(about.findChild<QPushButton*>("cmdSysInfo")->text(),
                 QStringLiteral("&System Info..."));
    }

    void systemInformation() {
        const struct {
            QString pathValue, locationValue; // empty: missing
            bool toolExists;                  // MSINFO32.EXE in the location
            QString started;                  // empty: the box comes up instead
        } cases[] = {
            {"C:\\Tools\\msinfo32.exe", "C:\\Other", false, "C:\\Tools\\msinfo32.exe"},
            {"", "DIR", true, "DIR\\MSINFO32.EXE"},
            {"", "DIR", false, ""},
            {"", "", false, ""},
        };
        for (const auto& c : cases) {
            init();
            const QString location = QString(c.locationValue).replace("DIR", path("Shared"));
            const QString started = QString(c.started).replace("DIR", path("Shared"));
            if (c.toolExists) // the name is joined with a backslash, a plain character here
                QVERIFY(WriteFile(path("Shared") + "\\MSINFO32.EXE", "tool"));
            frmAbout about;
            about.setKeyReader(
                [&](std::uint32_t root, const QString& key, const QString& value, QString& out) {
                    const bool tools =
                        root == kHKeyLocalMachine && key.startsWith("SOFTWARE\\Microsoft\\");
                    out = value == "PATH" && key.endsWith("Shared Tools\\MSINFO")      ? c.pathValue
                          : value == "MSINFO" && key.endsWith("Shared Tools Location") ? location
                                                                                       : QString();
                    return tools && !out.isEmpty();
                });
            QString launched;
            about.setLauncher([&launched](const QString& tool) {
                launched = tool;
                return true;
            });
            ModalAnswer answer;
            QTest::mouseClick(about.findChild<QPushButton*>("cmdSysInfo"), Qt::LeftButton);
            QCOMPARE(launched, started);
            QCOMPARE(answer.boxes.size(), size_t(started.isEmpty()));
            if (started.isEmpty())
                QCOMPARE(answer.boxes[0].text,
                         QStringLiteral("System Information Is Unavailable At This Time"));
        }
    }

private:
    QString path(const QString& name) const { return dir_->filePath(name); }

    std::unique_ptr<QTemporaryDir> dir_;
    std::unique_ptr<WindowFixture> f_;
    QList<FileDialogRequest> requests_;
    QString answer_; // what the file dialog returns; empty: cancelled
};

QTEST_MAIN(FileCommandsTest)
#include "file_commands_test.moc"
