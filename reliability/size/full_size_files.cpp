#include "full_size_files.h"

#include <QDir>
#include <QFile>
#include <filesystem>
#include <stdexcept>

#include "model/card_file.h"
#include "model/music_lists.h"
#include "platform/local_file_system.h"

namespace tessaly::size {

namespace {

constexpr int Languages = 16;
constexpr int Titles = 548;
constexpr int MissingPairs = 91;
constexpr int Lists = 255;
constexpr int LongestList = 126;    // the last list that a trigger can name ...
constexpr int LongestTracks = 510;  // ... with as many tracks as it can name
constexpr int Tracks = 1318;
static_assert(Languages * Titles - MissingPairs + Tracks == TrackFiles);

QString numbered(const char* what, int number, int digits = 3) {
    return QString("%1 %2").arg(what).arg(number, digits, 10, QChar('0'));
}

void writeFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        throw std::runtime_error("cannot write " + path.toStdString());
}

// A title tag and two frames of silence of 104 bytes each.
QByteArray smallMp3(int number) {
    const QByteArray text = '\0' + QByteArray("Track ") + QByteArray::number(number);
    QByteArray frame =
        "TIT2" + QByteArray(3, '\0') + char(text.size()) + QByteArray(2, '\0') + text;
    QByteArray bytes = QByteArray("ID3\x03", 4) + QByteArray(5, '\0') + char(frame.size()) + frame;
    for (int i = 0; i < 2; ++i)
        bytes += QByteArray("\xFF\xFB\x10\xC4", 4) + QByteArray(100, '\0');
    return bytes;
}

// Hands out the sources one by one as files of other names.
class Sources {
 public:
    explicit Sources(const QString& folder) : folder_(folder) {
        QDir().mkpath(folder);
        for (int number = 1; number <= TrackFiles; ++number)
            writeFile(path(number), smallMp3(number));
    }

    QString path(int number) const {
        return QString("%1/%2.mp3").arg(folder_).arg(number, 5, 10, QChar('0'));
    }
    void linkNextAs(const QString& target) {
        std::filesystem::create_hard_link(path(++used_).toStdString(), target.toStdString());
    }

 private:
    const QString folder_;
    int used_ = 0;
};

void makeTour(Sources& sources, const QString& tour) {
    for (int language = 1; language <= Languages; ++language) {
        const QString folder = tour + "/Speech/" + numbered("Lang", language, 2);
        QDir().mkpath(folder);
        // The last language lacks the last titles.
        const int titles = language == Languages ? Titles - MissingPairs : Titles;
        for (int title = 1; title <= titles; ++title)
            sources.linkNextAs(folder + '/' + numbered("Title", title) + ".mp3");
    }
    const int others = Lists - 1;
    for (int list = 1, other = 0; list <= Lists; ++list) {
        const QString folder = tour + "/Music/" + numbered("List", list);
        QDir().mkpath(folder);
        int tracks = LongestTracks;
        if (list != LongestList)
            tracks = (Tracks - LongestTracks) / others +
                     (other++ < (Tracks - LongestTracks) % others ? 1 : 0);
        for (int track = 1; track <= tracks; ++track)
            sources.linkNextAs(folder + '/' + numbered("Track", track) + ".mp3");
    }
}

Project longProject(const Sources& sources) {
    Project project;
    int used = 0;
    const auto add = [&](const char* kind, const QString& item, const QString& group) {
        TrackRecord record;
        record.kind = kind;
        record.itemName = item;
        record.groupName = group;
        record.sourcePath = sources.path(++used);
        project.TrackTable.append(record);
    };
    for (int language = 1; language <= Languages; ++language)
        project.lstLangs.append(numbered("Lang", language, 2));
    for (int title = 1; title <= 125; ++title) {
        project.lstSpTitles.append(numbered("Title", title));
        for (const QString& language : project.lstLangs)
            add("speech", project.lstSpTitles.last(), language);
    }
    for (const int tracks : {5000, 2995}) {
        const QString list = addMusicList(project, QString("%1 tracks").arg(tracks));
        UniqueNames names;
        for (int track = 1; track <= tracks; ++track)
            add("music", addMusicTrack(project, numbered("Track", track, 4), names), list);
    }
    return project;
}

// One list after the other, so that 250,000 records are reached with nothing else in the project.
Project projectOfMostRecords() {
    Project project;
    const QString path = "/music/of/nobody.mp3";
    for (int list = 0; list < MostTracks / 5000; ++list) {
        const QString name = addMusicList(project, numbered("List", list));
        UniqueNames names;
        for (int track = 0; track < 5000; ++track) {
            TrackRecord record;
            record.kind = "music";
            record.itemName = addMusicTrack(project, numbered("Track", track, 4), names);
            record.groupName = name;
            record.sourcePath = path;
            project.TrackTable.append(record);
        }
    }
    return project;
}

}  // namespace

void makeFiles(const QString& folder) {
    Sources sources(folder + "/sources");
    makeTour(sources, folder + "/tour");
    QByteArray playlist;
    for (int number = 1; number <= TrackFiles; ++number)
        playlist += QFile::encodeName(sources.path(number)) + "\r\n";
    // A plain playlist is read up to its last line, without that.
    writeFile(folder + "/all.m3u", playlist + "the end\r\n");
    LocalFileSystem files;
    Project project = longProject(sources);
    saveProject(files, folder + "/long.crd2", project);
    Project most = projectOfMostRecords();
    saveProject(files, folder + "/most.crd2", most);
}

}  // namespace tessaly::size
