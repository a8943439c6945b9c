// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/card_file.h"

#include <QDir>
#include <QSet>
#include <algorithm>

#include "model/format_limits.h"
#include "model/music_lists.h"
#include "model/numbers.h"
#include "model/text_codec.h"
#include "platform/error.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

QList<TrackRecord> listRecords(QStringView kind, const QStringList& texts) {
    QList<TrackRecord> records;
    for (const QString& text : texts) {
        TrackRecord& record = records.emplaceBack();
        record.kind = kind.toString();
        record.sourcePath = text;
    }
    return records;
}

// The settings of a project in the order of its file.
struct Setting {
    QStringView key;
    QString Project::*text;
    bool Project::*option = nullptr;  ///< one of the chime's, written as a Boolean
};
constexpr Setting Settings[] = {
    {u"title1", &Project::txtCardTitle1},
    {u"title2", &Project::txtCardTitle2},
    {u"chimealways", nullptr, &Project::buttChimeAlways},
    {u"chimeonce", nullptr, &Project::buttChimeOnce},
    {u"extchime", nullptr, &Project::buttPlayExtChime},
    {u"intchime", nullptr, &Project::buttPlayIntChime},
    {u"disablechime", nullptr, &Project::buttDisableChime},
    {u"chimefile", &Project::txtChimeFileName},
    {u"cfdrive", &Project::cfDrive},
};

void appendSetup(QList<TrackRecord>& records, const Project& project) {
    for (const auto& [key, text, option] : Settings) {
        TrackRecord& record = records.emplaceBack();
        record.kind = kind::Setting;
        record.groupName = key.toString();
        record.sourcePath = text ? Variant(project.*text) : Variant(Boolean16::of(project.*option));
    }
}

void appendPowerUp(QList<TrackRecord>& records, const Project& project) {
    if (project.PowerUpRecord.kind.is(kind::Empty))
        return;
    TrackRecord record = project.PowerUpRecord;
    if (isSpeech(record))
        setTypeTag(record, "spee");
    else if (isMusic(record))
        setTypeTag(record, "musi");
    record.kind = kind::PowerUp;
    records << record;
}

// The music records of every list in the order of its list box.
void appendMusic(QList<TrackRecord>& records, const Project& project) {
    QHash<QString, QList<const TrackRecord*>> byList;
    for (const TrackRecord& record : project.TrackTable)
        if (isMusic(record))
            byList[record.groupName.text()].append(&record);
    const MusicListIndex lists(project);
    for (const QString& list : project.lstMuList) {
        QHash<QString, qsizetype> lines;
        const QStringList tracks = lists.tracks(list);
        for (qsizetype line = tracks.size() - 1; line >= 0; --line)
            lines.insert(tracks[line], line);
        QList<std::pair<qsizetype, const TrackRecord*>> ordered;
        for (const TrackRecord* record : byList.value(list))
            ordered.append({lines.value(record->itemName.text(), tracks.size()), record});
        std::stable_sort(ordered.begin(), ordered.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
        for (const auto& entry : ordered)
            records << *entry.second;
    }
}

// Carries out one record after the other; a record that cannot be ends it with a reason.
class RecordApplier {
 public:
    explicit RecordApplier(Project& project) : project_(project), lists_(project.lstMuList) {}

    /// Empty when the record was carried out or is one to ignore.
    QString apply(const TrackRecord& record) {
        const QString kind = record.kind.text();
        if (kind == kind::Music)
            return applyMusic(record);
        else if (kind == kind::Speech && !record.itemName.is(u""))
            project_.TrackTable.append(record);
        else if (kind == kind::Title)
            project_.lstSpTitles.append(record.sourcePath.text());
        else if (kind == kind::Language)
            project_.lstLangs.append(record.sourcePath.text());
        else if (kind == kind::DefaultLanguage)
            project_.DefaultLanguageTable.append(record);
        else if (kind == kind::SystemText)
            return applySystemText(record);
        else if (kind == kind::Setting)
            return applySetup(record);
        else if (kind == kind::PowerUp)
            applyPowerUp(record);
        else if (kind == kind::Trigger)
            return applyTrigger(record);
        return {};
    }

 private:
    QString applyMusic(const TrackRecord& record) {
        const QString list = record.groupName.text();
        if (numbered_ > limits::NumberedNames)
            return u"too many tracks of the music list \"%1\" have the same name"_s.arg(
                list.left(30));
        if (list != previousList_) {
            numbered_ += addMusicList(project_, list, lists_).size() - list.size();
            tracks_ = UniqueNames(project_.lstMuTrack[project_.currentMusicList]);
        }
        previousList_ = list;
        const QString track = record.itemName.text();
        numbered_ += addMusicTrack(project_, track, tracks_).size() - track.size();
        project_.TrackTable.append(record);
        return {};
    }

    QString applySystemText(const TrackRecord& record) {
        const auto slot = record.itemName.number();
        if (!slot || *slot < 0 || *slot >= SystemTextSlots)
            return u"there is no system text \"%1\""_s.arg(record.itemName.text());
        project_.SystemTextTable[size_t(*slot)].groupName = record.groupName;
        return {};
    }

    QString applySetup(const TrackRecord& record) {
        for (const auto& [key, text, option] : Settings) {
            if (!record.groupName.is(key))
                continue;
            const auto selected = record.sourcePath.truth();
            if (text)
                project_.*text = record.sourcePath.text();
            else if (selected)
                setChimeOption(project_, option, *selected);
            else
                return u"the setting \"%1\" is neither True nor False"_s.arg(key);
        }
        return {};
    }

    void applyPowerUp(const TrackRecord& record) {
        project_.PowerUpRecord = record;
        const QString tag = typeTagText(record);
        if (tag == u"musi")
            project_.PowerUpRecord.kind = kind::Music;
        else if (tag == u"spee")
            project_.PowerUpRecord.kind = kind::Speech;
    }

    QString applyTrigger(const TrackRecord& record) {
        const auto slot = typeTagNumber(record);
        if (!slot || *slot < 0 || *slot >= TriggerSlots)
            return u"there is no trigger \"%1\""_s.arg(typeTagText(record).trimmed());
        project_.TriggerTable[size_t(*slot)] = record;
        return {};
    }

    Project& project_;
    UniqueNames lists_;
    UniqueNames tracks_;
    QString previousList_;
    qsizetype numbered_ = 0;
};

// A trigger that nothing was assigned to since the project was emptied is of kind "empty".
bool isLastTrigger(const TrackRecord& record) {
    return (record.kind.is(kind::Trigger) || record.kind.is(kind::Empty)) &&
           typeTagNumber(record) == TriggerSlots - 1;
}

}  // namespace

QList<TrackRecord> projectRecords(const Project& project) {
    QList<TrackRecord> records;
    records.reserve(project.TrackTable.size() + 64);
    records << TrackRecord{};
    records << listRecords(kind::Title, project.lstSpTitles)
            << listRecords(kind::Language, project.lstLangs);
    records << project.DefaultLanguageTable;
    for (int slot = 0; slot < SystemTextsUsed; ++slot)
        records << project.SystemTextTable[size_t(slot)];
    appendSetup(records, project);
    appendPowerUp(records, project);
    std::copy_if(project.TrackTable.begin(), project.TrackTable.end(), std::back_inserter(records),
                 isSpeech);
    appendMusic(records, project);
    for (const TrackRecord& trigger : project.TriggerTable)
        records << trigger;
    return records;
}

QByteArray encodeProject(const Project& project) {
    QByteArray bytes;
    bytes.reserve(project.TrackTable.size() * 128 + 4096);
    const QList<TrackRecord> records = projectRecords(project);
    for (const TrackRecord& record : records) {
        encodeRecord(bytes, record);
        if (bytes.size() > limits::ProjectFileBytes || records.size() > limits::ProjectRecords)
            throw TessalyError(
                error_number::FileTooLarge,
                u"The project is larger than a project file can be: %1 records or %2 bytes."_s.arg(
                    grouped(limits::ProjectRecords), grouped(limits::ProjectFileBytes)));
    }
    return bytes;
}

AppliedRecords applyRecords(const QList<TrackRecord>& records, Project& project) {
    AppliedRecords result;
    project.TrackTable.reserve(records.size() + 1);
    RecordApplier applier(project);
    for (const TrackRecord& record : records) {
        result.stopReason = applier.apply(record);
        if (!result.stopReason.isEmpty())
            break;
        ++result.applied;
    }
    return result;
}

ParsedRecords parseProject(QByteArrayView bytes) {
    ParsedRecords parsed = parseRecords(bytes);
    if (parsed.isComplete &&
        std::none_of(parsed.records.begin(), parsed.records.end(), isLastTrigger)) {
        parsed.isComplete = false;
        parsed.stopReason = u"the records that every project ends with are missing"_s;
    }
    return parsed;
}

ReadReport readProject(FileSystem& files, const QString& path, Project& project) {
    reset(project);
    const ParsedRecords parsed = parseProject(readWholeFile(files, path, limits::ProjectFileBytes));
    const AppliedRecords applied = applyRecords(parsed.records, project);
    if (applied.stopReason.isEmpty())
        return {parsed.isComplete, parsed.stoppedAt, applied.applied, parsed.stopReason};
    qint64 stoppedAt = 0;
    for (qsizetype i = 0; i < applied.applied; ++i) {
        QByteArray record;
        encodeRecord(record, parsed.records[i]);
        stoppedAt += record.size();
    }
    return {false, stoppedAt, applied.applied, applied.stopReason};
}

void saveProject(FileSystem& files, const QString& path, Project& project) {
    files.replaceFile(path, encodeProject(project));
    project.unsavedChanges = false;
}

QStringList tracksWithoutFile(const Project& project) {
    const QList<MusicLine> silent = silentTracks(project, TrackIndex(project));
    if (silent.isEmpty())
        return {};
    // A list whose records are several of one name comes back with a line for each of them.
    Project reopened;
    QList<TrackRecord> records;
    appendMusic(records, project);
    applyRecords(records, reopened);
    const MusicListIndex lists(reopened);
    QSet<std::pair<QString, QString>> shown;
    for (const QString& list : reopened.lstMuList)
        for (const QString& track : lists.tracks(list))
            shown.insert({list, track});
    QStringList found;
    for (const MusicLine& line : silent)
        if (!shown.contains({line.list, line.track}))
            found.append(shortName(line));
    return found;
}

QStringList listsWithoutFile(const Project& project) {
    const TrackIndex index(project);
    QStringList lists = project.lstMuList;
    lists.removeIf([&](const QString& list) { return index.hasMusicList(list); });
    return lists;
}

}  // namespace tessaly
