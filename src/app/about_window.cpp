// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/about_window.h"

#include <QFileInfo>
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>

#include "ui_about_window.h"

namespace tessaly {

namespace {

// The operating system's own tool that shows what machine this is: on Windows the one that the
// registry names, elsewhere one of the usual ones if it is installed. Empty when there is none.
QString toolPath() {
#ifdef Q_OS_WIN
    const QSettings info(R"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Shared Tools\MSINFO)",
                         QSettings::NativeFormat);
    QString path = info.value("PATH").toString();
    if (path.isEmpty()) {
        const QSettings location(R"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Shared Tools Location)",
                                 QSettings::NativeFormat);
        const QString folder = location.value("MSINFO").toString();
        if (!folder.isEmpty())
            path = folder + R"(\MSINFO32.EXE)";
    }
    return QFileInfo::exists(path) ? path : QString();
#else
    for (const char* name : {"hardinfo2", "hardinfo", "kinfocenter", "lshw-gtk"}) {
        QString path = QStandardPaths::findExecutable(name);
        if (!path.isEmpty())
            return path;
    }
    return {};
#endif
}

}  // namespace

AboutWindow::AboutWindow(const QString& firmwareVersion, const QStringList& makersFiles,
                         Prompts& prompts, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::AboutWindow>()), prompts_(prompts) {
    ui_->setupUi(this);
    ui_->lblFirmwareVersion->setText(firmwareVersion);
    ui_->lblMakersFiles->setText(makersFiles.join('\n'));
    ui_->cmdOK->setFocus();
    connect(ui_->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(ui_->cmdSysInfo, &QPushButton::clicked, this, &AboutWindow::cmdSysInfo_Click);
}

AboutWindow::~AboutWindow() = default;

void AboutWindow::cmdSysInfo_Click() {
    const QString tool = toolPath();
    if (tool.isEmpty() || !QProcess::startDetached(tool, {}))
        prompts_.tell({.text = "System Information Is Unavailable At This Time"});
}

}  // namespace tessaly
