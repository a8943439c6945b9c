#include "platform/system_folders.h"

#ifndef Q_OS_WIN
#include <pwd.h>
#endif

#include <QDir>
#include <QStandardPaths>

#include "platform/paths.h"

namespace tessaly {

namespace {

// The folders of everybody who has an account here, not only of who runs this program: it may run
// as another user, or with another HOME.
QStringList homeFolders() {
    QStringList found = {QDir::homePath()};
    const auto addFoldersIn = [&](const QString& folder) {
        for (const QString& name : QDir(folder).entryList(QDir::Dirs | QDir::Hidden | QDir::System |
                                                          QDir::NoDotAndDotDot))
            found.append(QDir(folder).filePath(name));
    };
#ifdef Q_OS_WIN
    addFoldersIn(QDir::homePath() + "/..");
#else
    addFoldersIn("/home");
    ::setpwent();
    while (const passwd* account = ::getpwent())
        found.append(fromNativePath(account->pw_dir));
    ::endpwent();
#endif
    return found;
}

}  // namespace

QStringList systemFolders() {
#ifdef Q_OS_WIN
    QStringList found;
    for (const char* name :
         {"SystemRoot", "ProgramFiles", "ProgramFiles(x86)", "ProgramW6432", "ProgramData"})
        found.append(qEnvironmentVariable(name));
    found.removeAll(QString());
    return found;
#else
    return {"/bin",       "/boot",    "/efi",     "/etc",      "/lib",
            "/lib32",     "/lib64",   "/libx32",  "/nix",      "/proc",
            "/sbin",      "/snap",    "/sys",     "/usr",      "/var/backups",
            "/var/cache", "/var/lib", "/var/log", "/var/mail", "/var/spool"};
#endif
}

QStringList personalFolders() {
    using Paths = QStandardPaths;
    QStringList found = homeFolders();
    found << QDir::rootPath() << QDir::tempPath();
    for (const auto place :
         {Paths::DesktopLocation, Paths::DocumentsLocation, Paths::DownloadLocation,
          Paths::MusicLocation, Paths::PicturesLocation, Paths::MoviesLocation,
          Paths::GenericConfigLocation, Paths::GenericDataLocation, Paths::GenericCacheLocation})
        found.append(Paths::standardLocations(place));
#ifndef Q_OS_WIN
    found << qEnvironmentVariable("XDG_RUNTIME_DIR") << "/dev"
          << "/dev/shm"
          << "/home"
          << "/media"
          << "/mnt"
          << "/opt"
          << "/root"
          << "/run"
          << "/srv"
          << "/tmp"
          << "/var"
          << "/var/tmp"
          << "/var/www";
#endif
    found.removeAll(QString());
    found.removeDuplicates();
    return found;
}

QString userFolder() {
    return pathIn(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation), "Tessaly");
}

}  // namespace tessaly
