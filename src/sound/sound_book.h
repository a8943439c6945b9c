// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QMutex>
#include <QString>
#include <memory>
#include <optional>

#include "platform/file_system.h"
#include "sound/quick_look.h"
#include "sound/whole_look.h"

namespace tessaly {

/// The file in the user's cache folder that the programs share.
QString soundBookFile();

/// What is known of the sound of a file.
struct KnownSound {
    QuickLook quick;
    std::shared_ptr<const WholeLook> whole;  ///< null before somebody had it decoded
};

/// Remembers what files sound like, from one start of the program to the next. A file whose size or
/// time changed is another file. All of it may be used from any thread.
class SoundBook {
 public:
    /// Most files that it knows. Behind them it forgets those that were not asked for longest.
    static constexpr qsizetype MostFiles = 60'000;

    /// Reads what `file` holds; a file that is missing or damaged holds nothing. Without a file it
    /// remembers until its end.
    explicit SoundBook(const QString& file = {});

    /// What is known of the file at `path` with that stamp. Never looks at the disk.
    std::optional<KnownSound> known(const QString& path, const FileStamp& stamp) const;

    /// What is known of the file that stood at `path` when somebody looked last; it may be another
    /// one by now, or gone.
    struct Remembered {
        FileStamp stamp;
        KnownSound sound;
    };
    std::optional<Remembered> remembered(const QString& path) const;

    /// Whether any file was decoded.
    bool hasDecoded() const;

    /// The quick look at it, taken now if need be.
    QuickLook quick(const QString& path, const FileStamp& stamp);

    /// Keeps what was found by decoding it.
    void keep(const QString& path, const FileStamp& stamp, const WholeLook& whole);

    /// Writes everything to its file, if there is news. What cannot be written is looked up again
    /// next time.
    void save();

 private:
    struct Entry {
        FileStamp stamp;
        KnownSound sound;
        mutable qint64 used = 0;  // the number of the use
    };

    // A path as its hash: no two have the same, and finding it touches less memory.
    struct Key {
        quint64 high = 0, low = 0;
        explicit Key(const QString& path);
        Key() = default;
        bool operator==(const Key&) const = default;
        friend size_t qHash(const Key& key, size_t seed) { return size_t(key.low) ^ seed; }
    };

    void put(const QString& path, Entry entry);

    const QString file_;
    mutable QMutex mutex_;
    QHash<Key, Entry> entries_;
    mutable qint64 uses_ = 0;
    bool hasNews_ = false;
    bool hasDecoded_ = false;
};

}  // namespace tessaly
