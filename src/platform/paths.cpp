// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/paths.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStringDecoder>
#include <algorithm>
#include <filesystem>

#ifndef Q_OS_WIN
#include <pwd.h>
#endif

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

bool isByteMark(QChar c) {
    return c.unicode() >= 0xDC80 && c.unicode() <= 0xDCFF;
}

}  // namespace

QString withLastSeparator(const QString& folder) {
    if (folder.isEmpty() || folder.endsWith(u'/') || folder.endsWith(QDir::separator()))
        return folder;
    return folder + QDir::separator();
}

QString pathIn(const QString& folder, const QString& name) {
    return withLastSeparator(folder) + name;
}

QString lastNameOf(const QString& path) {
    return path.mid(std::max(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\')) + 1);
}

QString elided(const QString& text) {
    constexpr qsizetype Most = 300;
    if (text.size() <= Most)
        return text;
    qsizetype first = Most / 2 - 1, last = text.size() - Most / 2;
    first -= text[first - 1].isHighSurrogate() ? 1 : 0;
    last += text[last].isLowSurrogate() ? 1 : 0;
    return text.first(first) + QChar(0x2026) + text.sliced(last);
}

QString shownPath(const QString& path) {
    return elided(QDir::toNativeSeparators(path));
}

QString absolutePath(const QString& path) {
#ifdef Q_OS_WIN
    return QFileInfo(path).absoluteFilePath();
#else
    if (path.startsWith(u'/'))
        return path;
    std::error_code failed;  // then the relative path is as good as any
    const std::filesystem::path folder = std::filesystem::current_path(failed);
    return failed ? path : pathIn(fromNativePath(QByteArray::fromStdString(folder.native())), path);
#endif
}

QByteArray toNativePath(const QString& path) {
    if (std::none_of(path.begin(), path.end(), isByteMark))
        return path.toUtf8();
    QByteArray bytes;
    qsizetype start = 0;
    for (qsizetype i = 0; i <= path.size(); ++i) {
        const bool mark =
            i < path.size() && isByteMark(path[i]) && !(i > 0 && path[i - 1].isHighSurrogate());
        if (i < path.size() && !mark)
            continue;
        bytes += QStringView(path).sliced(start, i - start).toUtf8();
        if (mark)
            bytes += char(path[i].unicode() & 0xFF);
        start = i + 1;
    }
    return bytes;
}

QString fromNativePath(const QByteArray& name) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                     QStringDecoder::Flag::ConvertInitialBom);
    const QString text = decoder(name);
    if (!decoder.hasError())
        return text;
    QString marked;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        marked += QChar(char16_t(byte < 0x80 ? byte : 0xDC00 + byte));
    }
    return marked;
}

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
    addFoldersIn(QDir::homePath() + u"/.."_s);
#else
    addFoldersIn(u"/home"_s);
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
    return {u"/bin"_s,       u"/boot"_s,    u"/efi"_s,     u"/etc"_s,      u"/lib"_s,
            u"/lib32"_s,     u"/lib64"_s,   u"/libx32"_s,  u"/nix"_s,      u"/proc"_s,
            u"/sbin"_s,      u"/snap"_s,    u"/sys"_s,     u"/usr"_s,      u"/var/backups"_s,
            u"/var/cache"_s, u"/var/lib"_s, u"/var/log"_s, u"/var/mail"_s, u"/var/spool"_s};
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
    found << qEnvironmentVariable("XDG_RUNTIME_DIR") << u"/dev"_s << u"/dev/shm"_s << u"/home"_s
          << u"/media"_s << u"/mnt"_s << u"/opt"_s << u"/root"_s << u"/run"_s << u"/srv"_s
          << u"/tmp"_s << u"/var"_s << u"/var/tmp"_s << u"/var/www"_s;
#endif
    found.removeAll(QString());
    found.removeDuplicates();
    return found;
}

QString userFolder() {
    return pathIn(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation),
                  u"Tessaly"_s);
}

QString userCacheFolder() {
    return pathIn(QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation),
                  u"Tessaly"_s);
}

}  // namespace tessaly
