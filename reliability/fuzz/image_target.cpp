#include <QtEndian>

#include "image/config_image_reader.h"
#include "image/image_layout.h"
#include "model/project.h"
#include "model/text_codec.h"
#include "platform/error.h"
#include "targets.h"

namespace tessaly::fuzz {

using namespace image_layout;

namespace {

quint16 wordIn(const QByteArray& bytes, qsizetype offset) {
    return qFromBigEndian<quint16>(bytes.constData() + offset);
}

void setWord(QByteArray& bytes, qsizetype offset, qsizetype value) {
    qToBigEndian(quint16(value), bytes.data() + offset);
}

// Puts right whatever the format prescribes, by the counts in the header: without it, no change of
// a count would ever lead to an image that is read to its end.
QByteArray repaired(QByteArrayView input) {
    QByteArray bytes = input.toByteArray().leftJustified(FirstSection, '\0', true);
    QByteArray rest =
        input.size() > FirstSection ? input.sliced(FirstSection).toByteArray() : QByteArray();
    const auto take = [&](qsizetype count) {
        bytes += rest.left(count).leftJustified(count, ' ');
        rest.remove(0, count);
    };
    const auto put = [&](const QByteArray& text) {
        rest.remove(0, text.size());
        bytes += text;
    };
    const auto start = [&](int pointer) { setWord(bytes, pointer, bytes.size()); };
    const QByteArray none("\xFF\xFF"), invalid = QByteArray("Invalid Data").leftJustified(16);
    for (int i = ChimeOptions + 1; i < FirstSection; ++i)
        if (i < LanguageCount || i > DisplayTexts)
            bytes[i] = '\0';
    const int languages = quint8(bytes[LanguageCount]) % 17;
    bytes[LanguageCount] = char(languages);
    const int titles = wordIn(bytes, TitleCount) % 16;
    setWord(bytes, TitleCount, titles);
    const int lists = quint8(bytes[ListCount]) % 8;
    bytes[ListCount] = char(lists);

    start(LanguageTable);
    put("Invalid ");
    take(LanguageWidth * languages);
    start(TitleTable);
    put(invalid);
    take(TitleWidth * titles);
    start(ListTable);
    put(invalid);
    take(TitleWidth * lists);
    start(TrackSections);
    for (int list = 0; list < lists; ++list) {
        const int tracks = rest.size() < 2 ? 0 : wordIn(rest, 0) % 16;
        QByteArray count(2, '\0');
        setWord(count, 0, tracks);
        put(count);
        put(invalid + none + invalid + none);
        take(TrackEntryBytes * tracks);
    }
    start(SpeechPlaceholders);
    put(none.repeated(titles + 1));
    for (int language = 0; language < languages; ++language) {
        start(LanguageColumns + 2 * language);
        put(none);
        take(2 * titles);
    }
    start(DisplayTexts);
    take(TitleWidth * (LastDisplayText - FirstDisplayText + 1));
    take(2 * TriggerSlots);
    return bytes;
}

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

// Compares every byte of `bytes`, one after the other, with what was decoded.
class Comparison {
 public:
    explicit Comparison(const QByteArray& bytes) : bytes_(bytes) {}

    void at(qsizetype offset, const QByteArray& expected) {
        require(QByteArrayView(bytes_).sliced(offset, expected.size()) == expected,
                "decoded is what was encoded");
        compared_ += expected.size();
    }
    void next(const QByteArray& expected) {
        at(position_, expected);
        position_ += expected.size();
    }
    void next(quint16 word) { next(wordBytes(word)); }
    void next(const QString& text, int width) { next(fixedWidthText(text, width)); }
    void at(qsizetype offset, quint16 word) { at(offset, wordBytes(word)); }
    void title(qsizetype offset, const QString& text) {
        // An empty line has a mark of its own; one of blanks alone reads the same.
        if (text.isEmpty() && quint8(bytes_[offset]) == 0xFF)
            at(offset, '\xFF' + QByteArray(TitleWidth - 1, ' '));
        else
            at(offset, fixedWidthText(text, TitleWidth));
    }
    qsizetype position() const { return position_; }
    qsizetype compared() const { return compared_; }

 private:
    static QByteArray wordBytes(quint16 word) {
        QByteArray two(2, '\0');
        setWord(two, 0, word);
        return two;
    }

    const QByteArray& bytes_;
    qsizetype position_ = FirstSection;
    qsizetype compared_ = 0;
};

void requireSame(const QByteArray& bytes, const DecodedImage& image) {
    Comparison compare(bytes);
    const auto startSection = [&](int offset, quint16 pointer) {
        require(pointer == compare.position(), "a pointer leads to its section");
        compare.at(offset, pointer);
    };
    compare.at(Identifier, image.identifier);
    compare.at(DefaultLanguageMask, image.defaultLanguageMask);
    compare.title(CardTitle1, image.cardTitle1);
    compare.title(CardTitle2, image.cardTitle2);
    compare.at(PowerUpItem, valueOf(image.powerUp));
    compare.at(ChimeOptions, QByteArray(1, char(image.chimeOptions)) + QByteArray(25, '\0'));
    compare.at(LanguageCount, QByteArray(1, char(image.languages.size())));
    compare.at(TitleCount, quint16(image.titles.size()));
    compare.at(ListCount, QByteArray(1, char(image.lists.size())));
    compare.at(DisplayTexts + 2, QByteArray(FirstSection - DisplayTexts - 2, '\0'));

    const auto table = [&](int section, int pointer, const QStringList& names, int width) {
        startSection(pointer, image.sectionPointers[section]);
        compare.next(width == LanguageWidth ? "Invalid" : "Invalid Data", width);
        for (const QString& name : names)
            compare.next(name, width);
    };
    QStringList lists;
    for (const DecodedList& list : image.lists)
        lists.append(list.name);
    table(0, LanguageTable, image.languages, LanguageWidth);
    table(1, TitleTable, image.titles, TitleWidth);
    table(2, ListTable, lists, TitleWidth);
    startSection(TrackSections, image.sectionPointers[3]);
    for (const DecodedList& list : image.lists) {
        compare.next(quint16(list.tracks.size()));
        for (int i = 0; i < LeadingTrackEntries; ++i) {
            compare.next("Invalid Data", TitleWidth);
            compare.next(NoItem);
        }
        for (const DecodedTrack& track : list.tracks) {
            compare.next(track.name, TitleWidth);
            compare.next(valueOf(track.word));
        }
    }
    startSection(SpeechPlaceholders, image.sectionPointers[4]);
    for (qsizetype i = 0; i <= image.titles.size(); ++i)
        compare.next(NoItem);
    for (qsizetype i = 0; i < image.languages.size(); ++i) {
        startSection(LanguageColumns + 2 * int(i), image.languagePointers[i]);
        compare.next(NoItem);
        require(image.speech[i].size() == image.titles.size(), "a column has all titles");
        for (const DecodedWord& word : image.speech[i])
            compare.next(valueOf(word));
    }
    const auto columns = 2 * image.languages.size();
    compare.at(LanguageColumns + columns,
               QByteArray(LanguageCount - LanguageColumns - columns, '\0'));
    startSection(DisplayTexts, image.sectionPointers[5]);
    require(image.displayTexts.size() == LastDisplayText, "all display texts are there");
    for (const QString& text : image.displayTexts)
        compare.next(text, TitleWidth);
    require(image.triggers.size() == TriggerSlots, "all triggers are there");
    for (const DecodedReference& trigger : image.triggers)
        compare.next(valueOf(trigger));
    require(compare.compared() == bytes.size(), "every byte was looked at");
}

}  // namespace

void fuzzImage(QByteArrayView input) {
    const QByteArray bytes = input.toByteArray();
    bool isGood = true;
    try {
        requireSame(bytes, decodeConfigImage(bytes));
        bool isRefused = false;
        try {
            decodeConfigImage(input.chopped(1 + input.size() % 40));
        } catch (const TessalyError&) {
            isRefused = true;
        }
        require(isRefused, "an image that was cut is refused");
    } catch (const TessalyError& error) {
        isGood = false;
        require(error.number == error_number::BadImage, "a bad image is called one");
        require(error.description.startsWith("Offset "), "a bad image says where");
    }
    if (isGood)
        return;
    const QByteArray good = repaired(input);
    requireSame(good, decodeConfigImage(good));
}

}  // namespace tessaly::fuzz
