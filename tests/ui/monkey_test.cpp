// Random use of the window: typing into the inputs, options and families, page changes, Prev and
// Next, clicks and editing keys on both grids, File > New, Open and Save of prepared paths,
// message boxes answered at random. Whatever happens, the window never shows "nan" or "inf",
// every box carries one of the program's titles, a design opened is the file's, a file that
// cannot be opened changes nothing, and a design saved reads back as the window holds it.
// RAINFOLD_MONKEY_EVENTS sets the number of events (1000 by default); RAINFOLD_MONKEY_SEED another
// seed; RAINFOLD_MONKEY_TRACE set prints every event.

#include "WindowFixture.h"

#include "design_file.h"

#include <random>
#include <unistd.h>

namespace {

int EnvInt(const char* name, int fallback) {
    bool ok = false;
    const int value = qEnvironmentVariableIntValue(name, &ok);
    return ok ? value : fallback;
}

// Types a text key by key; the one letter beyond ASCII as the key that bears it (QTest has no key
// for it).
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

std::string Bytes(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

} // namespace

class MonkeyTest : public QObject {
    Q_OBJECT

private slots:
    void randomUse() {
        const int events = EnvInt("RAINFOLD_MONKEY_EVENTS", 1000);
        std::mt19937 rng(static_cast<unsigned>(EnvInt("RAINFOLD_MONKEY_SEED", 1989)));
        auto between = [&rng](int low, int high) {
            return std::uniform_int_distribution<int>(low, high)(rng);
        };
        auto pick = [&between](const auto& list) {
            return list[between(0, static_cast<int>(list.size()) - 1)];
        };
        // None of the letters of "nan" and "inf": whatever spells them was written by the program.
        auto typing = [&] {
            QString s;
            for (int n = between(1, 6); n > 0; --n)
                s += pick(QStringLiteral("0123456789.-+eE ,xyz\u00E9"));
            return s;
        };
        // A number near a sound value, as an engineer might type it; now and then zero, negative
        // or far out of range.
        auto number = [&between](double sound) {
            const int kind = between(0, 9);
            if (kind == 0)
                return QString::number(between(-2, 2));
            if (kind == 1)
                return QStringLiteral("%1e%2").arg(between(1, 9)).arg(between(-330, 300));
            const double scale = std::pow(10.0, between(-10, 10) / 10.0);
            return QString::number(sound * scale, 'g', between(1, 6));
        };
        Texts recent, faults;
        auto note = [&recent](const QString& what) {
            if (qEnvironmentVariableIsSet("RAINFOLD_MONKEY_TRACE"))
                qInfo("%s", qPrintable(what));
            recent << what;
            if (recent.size() > 12)
                recent.removeFirst();
        };
        auto fault = [&](const QString& what) {
            if (faults.isEmpty())
                faults << what + " after: " + recent.join(" | ");
        };

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
        QHash<QLineEdit*, double> sound; // the sound values of the number fields
        for (QLineEdit* field : segments->parentWidget()->findChildren<QLineEdit*>()) {
            bool isNumber = false;
            const double value = field->text().toDouble(&isNumber);
            if (isNumber)
                sound[field] = value;
            if (!field->isReadOnly() && field != editor)
                inputs << field;
        }
        QCOMPARE(inputs.size(), 20);
        const Texts options = {"mnuOptionsSR0", "mnuOptionsSR1", "mnuOptionsSR2", "mnuOptionsSR3",
                               "mnuOptionsGreenAmpt"};
        const QList<int> gridKeys = {Qt::Key_Up,     Qt::Key_Down,   Qt::Key_Left, Qt::Key_Right,
                                     Qt::Key_Return, Qt::Key_Escape, Qt::Key_Tab,  Qt::Key_5,
                                     Qt::Key_X,      Qt::Key_Period};
        const QRegularExpression shown(QStringLiteral("nan|inf"),
                                       QRegularExpression::CaseInsensitiveOption);

        // The paths File > Open and File > Save are given, in a folder of their own.
        QTemporaryDir dir;
        auto at = [&dir](const char* name) { return dir.filePath(name); };
        QVERIFY(rainfold::SaveDesign(Bytes(at("good.rfd")), start).ok);
        QVERIFY(rainfold::SaveDesign(Bytes(at("readonly.rfd")), start).ok);
        QFile::setPermissions(at("readonly.rfd"), QFile::ReadOwner | QFile::ReadGroup);
        const QByteArray readOnlyBytes = ReadAll(at("readonly.rfd"));
        QVERIFY(QFile::link(at("target.rfd"), at("link.rfd")));
        // Written by hand as another program might: Windows-1252, numbers unquoted, no line end
        // after the last record.
        QVERIFY(WriteFile(at("plain.rfd"),
                          "\"J\x92s \x96 north\"\r\n\"X\"\r\n\"X\",\"X\"\r\n\"X\",\"1/2/24\"\r\n"
                          "1300,0800,1.50,+40\r\n3\r\n2\r\n\"0.1\",\"0.2\"\r\n"
                          "10,50,0.45,0.25,40,0.005"));
        QVERIFY(WriteFile(at("bad.rfd"), "\"P\"\r\n\"L\"\r\n\"C\"\r\n"));
        const Texts opened = {at("good.rfd"),    at("plain.rfd"), at("bad.rfd"), dir.path(),
                              at("missing.rfd"), "/dev/zero",     QString()};
        const Texts saved = {at("saved.rfd"), at("link.rfd"), at("readonly.rfd"), dir.path(),
                             QString()};
        const bool root = ::geteuid() == 0; // root may write a read-only file
        QString chosen;                     // what the file dialog returns
        f.w->setFileDialog([&chosen](QWidget*, const FileDialogRequest&) { return chosen; });

        // Each message box gets one of its buttons at random; any other modal window is a fault.
        QString answers;
        for (int k = 0; k < 4 * events; ++k)
            answers += between(0, 1) ? 'C' : 'O';
        ModalAnswer boxes(answers, [&](QWidget* modal) {
            fault("unexpected window " + modal->objectName());
            modal->close();
        });

        for (int event = 0; event < events && faults.isEmpty(); ++event) {
            const int kind = between(0, 14);
            const size_t boxesBefore = boxes.boxes.size();
            QList<QLineEdit*> open;
            for (QLineEdit* field : inputs)
                if (Usable(field))
                    open << field;
            if (kind <= 3 && !open.isEmpty()) { // typing into an input
                QLineEdit* field = pick(open);
                QTest::mouseClick(field, Qt::LeftButton);
                // A number field mostly gets a whole new number, now and then anything.
                const bool junk = !sound.contains(field) || between(0, 7) == 0;
                const bool replace = junk ? between(0, 1) == 1 : between(0, 7) != 0;
                if (replace)
                    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
                const QString text = junk ? typing() : number(sound.value(field));
                note(field->objectName() + (replace ? " = " : " += ") + text);
                Type(field, text);
                QTest::keyClick(field, pick(QList<Qt::Key>{Qt::Key_Tab, Qt::Key_Return,
                                                           Qt::Key_Backspace, Qt::Key_Home}));
            } else if (kind == 4) { // an Options entry
                const QString option = pick(options);
                note(option);
                f.trigger(option);
            } else if (kind == 5 && Usable(family)) {
                const int index = between(0, 7);
                note("family " + QString::number(index));
                family->setCurrentIndex(index);
            } else if (kind == 6 || kind == 7) {
                const int page = between(0, 1);
                note("page " + QString::number(page));
                tabs->setCurrentIndex(page);
            } else if (kind == 8) {
                QList<QWidget*> buttons;
                for (const char* name : {"cmdPrev", "cmdNext"})
                    if (Usable(f.get(name)))
                        buttons << f.get(name);
                if (!buttons.isEmpty()) {
                    QWidget* button = pick(buttons);
                    note(button->objectName());
                    QTest::mouseClick(button, Qt::LeftButton);
                }
            } else if (kind == 9 && Usable(results)) {
                const int row = between(0, 9), column = between(0, 5);
                note(QStringLiteral("results cell %1,%2").arg(row).arg(column));
                QTest::mouseClick(results->viewport(), Qt::LeftButton, {},
                                  CellCentre(results, row, column));
            } else if ((kind == 10 || kind == 11) && Usable(segments)) {
                if (Usable(editor) && between(0, 1)) {
                    const QString text = typing();
                    const int key =
                        pick(QList<int>{Qt::Key_Return, Qt::Key_Escape, Qt::Key_Up, Qt::Key_Down});
                    note("editor <- " + text + " key " + QString::number(key, 16));
                    Type(editor, text);
                    QTest::keyClick(editor, Qt::Key(key));
                } else if (between(0, 1)) {
                    const int row = between(0, 10), column = between(0, 2);
                    note(QStringLiteral("segment cell %1,%2").arg(row).arg(column));
                    const QPoint centre = CellCentre(segments, row, column);
                    QTest::mouseClick(segments->viewport(), Qt::LeftButton, {}, centre);
                    if (between(0, 1))
                        QTest::mouseDClick(segments->viewport(), Qt::LeftButton, {}, centre);
                } else {
                    const int key = pick(gridKeys);
                    note("segment key " + QString::number(key, 16));
                    f.focus("msgSurfStore");
                    QTest::keyClick(segments, Qt::Key(key));
                }
            } else if (kind == 12 && between(0, 3) == 0) {
                note("mnuFileNew");
                f.trigger("mnuFileNew");
            } else if (kind == 12) { // as File > Open of a sound design would
                note("sound design");
                f.w->setDesign(start);
            } else if (kind == 13 || kind == 14) {
                const bool opening = kind == 13;
                const QString path = chosen = pick(opening ? opened : saved);
                const QString what = (opening ? "open " : "save ") + path;
                note(what);
                rainfold::DesignRecord expected = f.w->design();
                const bool readable = rainfold::OpenDesign(Bytes(path), expected).ok;
                f.trigger(opening ? "mnuFileOpen" : "mnuFileSave");
                const bool refused =
                    boxes.boxes.size() > boxesBefore &&
                    boxes.boxes[boxesBefore].text.startsWith("Could not " + what + ": ");
                const bool fine = opening ? readable
                                          : path == at("saved.rfd") || path == at("link.rfd") ||
                                                (path == at("readonly.rfd") && root);
                rainfold::DesignRecord back = f.w->design();
                if (!path.isEmpty() && refused == fine)
                    fault(what + (refused ? " refused" : " said nothing"));
                else if (opening && !(f.w->design() == expected))
                    fault(what + " gave another design");
                else if (!opening && fine &&
                         !(rainfold::OpenDesign(Bytes(path), back).ok && back == f.w->design()))
                    fault(what + " does not read back");
                else if (!root && ReadAll(at("readonly.rfd")) != readOnlyBytes)
                    fault("the read-only file changed");
                else if (!QFileInfo(at("link.rfd")).isSymLink())
                    fault("the link was replaced");
            }
            QApplication::processEvents();

            for (size_t k = boxesBefore; k < boxes.boxes.size(); ++k) {
                const SeenBox& box = boxes.boxes[k];
                note("box \"" + box.text.left(40) + "\"");
                if (!Texts({"Error", "Warning", "Rainfold"}).contains(box.title))
                    fault("box titled \"" + box.title + "\"");
            }
            auto check = [&](const QString& where, const QString& text) {
                if (text.contains(shown))
                    fault(where + " shows \"" + text + "\"");
            };
            for (const QLineEdit* field : f.w->findChildren<QLineEdit*>())
                check(field->objectName(), field->text());
            for (const QTableWidget* grid : {segments, results})
                for (int row = 0; row < grid->rowCount(); ++row)
                    for (int column = 0; column < grid->columnCount(); ++column)
                        check(QStringLiteral("%1(%2,%3)")
                                  .arg(grid->objectName())
                                  .arg(row)
                                  .arg(column),
                              grid->item(row, column)->text());
        }
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join('\n')));
    }
};

QTEST_MAIN(MonkeyTest)
#include "monkey_test.moc"
