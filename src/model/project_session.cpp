// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/project_session.h"

#include "model/files_beside.h"
#include "model/project_snapshot.h"
#include "platform/error.h"

namespace tessaly {

ProjectSession::ProjectSession(Project& theProject, FileSystem& files)
    : project(theProject), files_(files) {
    markClean({});
}

bool ProjectSession::differs() const {
    return !sameContent(project, state_.saved);
}

QString ProjectSession::keepCopy() {
    if (!recovery_ || !differs() || sameContent(project, state_.kept))
        return {};
    try {
        recovery_->keep(project);
        state_.kept = project;
        copyFailed_ = false;
        return {};
    } catch (const TessalyError& error) {
        copyFailed_ = true;
        return error.description;
    }
}

void ProjectSession::markClean(const QString& fileName) {
    state_ = {.fileName = fileName, .saved = project, .kept = project, .toldUnsavable = {}};
}

void ProjectSession::startNew() {
    clear();
    startUp(project);
    markClean({});
    closed_.reset();
}

void ProjectSession::clear() {
    const WorkStretch work = recovery_ ? recovery_->leave() : WorkStretch();
    if (!state_.fileName.isEmpty() || differs())
        closed_ = {.project = project, .state = state_, .work = work};
    reset(project);
    forgetFreeTriggers(project);
    markClean({});
}

bool ProjectSession::canBringBack() const {
    return closed_ && state_.fileName.isEmpty() && !project.unsavedChanges && !differs();
}

void ProjectSession::bringBack() {
    if (!canBringBack())
        return;
    const Closed closed = *std::exchange(closed_, std::nullopt);
    project = closed.project;
    state_ = closed.state;
    if (recovery_)
        recovery_->comeBackTo(closed.work);
}

ReadReport ProjectSession::open(const QString& path) {
    clear();
    const ReadReport report = openProjectFile(files_, path, project);
    closed_.reset();
    if (report.isComplete)
        markClean(path);
    return report;
}

void ProjectSession::recover(const RecoveryCopy& copy) {
    Q_ASSERT(recovery_);  // where else would the copy come from?
    const Project recovered = recovery_->read(copy);
    clear();
    closed_.reset();
    recovery_->continueFrom(copy);
    project = recovered;
    project.unsavedChanges = true;
}

void ProjectSession::save(const QString& path) {
    saveProject(files_, path, project);
    const QStringList told = state_.toldUnsavable;
    markClean(path);
    state_.toldUnsavable = told;
    if (recovery_)
        recovery_->dropSaved();
}

QStringList ProjectSession::newlyUnsavable() {
    QStringList now = tracksWithoutFile(project) + listsWithoutFile(project);
    if (now == state_.toldUnsavable)
        return {};
    state_.toldUnsavable = now;
    return now;
}

}  // namespace tessaly
