#include <sys/mman.h>

#include <QDir>
#include <QElapsedTimer>
#include <array>
#include <atomic>
#include <cstdio>

#include "killed_process.h"
#include "kills.h"
#include "model/project_session.h"
#include "model/project_snapshot.h"
#include "platform/local_file_system.h"
#include "sample_project.h"

namespace tessaly::kill {

namespace {

constexpr int Records = 9995;

// What the saving process tells, in memory that outlives it.
struct Progress {
    std::atomic<int> begun;  // generation that is being saved
    std::atomic<int> saved;  // generation of which save() has returned
};

class SaveKills {
 public:
    explicit SaveKills(const QString& folder)
        : folder_(folder), file_(folder + "/Täglich Tour.crd2") {
        void* memory = ::mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE,
                              MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        progress_ = new (memory) Progress{};
        for (size_t i = 0; i < projects_.size(); ++i) {
            // Every record of a generation names it.
            const QString generation = QString("generation %1").arg(i);
            projects_[i] = musicProject(Records, "/music/" + generation);
            projects_[i].txtCardTitle1 = generation;
            bytes_[i] = encodeProject(projects_[i]);
        }
        QDir().mkpath(folder_);
    }

    qint64 microsecondsOfASave() {
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < 5; ++i)
            save(0);
        return timer.nsecsElapsed() / 5000;
    }

    void save(int generation) {
        Project project = projectOf(generation);
        ProjectSession session(project, files_);
        progress_->begun = generation;
        session.save(file_);
        progress_->saved = generation;
    }

    void saveForever() {
        for (int generation = progress_->saved + 1;; ++generation)
            save(generation);
    }

    // What is wrong after a kill; empty when nothing is.
    QString problem() {
        const QByteArray found = readWholeFile(files_, file_, 1 << 24);
        const bool isOld = found == bytesOf(progress_->saved);
        const bool isNew = found == bytesOf(progress_->begun);
        (progress_->begun == progress_->saved ? between : isOld ? old : fresh) += 1;
        if (!isOld && !isNew)
            return QString("%1 bytes that are neither generation %2 nor %3")
                .arg(found.size())
                .arg(progress_->saved.load())
                .arg(progress_->begun.load());
        Project project;
        ProjectSession session(project, files_);
        const ReadReport report = session.open(file_);
        if (!report.isComplete || report.records <= Records ||
            !sameContent(project, projectOf(isOld ? progress_->saved : progress_->begun)))
            return "it opens as another project";
        progress_->saved = isOld ? progress_->saved.load() : progress_->begun.load();
        // A new file that did not get its name in time.
        for (const QString& name : otherFiles()) {
            ++leftBehind;
            if (!name.startsWith(QFileInfo(file_).fileName() + '.') ||
                !QFile::remove(folder_ + '/' + name))
                return name + " lies about";
        }
        return {};
    }

    QStringList otherFiles() const {
        QStringList names = QDir(folder_).entryList(QDir::Files | QDir::Hidden);
        names.removeAll(QFileInfo(file_).fileName());
        return names;
    }

    int nextGeneration() const { return progress_->saved + 1; }

    int old = 0, fresh = 0, between = 0, leftBehind = 0;

 private:
    const Project& projectOf(int generation) const {
        return projects_[size_t(generation) % projects_.size()];
    }
    const QByteArray& bytesOf(int generation) const {
        return bytes_[size_t(generation) % bytes_.size()];
    }

    const QString folder_, file_;
    LocalFileSystem files_;
    Progress* progress_;
    std::array<Project, 3> projects_;
    std::array<QByteArray, 3> bytes_;
};

}  // namespace

int killSaves(int runs, std::mt19937& random, const QString& folder) {
    SaveKills kills(folder);
    int failures = 0;
    const auto judge = [&](const QString& when) {
        const QString problem = kills.problem();
        if (problem.isEmpty())
            return;
        ++failures;
        std::printf("FAILED, killed %s: %s\n", qUtf8Printable(when), qUtf8Printable(problem));
    };
    const qint64 duration = kills.microsecondsOfASave();
    std::printf("saves: %d records, %lld us each, in %s\n", Records, (long long)duration,
                qUtf8Printable(folder));
    std::uniform_int_distribution<qint64> moments(0, 3 * duration);
    for (int run = 0; run < runs; ++run) {
        const qint64 moment = moments(random);
        killAfter(startWork([&] { kills.saveForever(); }), moment);
        judge(QString("in run %1 after %2 us").arg(run).arg(moment));
    }
    std::printf(
        "%d kills at random moments: old project %d, new project %d, between saves %d; a new file "
        "left beside it %d times\n",
        runs, kills.old, kills.fresh, kills.between, kills.leftBehind);

    int changes = 0;
    while (killAtChange([&] { kills.save(kills.nextGeneration()); }, changes))
        judge(QString("before change %1").arg(changes++));
    std::printf("%d kills, one before each change that a save makes\n", changes);

    kills.save(kills.nextGeneration());
    if (const QStringList left = kills.otherFiles(); !left.isEmpty()) {
        ++failures;
        std::printf("FAILED: the last save left %s\n", qUtf8Printable(left.join(", ")));
    }
    return failures;
}

}  // namespace tessaly::kill
