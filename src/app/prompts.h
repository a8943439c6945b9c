// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include "platform/drives.h"
#include "platform/file_system.h"
#include "platform/mp3_tags.h"
#include "platform/process.h"
#include "sound/sound_book.h"
#include "support/support_folders.h"

namespace tessaly {

/// A message box. Without a title it carries the application's.
struct Message {
    enum class Icon { Information, Question, Exclamation, Critical };

    QString text;  ///< a carriage return in it breaks the line
    Icon icon = Icon::Information;
    QString title = {};
    QString more = {};     ///< informative text below it, in a quieter voice
    QString details = {};  ///< lines behind a button "Details"; empty: no such button
};

/// What a file dialog is for: each kind starts where the last one of it ended.
enum class FileKind {
    Other,  ///< starts where it is told to
    Project,
    Music,
    MusicFolder,
    Playlist,
    Speech,
    SpeechFolder,
    Chime,
};

/// A file dialog for one kind of file.
struct FileRequest {
    QString filter;       ///< "Name (*.ext)", several parted by ";;"
    QString folder;       ///< where it starts, if nothing is remembered of its kind
    QString suffix = {};  ///< added to a new file's name that has none
    QString title = {};   ///< what the file is for
    FileKind kind = FileKind::Other;
};

/// Everything that asks the operator or tells them something in a window of its own: the one seam
/// for it. Tests answer in the operator's place.
class Prompts {
 public:
    virtual ~Prompts() = default;

    virtual void tell(const Message& message) = 0;

    /// Yes or No. `defaultsToNo` puts the key Enter on No.
    virtual bool ask(const Message& question, bool defaultsToNo = false) = 0;

    /// Tells something and offers to do something about it. True when that was chosen; the key
    /// Enter chooses nothing.
    virtual bool offer(const Message& message, const QString& action) = 0;

    /// The chosen file; empty when cancelled.
    virtual QString openFile(const FileRequest& request) = 0;
    /// The chosen files, one or more; empty when cancelled.
    virtual QStringList openFiles(const FileRequest& request) = 0;
    /// The chosen file, overwriting confirmed; empty when cancelled.
    virtual QString saveFile(const FileRequest& request) = 0;
    /// The chosen folder; empty when cancelled.
    virtual QString pickFolder(const QString& caption, const QString& start,
                               FileKind kind = FileKind::Other) = 0;
    /// The root of the chosen drive; empty when cancelled. `current` is the one that was chosen
    /// before, empty if none was.
    virtual QString pickDrive(const Drives& drives, const QString& current) = 0;
    /// One of several lines, by its index; -1 when cancelled.
    virtual int pickLine(const QString& caption, const QStringList& lines) = 0;
    /// The text typed, of at most `limit` characters (0: any number), or `initial` if that is
    /// longer and was left as it is; null when cancelled.
    virtual QString inputText(const QString& prompt, const QString& initial, int limit = 0) = 0;

    /// Shows a file in the program that the system has for it. False when there is none; nothing
    /// was said then. Without a desktop, that is always so.
    virtual bool openDocument(const QString& file);

    /// A key was refused.
    virtual void beep() = 0;
};

inline bool Prompts::openDocument(const QString&) {
    return false;
}

/// The outside world as the window sees it. main() hands down the real one, tests their own.
struct Services {
    FileSystem& files;
    const Drives& drives;
    Prompts& prompts;
    const Mp3Tags& tags;
    SingleInstance& instance;
    SoundBook& sounds;
    QString appFolder;   ///< where the program stands
    QString userFolder;  ///< for recovery copies, the user's own support folders and, where need
                         ///< be, temporary files
};

}  // namespace tessaly
