// SPDX-License-Identifier: GPL-3.0-or-later
// The music page against a model of it that knows things where the program knows names: there a
// rename needs no search and a deletion leaves nothing behind. Both take the same random steps.
#include <algorithm>
#include <list>
#include <memory>
#include <random>
#include <vector>

#include "editor/music_editor.h"
#include "editor/project_change.h"
#include "support/projects.h"
#include "support/scratch_folder.h"

namespace tessaly {

namespace {

struct List;

struct Track {
    QString name;
    QString path;  // empty until a file is chosen
    std::weak_ptr<List> list;
};

struct List {
    QString name;
    std::vector<std::shared_ptr<Track>> tracks;
};

// What a trigger or the power-up item plays: nothing as soon as that is gone.
struct Player {
    std::weak_ptr<List> list;
    std::weak_ptr<Track> track;
    bool isWholeList = false;
};

template <typename Things>
QString freeName(QString name, const Things& things) {
    int number = 1;
    for (size_t i = 0; i < things.size();) {
        if (things[i]->name != name) {
            ++i;
            continue;
        }
        const QString digits = QString("%1").arg(number, 2, 10, QChar('0'));
        name = number > 1 ? digits + name.mid(2) : digits + ' ' + name;
        ++number;
        i = 0;
    }
    return name;
}

struct Model {
    std::vector<std::shared_ptr<List>> lists;
    std::vector<std::weak_ptr<Track>> table;
    std::vector<Player> players = std::vector<Player>(3);

    std::shared_ptr<List> list(int row) const {
        return row >= 0 && size_t(row) < lists.size() ? lists[size_t(row)] : nullptr;
    }
    std::shared_ptr<Track> track(const MusicSelection& at) const {
        const auto in = list(at.list);
        return in && at.track >= 0 && size_t(at.track) < in->tracks.size()
                   ? in->tracks[size_t(at.track)]
                   : nullptr;
    }

    void choose(const MusicSelection& at, const QString& path) {
        if (const auto chosen = track(at); chosen && !path.isEmpty()) {
            if (chosen->path.isEmpty())
                table.push_back(chosen);
            chosen->path = path;
        }
    }

    /// Whether it moved.
    bool moveTrack(const MusicSelection& at, int step) {
        const auto moved = track(at);
        if (!moved || !track({at.list, at.track + step}))
            return false;
        for (size_t i = 0; i < table.size(); ++i) {
            if (table[i].lock() != moved)
                continue;
            const size_t partner = i + size_t(step);
            if (partner >= table.size())
                return false;
            std::swap(table[i], table[partner]);
            break;
        }
        auto& tracks = list(at.list)->tracks;
        std::swap(tracks[size_t(at.track)], tracks[size_t(at.track + step)]);
        return true;
    }
};

QStringList inWords(const Model& model) {
    QStringList words;
    for (const auto& list : model.lists) {
        words.append("list " + list->name);
        for (const auto& track : list->tracks)
            words.append("  " + track->name);
    }
    for (const auto& entry : model.table) {
        const auto track = entry.lock();
        words.append(track ? track->list.lock()->name + '/' + track->name + " <- " + track->path
                           : QString("deleted"));
    }
    for (const Player& player : model.players) {
        const auto list = player.list.lock();
        const auto track = player.track.lock();
        const QString whole = "<Play Full List>";
        words.append(list && (track || player.isWholeList)
                         ? "plays " + list->name + '/' + (track ? track->name : whole)
                         : QString("free"));
    }
    return words;
}

QStringList inWords(const Project& project) {
    QStringList words;
    for (const QString& list : project.lstMuList) {
        words.append("list " + list);
        for (const QString& track : tracksOfMusicList(project, list))
            words.append("  " + track);
    }
    for (const TrackRecord& record : project.TrackTable.mid(1))
        words.append(isMusic(record) ? record.groupName.text() + '/' + record.itemName.text() +
                                           " <- " + record.sourcePath.text()
                                     : QString("deleted"));
    const auto player = [&](const TrackRecord& record, bool plays) {
        words.append(plays ? "plays " + record.groupName.text() + '/' + record.itemName.text()
                           : QString("free"));
    };
    for (const int slot : {0, 6})
        player(project.TriggerTable[size_t(slot)], isAssigned(project.TriggerTable[size_t(slot)]));
    player(project.PowerUpRecord, hasPowerUpItem(project));
    return words;
}

class Steps {
 public:
    explicit Steps(unsigned seed) : random_(seed) {
        // A title that is named like music is none of this page's business.
        TrackRecord& speech = project.TriggerTable[3];
        speech.sourcePath = "speech";
        speech.itemName = speech.groupName = "A";
        speech_ = speech;
    }

    void take() {
        const MusicSelection at{.list = row(int(model.lists.size())), .track = row(5)};
        const auto list = model.list(at.list);
        const auto track = model.track(at);
        const QString name = anyName();
        switch (upTo(11)) {
            case 0:
                expect(addNewMusicList(project, name), !name.isEmpty());
                if (!name.isEmpty())
                    model.lists.push_back(
                        std::make_shared<List>(List{freeName(name, model.lists), {}}));
                break;
            case 1:
            case 2:
            case 3:
                expect(addNewMusicTrack(project, at, name), list != nullptr);
                if (list)
                    list->tracks.push_back(
                        std::make_shared<Track>(Track{freeName(name, list->tracks), {}, list}));
                break;
            case 4:
            case 5: {
                const QString path = upTo(5) == 0 ? QString() : QString("%1.mp3").arg(++files_);
                expect(chooseMusicFile(project, at, path), track && !path.isEmpty());
                model.choose(at, path);
                break;
            }
            case 6:
                expect(renameMusicList(project, at.list, name), list && !name.isEmpty());
                if (list && !name.isEmpty())
                    list->name = freeName(name, model.lists);
                break;
            case 7:
                expect(renameMusicTrack(project, at, name), track && !name.isEmpty());
                if (track && !name.isEmpty())
                    track->name = freeName(name, list->tracks);
                break;
            case 8:
                if (upTo(2) > 0)  // or there is soon nothing left
                    break;
                remove(model.lists, rows(int(model.lists.size())),
                       [&](const Rows& rows) { return deleteMusicLists(project, rows); });
                break;
            case 9:
                if (list)
                    remove(list->tracks, rows(int(list->tracks.size())), [&](const Rows& rows) {
                        return deleteMusicTracks(project, at.list, rows);
                    });
                break;
            case 10:
                if (list && upTo(2) > 0)
                    travel(
                        list->tracks,
                        [&](const auto& ways) { return moveMusicTracks(project, at.list, ways); },
                        [&](int row, int step) {
                            return model.moveTrack({at.list, row}, step);
                        });
                else
                    travel(
                        model.lists,
                        [&](const auto& ways) { return moveMusicLists(project, ways); },
                        [&](int row, int step) {
                            std::swap(model.lists[size_t(row)], model.lists[size_t(row + step)]);
                            return true;
                        });
                EXPECT_FALSE(project.unsavedChanges) << "moves are no edits";
                break;
            case 11:
                if (track)
                    play(list, upTo(3) > 0 ? track : nullptr);
                break;
        }
        project.unsavedChanges = false;
    }

    void compare() const {
        EXPECT_EQ(inWords(project), inWords(model));
        EXPECT_EQ(project.TriggerTable[3], speech_);
        EXPECT_EQ(test::inconsistencies(project), QStringList());
        EXPECT_TRUE(!model.lists.empty() || project.lstMuTrack[project.currentMusicList].isEmpty());
    }

    Project project;
    Model model;

 private:
    // An edit marks the project, also one that has nothing to do.
    void expect(const EditResult& result, bool isDone, std::optional<int> row = {}) const {
        EXPECT_EQ(result.isDone, isDone);
        EXPECT_TRUE(project.unsavedChanges);
        if (isDone && row) {
            EXPECT_EQ(result.row, *row);
        }
    }
    // One or several rows, seldom all.
    Rows rows(int count) {
        Rows rows;
        const int often = upTo(3);
        for (int row = 0; row < count; ++row)
            if (upTo(often) == 0)
                rows.append(row);
        return rows;
    }
    template <typename Things, typename Remove>
    void remove(Things& things, const Rows& rows, const Remove& removeRows) {
        if (rows.size() > 3)
            return;
        expect(removeRows(rows), !rows.isEmpty(),
               std::min(rows.value(0, -1), int(things.size() - size_t(rows.size())) - 1));
        for (auto row = rows.rbegin(); row != rows.rend(); ++row)
            things.erase(things.begin() + *row);
    }
    // What travels goes one step after the other, and is where the program says then.
    template <typename Things, typename Move, typename MoveOne>
    void travel(Things& things, const Move& move, const MoveOne& moveOne) {
        const int count = int(things.size());
        const Rows chosen = rows(count);
        const int where = upTo(3);
        const QList<RowTravel> ways =
            where < 2 ? travelsByOne(chosen, count, where == 0 ? Direction::Up : Direction::Down)
                      : travelsBefore(chosen, upTo(count));
        std::vector<typename Things::value_type> travellers;
        for (const int row : chosen)
            travellers.push_back(things[size_t(row)]);
        for (const auto& [from, to] : ways)
            for (int row = from; row != to && moveOne(row, to < from ? -1 : 1);)
                row += to < from ? -1 : 1;
        Rows ends;
        for (int row = 0; row < count; ++row)
            if (std::count(travellers.begin(), travellers.end(), things[size_t(row)]) > 0)
                ends.append(row);
        EXPECT_EQ(move(ways), ends);
    }
    int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(random_); }
    int row(int count) { return upTo(count + 1) - 1; }  // none and one too many among them
    QString anyName() {
        const char* names[] = {"A", "B", "01 A", "02 A", "AB", ""};
        return names[upTo(5)];
    }

    // Without a track: the whole list.
    void play(const std::shared_ptr<List>& list, const std::shared_ptr<Track>& track) {
        const int which = upTo(2);
        model.players[size_t(which)] = {list, track, !track};
        TrackRecord& player = which == 0   ? project.TriggerTable[0]
                              : which == 1 ? project.TriggerTable[6]
                                           : project.PowerUpRecord;
        player.groupName = list->name;
        player.itemName = track ? track->name : "<Play Full List>";
        (which == 2 ? player.kind : player.sourcePath) = "music";
    }

    std::mt19937 random_;
    TrackRecord speech_;
    int files_ = 0;
};

}  // namespace

TEST(EditorModel, RandomStepsAgree) {
    for (unsigned seed = 1; seed <= 120; ++seed) {
        SCOPED_TRACE(seed);
        Steps steps(seed);
        Project& project = steps.project;
        const Project start = project;
        std::list<ProjectChange> changes;  // moves none of them: each holds two whole projects
        for (int i = 0; i < 50 && !testing::Test::HasFailure(); ++i) {
            const Project before = project;
            for (int step = 0; step <= i % 5; ++step) {  // one edit, or several as one
                steps.take();
                steps.compare();
            }
            changes.emplace_back(before, project);
        }
        const Project end = project;
        for (auto change = changes.rbegin(); change != changes.rend(); ++change)
            change->undo(project);
        EXPECT_TRUE(project == start);
        for (const ProjectChange& change : changes)
            change.redo(project);
        EXPECT_TRUE(project == end);
    }
}

}  // namespace tessaly
