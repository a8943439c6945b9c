// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <optional>

#include "editor/music_editor.h"
#include "editor/speech_editor.h"
#include "model/project.h"
#include "platform/file_system.h"
#include "platform/mp3_tags.h"

namespace tessaly {

/// A file that can be listened to.
struct Sound {
    QString what;  ///< in words: "Harbour", "Old Harbour in German", "the chime"
    QString path;
    bool isChime = false;

    bool operator==(const Sound&) const = default;
};

/// What a page shows of the file behind its selection.
struct FileDisplay {
    QString path;                             ///< empty when the selected item has no file
    QString size = QStringLiteral("0.0 MB");  ///< stays so when the file cannot be measured
    TagBlock tags;        ///< music only; each text from the first block, else the second
    QList<Sound> sounds;  ///< the file, when it is there to be heard
    const TrackRecord* record = nullptr;  ///< of the project, until it is changed
    std::optional<FileStamp> stamp = {};  ///< of the file, if it is there
};

/// The file of the selected title in the selected language.
FileDisplay speechDisplay(const Project& project, const SpeechSelection& selected,
                          const FileSystem& files);

/// The file of the selected track of the selected list.
FileDisplay musicDisplay(const Project& project, const MusicSelection& selected,
                         const FileSystem& files, const Mp3Tags& tags);

/// The chime's own file, be it there or not, if the player is to play one from the card.
QList<Sound> chimeSound(const Project& project);

/// A title as the player announces it: its files in the order of the languages, the chime before
/// each of them or before the first. Files that are missing are among them; if all are, there is
/// nothing. A chime that does not come from the card is left out.
QList<Sound> announcement(const Project& project, int title, const FileSystem& files);

}  // namespace tessaly
