// Random use of the window: typing into the inputs, options and families, page changes, Prev and
// Next, clicks and editing keys on both grids, File > New, Open and Save of prepared paths,
// message boxes answered at random. Whatever happens, the window never shows "nan" or "inf",
// every box carries one of the program's titles, a design opened is the file's, a file that
// cannot be opened changes nothing, and a design saved reads back as the window holds it.
// RAINFOLD_MONKEY_EVENTS sets the number of events (1000 by default); RAINFOLD_MONKEY_SEED another
// seed; RAINFOLD_MONKEY_TRACE set prints every event.

#include "WindowFixture.h"

#include "design_file.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTimer>

#include <cmath>
#include <deque>
#include <random>
#include <unistd.h>

namespace {

// None of the letters of "nan" and "inf": whatever spells them was written by the program.
const QString kTyped = QStringLiteral("0123456789.-+eE ,xyz\u00E9");

class Monkey {
public:
    explicit Monkey(unsigned seed) : rng_(seed) {
        QObject::connect(&timer_, &QTimer::timeout, [this] { answerModal(); });
        timer_.start(5);
    }

    int Between(int low, int high) { return std::uniform_int_distribution<int>(low, high)(rng_); }
    template <class T> T* Pick(const QList<T*>& list) {
        return list.isEmpty() ? nullptr : list[Between(0, static_cast<int>(list.size()) - 1)];
    }

    QString Typing() {
        QString s;
        for (int n = Between(1, 6); n > 0; --n)
            s += kTyped[Between(0, static_cast<int>(kTyped.size()) - 1)];
        return s;
    }

    // A number near a sound value, as an engineer might type it; now and then zero, negative or
    // far out of range.
    QString Number(double sound) {
        switch (Between(0, 9)) {
        case 0:
            return QString::number(Between(-2, 2));
        case 1:
            return QStringLiteral("%1e%2").arg(Between(1, 9)).arg(Between(-330, 300));
        default:
            return QString::number(sound * std::pow(10.0, Between(-10, 10) / 10.0), 'g',
                                   Between(1, 6));
        }
    }

    void Note(const QString& what) {
        if (trace_)
            qInfo("%s", qPrintable(what));
        recent_.push_back(what);
        if (recent_.size() > 12)
            recent_.pop_front();
    }
    QString Recent() const { return QStringList(recent_.begin(), recent_.end()).join(" | "); }

    QStringList faults;
    QStringList boxes; // "title: text" of every box seen

private:
    // Presses one of the box's own buttons at random. Anything modal other than a message box
    // is a fault, and is closed.
    void answerModal() {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal || modal == last_)
            return;
        last_ = modal;
        auto* box = qobject_cast<QMessageBox*>(modal);
        if (!box) {
            faults << "unexpected window " + modal->objectName() + " after: " + Recent();
            modal->close();
            return;
        }
        const QString title = box->windowTitle();
        if (title != "Error" && title != "Warning" && title != "Rainfold")
            faults << "box titled \"" + title + "\" after: " + Recent();
        Note("box \"" + box->text().left(40) + "\"");
        boxes << title + ": " + box->text();
        Pick(box->buttons())->click();
    }

    std::mt19937 rng_;
    QTimer timer_;
    QPointer<QWidget> last_;
    std::deque<QString> recent_;
    const bool trace_ = qEnvironmentVariableIsSet("RAINFOLD_MONKEY_TRACE");
};

int EnvInt(const char* name, int fallback) {
    bool ok = false;
    const int value = qEnvironmentVariableIntValue(name, &ok);
    return ok ? value : fallback;
}

// Types a text key by key; the one letter beyond ASCII as the key that bears it.
void Type(QWidget* w, const QString& text) {
    for (const QChar c : text) {
        if (c.unicode() < 0x80)
            QTest::keyClick(w, c.toLatin1());
        else
            QTest::sendKeyEvent(QTest::Click, w, Qt::Key_Eacute, QString(c), Qt::NoModifier);
    }
}

bool Usable(const QWidget* w) {
    return w && w->isVisible() && w->isEnabled();
}

QPoint CellCentre(const QTableWidget* grid, int row, int column) {
    return grid->visualItemRect(grid->item(row, column)).center();
}

QByteArray ReadAll(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

std::string Bytes(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

// The paths File > Open and File > Save are given, in a folder of their own.
struct PreparedFiles {
    explicit PreparedFiles(const rainfold::DesignRecord& sound) {
        rainfold::SaveDesign(Bytes(at("good.rfd")), sound);
        // Written by hand as another program might: Windows-1252, numbers unquoted, no line end
        // after the last record.
        QFile plain(at("plain.rfd"));
        if (plain.open(QIODevice::WriteOnly))
            plain.write("\"J\x92s \x96 north\"\r\n\"X\"\r\n\"X\",\"X\"\r\n\"X\",\"1/2/24\"\r\n"
                        "1300,0800,1.50,+40\r\n3\r\n2\r\n\"0.1\",\"0.2\"\r\n"
                        "10,50,0.45,0.25,40,0.005");
        QFile bad(at("bad.rfd"));
        if (bad.open(QIODevice::WriteOnly))
            bad.write("\"P\"\r\n\"L\"\r\n\"C\"\r\n");
        rainfold::SaveDesign(Bytes(at("readonly.rfd")), sound);
        QFile::setPermissions(at("readonly.rfd"), QFile::ReadOwner | QFile::ReadGroup);
        readOnlyBytes = ReadAll(at("readonly.rfd"));
        QFile::link(at("target.rfd"), at("link.rfd"));
    }
    QString at(const QString& name) const { return dir.filePath(name); }

    QTemporaryDir dir;
    const QStringList opened = {at("good.rfd"),    at("plain.rfd"), at("bad.rfd"), dir.path(),
                                at("missing.rfd"), "/dev/zero",     QString()};
    const QStringList saved = {at("saved.rfd"), at("link.rfd"), at("readonly.rfd"), dir.path(),
                               QString()};
    QByteArray readOnlyBytes;
};

} // namespace

class MonkeyTest : public QObject {
    Q_OBJECT

private slots:
    void randomUse();
    void lengthBeyondDoubleRange();
};

void MonkeyTest::randomUse() {
    const int events = EnvInt("RAINFOLD_MONKEY_EVENTS", 1000);
    const unsigned seed = static_cast<unsigned>(EnvInt("RAINFOLD_MONKEY_SEED", 1989));
    WindowFixture f;
    QVERIFY(f.active);
    // A design that computes, with no text that spells "nan" or "inf".
    rainfold::DesignRecord start = SampleDesign();
    start.txtDescription = "Test job 7";
    start.txtLegalID = start.txtCounty = start.txtState = start.txtDesigner = "X";
    start.txtSurfStore = "2";
    start.txtResidue = "20";
    f.w->setDesign(start);
    auto* tabs = f.get<QTabWidget>("SSTab1");
    auto* family = f.get<QComboBox>("cboIntakeFamily");
    auto* segments = f.get<QTableWidget>("msgSurfStore");
    auto* results = f.get<QTableWidget>("msgResults");
    auto* editor = f.field("txtEdit");
    QList<QLineEdit*> inputs;
    QHash<QString, QString> sample; // the sound values of the number fields
    for (const char* name :
         {"txtDescription", "txtLegalID", "txtCounty",    "txtState",   "txtDesigner",
          "txtDate",        "txtSYL",     "txtGPM",       "txtAPPL",    "txtWetDiam",
          "txtUk",          "txtUN",      "txtSurfStore", "txtResidue", "txtKS",
          "txtHW",          "txtThetaS",  "txtThetaI",    "txtOmega",   "txtRzDepth"}) {
        inputs << f.field(name);
        bool number = false;
        inputs.last()->text().toDouble(&number);
        if (number)
            sample[name] = inputs.last()->text();
    }
    const QStringList options = {"mnuOptionsSR0", "mnuOptionsSR1", "mnuOptionsSR2", "mnuOptionsSR3",
                                 "mnuOptionsGreenAmpt"};
    const QList<int> gridKeys = {Qt::Key_Up,     Qt::Key_Down,   Qt::Key_Left, Qt::Key_Right,
                                 Qt::Key_Return, Qt::Key_Escape, Qt::Key_Tab,  Qt::Key_5,
                                 Qt::Key_X,      Qt::Key_Period};
    const QRegularExpression shown(QStringLiteral("nan|inf"),
                                   QRegularExpression::CaseInsensitiveOption);

    const PreparedFiles files(start);
    QVERIFY(files.dir.isValid());
    QString answer; // what the file dialog returns
    f.w->setFileDialog([&answer](QWidget*, const FileDialogRequest&) { return answer; });

    Monkey m(seed);
    for (int event = 0; event < events && m.faults.isEmpty(); ++event) {
        const int kind = m.Between(0, 14);
        QList<QLineEdit*> open;
        for (QLineEdit* field : inputs)
            if (Usable(field))
                open << field;
        if (kind <= 3 && !open.isEmpty()) { // typing into an input
            QLineEdit* field = m.Pick(open);
            QTest::mouseClick(field, Qt::LeftButton);
            // A number field mostly gets a whole new number, now and then anything.
            const QString sound = sample.value(field->objectName());
            const bool junk = sound.isEmpty() || m.Between(0, 7) == 0;
            const bool replace = junk ? m.Between(0, 1) == 1 : m.Between(0, 7) != 0;
            if (replace)
                QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
            const QString text = junk ? m.Typing() : m.Number(sound.toDouble());
            m.Note(field->objectName() + (replace ? " = " : " += ") + text);
            Type(field, text);
            const int after[] = {Qt::Key_Tab, Qt::Key_Return, Qt::Key_Backspace, Qt::Key_Home};
            QTest::keyClick(field, Qt::Key(after[m.Between(0, 3)]));
        } else if (kind == 4) { // an Options entry
            const QString option = options[m.Between(0, 4)];
            m.Note(option);
            f.trigger(option);
        } else if (kind == 5 && Usable(family)) {
            const int index = m.Between(0, 7);
            m.Note("family " + QString::number(index));
            family->setCurrentIndex(index);
        } else if (kind == 6 || kind == 7) {
            const int page = m.Between(0, 1);
            m.Note("page " + QString::number(page));
            tabs->setCurrentIndex(page);
        } else if (kind == 8) {
            QList<QPushButton*> buttons;
            for (const char* name : {"cmdPrev", "cmdNext"})
                if (auto* button = f.get<QPushButton>(name); Usable(button))
                    buttons << button;
            if (QPushButton* button = m.Pick(buttons)) {
                m.Note(button->objectName());
                QTest::mouseClick(button, Qt::LeftButton);
            }
        } else if (kind == 9 && Usable(results)) {
            const int row = m.Between(0, 9), column = m.Between(0, 5);
            m.Note(QStringLiteral("results cell %1,%2").arg(row).arg(column));
            QTest::mouseClick(results->viewport(), Qt::LeftButton, {},
                              CellCentre(results, row, column));
        } else if ((kind == 10 || kind == 11) && Usable(segments)) {
            if (Usable(editor) && m.Between(0, 1)) {
                const QString text = m.Typing();
                const int keys[] = {Qt::Key_Return, Qt::Key_Escape, Qt::Key_Up, Qt::Key_Down};
                const int key = keys[m.Between(0, 3)];
                m.Note("editor <- " + text + " key " + QString::number(key, 16));
                Type(editor, text);
                QTest::keyClick(editor, Qt::Key(key));
            } else if (m.Between(0, 1)) {
                const int row = m.Between(0, 10), column = m.Between(0, 2);
                m.Note(QStringLiteral("segment cell %1,%2").arg(row).arg(column));
                const QPoint at = CellCentre(segments, row, column);
                QTest::mouseClick(segments->viewport(), Qt::LeftButton, {}, at);
                if (m.Between(0, 1))
                    QTest::mouseDClick(segments->viewport(), Qt::LeftButton, {}, at);
            } else {
                const int key = gridKeys[m.Between(0, static_cast<int>(gridKeys.size()) - 1)];
                m.Note("segment key " + QString::number(key, 16));
                f.focus("msgSurfStore");
                QTest::keyClick(segments, Qt::Key(key));
            }
        } else if (kind == 12 && m.Between(0, 3) == 0) {
            m.Note("mnuFileNew");
            f.trigger("mnuFileNew");
        } else if (kind == 12) { // as File > Open of a sound design would
            m.Note("sound design");
            f.w->setDesign(start);
        } else if (kind == 13) {
            const QString path =
                files.opened[m.Between(0, static_cast<int>(files.opened.size()) - 1)];
            m.Note("open " + QFileInfo(path).fileName());
            const rainfold::DesignRecord before = f.w->design();
            rainfold::DesignRecord expected = before;
            const bool readable = rainfold::OpenDesign(Bytes(path), expected).ok;
            const qsizetype boxes = m.boxes.size();
            answer = path;
            f.trigger("mnuFileOpen");
            if (!(f.w->design() == expected))
                m.faults << "open of " + path + " gave another design after: " + m.Recent();
            const bool refused = m.boxes.size() > boxes &&
                                 m.boxes.last().startsWith("Error: Could not open " + path + ": ");
            if (!path.isEmpty() && readable == refused)
                m.faults << "open of " + path + (refused ? " refused" : " said nothing") +
                                " after: " + m.Recent();
        } else if (kind == 14) {
            const QString path =
                files.saved[m.Between(0, static_cast<int>(files.saved.size()) - 1)];
            m.Note("save " + QFileInfo(path).fileName());
            const qsizetype boxes = m.boxes.size();
            answer = path;
            f.trigger("mnuFileSave");
            const bool refused = m.boxes.size() > boxes;
            rainfold::DesignRecord back = f.w->design();
            const bool writable = path == files.at("saved.rfd") || path == files.at("link.rfd") ||
                                  (path == files.at("readonly.rfd") && ::geteuid() == 0);
            if (!path.isEmpty() && refused == writable)
                m.faults << "save to " + path + (refused ? " refused" : " said nothing") +
                                " after: " + m.Recent();
            if (writable && !refused &&
                !(rainfold::OpenDesign(Bytes(path), back).ok && back == f.w->design()))
                m.faults << "save to " + path + " does not read back after: " + m.Recent();
            // Root may write a read-only file; any other user's save must leave it as it was.
            if (::geteuid() != 0 && ReadAll(files.at("readonly.rfd")) != files.readOnlyBytes)
                m.faults << "the read-only file changed after: " + m.Recent();
            if (!QFileInfo(files.at("link.rfd")).isSymLink())
                m.faults << "the link was replaced after: " + m.Recent();
        }
        QApplication::processEvents();

        auto check = [&](const QString& where, const QString& text) {
            if (m.faults.isEmpty() && text.contains(shown))
                m.faults << where + " shows \"" + text + "\" after: " + m.Recent();
        };
        for (const QLineEdit* field : f.w->findChildren<QLineEdit*>())
            check(field->objectName(), field->text());
        for (const QTableWidget* grid : {segments, results})
            for (int row = 0; row < grid->rowCount(); ++row)
                for (int column = 0; column < grid->columnCount(); ++column)
                    check(QStringLiteral("%1(%2,%3)").arg(grid->objectName()).arg(row).arg(column),
                          grid->item(row, column)->text());
    }
    QVERIFY2(m.faults.isEmpty(), qPrintable(m.faults.join('\n')));
}

// Found by the monkey: a system length past the largest double (the text "1e400") labelled the
// segment rows "0 - inf", "inf - inf", ... It is an overflow: the "Error" box, labels as they were.
void MonkeyTest::lengthBeyondDoubleRange() {
    WindowFixture f;
    f.trigger("mnuOptionsSR1");
    auto* segments = f.get<QTableWidget>("msgSurfStore");
    f.field("txtSYL")->setText("1300");
    f.focus("txtSYL");
    f.focus("txtGPM");
    QCOMPARE(segments->item(10, 0)->text(), QStringLiteral("1170 - 1300"));

    ModalAnswer answer;
    f.field("txtSYL")->setText("1e400");
    f.focus("txtSYL");
    f.focus("txtGPM");
    QCOMPARE(segments->item(1, 0)->text(), QStringLiteral("0 - 130"));
    QCOMPARE(segments->item(10, 0)->text(), QStringLiteral("1170 - 1300"));
    QCOMPARE(answer.boxes.size(), size_t(1));
    QCOMPARE(answer.boxes[0].title, QStringLiteral("Error"));
    QCOMPARE(answer.boxes[0].text, QStringLiteral("Overflow."));
}

QTEST_MAIN(MonkeyTest)
#include "monkey_test.moc"
