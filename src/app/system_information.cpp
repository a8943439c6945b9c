#include "app/system_information.h"

#include <QFileInfo>
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>
#include <QStringList>

namespace tessaly {

namespace {

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
        const QString path = QStandardPaths::findExecutable(name);
        if (!path.isEmpty())
            return path;
    }
    return {};
#endif
}

}  // namespace

bool showSystemInformation() {
    const QString tool = toolPath();
    return !tool.isEmpty() && QProcess::startDetached(tool, {});
}

}  // namespace tessaly
