// SPDX-License-Identifier: GPL-3.0-or-later
#include <QtEndian>

#include "image/config_image_reader.h"
#include "image/image_layout.h"
#include "image/intel_hex.h"
#include "model/project.h"
#include "model/text_codec.h"
#include "platform/error.h"
#include "targets.h"

namespace tessaly::fuzz {

using namespace image_layout;

namespace {

quint16 valueOf(const DecodedReference& reference) {
    using Kind = DecodedReference::Kind;
    switch (reference.kind) {
        case Kind::None:
            return NoItem;
        case Kind::ContinuousMix:
            return ContinuousMix;
        case Kind::SpeechTitle:
            return quint16(SpeechReference + reference.title);
        case Kind::WholeList:
            return quint16(reference.list * ListReferenceStep + WholeListEntry);
        case Kind::Track:
            return quint16(reference.list * ListReferenceStep + FirstTrackEntry + reference.track);
        case Kind::Invalid:
            break;
    }
    return reference.value;
}

quint16 valueOf(const DecodedWord& word) {
    return word.hasFile ? quint16(word.fileNumber + (word.endlessLoop ? WordEndlessLoop : 0) +
                                  (word.isSpeech ? WordSpeech : 0) +
                                  (word.cancelOnInterrupt ? WordCancelOnInterrupt : 0) +
                                  (word.loudVolume ? WordLoudVolume : 0))
                        : NoItem;
}

// Writes down an image as the format has it, which decoding takes apart again.
class ImageWriter {
 public:
    void set(int offset, quint16 word) { qToBigEndian(word, bytes_.data() + offset); }
    void set(int offset, const QByteArray& text) { bytes_.replace(offset, text.size(), text); }
    void start(int pointer) { set(pointer, quint16(bytes_.size())); }
    void add(quint16 word) {
        bytes_.append(2, '\0');
        set(int(bytes_.size()) - 2, word);
    }
    void add(const QString& text, int width) { bytes_ += fixedWidthText(text, width); }
    void addTable(int pointer, const QStringList& names, int width) {
        start(pointer);
        add(width == LanguageWidth ? "Invalid" : "Invalid Data", width);
        for (const QString& name : names)
            add(name, width);
    }
    const QByteArray& bytes() const { return bytes_; }

 private:
    QByteArray bytes_ = QByteArray(FirstSection, '\0');
};

// The bytes of an image. An empty card title has a mark of its own, but `original` may be of
// blanks there, which read the same.
QByteArray encoded(const DecodedImage& image, const QByteArray& original = {}) {
    ImageWriter to;
    const auto setTitle = [&](int offset, const QString& text) {
        const bool isMarked = text.isEmpty() && !original.mid(offset).startsWith(' ');
        to.set(offset, fixedWidthText(isMarked ? QString(QChar(0xFF)) : text, TitleWidth));
    };
    to.set(Identifier, image.identifier);
    to.set(DefaultLanguageMask, image.defaultLanguageMask);
    setTitle(CardTitle1, image.cardTitle1);
    setTitle(CardTitle2, image.cardTitle2);
    to.set(PowerUpItem, valueOf(image.powerUp));
    to.set(ChimeOptions, QByteArray(1, char(image.chimeOptions)));
    to.set(LanguageCount, QByteArray(1, char(image.languages.size())));
    to.set(TitleCount, quint16(image.titles.size()));
    to.set(ListCount, QByteArray(1, char(image.lists.size())));
    QStringList lists;
    for (const DecodedList& list : image.lists)
        lists.append(list.name);
    to.addTable(LanguageTable, image.languages, LanguageWidth);
    to.addTable(TitleTable, image.titles, TitleWidth);
    to.addTable(ListTable, lists, TitleWidth);
    to.start(TrackSections);
    for (const DecodedList& list : image.lists) {
        to.add(quint16(list.tracks.size()));
        for (int i = 0; i < LeadingTrackEntries; ++i) {
            to.add("Invalid Data", TitleWidth);
            to.add(NoItem);
        }
        for (const DecodedTrack& track : list.tracks) {
            to.add(track.name, TitleWidth);
            to.add(valueOf(track.word));
        }
    }
    to.start(SpeechPlaceholders);
    for (qsizetype i = 0; i <= image.titles.size(); ++i)
        to.add(NoItem);
    for (int i = 0; i < image.languages.size(); ++i) {
        to.start(LanguageColumns + 2 * i);
        to.add(NoItem);
        require(image.speech[i].size() == image.titles.size(), "a column has all titles");
        for (const DecodedWord& word : image.speech[i])
            to.add(valueOf(word));
    }
    to.start(DisplayTexts);
    require(image.displayTexts.size() == LastDisplayText, "all display texts are there");
    for (const QString& text : image.displayTexts)
        to.add(text, TitleWidth);
    require(image.triggers.size() == TriggerSlots, "all triggers are there");
    for (const DecodedReference& trigger : image.triggers)
        to.add(valueOf(trigger));
    return to.bytes();
}

// An image of any bytes: chance would hardly ever find one that is read to its end.
DecodedImage imageOf(QByteArrayView input) {
    const auto take = [&](qsizetype count) {
        const QByteArrayView taken = input.first(std::min(count, input.size()));
        input = input.sliced(taken.size());
        return taken.toByteArray().leftJustified(count, ' ');
    };
    const auto word = [&] { return qFromBigEndian<quint16>(take(2).constData()); };
    const auto text = [&](int width) { return fromCodePage(take(width)); };
    const auto texts = [&](int count, int width) {
        QStringList found;
        while (found.size() < count)
            found.append(text(width));
        return found;
    };
    DecodedImage image;
    image.identifier = word();
    image.defaultLanguageMask = word();
    image.cardTitle1 = text(TitleWidth);
    image.cardTitle2 = text(TitleWidth);
    image.powerUp = decodeReference(word());
    image.chimeOptions = quint8(word());
    image.languages = texts(word() % 17, LanguageWidth);
    image.titles = texts(word() % 16, TitleWidth);
    for (int lists = word() % 8; lists > 0; --lists) {
        DecodedList list{text(TitleWidth), {}};
        for (int tracks = word() % 16; tracks > 0; --tracks)
            list.tracks.append({text(TitleWidth), decodeWord(word())});
        image.lists.append(list);
    }
    for (qsizetype i = 0; i < image.languages.size(); ++i) {
        image.speech.append(QList<DecodedWord>());
        while (image.speech[i].size() < image.titles.size())
            image.speech[i].append(decodeWord(word()));
    }
    image.displayTexts = texts(LastDisplayText, TitleWidth);
    while (image.triggers.size() < TriggerSlots)
        image.triggers.append(decodeReference(word()));
    return image;
}

void requireSame(const QByteArray& bytes) {
    require(encoded(decodeConfigImage(bytes), bytes) == bytes, "an image is read byte for byte");
}

QList<QByteArray> linesOf(const QByteArray& text) {
    QList<QByteArray> lines = text.split('\n');
    if (lines.last().isEmpty())
        lines.removeLast();
    for (QByteArray& line : lines)
        if (line.endsWith('\r'))
            line.chop(1);
    return lines;
}

QByteArray lineOf(const HexRecord& record) {
    QByteArray line = ':' + Hex2(quint32(record.data.size())) + Hex4(record.address) +
                      Hex2(record.type) + record.data.toHex().toUpper();
    quint8 sum = 0;
    for (const char c : QByteArray::fromHex(line.mid(1)))
        sum = quint8(sum + quint8(c));
    return line + Hex2(quint8(-sum));
}

}  // namespace

void fuzzImage(QByteArrayView input) {
    try {
        requireSame(input.toByteArray());
    } catch (const TessalyError& error) {
        require(error.number == error_number::BadImage, "a bad image is called one");
        require(error.description.startsWith("Offset "), "a bad image says where");
    }
    const QByteArray good = encoded(imageOf(input));
    requireSame(good);
    try {
        decodeConfigImage(good.chopped(1 + input.size() % 40));
        throw BrokenPromise("an image that was cut is refused");
    } catch (const TessalyError&) {
    }
}

void fuzzHex(QByteArrayView input) {
    const QByteArray text = input.toByteArray();
    const QList<QByteArray> lines = linesOf(text);
    bool hasData = false;
    for (const QByteArray& line : lines) {
        const auto record = parseHexRecord(line);
        require(!record || lineOf(*record) == line.toUpper(), "a record is its line");
        const auto trimmed = parseHexRecord(line.trimmed());
        hasData = hasData || (trimmed && trimmed->type == 0 && !trimmed->data.isEmpty());
    }
    require(holdsHexData(text) == hasData, "data is seen where there is a record of it");
    try {
        const HexFile file = decodeHexFile(text),
                      again = decodeHexFile(EncodeImageAsHex(file.image));
        require(again.image == file.image && again.identifier == file.identifier &&
                    again.recordCount == file.recordCount,
                "a HEX file that was read is written as it was");
        require(file.image.isEmpty() || hasData, "an image comes from records");
    } catch (const TessalyError& error) {
        require(error.number == error_number::BadHexFile, "a bad HEX file is called one");
        const QStringList words = error.description.split(' ');
        const int line = words.value(1).toInt();
        require(words[0] == "Line" && line >= 1 && line <= lines.size() + 1,
                "a bad HEX file says where: in a line of it, or the next");
    }
    if (text.size() >= 2 && text.size() <= 0x10000)
        require(decodeHexFile(EncodeImageAsHex(text).replace("\r\n", text[0] % 2 ? "\n" : "\r\n"))
                        .image == text,
                "any image goes into a HEX file and comes out of it");
}

}  // namespace tessaly::fuzz
