// SPDX-License-Identifier: GPL-3.0-or-later
#include <QDir>
#include <QJsonArray>
#include <QJsonObject>

#include "cli/commands.h"
#include "cli/console.h"
#include "image/config_image_reader.h"
#include "image/image_layout.h"
#include "image/intel_hex.h"
#include "model/card_file.h"
#include "model/format_limits.h"
#include "model/numbers.h"
#include "platform/error.h"
#include "platform/local_file_system.h"

namespace tessaly::cli {

namespace {

using Kind = DecodedReference::Kind;

QString hexWord(quint16 value) {
    return "0x" + QString::fromLatin1(Hex4(value));
}

QStringList flagNames(bool endlessLoop, bool cancelOnInterrupt, bool loudVolume) {
    QStringList names;
    for (const auto& [isSet, name] :
         {std::pair(endlessLoop, "loop"), std::pair(cancelOnInterrupt, "cancel"),
          std::pair(loudVolume, "loud")})
        if (isSet)
            names << name;
    return names;
}

// ---- project files ---------------------------------------------------------------------------

QJsonValue toJson(const Variant& value) {
    if (const auto* text = value.asText())
        return *text;
    if (const auto* integer = value.asInteger())
        return int(*integer);
    if (const auto* boolean = value.asBoolean())
        return boolean->isTrue();
    return QJsonValue::Null;
}

QJsonObject toJson(const ParsedRecords& parsed) {
    QJsonArray records;
    for (const TrackRecord& record : parsed.records)
        records.append(QJsonObject{{"kind", toJson(record.kind)},
                                   {"itemName", toJson(record.itemName)},
                                   {"groupName", toJson(record.groupName)},
                                   {"sourcePath", toJson(record.sourcePath)},
                                   {"endlessLoop", record.endlessLoop.isTrue()},
                                   {"cancelOnInterrupt", record.cancelOnInterrupt.isTrue()},
                                   {"loudVolume", record.loudVolume.isTrue()},
                                   {"typeTag", typeTagText(record)}});
    return {{"complete", parsed.isComplete}, {"stoppedAt", parsed.stoppedAt}, {"records", records}};
}

void printRecords(const ParsedRecords& parsed) {
    const auto shown = [](const Variant& value) {
        return value.isEmpty() ? QString("-") : '"' + value.text() + '"';
    };
    QList<QStringList> rows = {{"#", "kind", "item", "group", "source", "flags", "tag"}};
    for (const TrackRecord& record : parsed.records) {
        rows.append({QString::number(rows.size()), shown(record.kind), shown(record.itemName),
                     shown(record.groupName), shown(record.sourcePath),
                     flagNames(record.endlessLoop.isTrue(), record.cancelOnInterrupt.isTrue(),
                               record.loudVolume.isTrue())
                         .join(','),
                     typeTagText(record).remove(QChar(0)).trimmed()});
    }
    printTable(rows, {0});
    print();
    print(QString("A project file of %1, %2.")
              .arg(counted(parsed.records.size(), "record"), counted(parsed.stoppedAt, "byte")));
}

// ---- images ----------------------------------------------------------------------------------

QString describe(const DecodedReference& reference, const DecodedImage& image) {
    const auto numbered = [](int number, const QString& name) {
        return QString::number(number) + " \"" + name + '"';
    };
    const DecodedList list = image.lists.value(reference.list - 1);
    QString listText = "music list " + numbered(reference.list, list.name);
    switch (reference.kind) {
        case Kind::None:
            return "nothing";
        case Kind::ContinuousMix:
            return "<Continuous Mix>";
        case Kind::SpeechTitle:
            return "speech title " +
                   numbered(reference.title, image.titles.value(reference.title - 1));
        case Kind::WholeList:
            return listText;
        case Kind::Track:
            return "track " +
                   numbered(reference.track + 1, list.tracks.value(reference.track).name) + " of " +
                   listText;
        case Kind::Invalid:
            break;
    }
    return "an invalid reference";
}

QJsonObject toJson(const DecodedReference& reference, const DecodedImage& image) {
    static const QHash<Kind, QString> names = {
        {Kind::None, "none"},      {Kind::SpeechTitle, "speech"}, {Kind::ContinuousMix, "mix"},
        {Kind::WholeList, "list"}, {Kind::Track, "track"},        {Kind::Invalid, "invalid"}};
    QJsonObject object{{"value", reference.value}, {"kind", names.value(reference.kind)}};
    if (reference.kind == Kind::SpeechTitle)
        object["title"] = image.titles.value(reference.title - 1);
    if (reference.kind == Kind::WholeList || reference.kind == Kind::Track)
        object["list"] = image.lists.value(reference.list - 1).name;
    if (reference.kind == Kind::Track)
        object["track"] = image.lists.value(reference.list - 1).tracks.value(reference.track).name;
    return object;
}

QJsonObject toJson(const DecodedWord& word) {
    if (!word.hasFile)
        return {{"value", word.value}, {"fileNumber", QJsonValue::Null}};
    return {{"value", word.value},
            {"fileNumber", word.fileNumber},
            {"endlessLoop", word.endlessLoop},
            {"speech", word.isSpeech},
            {"cancelOnInterrupt", word.cancelOnInterrupt},
            {"loudVolume", word.loudVolume}};
}

QJsonObject toJson(const DecodedImage& image) {
    QJsonArray pointers, languagePointers, lists, speech, triggers, defaults;
    for (const quint16 pointer : image.sectionPointers)
        pointers.append(pointer);
    for (const quint16 pointer : image.languagePointers)
        languagePointers.append(pointer);
    for (qsizetype i = 0; i < image.languages.size(); ++i)
        if (image.defaultLanguageMask & (1 << i))
            defaults.append(image.languages[i]);
    for (const DecodedList& list : image.lists) {
        QJsonArray tracks;
        for (const DecodedTrack& track : list.tracks)
            tracks.append(QJsonObject{{"name", track.name}, {"word", toJson(track.word)}});
        lists.append(QJsonObject{{"name", list.name}, {"tracks", tracks}});
    }
    for (qsizetype i = 0; i < image.speech.size(); ++i) {
        QJsonArray words;
        for (const DecodedWord& word : image.speech[i])
            words.append(toJson(word));
        speech.append(QJsonObject{{"language", image.languages[i]}, {"words", words}});
    }
    for (const DecodedReference& trigger : image.triggers)
        triggers.append(toJson(trigger, image));
    using namespace image_layout;
    return {{"identifier", image.identifier},
            {"defaultLanguageMask", image.defaultLanguageMask},
            {"defaultLanguages", defaults},
            {"cardTitle1", image.cardTitle1},
            {"cardTitle2", image.cardTitle2},
            {"powerUp", toJson(image.powerUp, image)},
            {"chime", QJsonObject{{"value", image.chimeOptions},
                                  {"always", (image.chimeOptions & ChimeAlways) != 0},
                                  {"internal", (image.chimeOptions & ChimeInternal) != 0},
                                  {"disabled", (image.chimeOptions & ChimeDisabled) != 0}}},
            {"sectionPointers", pointers},
            {"languagePointers", languagePointers},
            {"languageCount", image.languages.size()},
            {"titleCount", image.titles.size()},
            {"listCount", image.lists.size()},
            {"languages", QJsonArray::fromStringList(image.languages)},
            {"titles", QJsonArray::fromStringList(image.titles)},
            {"lists", lists},
            {"speech", speech},
            {"displayTexts", QJsonArray::fromStringList(image.displayTexts)},
            {"triggers", triggers}};
}

QString shown(const DecodedWord& word) {
    if (!word.hasFile)
        return "no file";
    const QString file = QString("%1.mp3").arg(word.fileNumber, 4, 10, QChar('0'));
    return (QStringList(file) +
            flagNames(word.endlessLoop, word.cancelOnInterrupt, word.loudVolume))
        .join(' ');
}

void printImage(const DecodedImage& image) {
    QList<QStringList> rows = {
        {"identifier", hexWord(image.identifier)},
        {"card title", '"' + image.cardTitle1 + "\", \"" + image.cardTitle2 + '"'},
        {"default languages", hexWord(image.defaultLanguageMask)},
        {"chime options", "0x" + QString::fromLatin1(Hex2(image.chimeOptions))},
        {"power-up item", describe(image.powerUp, image)}};
    for (qsizetype i = 0; i < image.triggers.size(); ++i)
        rows.append({QString("trigger %1").arg(i + 1), describe(image.triggers[i], image)});
    printTable(rows);
    for (const DecodedList& list : image.lists) {
        print();
        print("Music list \"" + list.name + '"');
        rows.clear();
        for (const DecodedTrack& track : list.tracks)
            rows.append({"  " + track.name, shown(track.word)});
        printTable(rows);
    }
    print();
    rows = {QStringList{"Speech title"} + image.languages};
    for (qsizetype title = 0; title < image.titles.size(); ++title) {
        QStringList row = {image.titles[title]};
        for (const QList<DecodedWord>& column : image.speech)
            row.append(shown(column[title]));
        rows.append(row);
    }
    printTable(rows);
    print();
    print("Display texts");
    for (const QString& text : image.displayTexts)
        print("  |" + text.leftJustified(16) + '|');
}

// ---- firmware and other HEX files -------------------------------------------------------------

int showFirmware(const QByteArray& text, bool json) {
    int records = 0, dataBytes = 0, badLines = 0;
    for (qsizetype start = 0, end = 0; start < text.size(); start = end + 1) {
        end = text.indexOf('\n', start);
        if (end < 0)
            end = text.size();
        const QByteArrayView content = QByteArrayView(text).sliced(start, end - start).trimmed();
        if (content.isEmpty())
            continue;
        const auto record = parseHexRecord(content);
        badLines += record ? 0 : 1;
        records += record ? 1 : 0;
        dataBytes += record && record->type == 0 ? int(record->data.size()) : 0;
    }
    const QString version = QString::fromLatin1(text.left(text.indexOf('\n')).trimmed().mid(2, 4));
    if (json)
        printJson({{"firmwareVersion", version},
                   {"records", records},
                   {"dataBytes", dataBytes},
                   {"badLines", badLines}});
    else
        print(QString("An Intel HEX file: version %1, %2, %3 of data, %4.")
                  .arg(version, counted(records, "record"), counted(dataBytes, "byte"),
                       counted(badLines, "bad line")));
    return badLines == 0 ? Done : Failed;
}

int showImage(const DecodedImage& image, const HexFile* hex, bool json) {
    if (!json) {
        printImage(image);
        return Done;
    }
    QJsonObject object = toJson(image);
    if (hex)
        object["hexRecordCount"] = int(hex->recordCount);
    printJson(object);
    return Done;
}

bool looksLikeImage(const QByteArray& bytes) {
    return bytes.size() >= image_layout::FirstSection && bytes[image_layout::LanguageTable] == 0 &&
           quint8(bytes[image_layout::LanguageTable + 1]) == image_layout::FirstSection;
}

}  // namespace

int showCommand(const ShowOptions& options) {
    LocalFileSystem files;
    const QByteArray bytes = readWholeFile(files, options.file, limits::ProjectFileBytes);
    const ParsedRecords parsed = parseProject(bytes);
    // Images first: their random identifier may look like the start of a text.
    if (looksLikeImage(bytes) && !parsed.isComplete)
        return showImage(decodeConfigImage(bytes), nullptr, options.json);
    if (bytes.startsWith('S')) {
        const HexFile hex = decodeHexFile(bytes);
        return showImage(decodeConfigImage(hex.image), &hex, options.json);
    }
    if (bytes.startsWith(':'))
        return showFirmware(bytes, options.json);
    if (!bytes.isEmpty() && !parsed.isComplete && parsed.records.isEmpty())
        throw TessalyError(error_number::BadProject,
                           QDir::toNativeSeparators(options.file) +
                               ": this is no project file, no image and no HEX file");
    if (options.json)
        printJson(toJson(parsed));
    else
        printRecords(parsed);
    if (!parsed.isComplete)
        printError(QString("warning: the file was read up to byte %1 only: %2")
                       .arg(parsed.stoppedAt)
                       .arg(parsed.stopReason));
    return Done;
}

}  // namespace tessaly::cli
