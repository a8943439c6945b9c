// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <array>
#include <optional>
#include <utility>
#include <variant>

namespace tessaly {

/// The words in a record's `kind`, and in what a trigger plays.
namespace kind {
inline constexpr QStringView Music = u"music";
inline constexpr QStringView Speech = u"speech";
inline constexpr QStringView Empty = u"empty";  ///< deleted, or a trigger that is free
inline constexpr QStringView Trigger = u"dtrig";
inline constexpr QStringView PowerUp = u"powerup";
inline constexpr QStringView SystemText = u"stext";
inline constexpr QStringView Setting = u"setup";
inline constexpr QStringView Title = u"lstSpTitles";
inline constexpr QStringView Language = u"lstLangs";
inline constexpr QStringView DefaultLanguage = u"lstDefaultLangs";
}  // namespace kind

/// A 16-bit Boolean as the project file holds it: 0 is False, anything else True. The program
/// writes True as -1; another number that a file brings is kept.
struct Boolean16 {
    qint16 raw = 0;

    static constexpr Boolean16 of(bool value) { return {qint16(value ? -1 : 0)}; }
    constexpr bool isTrue() const { return raw != 0; }
    bool operator==(const Boolean16&) const = default;
};

/// A field of a record that holds nothing, a text, a 16-bit integer or a Boolean.
class Variant {
 public:
    Variant() = default;
    Variant(QString text) : value_(std::move(text)) {}
    Variant(QStringView text) : value_(text.toString()) {}
#ifndef QT_NO_CAST_FROM_ASCII  // in src text is said to be text
    Variant(const char* text) : value_(QString::fromUtf8(text)) {}
#endif
    Variant(qint16 integer) : value_(integer) {}
    Variant(Boolean16 boolean) : value_(boolean) {}

    bool isEmpty() const {
        return std::holds_alternative<std::monostate>(value_);
    }
    const QString* asText() const {
        return std::get_if<QString>(&value_);
    }
    const qint16* asInteger() const {
        return std::get_if<qint16>(&value_);
    }
    const Boolean16* asBoolean() const {
        return std::get_if<Boolean16>(&value_);
    }

    /// The value as text: empty for nothing, a decimal number for an integer, "True" or "False".
    QString text() const;

    /// The value as a whole number; nothing where a text is none. Empty is 0, True -1.
    std::optional<int> number() const;

    /// The value as a Boolean; nothing where a text is neither "True", "False" nor a number.
    std::optional<bool> truth() const;

    /// Exact comparison as texts: an empty value equals the empty text.
    bool is(QStringView other) const;

    /// Same type and same value. The copies of a text share its characters, which tells at once
    /// that they are the same: states of a project are compared at every click.
    bool operator==(const Variant& other) const {
        const QString *mine = asText(), *its = other.asText();
        return mine && its
                   ? (mine->constData() == its->constData() && mine->size() == its->size()) ||
                         *mine == *its
                   : value_ == other.value_;
    }

 private:
    std::variant<std::monostate, qint16, Boolean16, QString> value_;
};

/// The one record of the project and of its file.
struct TrackRecord {
    Variant kind;        ///< what it is: one of the words above
    Variant itemName;    ///< track name or speech title; slot number of a system text
    Variant groupName;   ///< music list or language; key of a setting; a system text itself
    Variant sourcePath;  ///< the MP3 file on the PC; a setting's value; what a trigger plays
    Boolean16 endlessLoop;
    Boolean16 cancelOnInterrupt;
    Boolean16 loudVolume;
    std::array<char, 4> typeTag{};  ///< four NULs until set; then text padded with blanks

    bool operator==(const TrackRecord&) const = default;
};

inline bool isMusic(const TrackRecord& record) {
    return record.kind.is(kind::Music);
}
inline bool isSpeech(const TrackRecord& record) {
    return record.kind.is(kind::Speech);
}
/// Music or speech: a record that stands for one MP3 file on the card.
inline bool isTrackFile(const TrackRecord& record) {
    return isMusic(record) || isSpeech(record);
}

/// Puts `text` into the tag, cut or padded with blanks to four characters.
void setTypeTag(TrackRecord& record, QByteArrayView text);

/// The tag as text, blanks and NULs included.
QString typeTagText(const TrackRecord& record);

/// The tag as a number, blanks around it ignored; nothing where it is none.
std::optional<int> typeTagNumber(const TrackRecord& record);

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
///
/// `TrackTable`, `lstMuList`, `buttDisableChime` and the like are fixed names, those of the tables
/// and controls that show them: the style of other names does not apply to them.
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
