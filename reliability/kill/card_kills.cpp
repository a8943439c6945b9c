// SPDX-License-Identifier: GPL-3.0-or-later
#include <filesystem>

#include "image/intel_hex.h"
#include "killer.h"
#include "model/card_file.h"
#include "platform/error.h"
#include "platform/local_file_system.h"
#include "support/scratch_folder.h"

namespace tessaly::kill {

namespace {

using Content = QMap<QString, QByteArray>;

class CardKills {
 public:
    CardKills() {
        ::setenv("TMPDIR", qPrintable(scratch_.makeFolder("tmp")), 1);
        makeSources();
        precious_ = scratch_.content("pc");
    }

    // The arguments of a run that makes or renews the card.
    QStringList with(const char* app, const QString& project, bool onlySettings = false) const {
        QStringList arguments = {
            "--app-folder", scratch_.path(app),    "create", scratch_.path("pc/" + project),
            "--card",       scratch_.path("card"), "--yes"};
        return onlySettings ? arguments << "--settings-only" : arguments;
    }

    // A run that is killed, on the card that the run `before` made, or on an empty one.
    int kill(const QString& name, const QStringList& before, const QStringList& change, int runs,
             std::mt19937& random) {
        copyCard("empty", "card");
        call(before);
        copyCard("card", "start");
        const Content oldCard = card();
        call(change);
        const Content newCard = card();
        if (newCard == oldCard || !isGood())
            qFatal("the cards to begin with could not be made");

        Victim victim;
        victim.name = name;
        victim.begin = [this] { copyCard("start", "card"); };
        victim.work = command(change);
        victim.look = [&](bool wasKilled) -> Finding {
            const Content now = card();
            const bool isNew = now == newCard, isOld = now == oldCard;
            Finding found{isOld ? "untouched" : isNew ? "finished" : "half-written", {}};
            if (isGood() != (isNew || (isOld && !now.isEmpty())))
                found.problem = isNew || isOld ? "a whole card is refused"
                                               : "verify calls a half-written card good";
            else if (!wasKilled && !isNew)
                found.problem = "a run that came to its end left another card";
            return found;
        };
        victim.finish = [&]() -> QString {
            if (run(command(change)) != 0 || card() != newCard || !isGood())
                return "the second run left another card";
            return scratch_.content("pc") == precious_ ? QString()
                                                       : "a project or a source was changed";
        };
        return killEverywhere(victim, runs, random);
    }

 private:
    static Work command(const QStringList& arguments) {
        return program(QStringList(TESSALY_CLI) + arguments);
    }
    static void call(const QStringList& arguments) {
        if (!arguments.isEmpty() && run(command(arguments)) != 0)
            qFatal("tessaly-cli %s failed", qPrintable(arguments.join(' ')));
    }
    bool isGood() const { return run(command({"verify", scratch_.path("card")})) == 0; }

    // Of the settings without the number that every run draws anew.
    Content card() const {
        Content content = scratch_.content("card");
        if (content.contains("0000.xd3")) {
            try {
                content["0000.xd3"] = decodeHexFile(content["0000.xd3"]).image.mid(2);
            } catch (const TessalyError&) {
                // Cut off: it equals nothing.
            }
        }
        return content;
    }

    void copyCard(const char* from, const char* to) const {
        const std::filesystem::path target(scratch_.path(to).toStdString());
        std::filesystem::remove_all(target);
        std::filesystem::copy(scratch_.makeFolder(from).toStdString(), target);
    }

    // The sample tour, imported twice: the new project has another title and a chime.
    void makeSources() const {
        std::filesystem::copy(TESSALY_SAMPLES "/tour", scratch_.makeFolder("pc").toStdString(),
                              std::filesystem::copy_options::recursive);
        const QString chime = scratch_.write("pc/chime.mp3", QByteArray(3000000, 'c'));
        const QString newProject = scratch_.path("pc/new.crd2");
        for (const QString& project : {scratch_.path("pc/old.crd2"), newProject})
            call({"import", TESSALY_SAMPLES "/tour", "--output", project});
        LocalFileSystem files;
        Project project;
        readProject(files, newProject, project);
        project.txtCardTitle1 = "NEW";
        setChimeOption(project, &Project::buttPlayIntChime, true);
        project.txtChimeFileName = chime;
        saveProject(files, newProject, project);
        for (const QString app : {"old", "new"}) {
            scratch_.write(app + "/files/9998.mp3", QByteArray(2000000, app[0].toLatin1()));
            scratch_.write(app + "/files/0007.cfg", QByteArray(10000, app[0].toLatin1()));
            scratch_.write(app + "/firmware/0000.hex",
                           QByteArray(":0201200001A438\r\n").repeated(5000) + ":00000001FF\r\n");
        }
    }

    const test::ScratchFolder scratch_;
    Content precious_;
};

}  // namespace

int killCardRuns(int runs, std::mt19937& random) {
    CardKills kills;
    const QStringList old = kills.with("old", "old.crd2"), fresh = kills.with("new", "new.crd2");
    const int each = (runs + 3) / 4;
    return kills.kill("a full card onto an empty one", {}, fresh, each, random) +
           kills.kill("a full card onto a full one", old, fresh, each, random) +
           kills.kill("new settings", old, kills.with("old", "new.crd2", true), each, random) +
           // Here nothing that the settings tell of changes.
           kills.kill("new firmware and sounds", old, kills.with("new", "old.crd2", true), each,
                      random);
}

}  // namespace tessaly::kill
