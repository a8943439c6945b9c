// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

#include "editor/speech_editor.h"
#include "model/project.h"
#include "platform/file_system.h"
#include "sound/sound_book.h"

// Which titles have a file in which languages, and whether the player can play it.

namespace tessaly {

/// What is known of the file of a title in a language.
enum class SpeechFile {
    None,         ///< the pair has none
    NotSeen,      ///< nobody has looked for it yet
    There,        ///< the file is there
    Missing,      ///< no file stands where the project says
    NotPlayable,  ///< the player could not play it
};

/// One title in one language.
struct SpeechCell {
    QString path;  ///< empty without a file
    SpeechFile file = SpeechFile::None;
    QString problem = {};  ///< what is wrong with it, a sentence; else empty

    bool operator==(const SpeechCell&) const = default;
};

/// All titles in all languages. It is made from the project alone; the files are looked for
/// afterwards, some at a time, because thousands of them on a server take a while.
class SpeechOverview {
 public:
    SpeechOverview() = default;

    /// The pairs of `project`, each with the file that the page shows for it. What `before` knew of
    /// a file holds until it is looked for again.
    explicit SpeechOverview(const Project& project, const SpeechOverview& before);

    const QStringList& titles() const { return titles_; }
    const QStringList& languages() const { return languages_; }

    /// Both must be in the overview.
    const SpeechCell& at(const SpeechSelection& pair) const;

    /// What is known of the sound of a file; nothing when it is not known yet.
    using SoundOf =
        std::function<std::optional<KnownSound>(const QString& path, const FileStamp& stamp)>;

    /// Looks for the next `count` files, at most. True when something else came out than before.
    bool lookFurther(const FileSystem& files, const SoundOf& soundOf, int count);
    /// Whether it has looked for all of them.
    bool hasSeenAll() const { return seen_ >= cells_.size(); }
    /// Starts to look for all files once more.
    void lookAgain() { seen_ = 0; }

    /// The next pair without a file after `from`, down the languages one after the other and on
    /// from the start; a row of -1 begins there. {-1, -1} when every pair has a file.
    SpeechSelection nextEmpty(const SpeechSelection& from) const;

    /// "34 of 40 there, 5 without a file, 1 missing"; empty without a pair.
    QString inWords() const;

 private:
    void take(const SpeechOverview& before);

    QStringList titles_, languages_;
    QList<SpeechCell> cells_;  // title by title
    qsizetype seen_ = 0;       // so many cells were looked at
};

}  // namespace tessaly
