// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <functional>
#include <optional>

#include "card/card_checks.h"
#include "card/card_files.h"
#include "model/project.h"
#include "sound/sound_book.h"

// What an operator wants to hear of the sound of a project's files. It warns and never blocks.

namespace tessaly {

/// How far from the median of its list a track may be, and an announcement from that of all.
constexpr double MostMusicDifference = 6, MostSpeechDifference = 4;  // LU

/// One file of a project with what is known of it.
struct ItemSound {
    const TrackRecord* record = nullptr;  ///< of the project that was asked for; none: the chime
    QString path;
    bool isMissing = false;
    std::optional<KnownSound> sound;  ///< nothing: missing, or not looked at yet
    double difference = 0;  ///< its loudness above the median, in LU; 0 where that is not known

    QString item() const;   ///< the name of its track or title, or "Chime"
    QString group() const;  ///< the name of its list or language, or nothing
    bool isTrack() const;
    bool isAnnouncement() const;

    /// Everything that is wrong with it, in words; empty when nothing is known to be.
    QString problem() const;
    /// The same, or that it is missing or cannot be read.
    QString finding() const;
    bool isTooLoudOrQuiet() const;
    /// There is more to learn of it by decoding it.
    bool isDecodingDue() const;
};

/// How loud the files of a project are in the middle: the tracks of each list, and all
/// announcements together.
class LoudnessMedians {
 public:
    LoudnessMedians() = default;

    /// `sources` are the measured files of the project. Takes at least three of a group that were
    /// decoded and are not silent.
    LoudnessMedians(const Project& project, const SourceFiles& sources, const SoundBook& book);

    /// By how much a file of that loudness is louder, in LU; 0 where there is nothing to compare.
    double difference(const TrackRecord& record, double loudness) const;

 private:
    QHash<QString, double> medians_;
};

/// The file at `path` of a record.
ItemSound soundOf(const TrackRecord& record, const QString& path, bool isThere,
                  const std::optional<KnownSound>& sound, const LoudnessMedians& medians);

/// The sounds of all files of a project, in table order, and the chime last when the card gets one.
/// `sources` are its measured files.
QList<ItemSound> soundsOf(const Project& project, const SourceFiles& sources,
                          const SoundBook& book);

/// Those that have a problem other than to be empty, which is checked elsewhere.
QList<ItemSound> soundProblems(const QList<ItemSound>& sounds);

/// The check of the Create Card page and of `check`: yellow with a line for each file that has a
/// problem, "Harbour (Deutsch): no MPEG sound: this looks like HTML"; green when all files were
/// looked at and are good; grey while some were not.
CheckResult checkSound(const QList<ItemSound>& sounds);

/// Takes the quick look at all files of a project that the book does not know yet, on all cores.
void lookAtAll(const SourceFiles& sources, SoundBook& book);

/// "32 files, 4 with something to look at", and how many are not decoded yet.
QString inWords(const QList<ItemSound>& sounds);

/// "Decoding: 12 %, 40.0 s left", of a share that is done after so many milliseconds.
QString decodingInWords(double done, qint64 milliseconds);

/// Decodes all files of a project that the book does not know decoded yet, on all cores, after the
/// quick look at those that it does not know at all. The caller's thread reads none of them.
/// `keepGoing` is called by the caller's thread, thirty times a second, with the share of the bytes
/// that is done, 0 to 1; false ends it, with what is done by then in the book. Returns false when
/// it was ended.
bool decodeAll(const SourceFiles& sources, SoundBook& book,
               const std::function<bool(double done)>& keepGoing);

}  // namespace tessaly
