// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/remembered.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <algorithm>

#include "app/presence.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 MostBytes = 65536;  // some kilobytes is what it ever has
constexpr int FolderAnswersMs = 300;

#ifdef Q_OS_WIN
constexpr Qt::CaseSensitivity OfFileNames = Qt::CaseInsensitive;
#else
constexpr Qt::CaseSensitivity OfFileNames = Qt::CaseSensitive;
#endif

const QString Place = u"window/place"_s, Maximized = u"window/maximized"_s,
              PageInFront = u"window/page"_s, Recent = u"recent/projects"_s;

QString keyOf(FileKind kind) {
    switch (kind) {
        case FileKind::Other:
            return {};
        case FileKind::Project:
            return u"folders/project"_s;
        case FileKind::Music:
            return u"folders/music"_s;
        case FileKind::MusicFolder:
            return u"folders/musicFolder"_s;
        case FileKind::Playlist:
            return u"folders/playlist"_s;
        case FileKind::Speech:
            return u"folders/speech"_s;
        case FileKind::SpeechFolder:
            return u"folders/speechFolder"_s;
        case FileKind::Chime:
            return u"folders/chime"_s;
        case FileKind::SavedWithFiles:
            return u"folders/savedWithFiles"_s;
        case FileKind::MissingFolder:
            return u"folders/missing"_s;
    }
    Q_UNREACHABLE();
}

// Takes away what is none of the program's making, unread: it may be endless. False when it stays.
bool clearWay(const QString& file) {
    const QFileInfo found(file);
    if (!found.exists() && !found.isSymLink())
        return true;
    if (found.isDir() && !found.isSymLink())
        return QDir().rmdir(file) || QDir().rename(file, file + u".old"_s);
    if (found.isFile() && found.isWritable() && found.isReadable() && found.size() <= MostBytes)
        return true;
    if (found.isFile())  // a file that may not be written cannot be removed everywhere
        QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
    return QFile::remove(file);
}

std::unique_ptr<QSettings> settingsIn(const QString& file) {
    return std::make_unique<QSettings>(file, QSettings::IniFormat);
}

}  // namespace

// ---- the file ----------------------------------------------------------------------------------

Remembered::Remembered(const QString& file) {
    if (!clearWay(file))
        return;
    settings_ = settingsIn(file);
    if (settings_->status() == QSettings::NoError)
        return;
    settings_.reset();
    if (QFile::remove(file))
        settings_ = settingsIn(file);
}

Remembered::~Remembered() = default;

void Remembered::keep(const QString& key, const QVariant& value) {
    if (!settings_)
        return;
    QVariant known = settings_->value(key);
    known.convert(value.metaType());  // as read, it is text
    if (known != value)
        settings_->setValue(key, value);
}

Remembered::Window Remembered::window() const {
    if (!settings_)
        return {};
    return {.place = settings_->value(Place).toRect(),
            .isMaximized = settings_->value(Maximized).toBool(),
            .page = settings_->value(PageInFront).toInt()};
}

void Remembered::keepWindow(const Window& window) {
    keep(Place, window.place);
    keep(Maximized, window.isMaximized);
    keep(PageInFront, window.page);
}

QString Remembered::folder(FileKind kind) const {
    const QString key = keyOf(kind);
    return settings_ && !key.isEmpty() ? settings_->value(key).toString() : QString();
}

void Remembered::keepFolder(FileKind kind, const QString& folder) {
    if (const QString key = keyOf(kind); !key.isEmpty())
        keep(key, folder);
}

QStringList Remembered::recentProjects() const {
    QStringList files = settings_ ? settings_->value(Recent).toStringList() : QStringList();
    files.removeAll(QString());
    files.removeDuplicates();
    return files.mid(0, RecentProjects);
}

void Remembered::addRecentProject(const QString& file) {
    if (QString::fromUtf8(file.toUtf8()) != file)
        return;  // its name is no text: the INI file would name another one
    QStringList files = recentProjects();
    const QString clean = QDir::cleanPath(file);
    files.removeIf([&](const QString& one) { return one.compare(clean, OfFileNames) == 0; });
    files.prepend(clean);
    keep(Recent, files.mid(0, RecentProjects));
}

void Remembered::clearRecentProjects() {
    keep(Recent, QStringList());
}

QRect placeOnScreen(const QRect& place, const QList<QRect>& available) {
    if (available.isEmpty())
        return place;
    const auto seen = [&](const QRect& screen) {
        const QSize part = screen.intersected(place).size();
        return part.isEmpty() ? 0 : qint64(part.width()) * part.height();
    };
    const QRect& screen =
        *std::max_element(available.begin(), available.end(),
                          [&](const QRect& a, const QRect& b) { return seen(a) < seen(b); });
    const QSize size = place.size().boundedTo(screen.size());
    const auto moved = [](int at, int length, int from, int to) {
        return std::clamp(at, from, std::max(from, to - length + 1));
    };
    return {QPoint(moved(place.x(), size.width(), screen.left(), screen.right()),
                   moved(place.y(), size.height(), screen.top(), screen.bottom())),
            size};
}

// ---- the dialogs -------------------------------------------------------------------------------

// A folder that is gone, or on a network that does not answer, is no place to start.
QString RememberingPrompts::startOf(FileKind kind, const QString& otherwise) const {
    const QString last = remembered_.folder(kind);
    Presence presence;
    if (!last.isEmpty())
        presence.ask({last}, FolderAnswersMs);
    return presence.isThere(last) ? last : otherwise;
}

FileRequest RememberingPrompts::begun(FileRequest request) const {
    request.folder = startOf(request.kind, request.folder);
    return request;
}

void RememberingPrompts::endedAt(FileKind kind, const QString& file) {
    if (!file.isEmpty())
        remembered_.keepFolder(kind, QFileInfo(file).path());
}

QString RememberingPrompts::openFile(const FileRequest& request) {
    const QString file = prompts_.openFile(begun(request));
    endedAt(request.kind, file);
    return file;
}

QStringList RememberingPrompts::openFiles(const FileRequest& request) {
    const QStringList files = prompts_.openFiles(begun(request));
    endedAt(request.kind, files.value(0));
    return files;
}

QString RememberingPrompts::saveFile(const FileRequest& request) {
    const QString file = prompts_.saveFile(begun(request));
    endedAt(request.kind, file);
    return file;
}

// Starts in the folder itself that was chosen last.
QString RememberingPrompts::pickFolder(const QString& caption, const QString& start,
                                       FileKind kind) {
    const QString folder = prompts_.pickFolder(caption, startOf(kind, start), kind);
    if (!folder.isEmpty())
        remembered_.keepFolder(kind, folder);
    return folder;
}

}  // namespace tessaly
