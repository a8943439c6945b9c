// SPDX-License-Identifier: GPL-3.0-or-later
#include "card/card_verifier.h"

#include <QDir>
#include <QSet>
#include <algorithm>

#include "card/card_files.h"
#include "card/file_copier.h"
#include "image/config_image.h"
#include "image/config_image_reader.h"
#include "image/intel_hex.h"
#include "model/card_file.h"
#include "model/format_limits.h"
#include "platform/error.h"
#include "platform/paths.h"
#include "sound/quick_look.h"
#include "sound/sound_words.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

class CardVerifier {
 public:
    CardVerifier(FileSystem& files, const QString& root)
        : files_(files), root_(root), card_(files.identity(root)) {}

    CardVerification run() {
        if (readCardProject())
            compareSettings();
        checkTrackFiles();
        checkFixedFiles();
        noteOtherFiles();
        requireSameCard();
        return result_;
    }

 private:
    bool readCardProject();
    void compareSettings();
    void explainDifference(const DecodedImage& found, const DecodedImage& expected);
    void checkTrackFiles();
    void checkFixedFiles();
    void checkFirmware();
    void noteOtherFiles();
    void readToEnd(const QString& name, const QString& source = {});
    void warnOfSound(const QString& name);
    void requireSameCard() const;
    void problem(const QString& sentence) { result_.problems.append(sentence); }

    FileSystem& files_;
    const QString root_;
    const std::optional<FileIdentity> card_;
    Project project_;
    QSet<QString> expected_;  // lower-case names that belong on this card
    CardVerification result_;
};

bool CardVerifier::readCardProject() {
    try {
        const ReadReport report = readProject(files_, pathIn(root_, card_name::Project), project_);
        if (!report.isComplete)
            problem(u"%1 is damaged at byte %2: %3."_s.arg(card_name::Project)
                        .arg(report.stoppedAt)
                        .arg(report.stopReason));
        return report.isComplete;
    } catch (const TessalyError& error) {
        problem(error.description + u"."_s);
        return false;
    }
}

void CardVerifier::compareSettings() {
    try {
        const QByteArray text =
            readWholeFile(files_, pathIn(root_, card_name::Settings), limits::HexFileBytes);
        const HexFile hex = decodeHexFile(text);
        if (EncodeImageAsHex(hex.image) != text)
            problem(card_name::Settings + u" is not laid out as the player expects it."_s);
        const DecodedImage found = decodeConfigImage(hex.image);
        result_.identifier = found.identifier;
        takeLinesFromImage(project_, found);
        const QByteArray expected = composeConfigImage(project_, found.identifier);
        if (expected != hex.image)
            explainDifference(found, decodeConfigImage(expected));
    } catch (const TessalyError& error) {
        problem(card_name::Settings + u": "_s + error.description);
    }
}

void CardVerifier::explainDifference(const DecodedImage& found, const DecodedImage& expected) {
    const qsizetype before = result_.problems.size();
    const auto differs = [this](const QString& what) {
        problem(u"%1 and %2 differ: %3."_s.arg(card_name::Settings, card_name::Project, what));
    };
    const std::pair<bool, QString> parts[] = {
        {found.languages != expected.languages, u"the languages"_s},
        {found.titles != expected.titles, u"the speech titles"_s},
        {found.displayTexts != expected.displayTexts, u"the system texts"_s},
        {found.cardTitle1 != expected.cardTitle1 || found.cardTitle2 != expected.cardTitle2,
         u"the card title"_s},
        {found.powerUp != expected.powerUp || found.triggers != expected.triggers,
         u"the power-up item or a trigger"_s},
        {found.defaultLanguageMask != expected.defaultLanguageMask, u"the default languages"_s},
        {found.chimeOptions != expected.chimeOptions, u"the chime"_s},
        {found.speech != expected.speech, u"the files of the speech titles"_s},
        {found.lists.size() != expected.lists.size(), u"the number of music lists"_s}};
    for (const auto& [isDifferent, what] : parts)
        if (isDifferent)
            differs(what);
    const qsizetype lists = std::min(found.lists.size(), expected.lists.size());
    for (qsizetype i = 0; i < lists; ++i) {
        const auto same = [](const DecodedTrack& a, const DecodedTrack& b) {
            return a.name == b.name && a.word == b.word;
        };
        const QList<DecodedTrack>&a = found.lists[i].tracks, &b = expected.lists[i].tracks;
        if (found.lists[i].name != expected.lists[i].name ||
            !std::equal(a.begin(), a.end(), b.begin(), b.end(), same))
            differs(u"music list %1 (\"%2\")"_s.arg(i + 1).arg(expected.lists[i].name));
    }
    if (result_.problems.size() == before)
        differs(u"bytes that mean nothing"_s);
}

// Throws 71 once the card was pulled out or exchanged; else each of its files would be reported.
void CardVerifier::requireSameCard() const {
    if (!card_ || files_.identity(root_) != card_)
        throw TessalyError(
            error_number::DriveNotReady,
            QDir::toNativeSeparators(root_) + u": the card is no longer there or was changed."_s);
}

void CardVerifier::readToEnd(const QString& name, const QString& source) {
    requireSameCard();
    expected_.insert(name.toLower());
    const QString path = pathIn(root_, name);
    if (!files_.fileSize(path)) {
        problem(name + u" is missing."_s);
        return;
    }
    try {
        const ReadBack read = readBack(files_, path, [](qint64) {});
        result_.bytes += read.size;
        if (read.size == 0 && !source.isEmpty() && files_.fileSize(source) == 0)
            result_.warnings.append(
                u"%1 is empty, as %2 is: it plays nothing."_s.arg(name, shownPath(source)));
        else if (read.size == 0)
            problem(name + u" is empty."_s);
        else if (name.endsWith(u".mp3"))
            warnOfSound(name);
    } catch (const TessalyError& error) {
        problem(error.description + u"."_s);
    }
}

// Bytes that are all there may still be no sound.
void CardVerifier::warnOfSound(const QString& name) {
    const QString problem = problemInWords(quickLook(pathIn(root_, name)));
    if (!problem.isEmpty())
        result_.warnings.append(u"%1: %2."_s.arg(name, problem));
}

void CardVerifier::checkTrackFiles() {
    QSet<QString> numbers;
    for (const TrackRecord& record : project_.TrackTable) {
        if (!isTrackFile(record))
            continue;
        const QString number = typeTagText(record);
        const QString name = card_name::track(number);
        const int value = typeTagNumber(record).value_or(0);
        if (value < 1 || value > limits::TrackFiles || !card_name::isCardName(name)) {
            problem(u"%1 has no proper file number in %2."_s.arg(record.itemName.text(),
                                                                 card_name::Project));
            continue;
        }
        if (numbers.contains(number)) {
            problem(u"%1 is given to two tracks."_s.arg(name));
            continue;
        }
        numbers.insert(number);
        ++result_.trackFiles;
        readToEnd(name, record.sourcePath.text());
    }
}

void CardVerifier::checkFixedFiles() {
    for (const QString& name : {card_name::Settings, card_name::Firmware, card_name::Calibration,
                                card_name::FixedConfiguration})
        readToEnd(name);
    if (files_.fileSize(pathIn(root_, card_name::Project)))  // else it was said already
        readToEnd(card_name::Project);
    if (usesChimeFile(project_))
        readToEnd(card_name::Chime, project_.txtChimeFileName);
    checkFirmware();
}

void CardVerifier::checkFirmware() {
    const QString firmware = pathIn(root_, card_name::Firmware);
    if (files_.fileSize(firmware).value_or(0) == 0)
        return;  // that was said already
    try {
        const QByteArray text = readWholeFile(files_, firmware, limits::HexFileBytes);
        if (const QString damage = hexDamage(text); !damage.isEmpty())
            problem(u"%1 is damaged: %2."_s.arg(card_name::Firmware, damage));
        else if (!holdsHexData(text))
            result_.notes.append(card_name::Firmware + u" is a stand-in that holds no firmware."_s);
    } catch (const TessalyError& error) {
        problem(error.description + u"."_s);
    }
}

void CardVerifier::noteOtherFiles() {
    for (const FolderEntry& entry : files_.entries(root_))
        if (!expected_.contains(entry.name.toLower()))
            result_.notes.append(entry.name + u" is on the card, but nothing refers to it."_s);
}

}  // namespace

CardVerification verifyCard(FileSystem& files, const QString& root) {
    if (!files.isFolder(root))
        throw TessalyError(error_number::BadTarget,
                           QDir::toNativeSeparators(root) + u": there is no such folder."_s);
    return CardVerifier(files, root).run();
}

}  // namespace tessaly
