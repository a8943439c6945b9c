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

using namespace Qt::StringLiterals;

namespace {

using Kind = DecodedReference::Kind;

QString hexWord(quint16 value) {
    return u"0x"_s + QString::fromLatin1(Hex4(value));
}

QStringList flagNames(bool endlessLoop, bool cancelOnInterrupt, bool loudVolume) {
    QStringList names = {endlessLoop ? u"loop"_s : u""_s, cancelOnInterrupt ? u"cancel"_s : u""_s,
                         loudVolume ? u"loud"_s : u""_s};
    names.removeAll(QString());
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
        records.append(QJsonObject{{u"kind"_s, toJson(record.kind)},
                                   {u"itemName"_s, toJson(record.itemName)},
                                   {u"groupName"_s, toJson(record.groupName)},
                                   {u"sourcePath"_s, toJson(record.sourcePath)},
                                   {u"endlessLoop"_s, record.endlessLoop.isTrue()},
                                   {u"cancelOnInterrupt"_s, record.cancelOnInterrupt.isTrue()},
                                   {u"loudVolume"_s, record.loudVolume.isTrue()},
                                   {u"typeTag"_s, typeTagText(record)}});
    return {{u"complete"_s, parsed.isComplete},
            {u"stoppedAt"_s, parsed.stoppedAt},
            {u"records"_s, records}};
}

void printRecords(const ParsedRecords& parsed) {
    const auto shown = [](const Variant& value) {
        return value.isEmpty() ? u"-"_s : u'"' + value.text() + u'"';
    };
    QList<QStringList> rows = {u"#,kind,item,group,source,flags,tag"_s.split(u',')};
    for (const TrackRecord& record : parsed.records) {
        rows.append({QString::number(rows.size()), shown(record.kind), shown(record.itemName),
                     shown(record.groupName), shown(record.sourcePath),
                     flagNames(record.endlessLoop.isTrue(), record.cancelOnInterrupt.isTrue(),
                               record.loudVolume.isTrue())
                         .join(u','),
                     typeTagText(record).remove(QChar(0)).trimmed()});
    }
    printTable(rows, {0});
    print();
    print(u"A project file of %1, %2."_s.arg(counted(parsed.records.size(), u"record"_s),
                                             counted(parsed.stoppedAt, u"byte"_s)));
}

// ---- images ----------------------------------------------------------------------------------

QString describe(const DecodedReference& reference, const DecodedImage& image) {
    const auto numbered = [](int number, const QString& name) {
        return QString::number(number) + u" \""_s + name + u'"';
    };
    const DecodedList list = image.lists.value(reference.list - 1);
    QString listText = u"music list "_s + numbered(reference.list, list.name);
    switch (reference.kind) {
        case Kind::None:
            return u"nothing"_s;
        case Kind::ContinuousMix:
            return u"<Continuous Mix>"_s;
        case Kind::SpeechTitle:
            return u"speech title "_s +
                   numbered(reference.title, image.titles.value(reference.title - 1));
        case Kind::WholeList:
            return listText;
        case Kind::Track:
            return u"track "_s +
                   numbered(reference.track + 1, list.tracks.value(reference.track).name) +
                   u" of "_s + listText;
        case Kind::Invalid:
            break;
    }
    return u"an invalid reference"_s;
}

QJsonObject toJson(const DecodedReference& reference, const DecodedImage& image) {
    static const QHash<Kind, QString> names = {
        {Kind::None, u"none"_s},         {Kind::SpeechTitle, u"speech"_s},
        {Kind::ContinuousMix, u"mix"_s}, {Kind::WholeList, u"list"_s},
        {Kind::Track, u"track"_s},       {Kind::Invalid, u"invalid"_s}};
    QJsonObject object{{u"value"_s, reference.value}, {u"kind"_s, names.value(reference.kind)}};
    if (reference.kind == Kind::SpeechTitle)
        object[u"title"_s] = image.titles.value(reference.title - 1);
    if (reference.kind == Kind::WholeList || reference.kind == Kind::Track)
        object[u"list"_s] = image.lists.value(reference.list - 1).name;
    if (reference.kind == Kind::Track)
        object[u"track"_s] =
            image.lists.value(reference.list - 1).tracks.value(reference.track).name;
    return object;
}

QJsonObject toJson(const DecodedWord& word) {
    if (!word.hasFile)
        return {{u"value"_s, word.value}, {u"fileNumber"_s, QJsonValue::Null}};
    return {{u"value"_s, word.value},
            {u"fileNumber"_s, word.fileNumber},
            {u"endlessLoop"_s, word.endlessLoop},
            {u"speech"_s, word.isSpeech},
            {u"cancelOnInterrupt"_s, word.cancelOnInterrupt},
            {u"loudVolume"_s, word.loudVolume}};
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
            tracks.append(QJsonObject{{u"name"_s, track.name}, {u"word"_s, toJson(track.word)}});
        lists.append(QJsonObject{{u"name"_s, list.name}, {u"tracks"_s, tracks}});
    }
    for (qsizetype i = 0; i < image.speech.size(); ++i) {
        QJsonArray words;
        for (const DecodedWord& word : image.speech[i])
            words.append(toJson(word));
        speech.append(QJsonObject{{u"language"_s, image.languages[i]}, {u"words"_s, words}});
    }
    for (const DecodedReference& trigger : image.triggers)
        triggers.append(toJson(trigger, image));
    using namespace image_layout;
    return {{u"identifier"_s, image.identifier},
            {u"defaultLanguageMask"_s, image.defaultLanguageMask},
            {u"defaultLanguages"_s, defaults},
            {u"cardTitle1"_s, image.cardTitle1},
            {u"cardTitle2"_s, image.cardTitle2},
            {u"powerUp"_s, toJson(image.powerUp, image)},
            {u"chime"_s, QJsonObject{{u"value"_s, image.chimeOptions},
                                     {u"always"_s, (image.chimeOptions & ChimeAlways) != 0},
                                     {u"internal"_s, (image.chimeOptions & ChimeInternal) != 0},
                                     {u"disabled"_s, (image.chimeOptions & ChimeDisabled) != 0}}},
            {u"sectionPointers"_s, pointers},
            {u"languagePointers"_s, languagePointers},
            {u"languageCount"_s, image.languages.size()},
            {u"titleCount"_s, image.titles.size()},
            {u"listCount"_s, image.lists.size()},
            {u"languages"_s, QJsonArray::fromStringList(image.languages)},
            {u"titles"_s, QJsonArray::fromStringList(image.titles)},
            {u"lists"_s, lists},
            {u"speech"_s, speech},
            {u"displayTexts"_s, QJsonArray::fromStringList(image.displayTexts)},
            {u"triggers"_s, triggers}};
}

QString shown(const DecodedWord& word) {
    if (!word.hasFile)
        return u"no file"_s;
    QStringList words = flagNames(word.endlessLoop, word.cancelOnInterrupt, word.loudVolume);
    words.prepend(u"%1.mp3"_s.arg(word.fileNumber, 4, 10, QChar(u'0')));
    return words.join(u' ');
}

void printImage(const DecodedImage& image) {
    QList<QStringList> rows = {
        {u"identifier"_s, hexWord(image.identifier)},
        {u"card title"_s, u'"' + image.cardTitle1 + u"\", \""_s + image.cardTitle2 + u'"'},
        {u"default languages"_s, hexWord(image.defaultLanguageMask)},
        {u"chime options"_s, u"0x"_s + QString::fromLatin1(Hex2(image.chimeOptions))},
        {u"power-up item"_s, describe(image.powerUp, image)}};
    for (qsizetype i = 0; i < image.triggers.size(); ++i)
        rows.append({u"trigger %1"_s.arg(i + 1), describe(image.triggers[i], image)});
    printTable(rows);
    for (const DecodedList& list : image.lists) {
        print();
        print(u"Music list \""_s + list.name + u'"');
        rows.clear();
        for (const DecodedTrack& track : list.tracks)
            rows.append({u"  "_s + track.name, shown(track.word)});
        printTable(rows);
    }
    print();
    rows = {QStringList{u"Speech title"_s} + image.languages};
    for (qsizetype title = 0; title < image.titles.size(); ++title) {
        rows.append(QStringList(image.titles[title]));
        for (const QList<DecodedWord>& column : image.speech)
            rows.last().append(shown(column[title]));
    }
    printTable(rows);
    print();
    print(u"Display texts"_s);
    for (const QString& text : image.displayTexts)
        print(u"  |"_s + text.leftJustified(16) + u'|');
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
        printJson({{u"firmwareVersion"_s, version},
                   {u"records"_s, records},
                   {u"dataBytes"_s, dataBytes},
                   {u"badLines"_s, badLines}});
    else
        print(u"An Intel HEX file: version %1, %2, %3 of data, %4."_s.arg(
            version, counted(records, u"record"_s), counted(dataBytes, u"byte"_s),
            counted(badLines, u"bad line"_s)));
    return badLines == 0 ? Done : Failed;
}

int showImage(const DecodedImage& image, const HexFile* hex, bool json) {
    if (!json) {
        printImage(image);
        return Done;
    }
    QJsonObject object = toJson(image);
    if (hex)
        object[u"hexRecordCount"_s] = int(hex->recordCount);
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
                               u": this is no project file, no image and no HEX file"_s);
    if (options.json)
        printJson(toJson(parsed));
    else
        printRecords(parsed);
    if (!parsed.isComplete)
        printError(u"warning: the file was read up to byte %1 only: %2"_s.arg(parsed.stoppedAt)
                       .arg(parsed.stopReason));
    return Done;
}

}  // namespace tessaly::cli
