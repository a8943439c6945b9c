#include "platform/system_folders.h"

#include <QDir>
#include <QStandardPaths>

namespace tessaly {

QStringList systemFolders() {
#ifdef Q_OS_WIN
    QStringList found;
    for (const char* name :
         {"SystemRoot", "ProgramFiles", "ProgramFiles(x86)", "ProgramW6432", "ProgramData"})
        found.append(qEnvironmentVariable(name));
    found.removeAll(QString());
    return found;
#else
    return {"/bin",  "/boot", "/etc", "/lib", "/lib32",  "/lib64",
            "/proc", "/sbin", "/sys", "/usr", "/var/lib"};
#endif
}

QStringList personalFolders() {
    using Paths = QStandardPaths;
    QStringList found = {QDir::rootPath(), QDir::homePath(), QDir::tempPath()};
    for (const auto place :
         {Paths::DesktopLocation, Paths::DocumentsLocation, Paths::DownloadLocation,
          Paths::MusicLocation, Paths::PicturesLocation, Paths::MoviesLocation})
        found.append(Paths::standardLocations(place));
#ifndef Q_OS_WIN
    found << "/dev"
          << "/home"
          << "/media"
          << "/mnt"
          << "/opt"
          << "/root"
          << "/run"
          << "/srv"
          << "/tmp"
          << "/var"
          << "/var/tmp";
#endif
    found.removeDuplicates();
    return found;
}

}  // namespace tessaly
