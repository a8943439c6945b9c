// SPDX-License-Identifier: GPL-3.0-or-later
#include "card/sound_checks.h"

#include <QHash>
#include <QSet>
#include <QThreadPool>
#include <algorithm>
#include <atomic>
#include <cmath>
#include <utility>

#include "card/card_writer.h"
#include "model/numbers.h"
#include "sound/sound_words.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

FileStamp stampOf(const SourceFile& source) {
    return {source.size.value_or(0), source.modified};
}

double medianOf(QList<double> values) {
    const auto middle = values.begin() + values.size() / 2;
    std::nth_element(values.begin(), middle, values.end());
    if (values.size() % 2 == 1)
        return *middle;
    return (*middle + *std::max_element(values.begin(), middle)) / 2;
}

// All announcements are one group.
QString groupOf(const TrackRecord& record) {
    return isMusic(record) ? u'M' + record.groupName.text() : QString();
}

template <typename Do>
void forEachFile(const Project& project, const SourceFiles& sources, const Do& work) {
    qsizetype next = 0;
    for (const TrackRecord& record : project.TrackTable)
        if (isTrackFile(record))
            work(record, sources.tracks[next++]);
}

std::optional<KnownSound> knownOf(const SourceFile& source, const SoundBook& book) {
    return source.size ? book.known(source.path, stampOf(source)) : std::nullopt;
}

}  // namespace

QString ItemSound::item() const {
    return record ? record->itemName.text() : u"Chime"_s;
}

QString ItemSound::group() const {
    return record ? record->groupName.text() : QString();
}

bool ItemSound::isTrack() const {
    return record && isMusic(*record);
}

bool ItemSound::isAnnouncement() const {
    return record && !isMusic(*record);
}

QString ItemSound::problem() const {
    if (!sound || (!sound->whole && sound->quick.finding == QuickLook::Finding::Good))
        return {};  // most are asked for at every edit
    QStringList problems = {problemInWords(sound->quick)};
    // A last frame that is cut is found by both looks.
    if (sound->whole &&
        !(sound->quick.finding == QuickLook::Finding::EndsInFrame && sound->whole->breakCount == 1))
        problems.append(problemInWords(*sound->whole));
    if (isTooLoudOrQuiet())
        problems.append(loudnessInWords(difference));
    problems.removeAll(QString());
    return problems.join(u"; "_s);
}

QString ItemSound::finding() const {
    if (isMissing)
        return u"file not found"_s;
    const bool isUnreadable = sound && sound->quick.finding == QuickLook::Finding::Missing;
    return isUnreadable ? u"cannot be read"_s : problem();
}

bool ItemSound::isTooLoudOrQuiet() const {
    return std::abs(difference) > (isTrack() ? MostMusicDifference : MostSpeechDifference);
}

LoudnessMedians::LoudnessMedians(const Project& project, const SourceFiles& sources,
                                 const SoundBook& book) {
    constexpr qsizetype FewestToCompare = 3;
    if (!book.hasDecoded())
        return;
    QHash<QString, QList<double>> loudness;
    forEachFile(project, sources, [&](const TrackRecord& record, const SourceFile& source) {
        const auto sound = knownOf(source, book);
        if (sound && sound->whole && sound->whole->loudness > WholeLook::Silent)
            loudness[groupOf(record)].append(sound->whole->loudness);
    });
    for (auto group = loudness.constBegin(); group != loudness.constEnd(); ++group)
        if (group->size() >= FewestToCompare)
            medians_.insert(group.key(), medianOf(*group));
}

double LoudnessMedians::difference(const TrackRecord& record, double loudness) const {
    const auto median = medians_.constFind(groupOf(record));
    return loudness > WholeLook::Silent && median != medians_.constEnd() ? loudness - *median : 0;
}

ItemSound soundOf(const TrackRecord& record, const QString& path, bool isThere,
                  const std::optional<KnownSound>& sound, const LoudnessMedians& medians) {
    ItemSound item{.record = &record, .path = path, .isMissing = !isThere, .sound = sound};
    if (sound && sound->whole)
        item.difference = medians.difference(record, sound->whole->loudness);
    return item;
}

bool ItemSound::isDecodingDue() const {
    return !isMissing && (!sound || (sound->quick.hasSound() && !sound->whole));
}

QList<ItemSound> soundsOf(const Project& project, const SourceFiles& sources,
                          const SoundBook& book) {
    const LoudnessMedians medians(project, sources, book);
    QList<ItemSound> sounds;
    sounds.reserve(sources.tracks.size());
    forEachFile(project, sources, [&](const TrackRecord& record, const SourceFile& source) {
        sounds.append(
            soundOf(record, source.path, source.size.has_value(), knownOf(source, book), medians));
    });
    if (const auto& chime = sources.chime)
        sounds.append({.path = chime->path,
                       .isMissing = !chime->size.has_value(),
                       .sound = knownOf(*chime, book)});
    return sounds;
}

QList<ItemSound> soundProblems(const QList<ItemSound>& sounds) {
    QList<ItemSound> problems;
    for (const ItemSound& item : sounds)
        if (item.sound && item.sound->quick.finding != QuickLook::Finding::Empty &&
            !item.problem().isEmpty())
            problems.append(item);
    return problems;
}

CheckResult checkSound(const QList<ItemSound>& sounds) {
    CheckResult result;
    for (const ItemSound& item : soundProblems(sounds))
        result.offenders.append(
            (item.record ? u"%1 (%2): "_s.arg(item.item(), item.group()) : item.item() + u": "_s) +
            item.problem());
    const auto unknown = std::count_if(sounds.begin(), sounds.end(), [](const ItemSound& item) {
        return !item.sound && !item.isMissing;
    });
    if (!result.offenders.isEmpty()) {
        result.verdict = Verdict::Yellow;
        result.text = u"These files may not sound as they should:"_s;
    } else if (unknown > 0) {
        result.text = u"%1 not looked at yet"_s.arg(counted(unknown, u"file"_s));
    } else if (!sounds.isEmpty()) {
        result.verdict = Verdict::Green;
        result.text = u"All files hold MPEG sound"_s;
    }
    return result;
}

void lookAtAll(const SourceFiles& sources, SoundBook& book) {
    const QList<SourceFile> files = sources.all();
    QThreadPool workers;
    std::atomic<qsizetype> next = 0;
    for (int i = 0; i < workers.maxThreadCount(); ++i)
        workers.start([&] {
            for (qsizetype at = next++; at < files.size(); at = next++)
                if (const SourceFile& source = files[at]; source.size)
                    book.quick(source.path, stampOf(source));
        });
    workers.waitForDone();
}

QString inWords(const QList<ItemSound>& sounds) {
    qsizetype findings = 0, toDecode = 0;
    for (const ItemSound& item : sounds) {
        findings += !item.finding().isEmpty();
        toDecode += item.isDecodingDue();
    }
    const QString words =
        u"%1, %2 with something to look at"_s.arg(counted(sounds.size(), u"file"_s)).arg(findings);
    return toDecode == 0 ? words : words + u", %1 not decoded yet"_s.arg(toDecode);
}

QString decodingInWords(double done, qint64 milliseconds) {
    constexpr double TooEarlyToTell = 0.02;
    const QString words = u"Decoding: %1 %"_s.arg(int(done * 100), 3);
    return done < TooEarlyToTell ? words
                                 : words + u", %1 left"_s.arg(durationText(
                                               qint64(double(milliseconds) * (1 - done) / done)));
}

bool decodeAll(const SourceFiles& sources, SoundBook& book,
               const std::function<bool(double)>& keepGoing) {
    constexpr int MsBetween = 30;
    QList<SourceFile> files;
    QSet<QString> taken;
    qint64 total = 0;
    for (const SourceFile& source : sources.all()) {
        if (!source.size || taken.contains(source.path))
            continue;
        taken.insert(source.path);
        const auto known = book.known(source.path, stampOf(source));
        if (known && (known->whole || !known->quick.hasSound()))
            continue;
        files.append(source);
        total += *source.size;
    }
    // The longest first, so that no core is left with it at the end.
    std::sort(files.begin(), files.end(),
              [](const SourceFile& a, const SourceFile& b) { return a.size > b.size; });
    std::atomic<qsizetype> next = 0;
    std::atomic<qint64> done = 0;
    std::atomic<bool> isEnded = false;
    QThreadPool workers;
    for (int i = 0; i < workers.maxThreadCount(); ++i)
        workers.start([&] {
            for (qsizetype at = next++; at < files.size() && !isEnded; at = next++) {
                const SourceFile& source = files[at];
                qint64 counted = 0;
                const auto goesOn = [&](double share) {
                    const auto now = qint64(share * double(*source.size));
                    done += now - std::exchange(counted, now);
                    return !isEnded;
                };
                if (book.quick(source.path, stampOf(source)).hasSound()) {
                    const WholeLook whole = wholeLook(source.path, goesOn);
                    if (isEnded)
                        return;
                    book.keep(source.path, stampOf(source), whole);
                }
                goesOn(1);
            }
        });
    while (!workers.waitForDone(MsBetween))
        if (!isEnded && !keepGoing(double(done) / double(std::max<qint64>(total, 1))))
            isEnded = true;
    return !isEnded;
}

}  // namespace tessaly
