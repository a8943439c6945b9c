// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/speech_overview.h"

#include <QHash>
#include <algorithm>
#include <optional>

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// The one judgement of a speech file. What asks for more than its name and size belongs here, too.
// True when it is another one than before.
bool lookAt(SpeechCell& cell, const FileSystem& files) {
    const SpeechFile before = cell.file;
    const auto size = files.fileSize(cell.path);
    const bool isMp3 = cell.path.endsWith(u".mp3"_s, Qt::CaseInsensitive);
    cell.file = !size                ? SpeechFile::Missing
                : *size > 0 && isMp3 ? SpeechFile::There
                                     : SpeechFile::NotPlayable;
    cell.problem = !size        ? u"The file cannot be found."_s
                   : *size == 0 ? u"The file is empty."_s
                   : !isMp3     ? u"The file is no MP3 file."_s
                                : QString();
    return cell.file != before;
}

// The row of each line; of equal lines, the first.
QHash<QString, int> rowsOf(const QStringList& lines) {
    QHash<QString, int> rows;
    for (int row = int(lines.size()) - 1; row >= 0; --row)
        rows[lines[row]] = row;
    return rows;
}

}  // namespace

SpeechOverview::SpeechOverview(const Project& project, const SpeechOverview& before)
    : titles_(project.lstSpTitles), languages_(project.lstLangs) {
    const QHash<QString, int> titleRows = rowsOf(titles_), languageRows = rowsOf(languages_);
    const auto place = [&](int title, int language) {
        return qsizetype(title) * languages_.size() + language;
    };
    QList<const TrackRecord*> shown(titles_.size() * languages_.size(), nullptr);
    for (const TrackRecord& record : project.TrackTable) {
        const int title = isSpeech(record) ? titleRows.value(record.itemName.text(), -1) : -1;
        const int language = title < 0 ? -1 : languageRows.value(record.groupName.text(), -1);
        if (language >= 0 && !shown[place(title, language)])
            shown[place(title, language)] = &record;
    }
    std::optional<QHash<QString, const SpeechCell*>> known;  // by path; made when one has moved
    const auto find = [&](const QString& path) {
        if (!known) {
            known.emplace();
            for (const SpeechCell& cell : before.cells_)
                if (cell.file != SpeechFile::None)
                    known->insert(cell.path, &cell);
        }
        return known->value(path);
    };
    cells_.reserve(shown.size());
    for (const QString& title : titles_)
        for (const QString& language : languages_) {
            const TrackRecord* record = shown[place(titleRows[title], languageRows[language])];
            SpeechCell cell;
            if (record) {
                cell = {.path = record->sourcePath.text(), .file = SpeechFile::NotSeen};
                const qsizetype here = cells_.size();
                if (here < before.cells_.size() && before.cells_[here].path == cell.path &&
                    before.cells_[here].file != SpeechFile::None)
                    cell = before.cells_[here];
                else if (const SpeechCell* same = find(cell.path))
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
    bool isNews = false;
    for (; seen_ < cells_.size() && count > 0; ++seen_)
        if (cells_[seen_].file != SpeechFile::None) {
            isNews |= lookAt(cells_[seen_], files);
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
