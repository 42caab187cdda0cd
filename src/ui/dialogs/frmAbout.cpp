#include "frmAbout.h"

#include "main/Icons.h"
#include "main/Messages.h"

#include <QApplication>
#include <QFileInfo>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QProcess>
#include <QPushButton>
#include <QSettings>
#include <QVariant>

#ifndef RAINFOLD_VERSION_MAJOR
#error "the program's version comes from the build (RAINFOLD_VERSION_MAJOR/MINOR/PATCH)"
#endif
#ifndef RAINFOLD_LEGAL_TRADEMARKS
#define RAINFOLD_LEGAL_TRADEMARKS ""
#endif

namespace {

const QString kSysInfoKey = QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools\\MSINFO");
const QString kSysInfoValue = QStringLiteral("PATH");
const QString kSysInfoLocationKey = QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools Location");
const QString kSysInfoLocationValue = QStringLiteral("MSINFO");

const QString kDescription =
    QStringLiteral("Determines runoff potential from a Center Pivot application.");
const QString kCredit =
    QStringLiteral("This program was redeveloped from an earlier DOS version of Rainfold by its "
                   "first author, and is based on the paper \"Suitability of Reduced Pressure "
                   "Center-Pivots, 1-23-89\".");

bool StartDetached(const QString& path) {
    return QProcess::startDetached(path, {});
}

} // namespace

frmAbout::frmAbout(QWidget* parent)
    : QDialog(parent), keyReader_(&frmAbout::GetKeyValue), launcher_(StartDetached) {
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About Rainfold"));
    setModal(true);

    picIcon = new QLabel(this);
    picIcon->setObjectName(QStringLiteral("picIcon"));
    QIcon icon = QApplication::windowIcon();
    if (icon.isNull())
        icon = rainfold::ui::ProgramIcon();
    picIcon->setPixmap(icon.pixmap(48, 48));
    picIcon->setAlignment(Qt::AlignTop | Qt::AlignHCenter);

    auto plainLabel = [this](const char* name) {
        auto* label = new QLabel(this);
        label->setObjectName(QString::fromLatin1(name));
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        return label;
    };
    lblTitle = plainLabel("lblTitle");
    QFont titleFont = lblTitle->font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.6);
    titleFont.setBold(true);
    lblTitle->setFont(titleFont);
    lblVersion = plainLabel("lblVersion");
    lblDescription = plainLabel("lblDescription");
    lblDisclaimer = plainLabel("lblDisclaimer");
    lblDisclaimer->setText(kCredit);

    auto* line = new QFrame(this);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);

    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    cmdSysInfo = new QPushButton(QStringLiteral("&System Info..."), this);
    cmdSysInfo->setObjectName(QStringLiteral("cmdSysInfo"));

    auto* layout = new QGridLayout(this);
    layout->addWidget(picIcon, 0, 0, 3, 1);
    layout->addWidget(lblTitle, 0, 1, 1, 2);
    layout->addWidget(lblVersion, 1, 1, 1, 2);
    layout->addWidget(lblDescription, 2, 1, 1, 2);
    layout->addWidget(line, 3, 0, 1, 3);
    layout->addWidget(lblDisclaimer, 4, 0, 2, 2);
    layout->addWidget(cmdOK, 4, 2);
    layout->addWidget(cmdSysInfo, 5, 2);
    layout->setColumnStretch(1, 1);
    layout->setColumnMinimumWidth(1, 40 * fontMetrics().averageCharWidth());

    connect(cmdOK, &QPushButton::clicked, this, &frmAbout::cmdOK_Click);
    connect(cmdSysInfo, &QPushButton::clicked, this, &frmAbout::cmdSysInfo_Click);

    Form_Load();
}

void frmAbout::Form_Load() {
    lblVersion->setText(QStringLiteral("Version %1.%2.%3")
                            .arg(RAINFOLD_VERSION_MAJOR)
                            .arg(RAINFOLD_VERSION_MINOR)
                            .arg(RAINFOLD_VERSION_PATCH));
    lblTitle->setText(rainfold::ui::kProgramTitle);
    // Two line breaks between the description and the trademark notice.
    lblDescription->setText(kDescription + QStringLiteral("\n\n") +
                            QString::fromUtf8(RAINFOLD_LEGAL_TRADEMARKS));
}

void frmAbout::cmdOK_Click() {
    accept();
}

void frmAbout::cmdSysInfo_Click() {
    StartSysInfo();
}

void frmAbout::StartSysInfo() {
    QString path;
    QString value;
    if (keyReader_(kHKeyLocalMachine, kSysInfoKey, kSysInfoValue, value)) {
        path = value;
    } else if (keyReader_(kHKeyLocalMachine, kSysInfoLocationKey, kSysInfoLocationValue, value)) {
        const QString candidate = value + QStringLiteral("\\MSINFO32.EXE");
        if (QFileInfo::exists(candidate))
            path = candidate;
    }
    if (path.isEmpty() || !launcher_(path))
        rainfold::ui::ShowNotice(this,
                                 QStringLiteral("System Information Is Unavailable At This Time"));
}

bool frmAbout::GetKeyValue(std::uint32_t KeyRoot, const QString& KeyName, const QString& SubKeyRef,
                           QString& KeyVal) {
#ifdef Q_OS_WIN
    if (KeyRoot != kHKeyLocalMachine)
        return false;
    const QSettings key(QStringLiteral("HKEY_LOCAL_MACHINE\\") + KeyName, QSettings::NativeFormat);
    if (key.status() != QSettings::NoError || !key.contains(SubKeyRef))
        return false;
    const QVariant data = key.value(SubKeyRef);
    switch (data.metaType().id()) {
    case QMetaType::QString:
        // Text values end at their first null character.
        KeyVal = data.toString().section(QChar(0), 0, 0);
        break;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong: {
        // A 32-bit number, byte by byte from the highest down.
        const auto number = static_cast<std::uint32_t>(data.toULongLong());
        QString digits = QStringLiteral("&h");
        for (int shift = 24; shift >= 0; shift -= 8)
            digits +=
                QStringLiteral("%1").arg((number >> shift) & 0xFFu, 2, 16, QChar('0')).toUpper();
        KeyVal = digits;
        break;
    }
    default:
        KeyVal = data.toString();
        break;
    }
    return true;
#else
    (void)KeyRoot;
    (void)KeyName;
    (void)SubKeyRef;
    (void)KeyVal;
    return false;
#endif
}
