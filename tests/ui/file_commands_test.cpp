// The File-menu flows on the window (Open, Save, Exit) and the About box.

#include "ModalAnswer.h"
#include "WindowFixture.h"
#include "dialogs/frmAbout.h"

#include "design_file.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>

namespace {

// A design as an engineer might have typed it, with a comma inside a text.
rainfold::DesignRecord CustomDesign() {
    rainfold::DesignRecord d;
    d.txtDescription = "Smith Farms, north pivot";
    d.txtLegalID = "NW 1/4 Sec 12";
    d.txtCounty = "Custer";
    d.txtState = "NE";
    d.txtDesigner = "JD";
    d.txtDate = "5/1/24";
    d.txtSYL = "1300";
    d.txtGPM = "800";
    d.txtAPPL = "1";
    d.txtWetDiam = "40";
    d.intakeFamilyIndex = rainfold::kCustomizedValuesIndex;
    d.txtUk = "20.5";
    d.txtUN = "-0.42";
    d.surfaceOption = rainfold::kVariableSlopeResidue;
    for (int row = 0; row < 10; ++row)
        d.segments[row] = {std::to_string(row + 1), std::to_string(10 * row)};
    d.txtKS = "10";
    d.txtHW = "50";
    d.txtThetaS = "0.45";
    d.txtThetaI = "0.25";
    d.txtRzDepth = "40";
    d.txtOmega = "0.0050";
    return d;
}

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
    void openShowsASavedDesign();
    void saveWritesTheFormat();
    void saveThenReopen();
    void malformedFileChangesNothing_data();
    void malformedFileChangesNothing();
    void cancelledDialogIsSilent();
    void dialogStartsInProgramFolderOnce();
    void unstorableTextIsRefused();
    void exitClosesTheWindow();
    void aboutBoxTexts();
    void systemInformationSearch_data();
    void systemInformationSearch();

private:
    std::unique_ptr<WindowFixture> f_;
    std::unique_ptr<QTemporaryDir> dir_;
    QList<FileDialogRequest> requests_;
    QString answer_; // what the file dialog returns

    QString path(const char* name) const { return dir_->filePath(QString::fromLatin1(name)); }
};

void FileCommandsTest::init() {
    dir_ = std::make_unique<QTemporaryDir>();
    QVERIFY(dir_->isValid());
    f_ = std::make_unique<WindowFixture>();
    requests_.clear();
    f_->window().setFileDialog([this](QWidget*, const FileDialogRequest& request) {
        requests_ << request;
        return answer_;
    });
}

void FileCommandsTest::openShowsASavedDesign() {
    const rainfold::DesignRecord saved = CustomDesign();
    QVERIFY(rainfold::SaveDesign(path("custom.rfd").toStdString(), saved).ok);
    f_->action("mnuOptionsGreenAmpt")->trigger();

    answer_ = path("custom.rfd");
    ModalAnswer answer;
    f_->action("mnuFileOpen")->trigger();
    QVERIFY(answer.boxes().empty());

    rainfold::DesignRecord expected = saved;
    expected.greenAmpt = true; // the switch is not in files and stays as it was
    QVERIFY(f_->window().design() == expected);
    QVERIFY(!f_->get<QGroupBox>("frmUNUK")->isHidden());
    for (const char* name : {"mnuOptionsSR0", "mnuOptionsSR2", "mnuOptionsSR3"})
        QVERIFY2(!f_->action(name)->isChecked(), name);
    QVERIFY(f_->action("mnuOptionsSR1")->isChecked());
    // The page follows the restored option: the table with its headings and labels.
    auto* grid = f_->get<QTableWidget>("msgSurfStore");
    QVERIFY(!grid->isHidden());
    QVERIFY(f_->field("txtSurfStore")->isHidden());
    QCOMPARE(grid->item(0, 1)->text(), QStringLiteral("% Slope"));
    QCOMPARE(grid->item(10, 0)->text(), QStringLiteral("1170 - 1300"));
    QCOMPARE(grid->currentRow(), 10);
    QCOMPARE(grid->currentColumn(), 2);
}

void FileCommandsTest::saveWritesTheFormat() {
    WindowFixture& f = *f_;
    const std::pair<const char*, const char*> typed[] = {
        {"txtDescription", "Smith Farms"},
        {"txtLegalID", "NW 1/4, Sec 12"},
        {"txtCounty", "Custer"},
        {"txtState", "NE"},
        {"txtDesigner", "JD"},
        {"txtDate", "5/1/24"},
        {"txtSYL", "1300"},
        {"txtGPM", "800"},
        {"txtAPPL", "1"},
        {"txtWetDiam", "40"},
        {"txtSurfStore", "1"},
        {"txtResidue", "20"},
    };
    for (const auto& [name, text] : typed)
        f.field(name)->setText(QString::fromLatin1(text));
    f.get<QComboBox>("cboIntakeFamily")->setCurrentIndex(2);

    answer_ = path("typed.rfd");
    f.action("mnuFileSave")->trigger();
    // Records 1 to 6, 8, 9 and 10 (no K/N record without "Customized Values"), CR LF each.
    QCOMPARE(ReadAll(answer_), QByteArray("\"Smith Farms\"\r\n"
                                          "\"NW 1/4, Sec 12\"\r\n"
                                          "\"Custer\",\"NE\"\r\n"
                                          "\"JD\",\"5/1/24\"\r\n"
                                          "\"1300\",\"800\",\"1\",\"40\"\r\n"
                                          "2\r\n"
                                          "0\r\n"
                                          "\"1\",\"20\"\r\n"
                                          "\"\",\"\",\"\",\"0.25\",\"\",\".0002\"\r\n"));
    QCOMPARE(requests_.size(), 1);
    QVERIFY(requests_[0].save);
}

void FileCommandsTest::saveThenReopen() {
    rainfold::DesignRecord design = CustomDesign();
    design.surfaceOption = rainfold::kUserVariable;
    f_->window().setDesign(design);
    answer_ = path("round.rfd");
    f_->action("mnuFileSave")->trigger();

    f_->action("mnuFileNew")->trigger();
    f_->get<QComboBox>("cboIntakeFamily")->setCurrentIndex(1);
    f_->action("mnuOptionsSR2")->trigger();
    f_->action("mnuFileOpen")->trigger();
    QVERIFY(f_->window().design() == design);
    QCOMPARE(f_->get<QTableWidget>("msgSurfStore")->item(0, 2)->text(),
             QStringLiteral("Residue Storage"));
}

void FileCommandsTest::malformedFileChangesNothing_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("mention"); // the record the box names
    const QByteArray head = "\"P\"\r\n\"L\"\r\n\"C\",\"S\"\r\n\"D\",\"T\"\r\n";
    const QByteArray system = "\"1300\",\"800\",\"1\",\"40\"\r\n";
    QTest::newRow("record 5 short") << head + "\"1300\",\"800\"\r\n"
                                    << "record 5 has 2 items, 4 expected.";
    QTest::newRow("ends after record 5") << head + system << "record 6";
    QTest::newRow("family index 9")
        << head + system + "9\r\n0\r\n\"1\",\"2\"\r\n" + "\"\",\"\",\"\",\"\",\"\",\"\"\r\n"
        << "record 6";
    QTest::newRow("option 4") << head + system + "2\r\n4\r\n\"1\",\"2\"\r\n" +
                                     "\"\",\"\",\"\",\"\",\"\",\"\"\r\n"
                              << "record 8";
}

void FileCommandsTest::malformedFileChangesNothing() {
    QFETCH(QByteArray, bytes);
    QFETCH(QString, mention);
    rainfold::DesignRecord before = CustomDesign();
    f_->window().setDesign(before);
    answer_ = path("bad.rfd");
    QVERIFY(WriteAll(answer_, bytes));

    ModalAnswer answer;
    f_->action("mnuFileOpen")->trigger();
    QCOMPARE(answer.boxes().size(), size_t(1));
    const SeenBox& box = answer.boxes()[0];
    QCOMPARE(box.title, QStringLiteral("Error"));
    QCOMPARE(box.icon, QMessageBox::Warning);
    QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QVERIFY2(
        box.text.startsWith(QStringLiteral("Could not open ") + answer_ + QStringLiteral(": ")),
        qPrintable(box.text));
    QVERIFY2(box.text.contains(mention), qPrintable(box.text));
    QVERIFY(f_->window().design() == before);
}

void FileCommandsTest::cancelledDialogIsSilent() {
    const rainfold::DesignRecord before = f_->window().design();
    answer_.clear();
    ModalAnswer answer;
    f_->action("mnuFileOpen")->trigger();
    f_->action("mnuFileSave")->trigger();
    QCOMPARE(requests_.size(), 2);
    QVERIFY(answer.boxes().empty());
    QVERIFY(f_->window().design() == before);
    QVERIFY(QDir(dir_->path()).isEmpty());
}

void FileCommandsTest::dialogStartsInProgramFolderOnce() {
    answer_ = path("first.rfd");
    QVERIFY(rainfold::SaveDesign(answer_.toStdString(), CustomDesign()).ok);
    f_->action("mnuFileOpen")->trigger();
    f_->action("mnuFileOpen")->trigger();
    answer_ = path("second.rfd");
    f_->action("mnuFileSave")->trigger();
    QCOMPARE(requests_.size(), 3);
    QCOMPARE(requests_[0].fileName, QCoreApplication::applicationDirPath());
    QCOMPARE(requests_[0].filter, QStringLiteral("All Files (*.*);;Rainfold Files (*.rfd)"));
    QCOMPARE(requests_[0].selectedFilter, QStringLiteral("Rainfold Files (*.rfd)"));
    QVERIFY(!requests_[0].save);
    // Later dialogs keep the name the last one ended with.
    QCOMPARE(requests_[1].fileName, path("first.rfd"));
    QCOMPARE(requests_[2].fileName, path("first.rfd"));
    QVERIFY(QFile::exists(path("second.rfd")));
}

void FileCommandsTest::unstorableTextIsRefused() {
    f_->field("txtDescription")->setText("The \"home\" pivot");
    answer_ = path("quoted.rfd");
    ModalAnswer answer;
    f_->action("mnuFileSave")->trigger();
    QCOMPARE(answer.boxes().size(), size_t(1));
    QCOMPARE(answer.boxes()[0].title, QStringLiteral("Error"));
    QCOMPARE(answer.boxes()[0].icon, QMessageBox::Warning);
    QVERIFY(answer.boxes()[0].text.startsWith(QStringLiteral("Could not save ") + answer_));
    QVERIFY(answer.boxes()[0].text.contains(QStringLiteral("Producer")));
    QVERIFY(!QFile::exists(answer_));
}

void FileCommandsTest::exitClosesTheWindow() {
    QVERIFY(f_->window().isVisible());
    ModalAnswer answer;
    f_->action("mnuFileExit")->trigger();
    QVERIFY(!f_->window().isVisible());
    QVERIFY(answer.boxes().empty()); // no question about saving
}

void FileCommandsTest::aboutBoxTexts() {
    frmAbout about(&f_->window());
    QCOMPARE(about.windowTitle(), QStringLiteral("About Rainfold"));
    QCOMPARE(about.findChild<QLabel*>("lblTitle")->text(), QStringLiteral("Rainfold"));
    // The project is version 1.0.0: all three parts show.
    QCOMPARE(about.findChild<QLabel*>("lblVersion")->text(), QStringLiteral("Version 1.0.0"));
    QVERIFY(about.findChild<QLabel*>("lblDescription")
                ->text()
                .startsWith("Determines runoff potential from a Center Pivot application.\n\n"));
    const QString credit = about.findChild<QLabel*>("lblDisclaimer")->text();
    QVERIFY(credit.contains("DOS version of Rainfold"));
    QVERIFY(credit.contains("Suitability of Reduced Pressure Center-Pivots, 1-23-89"));
    QCOMPARE(about.findChild<QPushButton*>("cmdOK")->text(), QStringLiteral("OK"));
    QCOMPARE(about.findChild<QPushButton*>("cmdSysInfo")->text(),
             QStringLiteral("&System Info..."));
    QVERIFY(!about.findChild<QLabel*>("picIcon")->pixmap().isNull());
}

void FileCommandsTest::systemInformationSearch_data() {
    QTest::addColumn<QString>("pathValue");     // empty: the value is missing
    QTest::addColumn<QString>("locationValue"); // empty: the value is missing
    QTest::addColumn<bool>("toolExists");       // MSINFO32.EXE in the location
    QTest::addColumn<QString>("started");       // empty: the box comes up instead
    QTest::newRow("PATH value") << "C:\\Tools\\msinfo32.exe"
                                << "C:\\Other" << false << "C:\\Tools\\msinfo32.exe";
    QTest::newRow("location with the tool") << ""
                                            << "LOCATION" << true << "LOCATION\\MSINFO32.EXE";
    QTest::newRow("location without the tool") << ""
                                               << "LOCATION" << false << "";
    QTest::newRow("nothing in the registry") << ""
                                             << "" << false << "";
}

void FileCommandsTest::systemInformationSearch() {
    QFETCH(QString, pathValue);
    QFETCH(QString, locationValue);
    QFETCH(bool, toolExists);
    QFETCH(QString, started);
    // A location inside the test folder; the tool's name is joined with a backslash.
    const QString location = path("Shared");
    locationValue.replace("LOCATION", location);
    started.replace("LOCATION", location);
    if (toolExists)
        QVERIFY(WriteAll(location + "\\MSINFO32.EXE", "tool"));

    frmAbout about;
    QStringList reads;
    about.setKeyReader(
        [&](std::uint32_t root, const QString& key, const QString& value, QString& out) {
            reads << QString::number(root, 16) + '|' + key + '|' + value;
            out = value == "PATH" ? pathValue : locationValue;
            return !out.isEmpty();
        });
    QString launched;
    about.setLauncher([&launched](const QString& tool) {
        launched = tool;
        return true;
    });
    ModalAnswer answer;
    QTest::mouseClick(about.findChild<QPushButton*>("cmdSysInfo"), Qt::LeftButton);
    QCOMPARE(reads.first(),
             QStringLiteral("80000002|SOFTWARE\\Microsoft\\Shared Tools\\MSINFO|PATH"));
    if (pathValue.isEmpty())
        QCOMPARE(reads.value(1),
                 QStringLiteral("80000002|SOFTWARE\\Microsoft\\Shared Tools Location|MSINFO"));
    QCOMPARE(launched, started);
    QCOMPARE(answer.boxes().size(), size_t(started.isEmpty() ? 1 : 0));
    if (started.isEmpty()) {
        QCOMPARE(answer.boxes()[0].text,
                 QStringLiteral("System Information Is Unavailable At This Time"));
        QCOMPARE(answer.boxes()[0].icon, QMessageBox::NoIcon);
    }

#ifndef Q_OS_WIN
    // Without a system registry nothing is read.
    QString value = "untouched";
    QVERIFY(!frmAbout::GetKeyValue(kHKeyLocalMachine, "SOFTWARE\\Microsoft\\Shared Tools\\MSINFO",
                                   "PATH", value));
#endif
}

QTEST_MAIN(FileCommandsTest)
#include "file_commands_test.moc"
