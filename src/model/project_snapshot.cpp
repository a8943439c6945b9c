#include "model/project_snapshot.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QIODevice>
#include <algorithm>

namespace tessaly {

namespace {

const QByteArray Magic = "tessaly snapshot 1\n";
constexpr qsizetype ChecksumBytes = 20;
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

// The default languages as the player gets them: their order, and names that no language has, make
// no difference.
QStringList defaultLanguages(const Project& project) {
    QStringList names;
    for (const TrackRecord& record : project.DefaultLanguageTable.mid(1))
        if (project.lstLangs.contains(record.groupName.text()))
            names.append(record.groupName.text());
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

QByteArray encodeSnapshot(const Project& project) {
    QByteArray body;
    QDataStream out(&body, QIODevice::WriteOnly);
    out.setVersion(StreamVersion);
    visitMembers([&](const auto& member) { out << member; }, project);
    return Magic + QCryptographicHash::hash(body, QCryptographicHash::Sha1) + body;
}

std::optional<Project> decodeSnapshot(const QByteArray& bytes) {
    if (!bytes.startsWith(Magic) || bytes.size() < Magic.size() + ChecksumBytes)
        return std::nullopt;
    const QByteArray body = bytes.mid(Magic.size() + ChecksumBytes);
    if (QCryptographicHash::hash(body, QCryptographicHash::Sha1) !=
        bytes.mid(Magic.size(), ChecksumBytes))
        return std::nullopt;
    QDataStream in(body);
    in.setVersion(StreamVersion);
    Project project;
    visitMembers([&](auto& member) { in >> member; }, project);
    if (in.status() != QDataStream::Ok || !in.atEnd())
        return std::nullopt;
    return project;
}

bool sameContent(const Project& a, const Project& b) {
    const auto visible = [](Project project) {
        project.unsavedChanges = false;
        project.suppressTriggerEvents = false;
        project.currentMusicList = 0;
        project.DefaultLanguageCopy.clear();
        project.DefaultLanguageTable.clear();
        project.TrackTable.clear();  // compared record by record, without a copy
        return project;
    };
    const auto sameRecord = [](const TrackRecord& x, const TrackRecord& y) {
        return x.kind == y.kind && x.itemName == y.itemName && x.groupName == y.groupName &&
               x.sourcePath == y.sourcePath && x.endlessLoop == y.endlessLoop &&
               x.cancelOnInterrupt == y.cancelOnInterrupt && x.loudVolume == y.loudVolume;
    };
    const auto &one = a.TrackTable, &other = b.TrackTable;
    return (one.isSharedWith(other) ||
            std::equal(one.begin(), one.end(), other.begin(), other.end(), sameRecord)) &&
           defaultLanguages(a) == defaultLanguages(b) && visible(a) == visible(b);
}

}  // namespace tessaly
