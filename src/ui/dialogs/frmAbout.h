#pragma once
// The About box: title, version, description and credit line, and a button that starts the
// operating system's system-information tool.

#include <QDialog>
#include <QString>

#include <cstdint>
#include <functional>

class QLabel;
class QPushButton;

// Registry root handle of the local machine.
inline constexpr std::uint32_t kHKeyLocalMachine = 0x80000002u;

class frmAbout : public QDialog {
    Q_OBJECT

public:
    explicit frmAbout(QWidget* parent = nullptr);

    // Reads one value of the system registry into `KeyVal`; true when it was read. Text values
    // come back as they are, 32-bit numbers as "&h" and their hexadecimal digits. Where the
    // system keeps no registry the answer is always false.
    static bool GetKeyValue(std::uint32_t KeyRoot, const QString& KeyName, const QString& SubKeyRef,
                            QString& KeyVal);

    // Finds the system-information tool through the registry and starts it, or says that it
    // is unavailable.
    void StartSysInfo();

    // Where StartSysInfo reads registry values and how it starts a program; replaceable so the
    // search can be exercised without a registry.
    using KeyReader = std::function<bool(std::uint32_t, const QString&, const QString&, QString&)>;
    using Launcher = std::function<bool(const QString& path)>;
    void setKeyReader(KeyReader reader) { keyReader_ = std::move(reader); }
    void setLauncher(Launcher launcher) { launcher_ = std::move(launcher); }

private slots:
    void cmdOK_Click();
    void cmdSysInfo_Click();

private:
    void Form_Load();

    QLabel* picIcon = nullptr;
    QLabel* lblTitle = nullptr;
    QLabel* lblVersion = nullptr;
    QLabel* lblDescription = nullptr;
    QLabel* lblDisclaimer = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdSysInfo = nullptr;

    KeyReader keyReader_;
    Launcher launcher_;
};
