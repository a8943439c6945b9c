#include <sys/stat.h>

#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QMap>
#include <cstdio>
#include <cstdlib>

#include "image/intel_hex.h"
#include "killed_process.h"
#include "kills.h"
#include "model/card_file.h"
#include "platform/error.h"
#include "platform/local_file_system.h"

namespace tessaly::kill {

namespace {

using Content = QMap<QString, QByteArray>;

QByteArray read(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
}

Content contentOf(const QString& folder) {
    Content content;
    QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        content.insert(path.mid(folder.size() + 1), read(path));
    }
    return content;
}

// A card's files; of the settings without the number that every run draws anew.
Content cardContent(const QString& folder) {
    Content content = contentOf(folder);
    if (content.contains("0000.xd3")) {
        try {
            const QByteArray image = decodeHexFile(content["0000.xd3"]).image;
            content["0000.xd3"] = "image " + image.mid(2);
        } catch (const TessalyError&) {
            // Cut off: it equals nothing.
        }
    }
    return content;
}

// A run that is killed: what it is run with, and what stands on the card before it.
struct Scene {
    const char* name;
    QStringList before;  // arguments of the run that makes the card of the beginning; or none
    QStringList run;
    Content oldCard{}, newCard{};
    qint64 before_us = 0;    // until the card changes for the first time
    qint64 changing_us = 0;  // from then to the end
};

class CardKills {
 public:
    explicit CardKills(const QString& folder)
        : folder_(folder), card_(folder + "/card"), start_(folder + "/start") {
        QDir().mkpath(folder + "/tmp");
        ::setenv("TMPDIR", qPrintable(folder + "/tmp"), 1);
        prepareSources();
        const auto with = [&](const QString& app, const QString& project, const QStringList& more) {
            return QStringList{"--app-folder", folder + '/' + app,
                               "create",       folder + '/' + project,
                               "--card",       card_,
                               "--yes"} +
                   more;
        };
        const QStringList old = with("old app", "old.crd2", {});
        scenes_ = {
            {"a full card onto an empty one", {}, with("new app", "new.crd2", {})},
            {"a full card onto a full one", old, with("new app", "new.crd2", {})},
            {"new settings", old, with("old app", "new.crd2", {"--settings-only"})},
            // Here nothing that the settings tell of changes.
            {"new firmware and sounds", old, with("new app", "old.crd2", {"--settings-only"})}};
    }

    bool prepareScenes() {
        bool isGood = true;
        for (Scene& scene : scenes_) {
            QDir(card_).removeRecursively();
            QDir().mkpath(card_);
            isGood = isGood && (scene.before.isEmpty() || call(scene.before) == 0);
            scene.oldCard = cardContent(card_);
            copyCard(card_, start_ + '/' + scene.name);
            QElapsedTimer timer;
            timer.start();
            const pid_t run = startProgram(command(scene.run));
            waitForChange(run);
            scene.before_us = timer.nsecsElapsed() / 1000;
            isGood = isGood && waitFor(run) == 0;
            scene.changing_us = timer.nsecsElapsed() / 1000 - scene.before_us;
            scene.newCard = cardContent(card_);
            isGood = isGood && isGoodCard() && scene.newCard != scene.oldCard;
        }
        precious_ = contentOf(folder_ + "/pc");
        for (const char* project : {"old.crd2", "new.crd2"})
            precious_.insert(project, read(folder_ + '/' + project));
        return isGood;
    }

    void begin(const Scene& scene) { copyCard(start_ + '/' + scene.name, card_); }

    // Returns when the run changes the card's root folder for the first time.
    void waitForChange(pid_t run) const {
        const auto stamp = [&] {
            struct stat status {};
            ::stat(card_.toUtf8().constData(), &status);
            return std::pair(status.st_mtim.tv_sec, status.st_mtim.tv_nsec);
        };
        const auto before = stamp();
        waitUntil(run, [&] { return stamp() != before; });
    }

    // What is wrong after a kill; empty when nothing is.
    QString problem(const Scene& scene) {
        const Content now = cardContent(card_);
        const bool isWhole = now == scene.newCard || (now == scene.oldCard && !now.isEmpty());
        const bool looksGood = isGoodCard();
        (now == scene.oldCard ? untouched : isWhole ? finished : halfWritten) += 1;
        if (looksGood != isWhole)
            return looksGood ? "verify calls a half-written card good" : "a whole card is refused";
        return {};
    }

    QString problemAfterSecondRun(const Scene& scene) {
        if (call(scene.run) != 0)
            return "the second run failed";
        if (cardContent(card_) != scene.newCard || !isGoodCard())
            return "the second run left another card";
        Content now = contentOf(folder_ + "/pc");
        for (const char* project : {"old.crd2", "new.crd2"})
            now.insert(project, read(folder_ + '/' + project));
        return now == precious_ ? QString() : "a project or a source file was changed";
    }

    QList<Scene>& scenes() { return scenes_; }
    static QStringList command(const QStringList& arguments) {
        return QStringList(TESSALY_CLI) + arguments;
    }

    int untouched = 0, halfWritten = 0, finished = 0;

 private:
    static int call(const QStringList& arguments) {
        return waitFor(startProgram(command(arguments)));
    }
    bool isGoodCard() const { return call({"verify", card_}) == 0; }

    static void copyCard(const QString& from, const QString& to) {
        QDir(to).removeRecursively();
        QDir().mkpath(to);
        for (const QString& name : QDir(from).entryList(QDir::Files))
            QFile::copy(from + '/' + name, to + '/' + name);
    }

    // The sample tour, imported twice: the new project has another title and a chime.
    void prepareSources() {
        const QString tour = TESSALY_SAMPLES "/tour";
        for (const auto& [name, bytes] : contentOf(tour).toStdMap())
            write(folder_ + "/pc/tour/" + name, bytes);
        write(folder_ + "/pc/chime.mp3", QByteArray(3000000, 'c'));
        for (const char* project : {"/old.crd2", "/new.crd2"})
            call({"import", folder_ + "/pc/tour", "--output", folder_ + project});
        LocalFileSystem files;
        Project project;
        readProject(files, folder_ + "/new.crd2", project);
        project.txtCardTitle1 = "NEW";
        setChimeOption(project, &Project::buttPlayIntChime, true);
        project.txtChimeFileName = folder_ + "/pc/chime.mp3";
        saveProject(files, folder_ + "/new.crd2", project);
        for (const char letter : {'o', 'n'}) {
            const QString app = folder_ + (letter == 'o' ? "/old app" : "/new app");
            write(app + "/files/9998.mp3", QByteArray(2000000, letter));
            write(app + "/files/0007.cfg", QByteArray(10000, letter));
            write(app + "/firmware/0000.hex",
                  QByteArray(":0201200001A438\r\n").repeated(5000) + ":00000001FF\r\n");
        }
    }

    const QString folder_, card_, start_;
    QList<Scene> scenes_;
    Content precious_;
};

}  // namespace

int killCardRuns(int runs, std::mt19937& random, const QString& folder) {
    CardKills kills(folder);
    if (!kills.prepareScenes()) {
        std::printf("FAILED: the cards to begin with could not be made\n");
        return 1;
    }
    int failures = 0;
    const auto judge = [&](const QString& problem, const Scene& scene, const QString& when) {
        if (problem.isEmpty())
            return;
        ++failures;
        std::printf("FAILED, %s, killed %s: %s\n", scene.name, qUtf8Printable(when),
                    qUtf8Printable(problem));
    };
    const auto dice = [&](qint64 most) {
        return std::uniform_int_distribution<qint64>(0, most)(random);
    };
    for (const Scene& scene : kills.scenes())
        std::printf("card runs: %s, %lld us and %lld us from the first change\n", scene.name,
                    (long long)scene.before_us, (long long)scene.changing_us);
    int done = 0;
    while (done < runs) {
        const Scene& scene = kills.scenes()[dice(kills.scenes().size() - 1)];
        kills.begin(scene);
        // The run that repairs a half-written card may be killed as well.
        for (qint64 inARow = dice(2); inARow >= 0 && done < runs; --inARow) {
            const pid_t run = startProgram(CardKills::command(scene.run));
            // Most of a small run is its start: three in four are killed behind that.
            const bool isChanging = dice(3) > 0;
            if (isChanging)
                kills.waitForChange(run);
            const qint64 moment = dice(isChanging ? scene.changing_us : scene.before_us);
            killAfter(run, moment);
            judge(kills.problem(scene), scene,
                  QString("in run %1, %2 us behind its %3")
                      .arg(done++)
                      .arg(moment)
                      .arg(isChanging ? "first change" : "start"));
        }
        judge(kills.problemAfterSecondRun(scene), scene, QString("in run %1").arg(done - 1));
    }
    std::printf("%d kills at random moments: card untouched %d, half-written %d, finished %d\n",
                runs, kills.untouched, kills.halfWritten, kills.finished);
    for (const Scene& scene : kills.scenes()) {
        int change = 0;
        for (kills.begin(scene); killAtChange(CardKills::command(scene.run), change);
             kills.begin(scene)) {
            const QString when = QString("before change %1").arg(change++);
            judge(kills.problem(scene), scene, when);
            judge(kills.problemAfterSecondRun(scene), scene, when);
        }
        std::printf("%d kills, one before each change: %s\n", change, scene.name);
    }
    return failures;
}

}  // namespace tessaly::kill
