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

namespace {

TrackRecord listRecord(QStringView kind, const QString& text) {
    TrackRecord record;
    record.kind = kind;
    record.sourcePath = text;
    return record;
}

TrackRecord setupRecord(const char* key, Variant value) {
    TrackRecord record;
    record.kind = kind::Setting;
    record.groupName = key;
    record.sourcePath = std::move(value);
    return record;
}

void appendSetup(QList<TrackRecord>& records, const Project& project) {
    const auto flag = [](bool selected) { return Boolean16::of(selected); };
    records << setupRecord("title1", project.txtCardTitle1)
            << setupRecord("title2", project.txtCardTitle2)
            << setupRecord("chimealways", flag(project.buttChimeAlways))
            << setupRecord("chimeonce", flag(project.buttChimeOnce))
            << setupRecord("extchime", flag(project.buttPlayExtChime))
            << setupRecord("intchime", flag(project.buttPlayIntChime))
            << setupRecord("disablechime", flag(project.buttDisableChime))
            << setupRecord("chimefile", project.txtChimeFileName)
            << setupRecord("cfdrive", project.cfDrive);
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
        else if (kind == kind::Speech)
            applySpeech(record);
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
            return QString("too many tracks of the music list \"%1\" have the same name")
                .arg(list.left(30));
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

    void applySpeech(const TrackRecord& record) {
        if (!record.itemName.is(u""))
            project_.TrackTable.append(record);
    }

    QString applySystemText(const TrackRecord& record) {
        const auto slot = record.itemName.number();
        if (!slot || *slot < 0 || *slot >= SystemTextSlots)
            return QString("there is no system text \"%1\"").arg(record.itemName.text());
        project_.SystemTextTable[size_t(*slot)].groupName = record.groupName;
        return {};
    }

    QString applySetup(const TrackRecord& record) {
        struct TextKey {
            QStringView key;
            QString Project::*member;
        };
        struct OptionKey {
            QStringView key;
            bool Project::*member;
        };
        static constexpr TextKey Texts[] = {{u"title1", &Project::txtCardTitle1},
                                            {u"title2", &Project::txtCardTitle2},
                                            {u"chimefile", &Project::txtChimeFileName},
                                            {u"cfdrive", &Project::cfDrive}};
        static constexpr OptionKey Options[] = {{u"chimealways", &Project::buttChimeAlways},
                                                {u"chimeonce", &Project::buttChimeOnce},
                                                {u"extchime", &Project::buttPlayExtChime},
                                                {u"intchime", &Project::buttPlayIntChime},
                                                {u"disablechime", &Project::buttDisableChime}};
        for (const auto& [key, member] : Texts)
            if (record.groupName.is(key))
                project_.*member = record.sourcePath.text();
        for (const auto& [key, member] : Options) {
            if (!record.groupName.is(key))
                continue;
            const auto selected = record.sourcePath.truth();
            if (!selected)
                return QString("the setting \"%1\" is neither True nor False").arg(key);
            setChimeOption(project_, member, *selected);
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
            return QString("there is no trigger \"%1\"").arg(typeTagText(record).trimmed());
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
    for (const QString& title : project.lstSpTitles)
        records << listRecord(kind::Title, title);
    for (const QString& language : project.lstLangs)
        records << listRecord(kind::Language, language);
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
                QString("The project is larger than a project file can be: %1 records or %2 bytes.")
                    .arg(grouped(limits::ProjectRecords), grouped(limits::ProjectFileBytes)));
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
        parsed.stopReason = "the records that every project ends with are missing";
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
    QStringList found;
    const TrackIndex index(project);
    for (const QString& list : project.lstMuList)
        if (!index.hasMusicList(list))
            found.append(list);
    return found;
}

}  // namespace tessaly
