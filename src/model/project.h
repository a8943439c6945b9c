#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <array>
#include <utility>

#include "model/track_record.h"

namespace tessaly {

constexpr int SystemTextSlots = 19;
constexpr int SystemTextsUsed = 18;  ///< slots 0 to 17; the last is never saved
constexpr int TriggerSlots = 7;

/// What the trigger page calls the items that are no track, in records as on the screen.
inline constexpr QStringView ContinuousMixName = u"<Continuous Mix>";
inline constexpr QStringView PlayFullListName = u"<Play Full List>";

/// Everything that an operator prepares for one card: a plain value.
///
/// The tables that grow keep a blank record in slot 0 that is never used. A record of `TrackTable`
/// is never removed; deleting sets its `kind` to "empty". The list members hold the project's
/// order. A Project starts as the program does: empty, the system texts in their original words,
/// the chime disabled.
struct Project {
    Project();

    QList<TrackRecord> TrackTable;            ///< every music track and speech file that has a file
    QList<TrackRecord> DefaultLanguageTable;  ///< kind "lstDefaultLangs", language in groupName
    QList<TrackRecord> DefaultLanguageCopy;
    std::array<TrackRecord, SystemTextSlots> SystemTextTable;
    std::array<TrackRecord, TriggerSlots> TriggerTable;
    TrackRecord PowerUpRecord;

    QStringList lstMuList;          ///< music lists in the order of the card
    QStringList MusicListNames;     ///< names by slot; the last slot is spare and empty
    QList<QStringList> lstMuTrack;  ///< tracks of the list in the same slot
    int currentMusicList = 0;       ///< slot of the list on view
    QStringList lstSpTitles;
    QStringList lstLangs;

    QString txtCardTitle1;
    QString txtCardTitle2;
    bool buttChimeAlways = true;  ///< this or buttChimeOnce
    bool buttChimeOnce = false;
    bool buttPlayExtChime = false;  ///< one of these three
    bool buttPlayIntChime = false;
    bool buttDisableChime = true;
    QString txtChimeFileName;
    QString cfDrive;  ///< root of the chosen card drive; empty if never chosen

    bool suppressTriggerEvents = false;
    bool unsavedChanges = false;

    bool operator==(const Project&) const = default;
};

/// Empties the project for New and Open. Card title, chime and system texts stay.
void reset(Project& project);

/// The defaults that every start of the program sets: blank tables, no power-up item, seven free
/// triggers, the original system texts.
void startUp(Project& project);

/// Takes the names that reset() leaves out of the triggers that are free: what they once played is
/// nobody's business in the next project.
void forgetFreeTriggers(Project& project);

/// Puts the player's own words back into all system texts.
void restoreSystemTexts(Project& project);

/// The player's own words for message `slot`, 0 to 17.
QString originalSystemText(int slot);

/// The text of message `slot` as it goes to the player.
QString systemText(const Project& project, int slot);

/// Whether a trigger plays something. The one predicate for it.
bool isAssigned(const TrackRecord& trigger);

/// Whether the project has a power-up item.
bool hasPowerUpItem(const Project& project);

/// Whether a card gets the chime's file.
bool usesChimeFile(const Project& project);

/// Selects one option of the group always/once, or of external/internal/disabled, or only takes
/// its mark away. `option` is a member of `project`.
void setChimeOption(Project& project, bool Project::*option, bool selected);

/// The slot of a list in `MusicListNames`, the last of several; -1 when there is none.
int slotOfMusicList(const Project& project, const QString& list);

/// The tracks of a list in the order of its list box; empty when there is no such list.
QStringList tracksOfMusicList(const Project& project, const QString& list);

/// Finds the tracks of music lists by their names. Built once for an operation on many lists, valid
/// while no list is added, renamed or removed.
class MusicListIndex {
 public:
    explicit MusicListIndex(const Project& project);

    /// As tracksOfMusicList().
    QStringList tracks(const QString& list) const;

 private:
    const Project& project_;
    QHash<QString, int> slots_;
};

/// Finds records of `TrackTable` by what identifies them. Built once for an operation, valid while
/// the table is not changed.
class TrackIndex {
 public:
    explicit TrackIndex(const Project& project);

    /// The first music record of that list and track, in table order; nullptr when there is none.
    const TrackRecord* music(const QString& list, const QString& track) const;

    /// The first speech record of that title and language; nullptr when there is none.
    const TrackRecord* speech(const QString& title, const QString& language) const;

    bool hasMusicList(const QString& list) const { return lists_.contains(list); }
    bool hasLanguage(const QString& language) const { return languages_.contains(language); }

 private:
    using Key = std::pair<QString, QString>;  // item, group
    QHash<Key, const TrackRecord*> music_;
    QHash<Key, const TrackRecord*> speech_;
    QHash<QString, bool> lists_;
    QHash<QString, bool> languages_;
};

/// Names and texts of the project that Windows-1252, the code page of its file, cannot hold,
/// each once.
QStringList textsOutsideCodePage(const Project& project);

/// The paths of those MP3 files, the chime's among them, that it cannot hold, each once: read back
/// from the file, they name no file any more.
QStringList pathsOutsideCodePage(const Project& project);

}  // namespace tessaly
