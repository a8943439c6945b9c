// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/about_window.h"

#include <QFileInfo>
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>

#include "ui_about_window.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// The operating system's own tool that shows what machine this is: on Windows the one that the
// registry names, elsewhere one of the usual ones if it is installed. Empty when there is none.
QString toolPath() {
#ifdef Q_OS_WIN
    const QSettings info(uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Shared Tools\MSINFO)"_s,
                         QSettings::NativeFormat);
    QString path = info.value(u"PATH"_s).toString();
    if (path.isEmpty()) {
        const QSettings location(
            uR"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Shared Tools Location)"_s,
            QSettings::NativeFormat);
        const QString folder = location.value(u"MSINFO"_s).toString();
        if (!folder.isEmpty())
            path = folder + uR"(\MSINFO32.EXE)"_s;
    }
    return QFileInfo::exists(path) ? path : QString();
#else
    for (const QString& name : {u"hardinfo2"_s, u"hardinfo"_s, u"kinfocenter"_s, u"lshw-gtk"_s}) {
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
    ui_->lblMakersFiles->setText(makersFiles.join(u'\n'));
    ui_->cmdOK->setFocus();
    connect(ui_->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(ui_->cmdSysInfo, &QPushButton::clicked, this, &AboutWindow::cmdSysInfo_Click);
}

AboutWindow::~AboutWindow() = default;

void AboutWindow::cmdSysInfo_Click() {
    const QString tool = toolPath();
    if (tool.isEmpty() || !QProcess::startDetached(tool, {}))
        prompts_.tell({.text = u"System Information Is Unavailable At This Time"_s});
}

}  // namespace tessaly
