// The File-menu flows on the window (Open, Save, Exit) and the About box.

#include "ModalAnswer.h"
#include "WindowFixture.h"
#include "dialogs/frmAbout.h"

#include "design_file.h"

#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>

namespace {

QByteArray ReadAll(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool WriteAll(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace

class FileCommandsTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void openThenSaveAgain();
    void malformedFileChangesNothing_data();
    void malformedFileChangesNothing();
    void cancelledDialogsAreSilent();
    void exitClosesWithoutAsking();
    void aboutBox();
    void systemInformation_data();
    void systemInformation();

private:
    QString path(const QString& name) const { return dir_->filePath(name); }

    std::unique_ptr<QTemporaryDir> dir_;
    std::unique_ptr<WindowFixture> f_;
    QList<FileDialogRequest> requests_;
    QString answer_; // what the file dialog returns; empty: cancelled
};

void FileCommandsTest::init() {
    dir_ = std::make_unique<QTemporaryDir>();
    f_ = std::make_unique<WindowFixture>();
    requests_.clear();
    answer_.clear();
    f_->w->setFileDialog([this](QWidget*, const FileDialogRequest& request) {
        requests_ << request;
        return answer_;
    });
}

void FileCommandsTest::openThenSaveAgain() {
    const rainfold::DesignRecord saved = SampleDesign();
    QVERIFY(rainfold::SaveDesign(path("sample.rfd").toStdString(), saved).ok);
    f_->trigger("mnuOptionsGreenAmpt");
    f_->trigger("mnuOptionsSR2");

    answer_ = path("sample.rfd");
    ModalAnswer answer;
    f_->trigger("mnuFileOpen");
    QVERIFY(answer.boxes.empty());
    rainfold::DesignRecord expected = saved;
    expected.greenAmpt = true; // not in files: stays as it was
    QVERIFY(f_->w->design() == expected);
    QVERIFY(!f_->get("frmUNUK")->isHidden());
    QCOMPARE(f_->action("mnuOptionsSR1")->isChecked(), true);
    QCOMPARE(f_->action("mnuOptionsSR2")->isChecked(), false);
    // The page follows the restored option; the table's current cell ends on row 10, column 2.
    auto* grid = f_->get<QTableWidget>("msgSurfStore");
    QVERIFY(!grid->isHidden() && f_->field("txtSurfStore")->isHidden());
    QCOMPARE(grid->item(0, 1)->text(), QStringLiteral("% Slope"));
    QCOMPARE(grid->item(10, 0)->text(), QStringLiteral("1170 - 1300"));
    QCOMPARE(QPoint(grid->currentRow(), grid->currentColumn()), QPoint(10, 2));

    // Saved again under another name, the file is the same byte for byte.
    answer_ = path("again.rfd");
    f_->trigger("mnuFileSave");
    QCOMPARE(ReadAll(path("again.rfd")), ReadAll(path("sample.rfd")));

    // The first dialog starts in the program's folder; later ones keep the last name.
    QCOMPARE(requests_.size(), 2);
    QCOMPARE(requests_[0].fileName, QCoreApplication::applicationDirPath());
    QCOMPARE(requests_[0].filter, QStringLiteral("All Files (*.*);;Rainfold Files (*.rfd)"));
    QCOMPARE(requests_[0].selectedFilter, QStringLiteral("Rainfold Files (*.rfd)"));
    QVERIFY(!requests_[0].save && requests_[1].save);
    QCOMPARE(requests_[1].fileName, path("sample.rfd"));
}

void FileCommandsTest::malformedFileChangesNothing_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("mention");
    const QByteArray head = "\"P\"\r\n\"L\"\r\n\"C\",\"S\"\r\n\"D\",\"T\"\r\n";
    // clang-format off
    QTest::newRow("record 5 short") << head + "\"1300\",\"800\"\r\n" << "record 5 has 2 items, 4 expected.";
    QTest::newRow("ends after record 5") << head + "\"1300\",\"800\",\"1\",\"40\"\r\n" << "record 6";
    // clang-format on
}

void FileCommandsTest::malformedFileChangesNothing() {
    QFETCH(QByteArray, bytes);
    QFETCH(QString, mention);
    const rainfold::DesignRecord before = SampleDesign();
    f_->w->setDesign(before);
    answer_ = path("bad.rfd");
    QVERIFY(WriteAll(answer_, bytes));

    ModalAnswer answer;
    f_->trigger("mnuFileOpen");
    QCOMPARE(answer.boxes.size(), size_t(1));
    const SeenBox& box = answer.boxes[0];
    QCOMPARE(box.title, QStringLiteral("Error"));
    QCOMPARE(box.icon, QMessageBox::Warning);
    QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QVERIFY2(box.text.startsWith("Could not open " + answer_ + ": ") && box.text.contains(mention),
             qPrintable(box.text));
    QVERIFY(f_->w->design() == before);
}

void FileCommandsTest::cancelledDialogsAreSilent() {
    const rainfold::DesignRecord before = f_->w->design();
    ModalAnswer answer;
    f_->trigger("mnuFileOpen");
    f_->trigger("mnuFileSave");
    QCOMPARE(requests_.size(), 2);
    QVERIFY(answer.boxes.empty());
    QVERIFY(f_->w->design() == before);
    QVERIFY(QDir(dir_->path()).isEmpty());
}

void FileCommandsTest::exitClosesWithoutAsking() {
    ModalAnswer answer;
    f_->trigger("mnuFileExit");
    QVERIFY(!f_->w->isVisible());
    QVERIFY(answer.boxes.empty());
}

void FileCommandsTest::aboutBox() {
    frmAbout about(f_->w.get());
    auto text = [&about](const char* name) { return about.findChild<QLabel*>(name)->text(); };
    QCOMPARE(about.windowTitle(), QStringLiteral("About Rainfold"));
    QCOMPARE(text("lblTitle"), QStringLiteral("Rainfold"));
    QCOMPARE(text("lblVersion"), QStringLiteral("Version 1.0.0")); // all three parts of 1.0.0
    QVERIFY(text("lblDescription")
                .startsWith("Determines runoff potential from a Center Pivot application.\n\n"));
    QVERIFY(
        text("lblDisclaimer").contains("Suitability of Reduced Pressure Center-Pivots, 1-23-89"));
    QCOMPARE(about.findChild<QPushButton*>("cmdOK")->text(), QStringLiteral("OK"));
    QCOMPARE(about.findChild<QPushButton*>("cmdSysInfo")->text(),
             QStringLiteral("&System Info..."));
}

void FileCommandsTest::systemInformation_data() {
    QTest::addColumn<QString>("pathValue");     // empty: missing
    QTest::addColumn<QString>("locationValue"); // empty: missing
    QTest::addColumn<bool>("toolExists");       // MSINFO32.EXE in the location
    QTest::addColumn<QString>("started");       // empty: the box comes up instead
    // clang-format off
    QTest::newRow("PATH value") << "C:\\Tools\\msinfo32.exe" << "C:\\Other" << false << "C:\\Tools\\msinfo32.exe";
    QTest::newRow("location with the tool") << "" << "DIR" << true << "DIR\\MSINFO32.EXE";
    QTest::newRow("location without the tool") << "" << "DIR" << false << "";
    QTest::newRow("nothing in the registry") << "" << "" << false << "";
    // clang-format on
}

void FileCommandsTest::systemInformation() {
    QFETCH(QString, pathValue);
    QFETCH(QString, locationValue);
    QFETCH(bool, toolExists);
    QFETCH(QString, started);
    locationValue.replace("DIR", path("Shared"));
    started.replace("DIR", path("Shared"));
    if (toolExists) // the name is joined with a backslash, a plain character here
        QVERIFY(WriteAll(path("Shared") + "\\MSINFO32.EXE", "tool"));

    frmAbout about;
    about.setKeyReader(
        [&](std::uint32_t root, const QString& key, const QString& value, QString& out) {
            const bool tools = root == kHKeyLocalMachine && key.startsWith("SOFTWARE\\Microsoft\\");
            out = value == "PATH" && key.endsWith("Shared Tools\\MSINFO")      ? pathValue
                  : value == "MSINFO" && key.endsWith("Shared Tools Location") ? locationValue
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

QTEST_MAIN(FileCommandsTest)
#include "file_commands_test.moc"
