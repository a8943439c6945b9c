// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/project.h"

#include <algorithm>

#include "model/text_codec.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

std::optional<int> wholeNumber(const QString& text) {
    bool ok = false;
    const int number = text.trimmed().toInt(&ok);
    return ok ? std::optional(number) : std::nullopt;
}

}  // namespace

QString Variant::text() const {
    if (const auto* text = asText())
        return *text;
    if (const auto* integer = asInteger())
        return QString::number(*integer);
    if (const auto* boolean = asBoolean())
        return boolean->isTrue() ? u"True"_s : u"False"_s;
    return {};
}

std::optional<int> Variant::number() const {
    if (const auto* text = asText())
        return wholeNumber(*text);
    if (const auto* integer = asInteger())
        return *integer;
    if (const auto* boolean = asBoolean())
        return boolean->isTrue() ? -1 : 0;
    return 0;
}

std::optional<bool> Variant::truth() const {
    if (const auto* text = asText()) {
        if (text->compare(u"True", Qt::CaseInsensitive) == 0)
            return true;
        if (text->compare(u"False", Qt::CaseInsensitive) == 0)
            return false;
    }
    const auto value = number();
    return value ? std::optional(*value != 0) : std::nullopt;
}

bool Variant::is(QStringView other) const {
    if (const auto* text = asText())
        return *text == other;
    return this->text() == other;
}

void setTypeTag(TrackRecord& record, QByteArrayView text) {
    record.typeTag.fill(' ');
    std::copy_n(text.begin(), std::min<qsizetype>(text.size(), 4), record.typeTag.begin());
}

QString typeTagText(const TrackRecord& record) {
    return fromCodePage({record.typeTag.data(), qsizetype(record.typeTag.size())});
}

std::optional<int> typeTagNumber(const TrackRecord& record) {
    return wholeNumber(typeTagText(record));
}

namespace {

constexpr std::array<QStringView, SystemTextsUsed> OriginalTexts = {
    u"=Speech=  (Play)",  // 0
    u"Choose Languages",  // 1
    u"(Language Menu)",   // 2
    u"Continuous Mix",    // 3
    u"=Music=   (Play)",  // 4
    u"=Music= (Select)",  // 5
    u"= End of List =",   // 6
    u"(Return to Menu)",  // 7
    u"Play Whole List",   // 8
    u"=Music=   (Play)",  // 9
    u" ==< PLAYING >==",  // 10
    u" (Push to Pause)",  // 11
    u" == <PAUSED> ==",   // 12
    u" (Push to Play)",   // 13
    u"(Push to change)",  // 14
    u" (Hold to Stop) ",  // 15
    u"==< CHIMING >==",   // 16
    u"(Please Wait...)",  // 17
};

void blankTables(Project& project) {
    project.TrackTable = {TrackRecord{}};
    project.DefaultLanguageTable = {TrackRecord{}};
    project.DefaultLanguageCopy = {TrackRecord{}};
    project.MusicListNames = {QString()};
    project.lstMuTrack = {QStringList()};
    project.PowerUpRecord = {};
    project.PowerUpRecord.kind = kind::Empty;
    project.PowerUpRecord.groupName = u""_s;
}

}  // namespace

Project::Project() {
    startUp(*this);
}

void reset(Project& project) {
    blankTables(project);
    for (TrackRecord& trigger : project.TriggerTable)
        trigger.kind = kind::Empty;
    project.cfDrive.clear();
    project.currentMusicList = 0;
    project.lstMuList.clear();
    project.lstSpTitles.clear();
    project.lstLangs.clear();
    project.unsavedChanges = false;
}

void startUp(Project& project) {
    project.unsavedChanges = false;
    blankTables(project);
    for (int slot = 0; slot < TriggerSlots; ++slot) {
        TrackRecord& trigger = project.TriggerTable[slot];
        trigger.kind = kind::Trigger;
        trigger.sourcePath = kind::Empty;
        setTypeTag(trigger, QByteArray::number(slot));
    }
    forgetFreeTriggers(project);
    project.suppressTriggerEvents = false;
    restoreSystemTexts(project);
}

void forgetFreeTriggers(Project& project) {
    for (TrackRecord& trigger : project.TriggerTable) {
        if (isAssigned(trigger))
            continue;
        trigger.itemName = {};
        trigger.groupName = {};
    }
}

void restoreSystemTexts(Project& project) {
    for (int slot = 0; slot < SystemTextsUsed; ++slot) {
        TrackRecord& record = project.SystemTextTable[slot];
        record.kind = kind::SystemText;
        record.groupName = originalSystemText(slot);
        record.itemName = qint16(slot);
    }
}

QString originalSystemText(int slot) {
    Q_ASSERT(slot >= 0 && slot < SystemTextsUsed);
    return OriginalTexts[size_t(slot)].toString();
}

QString systemText(const Project& project, int slot) {
    Q_ASSERT(slot >= 0 && slot < SystemTextSlots);
    return project.SystemTextTable[size_t(slot)].groupName.text();
}

bool isAssigned(const TrackRecord& trigger) {
    return trigger.kind.is(kind::Trigger) &&
           (trigger.sourcePath.is(kind::Music) || trigger.sourcePath.is(kind::Speech));
}

bool hasPowerUpItem(const Project& project) {
    return isTrackFile(project.PowerUpRecord);
}

bool usesChimeFile(const Project& project) {
    return project.buttPlayIntChime && !project.txtChimeFileName.isEmpty();
}

void setChimeOption(Project& project, bool Project::*option, bool selected) {
    using Group = std::initializer_list<bool Project::*>;
    static const Group repeat = {&Project::buttChimeAlways, &Project::buttChimeOnce};
    static const Group sound = {&Project::buttPlayExtChime, &Project::buttPlayIntChime,
                                &Project::buttDisableChime};
    const auto isOneOf = [&](const Group& group) {
        return std::find(group.begin(), group.end(), option) != group.end();
    };
    Q_ASSERT(isOneOf(repeat) || isOneOf(sound));
    if (selected)
        for (auto other : isOneOf(repeat) ? repeat : sound)
            project.*other = false;
    project.*option = selected;
}

int slotOfMusicList(const Project& project, const QString& list) {
    return int(project.MusicListNames.lastIndexOf(list));
}

QStringList tracksOfMusicList(const Project& project, const QString& list) {
    return project.lstMuTrack.value(slotOfMusicList(project, list));
}

MusicListIndex::MusicListIndex(const Project& project) : project_(project) {
    slots_.reserve(project.MusicListNames.size());
    for (int slot = 0; slot < project.MusicListNames.size(); ++slot)
        slots_.insert(project.MusicListNames[slot], slot);  // the last of several stays
}

QStringList MusicListIndex::tracks(const QString& list) const {
    return project_.lstMuTrack.value(slots_.value(list, -1));
}

TrackIndex::TrackIndex(const Project& project) {
    music_.reserve(project.TrackTable.size());
    lists_.reserve(project.lstMuList.size());
    const TrackRecord* last = nullptr;  // the records of a list stand together
    for (qsizetype i = 1; i < project.TrackTable.size(); ++i) {
        const TrackRecord& record = project.TrackTable[i];
        const bool music = isMusic(record);
        if (!music && !isSpeech(record))
            continue;
        const QString group = record.groupName.text();
        if (!last || last->kind != record.kind || last->groupName != record.groupName)
            (music ? lists_ : languages_).insert(group, true);
        last = &record;
        const TrackRecord*& first = (music ? music_ : speech_)[{record.itemName.text(), group}];
        if (!first)
            first = &record;
    }
}

const TrackRecord* TrackIndex::music(const QString& list, const QString& track) const {
    return music_.value({track, list}, nullptr);
}

const TrackRecord* TrackIndex::speech(const QString& title, const QString& language) const {
    return speech_.value({title, language}, nullptr);
}

QStringList textsOutsideCodePage(const Project& project) {
    const MusicListIndex musicLists(project);
    QStringList texts = project.lstMuList + project.lstSpTitles + project.lstLangs;
    for (const QString& list : project.lstMuList)
        texts += musicLists.tracks(list);
    for (int slot = 0; slot < SystemTextsUsed; ++slot)
        texts += systemText(project, slot);
    texts += {project.txtCardTitle1, project.txtCardTitle2, project.cfDrive};
    texts.removeIf(fitsCodePage);
    texts.removeDuplicates();
    return texts;
}

QStringList pathsOutsideCodePage(const Project& project) {
    QStringList paths = {project.txtChimeFileName};
    for (const TrackRecord& record : project.TrackTable)
        if (isTrackFile(record))
            paths += record.sourcePath.text();
    paths.removeIf(fitsCodePage);
    paths.removeDuplicates();
    return paths;
}

}  // namespace tessaly
