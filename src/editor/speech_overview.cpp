// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/speech_overview.h"

#include <QHash>
#include <algorithm>
#include <optional>

#include "sound/sound_words.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// The one judgement of a speech file. True when it is another one than before.
bool lookAt(SpeechCell& cell, const FileSystem& files, const SpeechOverview::SoundOf& soundOf) {
    const SpeechCell before = cell;
    const auto stamp = files.stamp(cell.path);
    const bool isMp3 = cell.path.endsWith(u".mp3"_s, Qt::CaseInsensitive);
    const auto sound = stamp && stamp->bytes > 0 ? soundOf(cell.path, *stamp) : std::nullopt;
    const bool isHeard = !sound || sound->quick.hasSound();
    cell.file = !stamp                                 ? SpeechFile::Missing
                : stamp->bytes > 0 && isMp3 && isHeard ? SpeechFile::There
                                                       : SpeechFile::NotPlayable;
    cell.problem = !stamp              ? u"The file cannot be found."_s
                   : stamp->bytes == 0 ? u"The file is empty."_s
                   : !isMp3            ? u"The file is no MP3 file."_s
                   : sound             ? problemInWords(sound->quick)
                                       : QString();
    return cell != before;
}

}  // namespace

SpeechOverview::SpeechOverview(const Project& project, const SpeechOverview& before)
    : titles_(project.lstSpTitles), languages_(project.lstLangs) {
    const SpeechRows rows(project);
    const auto place = [this](const SpeechSelection& pair) {
        return pair.title * languages_.size() + pair.language;
    };
    cells_.resize(titles_.size() * languages_.size());
    for (const TrackRecord& record : project.TrackTable) {
        const SpeechSelection pair = rows.of(record);
        if (pair.title < 0 || cells_[place(pair)].file != SpeechFile::None)
            continue;  // the first record of a pair is shown
        cells_[place(pair)] = {.path = record.sourcePath.text(), .file = SpeechFile::NotSeen};
    }
    // What has the same name, which only a file brings, shows the same.
    QList<SpeechSelection> firsts;
    for (int language = 0; language < languages_.size(); ++language)
        firsts.append(rows.first({.title = 0, .language = language}));
    for (int title = 0; title < titles_.size() && !firsts.isEmpty(); ++title) {
        const int first = rows.first({.title = title, .language = 0}).title;
        for (int language = 0; language < languages_.size(); ++language)
            cells_[place({title, language})] = cells_[place({first, firsts[language].language})];
    }
    take(before);
}

// Takes over what is known of the files. Most of them stand where they stood.
void SpeechOverview::take(const SpeechOverview& before) {
    std::optional<QHash<QString, const SpeechCell*>> others;
    for (qsizetype i = 0; i < cells_.size(); ++i) {
        SpeechCell& cell = cells_[i];
        if (cell.file == SpeechFile::None)
            continue;
        if (i < before.cells_.size() && before.cells_[i].file != SpeechFile::None &&
            before.cells_[i].path == cell.path) {
            cell = before.cells_[i];
            continue;
        }
        if (!others) {
            others.emplace();
            for (const SpeechCell& other : before.cells_)
                if (other.file != SpeechFile::None)
                    others->insert(other.path, &other);
        }
        if (const SpeechCell* same = others->value(cell.path))
            cell = *same;
    }
}

const SpeechCell& SpeechOverview::at(const SpeechSelection& pair) const {
    Q_ASSERT(pair.title >= 0 && pair.title < titles_.size());
    Q_ASSERT(pair.language >= 0 && pair.language < languages_.size());
    return cells_[pair.title * languages_.size() + pair.language];
}

bool SpeechOverview::lookFurther(const FileSystem& files, const SoundOf& soundOf, int count) {
    bool isNews = false;
    for (; seen_ < cells_.size() && count > 0; ++seen_)
        if (cells_[seen_].file != SpeechFile::None) {
            isNews |= lookAt(cells_[seen_], files, soundOf);
            --count;
        }
    return isNews;
}

SpeechSelection SpeechOverview::nextEmpty(const SpeechSelection& from) const {
    const qsizetype count = cells_.size();
    const qsizetype start =
        from.title < 0 || from.language < 0 ? -1 : from.language * titles_.size() + from.title;
    for (qsizetype step = 1; step <= count; ++step) {
        const qsizetype place = (start + step) % count;
        const SpeechSelection pair{.title = int(place % titles_.size()),
                                   .language = int(place / titles_.size())};
        if (at(pair).file == SpeechFile::None)
            return pair;
    }
    return {};
}

QString SpeechOverview::inWords() const {
    if (cells_.isEmpty())
        return {};
    const auto count = [this](SpeechFile file) {
        return std::ranges::count(cells_, file, &SpeechCell::file);
    };
    QStringList parts{u"%1 of %2 there"_s.arg(count(SpeechFile::There)).arg(cells_.size())};
    const auto add = [&](SpeechFile file, const QString& words) {
        if (const auto number = count(file); number > 0)
            parts.append(QString::number(number) + u' ' + words);
    };
    add(SpeechFile::None, u"without a file"_s);
    add(SpeechFile::Missing, u"missing"_s);
    add(SpeechFile::NotPlayable, u"not playable"_s);
    add(SpeechFile::NotSeen, u"not looked for yet"_s);
    return parts.join(u", "_s);
}

}  // namespace tessaly
