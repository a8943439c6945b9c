// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/speech_overview.h"

#include <QHash>
#include <algorithm>

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// The one judgement of a speech file. What asks for more than its name and size belongs here, too.
void lookAt(SpeechCell& cell, const FileSystem& files) {
    const auto size = files.fileSize(cell.path);
    const bool isMp3 = cell.path.endsWith(u".mp3"_s, Qt::CaseInsensitive);
    cell.file = !size                ? SpeechFile::Missing
                : *size > 0 && isMp3 ? SpeechFile::There
                                     : SpeechFile::NotPlayable;
    cell.problem = !size        ? u"The file cannot be found."_s
                   : *size == 0 ? u"The file is empty."_s
                   : !isMp3     ? u"The file is no MP3 file."_s
                                : QString();
}

}  // namespace

SpeechOverview::SpeechOverview(const Project& project, const SpeechOverview& before)
    : titles_(project.lstSpTitles), languages_(project.lstLangs) {
    QHash<QString, const SpeechCell*> known;
    known.reserve(before.cells_.size());
    for (const SpeechCell& cell : before.cells_)
        if (cell.file != SpeechFile::None)
            known.insert(cell.path, &cell);
    const TrackIndex records(project);
    cells_.reserve(titles_.size() * languages_.size());
    for (const QString& title : titles_)
        for (const QString& language : languages_) {
            const TrackRecord* record = records.speech(title, language);
            SpeechCell cell;
            if (record) {
                cell = {.path = record->sourcePath.text(), .file = SpeechFile::NotSeen};
                if (const SpeechCell* same = known.value(cell.path))
                    cell = *same;
            }
            cells_.append(cell);
        }
}

const SpeechCell& SpeechOverview::at(const SpeechSelection& pair) const {
    Q_ASSERT(pair.title >= 0 && pair.title < titles_.size());
    Q_ASSERT(pair.language >= 0 && pair.language < languages_.size());
    return cells_[pair.title * languages_.size() + pair.language];
}

bool SpeechOverview::lookFurther(const FileSystem& files, int count) {
    for (; seen_ < cells_.size() && count > 0; ++seen_)
        if (cells_[seen_].file != SpeechFile::None) {
            lookAt(cells_[seen_], files);
            --count;
        }
    return seen_ < cells_.size();
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
