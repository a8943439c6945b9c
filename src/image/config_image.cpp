// SPDX-License-Identifier: GPL-3.0-or-later
#include "image/config_image.h"

#include <QRandomGenerator>
#include <QtEndian>

#include "image/image_layout.h"
#include "image/image_limits.h"
#include "model/text_codec.h"
#include "platform/error.h"

namespace tessaly {

using namespace Qt::StringLiterals;

using namespace image_layout;

namespace {

// The image as it grows. Fixed fields are put at their offsets, sections follow one another.
class ImageBytes {
 public:
    ImageBytes() : bytes_(FirstSection, '\0') {}

    void put8(int offset, quint8 value) { bytes_[offset] = char(value); }
    void put16(int offset, quint16 value) {
        Q_ASSERT(offset >= 0 && offset + 2 <= FirstSection);
        qToBigEndian(value, bytes_.data() + offset);
    }
    void putText(int offset, const QString& text, int width) {
        Q_ASSERT(offset + width <= FirstSection);
        bytes_.replace(offset, width, fixedWidthText(text, width));
    }

    /// Starts a section: its pointer goes to `pointerOffset`.
    void startSection(int pointerOffset) {
        Q_ASSERT(bytes_.size() <= 0xFFFF);
        put16(pointerOffset, quint16(bytes_.size()));
    }
    void append16(quint16 value) {
        bytes_.append(char(value >> 8));
        bytes_.append(char(value & 0xFF));
    }
    void appendText(const QString& text, int width) { bytes_.append(fixedWidthText(text, width)); }
    void appendInvalidEntry(int width) {
        appendText(width == LanguageWidth ? u"Invalid"_s : u"Invalid Data"_s, width);
    }

    const QByteArray& bytes() const { return bytes_; }

 private:
    QByteArray bytes_;
};

quint16 defaultLanguageMask(const Project& project) {
    quint16 mask = 0;
    for (qsizetype i = 0; i < project.lstLangs.size(); ++i)
        for (qsizetype entry = 1; entry < project.DefaultLanguageTable.size(); ++entry)
            if (project.DefaultLanguageTable[entry].groupName.is(project.lstLangs[i]))
                mask |= quint16(1u << i);
    return mask;
}

void putTitle(ImageBytes& image, int offset, const QString& text) {
    image.putText(offset, text, TitleWidth);
    if (text.isEmpty())
        image.put8(offset, 0xFF);
}

quint16 powerUpReference(const Project& project) {
    if (!hasPowerUpItem(project))
        return NoItem;
    const TrackRecord& item = project.PowerUpRecord;
    return ItemReference(project, item.kind.text(), item.groupName.text(), item.itemName.text());
}

quint8 chimeOptions(const Project& project) {
    return quint8((project.buttChimeAlways ? ChimeAlways : 0) +
                  (project.buttPlayIntChime ? ChimeInternal : 0) +
                  (project.buttDisableChime ? ChimeDisabled : 0));
}

void appendTable(ImageBytes& image, int pointer, const QStringList& names, int width) {
    image.startSection(pointer);
    image.appendInvalidEntry(width);
    for (const QString& name : names)
        image.appendText(name, width);
}

void appendTrackSections(ImageBytes& image, const Project& project, const TrackIndex& index) {
    image.startSection(TrackSections);
    const MusicListIndex lists(project);
    for (const QString& list : project.lstMuList) {
        const QStringList tracks = lists.tracks(list);
        image.append16(quint16(tracks.size()));
        for (int i = 0; i < LeadingTrackEntries; ++i) {
            image.appendInvalidEntry(TitleWidth);
            image.append16(NoItem);
        }
        for (const QString& track : tracks) {
            const TrackRecord* record = index.music(list, track);
            image.appendText(track, TitleWidth);
            image.append16(record ? trackWord(*record) : NoItem);
        }
    }
}

void appendSpeechColumns(ImageBytes& image, const Project& project, const TrackIndex& index) {
    image.startSection(SpeechPlaceholders);
    for (qsizetype i = 0; i <= project.lstSpTitles.size(); ++i)
        image.append16(NoItem);
    for (qsizetype i = 0; i < project.lstLangs.size(); ++i) {
        image.startSection(LanguageColumns + 2 * int(i));
        image.append16(NoItem);
        for (const QString& title : project.lstSpTitles) {
            const TrackRecord* record = index.speech(title, project.lstLangs[i]);
            image.append16(record ? trackWord(*record) : NoItem);
        }
    }
}

void appendDisplayTexts(ImageBytes& image, const Project& project) {
    image.put8(LanguageCount, quint8(project.lstLangs.size()));
    image.put16(TitleCount, quint16(project.lstSpTitles.size()));
    image.put8(ListCount, quint8(project.lstMuList.size()));
    image.startSection(DisplayTexts);
    for (int slot = FirstDisplayText; slot <= LastDisplayText; ++slot)
        image.appendText(systemText(project, slot), TitleWidth);
}

void appendTriggers(ImageBytes& image, const Project& project) {
    for (const TrackRecord& trigger : project.TriggerTable)
        image.append16(isAssigned(trigger)
                           ? ItemReference(project, trigger.sourcePath.text(),
                                           trigger.groupName.text(), trigger.itemName.text())
                           : NoItem);
}

}  // namespace

int numberTrackFiles(Project& project) {
    int number = 0;
    for (TrackRecord& record : project.TrackTable)
        if (isTrackFile(record))
            setTypeTag(record, QByteArray::number(++number).rightJustified(4, '0'));
    return number;
}

quint16 randomIdentifier() {
    return quint16(QRandomGenerator::system()->bounded(1, 65536));
}

quint16 ItemReference(const Project& project, const QString& kind, const QString& listName,
                      const QString& itemName) {
    if (kind == kind::Speech) {
        const qsizetype title = project.lstSpTitles.indexOf(itemName);
        return title < 0 ? NoItem : quint16(SpeechReference + title + 1);
    }
    if (listName == ContinuousMixName)
        return ContinuousMix;
    const qsizetype list = project.lstMuList.indexOf(listName);
    if (list < 0)
        return NoItem;
    const auto base = quint16((list + 1) * ListReferenceStep);
    if (itemName == PlayFullListName)
        return quint16(base + WholeListEntry);
    const qsizetype track = tracksOfMusicList(project, listName).indexOf(itemName);
    return track < 0 ? NoItem : quint16(base + FirstTrackEntry + track);
}

quint16 trackWord(const TrackRecord& record) {
    Q_ASSERT(isTrackFile(record));
    return quint16(typeTagNumber(record).value_or(0) + (isSpeech(record) ? WordSpeech : 0) +
                   (record.endlessLoop.isTrue() ? WordEndlessLoop : 0) +
                   (record.cancelOnInterrupt.isTrue() ? WordCancelOnInterrupt : 0) +
                   (record.loudVolume.isTrue() ? WordLoudVolume : 0));
}

QByteArray BuildConfigImage(Project& project, quint16 identifier, const StepReporter& step) {
    if (step)
        step(step_code::BeginImage);
    numberTrackFiles(project);
    return composeConfigImage(project, identifier, step);
}

QByteArray composeConfigImage(const Project& project, quint16 identifier,
                              const StepReporter& step) {
    const auto stage = [&](int code) {
        if (step)
            step(code);
    };
    stage(step_code::BeginImage);
    throwFirst(imageLimitViolations(project));
    const TrackIndex index(project);
    ImageBytes image;
    image.put16(Identifier, identifier);
    stage(step_code::BuildLanguageMask);
    image.put16(DefaultLanguageMask, defaultLanguageMask(project));
    stage(step_code::BuildCardTitle);
    putTitle(image, CardTitle1, project.txtCardTitle1);
    putTitle(image, CardTitle2, project.txtCardTitle2);
    stage(step_code::BuildPowerUpItem);
    image.put16(PowerUpItem, powerUpReference(project));
    stage(step_code::BuildChimeOptions);
    image.put8(ChimeOptions, chimeOptions(project));
    stage(step_code::BuildLanguages);
    appendTable(image, LanguageTable, project.lstLangs, LanguageWidth);
    stage(step_code::BuildTitlesAndLists);
    appendTable(image, TitleTable, project.lstSpTitles, TitleWidth);
    appendTable(image, ListTable, project.lstMuList, TitleWidth);
    stage(step_code::BuildTracks);
    appendTrackSections(image, project, index);
    stage(step_code::BuildSpeech);
    appendSpeechColumns(image, project, index);
    stage(step_code::BuildDisplayTexts);
    appendDisplayTexts(image, project);
    stage(step_code::BuildTriggers);
    appendTriggers(image, project);
    Q_ASSERT(image.bytes().size() == configImageSize(project));
    return image.bytes();
}

}  // namespace tessaly
