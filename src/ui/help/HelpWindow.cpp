#include "HelpWindow.h"

#include "main/Messages.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSplitter>
#include <QTabWidget>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextDocument>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

namespace rainfold::ui {

namespace {

const QString kNoHelp = QStringLiteral(
    "Unable to display Help Contents. There is no Help associated with this project.");

QString& GuideFolderSetting() {
    static QString folder;
    return folder;
}

bool HoldsGuide(const QString& folder) {
    return QFileInfo(QDir(folder).filePath(kGuideContentsPage)).isFile();
}

struct Link {
    QString text;
    QString href;
};

// The links in the lists of a page (its table of contents or its index, not the navigation
// around them), in order, each with the text it is written on.
QList<Link> ListedLinksOf(const QString& html) {
    QTextDocument document;
    document.setHtml(html);
    QList<Link> links;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (!block.textList())
            continue;
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const QString href = fragment.charFormat().anchorHref();
            if (href.isEmpty())
                continue;
            // A link written in several styles arrives in pieces.
            if (!links.isEmpty() && links.last().href == href && it != block.begin())
                links.last().text += fragment.text();
            else
                links.append({fragment.text(), href});
        }
    }
    for (Link& link : links)
        link.text = link.text.simplified();
    return links;
}

} // namespace

QString FindGuide(const QString& programFolder) {
    for (const QString& candidate :
         {QStringLiteral("../share/rainfold/guide"), QStringLiteral("guide")}) {
        const QString folder = QDir::cleanPath(QDir(programFolder).filePath(candidate));
        if (HoldsGuide(folder))
            return folder;
    }
    return {};
}

QString GuideFolder() {
    if (!GuideFolderSetting().isEmpty())
        return HoldsGuide(GuideFolderSetting()) ? GuideFolderSetting() : QString();
    return FindGuide(QCoreApplication::applicationDirPath());
}

void SetGuideFolder(const QString& folder) {
    GuideFolderSetting() = folder;
}

void ShowHelp(QWidget* owner, HelpStart start) {
    const QString folder = GuideFolder();
    if (folder.isEmpty()) {
        ShowNotice(owner, kNoHelp, QMessageBox::Information);
        return;
    }
    // One help window per main window; it stays open beside the work until it is closed.
    HelpWindow* window = nullptr;
    for (HelpWindow* existing : owner->findChildren<HelpWindow*>(Qt::FindDirectChildrenOnly)) {
        if (existing->folder() == folder)
            window = existing;
        else
            existing->deleteLater();
    }
    if (!window)
        window = new HelpWindow(folder, owner);
    const QString failure =
        start == HelpStart::Contents ? window->showContents() : window->showIndex();
    if (!failure.isEmpty()) {
        ShowNotice(owner, failure);
        return;
    }
    window->show();
    window->raise();
    window->activateWindow();
    // Only a shown window keeps the focus where it is put; a new one would give it to its tabs.
    if (start == HelpStart::Index)
        window->searchField()->setFocus(Qt::OtherFocusReason);
}

HelpWindow::HelpWindow(const QString& guideFolder, QWidget* parent)
    : QWidget(parent, Qt::Window), folder_(guideFolder) {
    setObjectName(QStringLiteral("frmHelp"));
    setWindowTitle(QStringLiteral("Rainfold Help"));
    setAttribute(Qt::WA_DeleteOnClose);

    browser_ = new QTextBrowser;
    browser_->setObjectName(QStringLiteral("helpBrowser"));
    browser_->setOpenLinks(true);
    browser_->setOpenExternalLinks(false);

    contentsList_ = new QListWidget;
    contentsList_->setObjectName(QStringLiteral("helpContents"));
    contentsList_->setWordWrap(true);
    searchField_ = new QLineEdit;
    searchField_->setObjectName(QStringLiteral("helpSearch"));
    searchField_->setClearButtonEnabled(true);
    keywordList_ = new QListWidget;
    keywordList_->setObjectName(QStringLiteral("helpKeywords"));
    keywordList_->setWordWrap(true);
    auto* display = new QPushButton(QStringLiteral("&Display"));

    auto* indexPage = new QWidget;
    auto* indexLayout = new QVBoxLayout(indexPage);
    auto* prompt = new QLabel(QStringLiteral("&Type the first letters of the word you look for:"));
    prompt->setBuddy(searchField_);
    prompt->setWordWrap(true);
    indexLayout->addWidget(prompt);
    indexLayout->addWidget(searchField_);
    indexLayout->addWidget(keywordList_, 1);
    indexLayout->addWidget(display, 0, Qt::AlignRight);

    panels_ = new QTabWidget;
    panels_->setObjectName(QStringLiteral("helpPanels"));
    panels_->addTab(contentsList_, QStringLiteral("C&ontents"));
    panels_->addTab(indexPage, QStringLiteral("&Index"));

    auto button = [this](const QString& text, const char* name) {
        auto* b = new QToolButton;
        b->setText(text);
        b->setObjectName(QString::fromLatin1(name));
        b->setAutoRaise(true);
        return b;
    };
    QToolButton* back = button(QStringLiteral("< &Back"), "helpBack");
    QToolButton* forward = button(QStringLiteral("&Forward >"), "helpForward");
    QToolButton* home = button(QStringLiteral("&Contents"), "helpHome");
    back->setEnabled(false);
    forward->setEnabled(false);
    auto* bar = new QHBoxLayout;
    bar->addWidget(back);
    bar->addWidget(forward);
    bar->addWidget(home);
    bar->addStretch(1);

    auto* splitter = new QSplitter;
    splitter->addWidget(panels_);
    splitter->addWidget(browser_);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({260, 740});

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(bar);
    layout->addWidget(splitter, 1);
    resize(1000, 700);

    connect(back, &QToolButton::clicked, browser_, &QTextBrowser::backward);
    connect(forward, &QToolButton::clicked, browser_, &QTextBrowser::forward);
    connect(browser_, &QTextBrowser::backwardAvailable, back, &QToolButton::setEnabled);
    connect(browser_, &QTextBrowser::forwardAvailable, forward, &QToolButton::setEnabled);
    connect(home, &QToolButton::clicked, this, [this] { showContents(); });
    connect(contentsList_, &QListWidget::itemActivated, this, &HelpWindow::openItem);
    connect(contentsList_, &QListWidget::itemClicked, this, &HelpWindow::openItem);
    connect(keywordList_, &QListWidget::itemActivated, this, &HelpWindow::openItem);
    connect(keywordList_, &QListWidget::itemClicked, this, &HelpWindow::openItem);
    connect(searchField_, &QLineEdit::textEdited, this, &HelpWindow::filterKeywords);
    auto openSelected = [this] { openItem(keywordList_->currentItem()); };
    connect(searchField_, &QLineEdit::returnPressed, this, openSelected);
    connect(display, &QPushButton::clicked, this, openSelected);
}

QString HelpWindow::load(const QString& page, QListWidget* into) {
    const QString path = QDir(folder_).filePath(page);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("Cannot read %1: %2")
            .arg(QDir::toNativeSeparators(path), file.errorString());
    if (into->count() == 0) {
        const QUrl base = QUrl::fromLocalFile(path);
        for (const Link& link : ListedLinksOf(QString::fromUtf8(file.readAll()))) {
            auto* item = new QListWidgetItem(link.text, into);
            item->setData(Qt::UserRole, base.resolved(QUrl(link.href)));
        }
    }
    return {};
}

QString HelpWindow::showContents() {
    const QString failure = load(kGuideContentsPage, contentsList_);
    if (!failure.isEmpty())
        return failure;
    panels_->setCurrentIndex(0);
    browser_->setSource(QUrl::fromLocalFile(QDir(folder_).filePath(kGuideContentsPage)));
    return {};
}

QString HelpWindow::showIndex() {
    const QString failure = load(kGuideIndexPage, keywordList_);
    if (!failure.isEmpty())
        return failure;
    panels_->setCurrentIndex(1);
    if (browser_->source().isEmpty())
        browser_->setSource(QUrl::fromLocalFile(QDir(folder_).filePath(kGuideContentsPage)));
    searchField_->selectAll();
    return {};
}

void HelpWindow::filterKeywords(const QString& typed) {
    const QString wanted = typed.trimmed();
    QListWidgetItem* first = nullptr;
    QListWidgetItem* beginning = nullptr;
    for (int row = 0; row < keywordList_->count(); ++row) {
        QListWidgetItem* item = keywordList_->item(row);
        const bool shown = item->text().contains(wanted, Qt::CaseInsensitive);
        item->setHidden(!shown);
        if (shown && !first)
            first = item;
        if (shown && !beginning && item->text().startsWith(wanted, Qt::CaseInsensitive))
            beginning = item;
    }
    // A keyword that begins with the typed letters goes before one that only contains them.
    keywordList_->setCurrentItem(beginning ? beginning : first);
}

void HelpWindow::openItem(QListWidgetItem* item) {
    if (item && !item->isHidden())
        browser_->setSource(item->data(Qt::UserRole).toUrl());
}

} // namespace rainfold::ui
