// File > Save that cannot finish: whatever stood at the chosen path stays byte for byte, the
// "Error" box says why, and the next save works.

#include "ModalAnswer.h"
#include "WindowFixture.h"

#include "design_file.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <sys/resource.h>

namespace {

QByteArray ReadAll(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Every entry below a folder with its bytes, so nothing added, removed or changed goes unseen.
QStringList Snapshot(const QString& folder) {
    QStringList entries;
    QDir dir(folder);
    for (const QFileInfo& info :
         dir.entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Name)) {
        if (info.isDir())
            entries << info.fileName() + "/" << Snapshot(info.filePath());
        else
            entries << info.fileName() + "=" +
                           QString::fromLatin1(ReadAll(info.filePath()).toHex());
    }
    return entries;
}

// The system's own words for an error, as the box gives them.
QString SystemError(int code) {
    return QString::fromLocal8Bit(std::strerror(code)) + '.';
}

// Files may not grow beyond `bytes` while it lives: a disk that fills up part-way.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &saved_);
        rlimit small = saved_;
        small.rlim_cur = bytes;
        ok = setrlimit(RLIMIT_FSIZE, &small) == 0;
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &saved_); }
    bool ok = false;

private:
    rlimit saved_{};
};

} // namespace

class SaveFailureTest : public QObject {
    Q_OBJECT

private slots:
    void oldContentsStay_data();
    void oldContentsStay();
};

void SaveFailureTest::oldContentsStay_data() {
    QTest::addColumn<QString>("target"); // relative to the test folder
    QTest::addColumn<bool>("diskFull");
    QTest::addColumn<QString>("designer");
    QTest::addColumn<QString>("says"); // after "Could not save <path>: "
    // The folder holds old.rfd (an earlier design) and the folder sub/ with a design in it.
    // clang-format off
    QTest::newRow("disk full part-way") << "old.rfd" << true << "JD" << SystemError(EFBIG);
    QTest::newRow("parent is a file") << "old.rfd/new.rfd" << false << "JD" << SystemError(ENOTDIR);
    QTest::newRow("path is a folder") << "sub" << false << "JD" << SystemError(EISDIR);
    QTest::newRow("double quote") << "old.rfd" << false << "J \"Ace\" D"
        << "the Designer contains a double quote, which a design file cannot hold.";
    // clang-format on
}

void SaveFailureTest::oldContentsStay() {
    QFETCH(QString, target);
    QFETCH(bool, diskFull);
    QFETCH(QString, designer);
    QFETCH(QString, says);

    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir("sub"));
    rainfold::DesignRecord old = SampleDesign();
    old.txtDescription = "Old design";
    for (const char* name : {"old.rfd", "sub/inside.rfd"})
        QVERIFY(rainfold::SaveDesign(dir.filePath(name).toStdString(), old).ok);
    const QStringList before = Snapshot(dir.path());

    WindowFixture f;
    rainfold::DesignRecord design = SampleDesign();
    design.txtDesigner = designer.toStdString();
    f.w->setDesign(design);
    QString answer = dir.filePath(target);
    f.w->setFileDialog([&answer](QWidget*, const FileDialogRequest&) { return answer; });

    ModalAnswer boxes;
    {
        FileSizeLimit limit(diskFull ? 64 : RLIM_INFINITY);
        QVERIFY(limit.ok);
        f.trigger("mnuFileSave");
    }
    QCOMPARE(Snapshot(dir.path()), before); // no temporary file left behind either
    QCOMPARE(boxes.boxes.size(), size_t(1));
    QCOMPARE(boxes.boxes[0].title, QStringLiteral("Error"));
    QCOMPARE(boxes.boxes[0].icon, QMessageBox::Warning);
    QCOMPARE(boxes.boxes[0].buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QCOMPARE(boxes.boxes[0].text, "Could not save " + answer + ": " + says);

    // The failure holds nothing open: the next save, to a sound path, is written.
    design.txtDesigner = "JD";
    f.w->setDesign(design);
    answer = dir.filePath("next.rfd");
    f.trigger("mnuFileSave");
    QCOMPARE(boxes.boxes.size(), size_t(1));
    rainfold::DesignRecord reopened;
    QVERIFY(rainfold::OpenDesign(answer.toStdString(), reopened).ok);
    QCOMPARE(reopened.txtDescription, design.txtDescription);
}

QTEST_MAIN(SaveFailureTest)
#include "save_failure_test.moc"
