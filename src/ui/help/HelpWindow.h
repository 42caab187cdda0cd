#pragma once
// The program's help: the user guide, a folder of HTML pages, shown in a window of the program
// with its table of contents and a keyword index that can be searched.

#include <QString>
#include <QWidget>

class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QTabWidget;
class QTextBrowser;

namespace rainfold::ui {

// The guide's own pages the help window is built around.
inline const QString kGuideContentsPage = QStringLiteral("index.html");
inline const QString kGuideIndexPage = QStringLiteral("keywords.html");

// The guide of a program in `programFolder`: installed in ../share/rainfold/guide, or in guide/
// beside a program run from its build folder. Empty when there is none (a folder without its
// contents page does not count).
QString FindGuide(const QString& programFolder);
// The guide of this program, or the folder set below.
QString GuideFolder();
// Makes GuideFolder() answer with this folder instead of searching (an empty text searches again).
// The guide's place belongs to the installation, not to one window, so it is set once for all.
void SetGuideFolder(const QString& folder);

enum class HelpStart { Contents, Index };

// Help > Contents and Help > Search For Help On...: the owner's help window at the guide's
// contents or at its keyword index, or the no-help message when the guide is missing. A guide
// page that cannot be read is reported in a plain message box.
void ShowHelp(QWidget* owner, HelpStart start);

class HelpWindow : public QWidget {
    Q_OBJECT

public:
    HelpWindow(const QString& guideFolder, QWidget* parent = nullptr);

    // Each shows the window at that place and returns an empty text, or returns why the guide's
    // page could not be read (the window is then left as it was).
    QString showContents();
    QString showIndex();

    const QString& folder() const { return folder_; }
    QTextBrowser* browser() const { return browser_; }
    QLineEdit* searchField() const { return searchField_; }
    QListWidget* keywordList() const { return keywordList_; }
    QListWidget* contentsList() const { return contentsList_; }
    QTabWidget* panels() const { return panels_; }

private:
    QString load(const QString& page, QListWidget* into);
    void filterKeywords(const QString& typed);
    void openItem(QListWidgetItem* item);

    QString folder_;
    QTabWidget* panels_ = nullptr;
    QListWidget* contentsList_ = nullptr;
    QLineEdit* searchField_ = nullptr;
    QListWidget* keywordList_ = nullptr;
    QTextBrowser* browser_ = nullptr;
};

} // namespace rainfold::ui
