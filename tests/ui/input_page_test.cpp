// The input page: start-up state (its texts in input_page_texts.txt), notices, the surface-storage
// options with their panels and segment labels, and the infiltration inputs. File > New is in the
// results-page test, with Open over results.

#include "WindowFixture.h"

namespace {

// What the window shows for a line of input_page_texts.txt, in the same form: the line's key,
// then what stands under it.
QString Describe(const WindowFixture& f, const QString& key) {
    Texts seen{key};
    auto entry = [](const QAction* a, const QString& text) {
        return a->isSeparator()
                   ? QStringLiteral("-")
                   : text + (a->isChecked() ? "(x)" : "") + (a->isEnabled() ? "" : "(off)");
    };
    const QList<QAction*> menus = f.w->menuBar()->actions();
    auto menu =
        std::find_if(menus.begin(), menus.end(), [&](QAction* a) { return a->text() == key; });
    if (key == "title") {
        seen << f.w->windowTitle();
    } else if (auto* tabs = f.get<QTabWidget>("SSTab1"); key == "tabs") {
        for (int i = 0; i < tabs->count(); ++i)
            seen << tabs->tabText(i);
        seen << "current " + QString::number(tabs->currentIndex());
    } else if (auto* list = f.get<QComboBox>("cboIntakeFamily"); key == "family") {
        for (int i = 0; i < list->count(); ++i)
            seen << list->itemText(i);
    } else if (key == "status") {
        seen << f.get<QLabel>("sbStatusBarText")->text();
    } else if (key == "menus") {
        for (const QAction* top : menus)
            seen << top->text();
    } else if (key == "toolbar") {
        for (const QAction* a : f.get<QToolBar>("tbToolBar")->actions())
            seen << entry(a, a->data().toString() + '/' + a->toolTip() + '/' +
                                 a->property("imageKey").toString());
    } else if (menu != menus.end()) {
        for (const QAction* a : (*menu)->menu()->actions())
            seen << entry(a, a->objectName() + '=' + a->text());
    } else if (QWidget* control = f.get(key); control && f.labelOf(control)) {
        const auto* list = qobject_cast<QComboBox*>(control);
        seen << f.labelOf(control)->text() << control->toolTip()
             << (!list                        ? static_cast<QLineEdit*>(control)->text()
                 : list->currentIndex() == -1 ? list->placeholderText()
                                              : list->currentText());
    }
    return seen.join('|');
}

} // namespace

class InputPageTest : public QObject {
    Q_OBJECT

private slots:
    void startUp() {
        WindowFixture f;
        const Texts expected = QString::fromUtf8(ReadAll(RAINFOLD_UI_TEXTS)).split('\n');
        QVERIFY2(expected.size() > 30, RAINFOLD_UI_TEXTS);
        for (const QString& line : expected)
            if (!line.isEmpty() && !line.startsWith('#'))
                QCOMPARE(Describe(f, line.section('|', 0, 0)), line);
        QVERIFY(!f.get<QLabel>("sbStatusBarTime")->text().isEmpty());
        QVERIFY(f.get<QTableWidget>("msgSurfStore")->isHidden());
        f.w->setOutputsEnabled(true);
        QVERIFY(!Describe(f, "toolbar").contains("(off)"));

        // The View entries turn their bar off and on again.
        for (const auto& [entry, bar] :
             {std::pair<QString, QWidget*>{"mnuViewToolbar", f.get("tbToolBar")},
              {"mnuViewStatusBar", f.get("sbStatusBar")}}) {
            f.trigger(entry);
            QVERIFY(bar->isHidden() && !f.action(entry)->isChecked());
            f.trigger(entry);
            QVERIFY(!bar->isHidden() && f.action(entry)->isChecked());
        }

        // The notices: File > Close, which has nothing to close, and About.
        Texts opened; // About, from the menu and from the toolbar
        ModalAnswer answer({}, [&opened](QWidget* modal) {
            opened << modal->objectName() + '/' + modal->parentWidget()->objectName();
            modal->close();
        });
        QVERIFY(QMetaObject::invokeMethod(f.w.get(), "mnuFileClose_Click"));
        f.trigger("mnuHelpAbout");
        f.w->tbToolBar_ButtonClick("Help");
        QCOMPARE(answer.lines(), Texts({"Rainfold|-|0|Add 'mnuFileClose_Click' code."}));
        QCOMPARE(answer.boxes[0].buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
        QCOMPARE(opened, Texts({"frmAbout/ROAnalysis", "frmAbout/ROAnalysis"}));
    }

    void surfaceOptions() {
        const struct {
            int before, option;
            QString slopeLabel;   // empty: hidden
            QString residueLabel; // never hidden, only relabelled
            Texts headings;       // empty: the table is hidden, the fields shown
            int columnWidth, tableWidth;
        } cases[] = {
            // Twips at 12 to a pixel: 960 -> 80, 2978 -> 248, 1310 -> 109, 3670 -> 306.
            {3, 0, "Slope (%)", "Residue (%)", {}, 0, 0},
            {2, 1, "", "Residue Storage", {"Segment", "% Slope", "% Residue"}, 80, 248},
            {0, 2, "Surface Storage", "Residue Storage", {}, 0, 0},
            {0, 3, "", "Residue (%)", {"Segment", "Surface Storage", "Residue Storage"}, 109, 306},
        };
        for (const auto& c : cases) {
            WindowFixture f;
            auto sr = [](int k) { return QStringLiteral("mnuOptionsSR%1").arg(k); };
            f.trigger(sr(c.before));
            f.trigger(sr(c.option));
            f.trigger(sr(c.option)); // choosing the ticked option again keeps it ticked
            for (int k = 0; k < 4; ++k)
                QCOMPARE(f.action(sr(k))->isChecked(), k == c.option);

            auto* slope = f.get<QLabel>("lblSurfStore");
            QCOMPARE(slope->isHidden() ? QString() : slope->text(), c.slopeLabel);
            QVERIFY(!f.get("lblResidue")->isHidden());
            QCOMPARE(f.get<QLabel>("lblResidue")->text(), c.residueLabel);
            QCOMPARE(f.field("txtSurfStore")->isHidden(), !c.headings.isEmpty());
            QCOMPARE(f.field("txtResidue")->isHidden(), !c.headings.isEmpty());
            auto* grid = f.get<QTableWidget>("msgSurfStore");
            QCOMPARE(grid->isHidden(), c.headings.isEmpty());
            if (!c.headings.isEmpty()) {
                QCOMPARE(Texts({grid->item(0, 0)->text(), grid->item(0, 1)->text(),
                                grid->item(0, 2)->text()}),
                         c.headings);
                QCOMPARE(QList<int>({grid->columnWidth(1), grid->columnWidth(2), grid->width()}),
                         QList<int>({c.columnWidth, c.columnWidth, c.tableWidth}));
                // The table's hover hint, shown through its cells: over a label and a value.
                for (const QTableWidgetItem* item : {grid->item(10, 0), grid->item(1, 2)}) {
                    QToolTip::hideText();
                    const QPoint at = grid->visualItemRect(item).center();
                    QHelpEvent hover(QEvent::ToolTip, at, grid->viewport()->mapToGlobal(at));
                    QApplication::sendEvent(grid->viewport(), &hover);
                    QCOMPARE(QToolTip::text(), grid->toolTip());
                }
                QCOMPARE(grid->toolTip(), QStringLiteral("Enter the surface storage parameters "
                                                         "for slope and residue."));
            }
        }
    }

    void segmentLabels() {
        WindowFixture f;
        QVERIFY(f.active);
        auto* grid = f.get<QTableWidget>("msgSurfStore");
        f.trigger("mnuOptionsSR1");
        grid->item(5, 1)->setText("2.5");
        f.trigger("mnuOptionsSR3"); // renaming the columns keeps the numbers
        QCOMPARE(grid->item(5, 1)->text(), QStringLiteral("2.5"));
        const struct {
            const char* length;
            Texts labels; // rows 1, 2, 5 and 10
            Texts boxes;
        } cases[] = {
            {"1300", {"0 - 130", "130 - 260", "520 - 650", "1170 - 1300"}, {}},
            {"1255", {"0 - 125.5", "125.5 - 251", "502 - 627.5", "1129.5 - 1255"}, {}},
            {"", {"0 - 0", "0 - 0", "0 - 0", "0 - 0"}, {}},
            {"1000 ft", {"0 - 100", "100 - 200", "400 - 500", "900 - 1000"}, {}},
            // Past the largest double: an overflow, the labels as they were (not "0 - inf").
            {"1e400", {"0 - 100", "100 - 200", "400 - 500", "900 - 1000"}, {"Error|!|0|Overflow."}},
        };
        for (const auto& c : cases) {
            ModalAnswer answer;
            f.focus("txtSYL");
            f.field("txtSYL")->setText(c.length);
            f.focus("txtGPM"); // leaving the length relabels the rows
            QCOMPARE(Texts({grid->item(1, 0)->text(), grid->item(2, 0)->text(),
                            grid->item(5, 0)->text(), grid->item(10, 0)->text()}),
                     c.labels);
            QCOMPARE(answer.lines(), c.boxes);
        }
    }

    // A storage panel leaves with the focus; the wetted-diameter panel, once left, stays hidden.
    // Which panel comes with which field is checked with the layout of every window.
    void panelsLeaveWithTheFocus() {
        for (const char* field : {"txtSurfStore", "txtResidue", "txtWetDiam"}) {
            WindowFixture f;
            QVERIFY(f.active);
            f.trigger("mnuOptionsSR2");
            f.focus(field);
            f.focus("txtDate");
            f.focus(field);
            f.focus("txtDate");
            QVERIFY(f.get("frmSurfStore")->isHidden() && f.get("frmResidueStore")->isHidden());
            QCOMPARE(f.get("frmWetDiam")->isHidden(), QByteArray(field) == "txtWetDiam");
        }
    }

    void infiltrationInputs() {
        WindowFixture f;
        QVERIFY(f.active);
        auto* list = f.get<QComboBox>("cboIntakeFamily");
        QWidget* kn = f.get("frmUNUK");
        QVERIFY(kn->isHidden());
        f.field("txtUk")->setText("22.5");
        list->setCurrentIndex(7);
        QVERIFY(!kn->isHidden());
        list->setCurrentIndex(3);
        QVERIFY(kn->isHidden());
        QCOMPARE(f.field("txtUk")->text(), QStringLiteral("22.5"));

        QWidget* frame = f.get("frmGA");
        QWidget* marker = f.get("cmdInfModel");
        QVERIFY(frame->isHidden() && !frame->isEnabled() && marker->isHidden());
        f.trigger("mnuOptionsGreenAmpt");
        QVERIFY(f.action("mnuOptionsGreenAmpt")->isChecked() && f.w->design().greenAmpt);
        QVERIFY(!frame->isHidden() && frame->isEnabled() && !marker->isHidden());
        f.trigger("mnuOptionsGreenAmpt");
        QVERIFY(!f.action("mnuOptionsGreenAmpt")->isChecked());
        QVERIFY(frame->isHidden() && !frame->isEnabledTo(f.w.get()) && marker->isHidden());
        // Each part turns over from where it stands, not from the tick.
        marker->show();
        f.trigger("mnuOptionsGreenAmpt");
        QVERIFY(marker->isHidden() && !frame->isHidden());

        // The linear variation of water content, worked out as the focus leaves its inputs.
        const struct {
            const char *saturated, *initial, *depth, *left, *omega;
        } cases[] = {
            // (0.45 - 0.25) / 40 = 0.005; (0.5 - 0.1) / 4 = 0.1; (0.3 - 0.1) / 3 = 0.0666...
            {"0.45", "0.25", "40", "txtRzDepth", "0.0050"},
            {"0.5", "0.1", "4", "txtThetaS", "0.1000"},
            {"0.3", "0.1", "3", "txtThetaI", "0.0667"},
            {"0.45", "0.25", "deep", "txtRzDepth", "typed"},
        };
        for (const auto& c : cases) {
            f.focus("txtKS");
            f.field("txtThetaS")->setText(c.saturated);
            f.field("txtThetaI")->setText(c.initial);
            f.field("txtRzDepth")->setText(c.depth);
            f.field("txtOmega")->setText("typed");
            f.focus(c.left);
            QCOMPARE(f.field("txtOmega")->text(),
                     QStringLiteral("typed")); // entering changes nothing
            f.focus("txtKS");
            QCOMPARE(f.field("txtOmega")->text(), QString(c.omega));
        }
    }

    void waterContentWarning() {
        const struct {
            const char *saturated, *typed;
            int warnings;
        } cases[] = {
            {"", "0.3", 1}, // "0" and "0." read 0, not above an empty saturated content; "0.3" does
            {"0.3", "0.3", 0},
            {"0.1", "0.25", 2}, // each keystroke above
        };
        for (const auto& c : cases) {
            WindowFixture f;
            QVERIFY(f.active);
            f.trigger("mnuOptionsGreenAmpt"); // the water contents sit in the Green-Ampt frame
            f.field("txtThetaS")->setText(c.saturated);
            f.field("txtThetaI")->clear();
            f.focus("txtThetaI");
            ModalAnswer answer;
            QTest::keyClicks(f.field("txtThetaI"), c.typed);
            QCOMPARE(f.field("txtThetaI")->text(), QString(c.typed));
            QCOMPARE(int(answer.boxes.size()), c.warnings);
            for (const SeenBox& box : answer.boxes) // a plain box with the default title
                QCOMPARE(box.line(),
                         QStringLiteral("Rainfold|-|0|The initital water content must be "
                                        "less than the saturated water content."));
            QApplication::processEvents();
            QCOMPARE(f.w->focusWidget(), f.field("txtThetaI"));
        }
    }
};

QTEST_MAIN(InputPageTest)
#include "input_page_test.moc"
