// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/find.h"

#include <algorithm>
#include <tuple>

#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// Letter by letter, for there are tens of thousands of names.
QString withoutCaseAndAccents(const QString& text) {
    const bool isAscii = std::all_of(text.begin(), text.end(), [](QChar c) { return c < u'\x80'; });
    QString plain;
    plain.reserve(text.size() + 4);
    // Taken apart, an accent is a mark of its own.
    for (const QChar c : isAscii ? text : text.normalized(QString::NormalizationForm_KD))
        if (c == u'ß' || c == u'ẞ')
            plain += u"ss";
        else if (c < u'\x80' || c.category() != QChar::Mark_NonSpacing)
            plain += c.toCaseFolded();
    return plain;
}

auto searchedParts(const Project& project) {
    return std::tie(project.lstMuList, project.MusicListNames, project.lstMuTrack,
                    project.lstSpTitles, project.lstLangs, project.TrackTable,
                    project.txtChimeFileName);
}

}  // namespace

QList<Place> Finder::find(const Project& project, const QString& words) {
    const QString wanted = withoutCaseAndAccents(words.trimmed());
    if (wanted.isEmpty())
        return {};
    if (searchedParts(known_) != searchedParts(project))  // quick: what is shared is equal
        prepare(project);
    QList<Place> found;
    for (const auto& [text, place] : places_)
        if (text.contains(wanted))
            found.append(place);
    return found;
}

void Finder::prepare(const Project& project) {
    known_ = project;
    places_.clear();
    addLines(Place::Kind::MusicList, project.lstMuList);
    const MusicListIndex lists(project);
    for (int list = 0; list < int(project.lstMuList.size()); ++list)
        addLines(Place::Kind::Track, lists.tracks(project.lstMuList[list]), list);
    addLines(Place::Kind::Title, project.lstSpTitles);
    for (int language = 0; language < int(project.lstLangs.size()); ++language)
        add({Place::Kind::Language, project.lstLangs[language], -1, language});
    addFiles(project);
}

void Finder::add(const Place& place) {
    places_.append({withoutCaseAndAccents(place.text), place});
}

// Lines of an outer list by themselves, of an inner one with the row of the outer.
void Finder::addLines(Place::Kind kind, const QStringList& lines, int outer) {
    for (int row = 0; row < int(lines.size()); ++row)
        add(outer < 0 ? Place{kind, lines[row], row, -1} : Place{kind, lines[row], outer, row});
}

void Finder::addFiles(const Project& project) {
    const TrackIndex records(project);
    const auto addOf = [&](Place::Kind kind, const TrackRecord* record, int first, int second) {
        if (record)
            add({kind, lastNameOf(record->sourcePath.text()), first, second});
    };
    const MusicListIndex lists(project);
    for (int list = 0; list < int(project.lstMuList.size()); ++list) {
        const QStringList tracks = lists.tracks(project.lstMuList[list]);
        for (int track = 0; track < int(tracks.size()); ++track)
            addOf(Place::Kind::MusicFile, records.music(project.lstMuList[list], tracks[track]),
                  list, track);
    }
    for (int title = 0; title < int(project.lstSpTitles.size()); ++title)
        for (int language = 0; language < int(project.lstLangs.size()); ++language)
            addOf(Place::Kind::SpeechFile,
                  records.speech(project.lstSpTitles[title], project.lstLangs[language]), title,
                  language);
    add({Place::Kind::Chime, lastNameOf(project.txtChimeFileName)});
}

std::optional<Place> placeOf(const Project& project, const TrackRecord& record) {
    const QString item = record.itemName.text(), group = record.groupName.text();
    const bool isTrack = isMusic(record);
    Place place{.kind = isTrack ? Place::Kind::MusicFile : Place::Kind::SpeechFile, .text = item};
    place.first =
        int(isTrack ? project.lstMuList.indexOf(group) : project.lstSpTitles.indexOf(item));
    place.second = int(isTrack ? tracksOfMusicList(project, group).indexOf(item)
                               : project.lstLangs.indexOf(group));
    return place.first >= 0 && place.second >= 0 ? std::optional(place) : std::nullopt;
}

QString placeInWords(const Project& project, const Place& place) {
    const QString list = project.lstMuList.value(place.first);
    switch (place.kind) {
        case Place::Kind::MusicList:
            return u"Music list"_s;
        case Place::Kind::Track:
            return u"Track in %1"_s.arg(list);
        case Place::Kind::Title:
            return u"Speech title"_s;
        case Place::Kind::Language:
            return u"Language"_s;
        case Place::Kind::MusicFile:
            return u"File of %1 in %2"_s.arg(tracksOfMusicList(project, list).value(place.second),
                                             list);
        case Place::Kind::SpeechFile:
            return u"File of %1 in %2"_s.arg(project.lstSpTitles.value(place.first),
                                             project.lstLangs.value(place.second));
        case Place::Kind::Chime:
            return u"File of the chime"_s;
    }
    Q_UNREACHABLE();
}

}  // namespace tessaly
