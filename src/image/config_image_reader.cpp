// SPDX-License-Identifier: GPL-3.0-or-later
#include "image/config_image_reader.h"

#include <QtEndian>
#include <algorithm>

#include "image/config_image.h"
#include "image/image_layout.h"
#include "model/format_limits.h"
#include "model/project.h"
#include "model/text_codec.h"
#include "platform/error.h"

namespace tessaly {

using namespace Qt::StringLiterals;

using namespace image_layout;

namespace {

[[noreturn]] void fail(qsizetype offset, const QString& problem) {
    throw TessalyError(error_number::BadImage,
                       u"Offset %1 of the image: %2"_s.arg(offset).arg(problem));
}

// Reads fields, first at given offsets, then section by section to the end.
class ImageReader {
 public:
    explicit ImageReader(QByteArrayView bytes) : bytes_(bytes) {
        if (bytes.size() < FirstSection)
            fail(bytes.size(), u"the image ends within its header"_s);
    }

    quint8 byteAt(int offset) const { return quint8(bytes_[offset]); }
    quint16 wordAt(int offset) const {
        Q_ASSERT(offset >= 0 && offset + 2 <= bytes_.size());
        return qFromBigEndian<quint16>(bytes_.data() + offset);
    }
    QString textAt(int offset, int width) const {
        QString text = fromCodePage(bytes_.sliced(offset, width));
        while (text.endsWith(u' '))
            text.chop(1);
        return text;
    }
    QString titleAt(int offset) const {
        return byteAt(offset) == 0xFF && textAt(offset + 1, TitleWidth - 1).isEmpty()
                   ? QString()
                   : textAt(offset, TitleWidth);
    }
    void expectZeros(int from, int to) const {
        for (int offset = from; offset < to; ++offset)
            if (bytes_[offset] != 0)
                fail(offset, u"this byte should be 0"_s);
    }

    quint16 startSection(int pointerOffset) const {
        const quint16 pointer = wordAt(pointerOffset);
        if (pointer != position_)
            fail(pointerOffset, u"the pointer is %1 instead of %2"_s.arg(pointer).arg(position_));
        return pointer;
    }
    quint16 takeWord() { return wordAt(int(advance(2))); }
    QString takeText(int width) { return textAt(int(advance(width)), width); }
    void expectInvalidEntry(int width) {
        const qsizetype offset = position_;
        if (takeText(width) != (width == LanguageWidth ? u"Invalid" : u"Invalid Data"))
            fail(offset, u"the table does not begin with its invalid entry"_s);
    }
    void expectNoItem() {
        const qsizetype offset = position_;
        if (takeWord() != NoItem)
            fail(offset, u"this word should be 65535"_s);
    }
    void expectEnd() const {
        if (position_ != bytes_.size())
            fail(position_, u"the image goes on after its last section"_s);
    }

 private:
    qsizetype advance(qsizetype count) {
        if (bytes_.size() - position_ < count)
            fail(bytes_.size(), u"the image ends too early"_s);
        return std::exchange(position_, position_ + count);
    }

    QByteArrayView bytes_;
    qsizetype position_ = FirstSection;
};

QStringList takeTable(ImageReader& reader, int count, int width) {
    reader.expectInvalidEntry(width);
    QStringList names;
    for (int i = 0; i < count; ++i)
        names.append(reader.takeText(width));
    return names;
}

QList<DecodedTrack> takeTracks(ImageReader& reader) {
    QList<DecodedTrack> tracks;
    const int count = reader.takeWord();
    for (int i = 0; i < LeadingTrackEntries; ++i) {
        reader.expectInvalidEntry(TitleWidth);
        reader.expectNoItem();
    }
    for (int i = 0; i < count; ++i) {
        const QString name = reader.takeText(TitleWidth);
        tracks.append({name, decodeWord(reader.takeWord())});
    }
    return tracks;
}

}  // namespace

DecodedReference decodeReference(quint16 value) {
    using Kind = DecodedReference::Kind;
    DecodedReference reference{.value = value};
    const int list = value / ListReferenceStep, entry = value % ListReferenceStep;
    if (value == NoItem)
        reference.kind = Kind::None;
    else if (value == ContinuousMix)
        reference.kind = Kind::ContinuousMix;
    else if (value > SpeechReference) {
        reference.kind = Kind::SpeechTitle;
        reference.title = value - SpeechReference;
    } else if (list == 0 || value == SpeechReference || entry == 0) {
        reference.kind = Kind::Invalid;
    } else {
        reference.list = list;
        reference.kind = entry == WholeListEntry ? Kind::WholeList : Kind::Track;
        reference.track = entry == WholeListEntry ? 0 : entry - FirstTrackEntry;
    }
    return reference;
}

DecodedWord decodeWord(quint16 value) {
    if (value == NoItem)
        return {};
    return {.value = value,
            .hasFile = true,
            .fileNumber = value & WordNumberMask,
            .endlessLoop = (value & WordEndlessLoop) != 0,
            .isSpeech = (value & WordSpeech) != 0,
            .cancelOnInterrupt = (value & WordCancelOnInterrupt) != 0,
            .loudVolume = (value & WordLoudVolume) != 0};
}

DecodedImage decodeConfigImage(QByteArrayView bytes) {
    ImageReader reader(bytes);
    DecodedImage image;
    image.identifier = reader.wordAt(Identifier);
    image.defaultLanguageMask = reader.wordAt(DefaultLanguageMask);
    image.cardTitle1 = reader.titleAt(CardTitle1);
    image.cardTitle2 = reader.titleAt(CardTitle2);
    image.powerUp = decodeReference(reader.wordAt(PowerUpItem));
    image.chimeOptions = reader.byteAt(ChimeOptions);
    reader.expectZeros(ChimeOptions + 1, LanguageTable);
    reader.expectZeros(DisplayTexts + 2, FirstSection);
    const int languages = reader.byteAt(LanguageCount);
    const int titles = reader.wordAt(TitleCount);
    const int lists = reader.byteAt(ListCount);
    if (languages > limits::Languages)
        fail(LanguageCount, u"there are %1 languages"_s.arg(languages));

    image.sectionPointers << reader.startSection(LanguageTable);
    image.languages = takeTable(reader, languages, LanguageWidth);
    image.sectionPointers << reader.startSection(TitleTable);
    image.titles = takeTable(reader, titles, TitleWidth);
    image.sectionPointers << reader.startSection(ListTable);
    for (const QString& name : takeTable(reader, lists, TitleWidth))
        image.lists.append({name, {}});
    image.sectionPointers << reader.startSection(TrackSections);
    for (DecodedList& list : image.lists)
        list.tracks = takeTracks(reader);
    image.sectionPointers << reader.startSection(SpeechPlaceholders);
    for (int i = 0; i <= titles; ++i)
        reader.expectNoItem();
    for (int language = 0; language < languages; ++language) {
        image.languagePointers << reader.startSection(LanguageColumns + 2 * language);
        reader.expectNoItem();
        QList<DecodedWord> column;
        for (int title = 0; title < titles; ++title)
            column.append(decodeWord(reader.takeWord()));
        image.speech.append(column);
    }
    reader.expectZeros(LanguageColumns + 2 * languages, LanguageCount);
    image.sectionPointers << reader.startSection(DisplayTexts);
    for (int slot = FirstDisplayText; slot <= LastDisplayText; ++slot)
        image.displayTexts.append(reader.takeText(TitleWidth));
    for (int slot = 0; slot < TriggerSlots; ++slot)
        image.triggers.append(decodeReference(reader.takeWord()));
    reader.expectEnd();
    return image;
}

namespace {

using Tracks = QList<const TrackRecord*>;

QByteArray imageText(const QString& name) {
    return fixedWidthText(name, TitleWidth);
}

// A name that looks like `name` in the image and clashes with none of a project file: it ends in a
// character that the code page lacks.
QString lineWithoutFile(const QString& name, qsizetype line) {
    return name.leftJustified(TitleWidth) + QChar::ReplacementCharacter + QString::number(line);
}

// The tracks that lines are looked up for: the first of each name, by list.
QHash<QString, Tracks> tracksByList(const Project& project) {
    const TrackIndex index(project);
    QHash<QString, Tracks> tracks;
    for (const TrackRecord& record : project.TrackTable) {
        const QString list = record.groupName.text();
        if (isMusic(record) && index.music(list, record.itemName.text()) == &record)
            tracks[list].append(&record);
    }
    return tracks;
}

// The lines of a list: those of the image, each with the name of the project's track that it shows.
// Both have the tracks in the same order; a line out of that order counts as one without a file.
QStringList linesOf(const QList<DecodedTrack>& entries, const Tracks& tracks) {
    // By text and word in the image.
    QHash<std::pair<QByteArray, quint16>, QList<qsizetype>> places;
    for (qsizetype i = 0; i < tracks.size(); ++i)
        places[{imageText(tracks[i]->itemName.text()), trackWord(*tracks[i])}].append(i);
    QList<bool> isShown(tracks.size(), false);
    qsizetype next = 0;
    QStringList lines;
    for (const DecodedTrack& entry : entries) {
        const QList<qsizetype> known = places.value({imageText(entry.name), entry.word.value});
        const auto place = std::lower_bound(known.begin(), known.end(), next);
        if (place == known.end()) {
            lines.append(lineWithoutFile(entry.name, lines.size()));
            continue;
        }
        lines.append(tracks[*place]->itemName.text());
        isShown[*place] = true;
        next = *place + 1;
    }
    for (qsizetype i = 0; i < tracks.size(); ++i)
        if (!isShown[i])
            lines.append(tracks[i]->itemName.text());
    return lines;
}

// A trigger may name a line without a file, by its whole name.
void nameLine(Project& project, const TrackRecord& item, const DecodedReference& reference) {
    const QString list = item.groupName.text(), name = item.itemName.text();
    if (reference.kind != DecodedReference::Kind::Track ||
        project.lstMuList.indexOf(list) != reference.list - 1)
        return;
    QStringList& lines = project.lstMuTrack[slotOfMusicList(project, list)];
    if (reference.track < lines.size() && !lines.contains(name) &&
        imageText(lines[reference.track]) == imageText(name))
        lines[reference.track] = name;
}

}  // namespace

void takeLinesFromImage(Project& project, const DecodedImage& image) {
    // What reads a project file passes over a first list without a name.
    if (image.lists.size() > project.lstMuList.size() && image.lists[0].name.isEmpty())
        project.lstMuList.prepend(u""_s);
    const QHash<QString, Tracks> tracks = tracksByList(project);
    const qsizetype lists = std::min(image.lists.size(), project.lstMuList.size());
    for (qsizetype i = 0; i < lists; ++i) {
        const QString& list = project.lstMuList[i];
        project.lstMuTrack[slotOfMusicList(project, list)] =
            linesOf(image.lists[i].tracks, tracks.value(list));
    }
    nameLine(project, project.PowerUpRecord, image.powerUp);
    for (qsizetype i = 0; i < std::min<qsizetype>(image.triggers.size(), TriggerSlots); ++i)
        nameLine(project, project.TriggerTable[size_t(i)], image.triggers[i]);
}

}  // namespace tessaly
