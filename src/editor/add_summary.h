// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <array>

namespace tessaly {

/// Why a file or folder was left out.
enum class LeftOut {
    NoMp3,       ///< its name does not end in ".mp3"
    Stream,      ///< a playlist names an address of the network
    NotFound,    ///< there is nothing of that path
    Unreadable,  ///< a folder or playlist that cannot be read
    SecondFile,  ///< another file has its title and language
    NoRoom,      ///< it would need a 17th language
    Already,     ///< the pair has this very file, or a link leads to a folder once more
};
constexpr int LeftOutReasons = 7;

/// What became of the files that were dropped or chosen together: one sentence for all of them, and
/// a line for each that the operator may wonder about.
struct AddSummary {
    static constexpr qsizetype MostLines = 1000;

    int added = 0;         ///< tracks, or files of speech, that the project has now
    int lists = 0;         ///< music lists that were made
    int titles = 0;        ///< speech titles that were made
    int languages = 0;     ///< languages that were made
    int replaced = 0;      ///< files of speech that took the place of another
    int cut = 0;           ///< names cut to the 16 characters of the display
    int cutLanguages = 0;  ///< names of languages cut to 8
    int numbered = 0;      ///< names numbered because they were taken
    int missing = 0;       ///< added from a playlist, although the file is not there
    std::array<int, LeftOutReasons> leftOut{};  ///< by LeftOut

    QStringList lines = {};    ///< the first MostLines, each with a whole native path
    qint64 moreLines = 0;      ///< how many there are besides
    int listRow = -1;          ///< music: rows to select, -1 when nothing was added
    int trackRow = -1;         ///< the last track added
    bool isCancelled = false;  ///< nothing was changed then

    int leftOutInAll() const;

    /// One sentence without an end: "14 added in 2 new lists, 2 names cut to 16 characters, 3 left
    /// out: 2 no MP3, 1 cannot be read".
    QString text() const;

    /// The lines below each other, and how many more there are; empty without a line.
    QString details() const;

    void note(const QString& line);

    /// Counts what stands at `path` as left out. `detail` is said in the reason's place in the
    /// line.
    void leaveOut(LeftOut why, const QString& path, const QString& detail = {});

    /// Counts what became of a name that came with the files: cut to `limit` characters (16, or 8
    /// of a language), numbered, or neither. The line says `subject`, then from what to what.
    void noteName(const QString& subject, const QString& whole, const QString& name, int limit);
};

/// A path for a line: native, and whole unless it is longer than any system has it.
QString wholePath(const QString& path);

}  // namespace tessaly
