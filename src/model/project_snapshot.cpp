// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/project_snapshot.h"

#include <xxhash.h>

#include <QDataStream>
#include <QIODevice>
#include <QSet>
#include <algorithm>

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

const QByteArray Magic = "tessaly snapshot 2\n";
constexpr qsizetype ChecksumBytes = 8;
constexpr auto StreamVersion = QDataStream::Qt_6_0;

enum class Type : quint8 { Empty, Integer, Boolean, Text };

// Every member by name, once: `visit` writes or reads it.
template <typename Visitor, typename ProjectType>
void visitMembers(Visitor visit, ProjectType& project) {
    visit(project.TrackTable);
    visit(project.DefaultLanguageTable);
    visit(project.SystemTextTable);
    visit(project.TriggerTable);
    visit(project.PowerUpRecord);
    visit(project.lstMuList);
    visit(project.MusicListNames);
    visit(project.lstMuTrack);
    visit(project.currentMusicList);
    visit(project.lstSpTitles);
    visit(project.lstLangs);
    visit(project.txtCardTitle1);
    visit(project.txtCardTitle2);
    visit(project.buttChimeAlways);
    visit(project.buttChimeOnce);
    visit(project.buttPlayExtChime);
    visit(project.buttPlayIntChime);
    visit(project.buttDisableChime);
    visit(project.txtChimeFileName);
    visit(project.cfDrive);
}

void put(QDataStream& out, const Variant& value) {
    if (const auto* text = value.asText())
        out << quint8(Type::Text) << *text;
    else if (const auto* integer = value.asInteger())
        out << quint8(Type::Integer) << *integer;
    else if (const auto* boolean = value.asBoolean())
        out << quint8(Type::Boolean) << boolean->raw;
    else
        out << quint8(Type::Empty);
}

Variant takeVariant(QDataStream& in) {
    quint8 type = 0;
    qint16 number = 0;
    QString text;
    in >> type;
    switch (Type(type)) {
        case Type::Text:
            in >> text;
            return text;
        case Type::Integer:
            in >> number;
            return number;
        case Type::Boolean:
            in >> number;
            return Boolean16{number};
        case Type::Empty:
            break;
    }
    return {};
}

template <typename T>
void takeMember(QDataStream& in, T& member) {
    in >> member;
}

// Qt would make room for as many entries as the list claims to have before it reads the first.
template <typename T>
void takeMember(QDataStream& in, QList<T>& list) {
    quint32 count = 0;
    in >> count;
    list.clear();
    for (; count > 0 && in.status() == QDataStream::Ok; --count) {
        takeMember(in, list.emplaceBack());
        if (in.atEnd() && count > 1)
            in.setStatus(QDataStream::ReadPastEnd);
    }
}

// Whether the slots that the program counts on are there.
bool hasItsSlots(const Project& project) {
    return !project.TrackTable.isEmpty() && !project.DefaultLanguageTable.isEmpty() &&
           !project.MusicListNames.isEmpty() && project.MusicListNames.last().isEmpty() &&
           project.lstMuTrack.size() == project.MusicListNames.size() &&
           project.currentMusicList >= 0 &&
           project.currentMusicList < project.MusicListNames.size();
}

// The default languages as the player gets them: their order, names that no language has and names
// listed twice make no difference.
QStringList defaultLanguages(const Project& project) {
    QStringList names;
    const QSet<QString> languages(project.lstLangs.begin(), project.lstLangs.end());
    for (const TrackRecord& record : project.DefaultLanguageTable.mid(1))
        if (languages.contains(record.groupName.text()))
            names.append(record.groupName.text());
    names.removeDuplicates();
    names.sort();
    return names;
}

}  // namespace

QDataStream& operator<<(QDataStream& out, const TrackRecord& record) {
    for (const Variant* value :
         {&record.kind, &record.itemName, &record.groupName, &record.sourcePath})
        put(out, *value);
    out << record.endlessLoop.raw << record.cancelOnInterrupt.raw << record.loudVolume.raw;
    out.writeRawData(record.typeTag.data(), int(record.typeTag.size()));
    return out;
}

QDataStream& operator>>(QDataStream& in, TrackRecord& record) {
    for (Variant* value : {&record.kind, &record.itemName, &record.groupName, &record.sourcePath})
        *value = takeVariant(in);
    in >> record.endlessLoop.raw >> record.cancelOnInterrupt.raw >> record.loudVolume.raw;
    in.readRawData(record.typeTag.data(), int(record.typeTag.size()));
    return in;
}

template <size_t Size>
QDataStream& operator<<(QDataStream& out, const std::array<TrackRecord, Size>& records) {
    for (const TrackRecord& record : records)
        out << record;
    return out;
}

template <size_t Size>
QDataStream& operator>>(QDataStream& in, std::array<TrackRecord, Size>& records) {
    for (TrackRecord& record : records)
        in >> record;
    return in;
}

namespace {

// A fast one, as all copies are looked at when they are offered.
QByteArray checksumOf(QByteArrayView body) {
    XXH64_canonical_t bytes;
    XXH64_canonicalFromHash(&bytes, XXH3_64bits(body.data(), size_t(body.size())));
    return QByteArray(reinterpret_cast<const char*>(bytes.digest), ChecksumBytes);
}

// What stands between magic text and end, when the checksum fits it.
std::optional<QByteArray> bodyOf(const QByteArray& bytes) {
    const qsizetype start = Magic.size() + ChecksumBytes;
    if (!bytes.startsWith(Magic) || bytes.size() < start)
        return std::nullopt;
    const auto body = QByteArray::fromRawData(bytes.constData() + start, bytes.size() - start);
    if (checksumOf(body) != bytes.mid(Magic.size(), ChecksumBytes))
        return std::nullopt;
    return body;
}

SnapshotCounts countsOf(const Project& project) {
    SnapshotCounts counts{.lists = int(project.lstMuList.size()),
                          .titles = int(project.lstSpTitles.size())};
    const MusicListIndex lists(project);
    for (const QString& list : project.lstMuList)
        counts.tracks += int(lists.tracks(list).size());
    return counts;
}

SnapshotCounts takeCounts(QDataStream& in) {
    SnapshotCounts counts;
    in >> counts.lists >> counts.tracks >> counts.titles;
    return counts;
}

}  // namespace

QByteArray encodeSnapshot(const Project& project) {
    QByteArray body;
    QDataStream out(&body, QIODevice::WriteOnly);
    out.setVersion(StreamVersion);
    const SnapshotCounts counts = countsOf(project);
    out << counts.lists << counts.tracks << counts.titles;
    visitMembers([&](const auto& member) { out << member; }, project);
    return Magic + checksumOf(body) + body;
}

std::optional<Project> decodeSnapshot(const QByteArray& bytes) {
    const auto body = bodyOf(bytes);
    if (!body)
        return std::nullopt;
    QDataStream in(*body);
    in.setVersion(StreamVersion);
    takeCounts(in);
    Project project;
    visitMembers([&](auto& member) { takeMember(in, member); }, project);
    if (in.status() != QDataStream::Ok || !in.atEnd() || !hasItsSlots(project))
        return std::nullopt;
    return project;
}

std::optional<SnapshotCounts> countSnapshot(const QByteArray& bytes) {
    const auto body = bodyOf(bytes);
    if (!body)
        return std::nullopt;
    QDataStream in(*body);
    in.setVersion(StreamVersion);
    const SnapshotCounts counts = takeCounts(in);
    return in.status() == QDataStream::Ok ? std::optional(counts) : std::nullopt;
}

namespace {

// Record by record, without a copy of the table; records that were deleted do not count.
bool sameTracks(const Project& a, const Project& b) {
    const auto sameRecord = [](const TrackRecord& x, const TrackRecord& y) {
        return x.kind == y.kind && x.itemName == y.itemName && x.groupName == y.groupName &&
               x.sourcePath == y.sourcePath && x.endlessLoop == y.endlessLoop &&
               x.cancelOnInterrupt == y.cancelOnInterrupt && x.loudVolume == y.loudVolume;
    };
    if (a.TrackTable.isSharedWith(b.TrackTable))
        return true;
    const auto endA = a.TrackTable.end(), endB = b.TrackTable.end();
    const auto next = [](auto from, auto end) { return std::find_if(from, end, isTrackFile); };
    auto x = next(a.TrackTable.begin(), endA), y = next(b.TrackTable.begin(), endB);
    for (; x != endA && y != endB && sameRecord(*x, *y); x = next(x + 1, endA))
        y = next(y + 1, endB);
    return x == endA && y == endB;
}

// The lists with their tracks; slots of lists that were deleted do not count.
bool sameLists(const Project& a, const Project& b) {
    const auto listsOf = [](const Project& project) {
        const qsizetype spare = project.MusicListNames.size() - 1;
        QList<std::pair<QString, QStringList>> lists;
        for (qsizetype slot = 0; slot <= spare; ++slot)
            if (slot == spare || !project.MusicListNames[slot].isEmpty())
                lists.append({project.MusicListNames[slot], project.lstMuTrack[slot]});
        return lists;
    };
    return a.lstMuList == b.lstMuList && listsOf(a) == listsOf(b);
}

// Everything else, with what no page shows taken out.
Project visibleRest(Project project) {
    project.unsavedChanges = false;
    project.suppressTriggerEvents = false;
    project.currentMusicList = 0;
    project.DefaultLanguageCopy.clear();
    project.DefaultLanguageTable.clear();
    project.TrackTable.clear();
    project.MusicListNames.clear();
    project.lstMuTrack.clear();
    for (TrackRecord& trigger : project.TriggerTable)
        if (!isAssigned(trigger))
            trigger = {};
    if (!hasPowerUpItem(project))
        project.PowerUpRecord = {};
    return project;
}

}  // namespace

bool sameContent(const Project& a, const Project& b) {
    return sameTracks(a, b) && sameLists(a, b) && defaultLanguages(a) == defaultLanguages(b) &&
           visibleRest(a) == visibleRest(b);
}

}  // namespace tessaly
