#include "model/project_session.h"

#include "model/project_snapshot.h"
#include "platform/error.h"

namespace tessaly {

ProjectSession::ProjectSession(Project& theProject, FileSystem& files)
    : project(theProject), files_(files), saved_(theProject), kept_(theProject) {}

bool ProjectSession::differs() const {
    return !sameContent(project, saved_);
}

QString ProjectSession::keepCopy() {
    if (!recovery_ || !differs() || sameContent(project, kept_))
        return {};
    try {
        recovery_->keep(project);
        kept_ = project;
        return {};
    } catch (const TessalyError& error) {
        return error.description;
    }
}

QString ProjectSession::letGo() {
    const QString problem = keepCopy();
    if (recovery_)
        recovery_->startNewCopy();
    return problem;
}

void ProjectSession::settled(const QString& fileName) {
    fileName_ = fileName;
    saved_ = project;
    kept_ = project;
    toldUnsavable_.clear();
}

void ProjectSession::startNew() {
    reset(project);
    startUp(project);
    settled({});
}

void ProjectSession::clear() {
    reset(project);
    settled({});
}

ReadReport ProjectSession::open(const QString& path) {
    clear();
    const ReadReport report = readProject(files_, path, project);
    settled(report.isComplete ? path : QString());
    return report;
}

void ProjectSession::recover(const RecoveryCopy& copy) {
    const Project recovered = recovery_->read(copy);
    clear();
    project = recovered;
    project.unsavedChanges = true;  // and no copy is this project's own: the next is the newest
}

void ProjectSession::save(const QString& path) {
    saveProject(files_, path, project);
    const QStringList told = toldUnsavable_;
    settled(path);
    toldUnsavable_ = told;
    if (recovery_)
        recovery_->dropCurrentCopy();
}

QStringList ProjectSession::newlyUnsavable() {
    const QStringList now = tracksWithoutFile(project) + listsWithoutFile(project);
    if (now == toldUnsavable_)
        return {};
    toldUnsavable_ = now;
    return now;
}

}  // namespace tessaly
