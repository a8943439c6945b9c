// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/find.h"

#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// Accents are marks of their own once a text is taken apart.
QString withoutCaseAndAccents(const QString& text) {
    QString parts = text.normalized(QString::NormalizationForm_KD);
    parts.removeIf([](QChar c) { return c.category() == QChar::Mark_NonSpacing; });
    return parts.toCaseFolded();
}

class Search {
 public:
    Search(const Project& project, const QString& words)
        : project_(project), lists_(project), words_(withoutCaseAndAccents(words.trimmed())) {}

    QList<Place> places() {
        if (words_.isEmpty())
            return {};
        lookInLines(Place::Kind::MusicList, project_.lstMuList);
        for (int list = 0; list < int(project_.lstMuList.size()); ++list)
            lookInLines(Place::Kind::Track, tracksOf(list), list);
        lookInLines(Place::Kind::Title, project_.lstSpTitles);
        for (int language = 0; language < int(project_.lstLangs.size()); ++language)
            look({Place::Kind::Language, project_.lstLangs[language], -1, language});
        lookInFiles();
        return found_;
    }

 private:
    void look(const Place& place) {
        if (withoutCaseAndAccents(place.text).contains(words_))
            found_.append(place);
    }

    // Lines of an outer list by themselves, of an inner one with the row of the outer.
    void lookInLines(Place::Kind kind, const QStringList& lines, int outer = -1) {
        for (int row = 0; row < int(lines.size()); ++row)
            look(outer < 0 ? Place{kind, lines[row], row, -1}
                           : Place{kind, lines[row], outer, row});
    }

    void lookInFiles() {
        const TrackIndex records(project_);
        const auto lookAt = [&](Place::Kind kind, const TrackRecord* record, int first,
                                int second) {
            if (record)
                look({kind, lastNameOf(record->sourcePath.text()), first, second});
        };
        for (int list = 0; list < int(project_.lstMuList.size()); ++list) {
            const QStringList tracks = tracksOf(list);
            for (int track = 0; track < int(tracks.size()); ++track)
                lookAt(Place::Kind::MusicFile,
                       records.music(project_.lstMuList[list], tracks[track]), list, track);
        }
        for (int title = 0; title < int(project_.lstSpTitles.size()); ++title)
            for (int language = 0; language < int(project_.lstLangs.size()); ++language)
                lookAt(Place::Kind::SpeechFile,
                       records.speech(project_.lstSpTitles[title], project_.lstLangs[language]),
                       title, language);
        look({Place::Kind::Chime, lastNameOf(project_.txtChimeFileName)});
    }

    QStringList tracksOf(int list) const { return lists_.tracks(project_.lstMuList[list]); }

    const Project& project_;
    const MusicListIndex lists_;
    const QString words_;
    QList<Place> found_;
};

}  // namespace

QList<Place> findPlaces(const Project& project, const QString& words) {
    return Search(project, words).places();
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
