// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/save_with_files.h"

#include <QFileInfo>
#include <QMutex>
#include <QMutexLocker>
#include <atomic>
#include <optional>

#include "app/long_work.h"
#include "app/session_status.h"
#include "card/pack.h"
#include "model/numbers.h"
#include "platform/error.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

const QString Title = u"Save With Files"_s;

// How far a copying is, in words.
QString inWords(const RunProgress& progress) {
    if (progress.phase == RunPhase::Erase)
        return u"Removing what was copied..."_s;
    if (progress.phase == RunPhase::Flush)
        return u"Writing to the disk..."_s;
    const QString words = u"Copying file %1 of %2\n%3 of %4"_s.arg(
        QString::number(progress.trackFile), QString::number(progress.trackFileCount),
        megabytes(progress.bytesDone), megabytes(progress.bytesTotal));
    const qint64 left = progress.millisecondsLeft();
    return left > 0 ? words + u", %1 left"_s.arg(durationText(left)) : words;
}

// Copies on a thread of its own, since a disk may take seconds for what it has gathered. The dialog
// keeps the project from being changed meanwhile.
void copyBehindProgress(FileSystem& files, const PackPlan& plan, ProgressBox& progress) {
    QMutex mutex;
    RunProgress last;
    std::atomic<bool> isCancelled = false;
    const auto copy = [&] {
        packProject(files, plan, [&](const RunProgress& now) {
            const QMutexLocker lock(&mutex);
            last = now;
            return !isCancelled;
        });
    };
    runOnThread(copy, [&] {
        RunProgress now;
        {
            const QMutexLocker lock(&mutex);
            now = last;
        }
        if (now.phase == RunPhase::Erase)
            progress.endCancelling();
        const double share =
            now.bytesTotal > 0 ? double(now.bytesDone) / double(now.bytesTotal) : -1;
        if (!progress.show(inWords(now), share))
            isCancelled = true;
    });
}

// The folder to fill; empty when the operator would rather not.
QString chosenFolder(const ProjectSession& session, const Services& services) {
    const QString& own = session.fileName();
    const QString folder = services.prompts.pickFolder(
        u"Save With Files: choose an empty folder"_s,
        own.isEmpty() ? QString() : QFileInfo(own).path(), FileKind::SavedWithFiles);
    if (folder.isEmpty() || thingIn(services.files, folder).isEmpty())
        return folder;
    const QString inside = newFolderIn(services.files, {folder, own});
    const bool isTaken = services.prompts.offer(
        {.text = u"%1 is not empty. Nothing is copied among other files, so that nothing is "_s
                 u"written over.\r\rThe project can get a new folder in it:\r%2"_s.arg(
                     shownPath(folder), shownPath(inside))},
        u"Make &New Folder"_s);
    return isTaken ? inside : QString();
}

// The plan; nothing when it was cancelled.
std::optional<PackPlan> planned(const ProjectSession& session, const Services& services,
                                const QString& folder, ProgressBox& progress) {
    try {
        return planPack(session.project, {folder, session.fileName()}, services.files,
                        services.drives, [&] {
                            if (!progress.show(u"Looking at the files..."_s))
                                throw TessalyError(error_number::Stopped, {});
                        });
    } catch (const TessalyError& error) {
        if (error.number != error_number::Stopped)
            throw;
        return std::nullopt;
    }
}

Message missingMessage(const QStringList& missing) {
    return {.text =
                u"Nothing was copied: %1 of the project cannot be found, and the folder would "_s
                u"lack what is missing wherever it goes.\r\r"_s.arg(
                    counted(missing.size(), u"file"_s)) +
                shortList(missing),
            .icon = Message::Icon::Exclamation,
            .more = u"Put the files back or choose them again, then save with files."_s};
}

Message doneMessage(const PackPlan& plan, const ProjectSession& session) {
    const QString& own = session.fileName();
    QString more =
        u"You go on working with %1: what you change from now on does not go into the copy."_s.arg(
            own.isEmpty() ? u"the project on screen"_s : shownPath(own));
    if (session.differs())
        more += own.isEmpty() ? u" It has no file of its own yet."_s
                              : u" Your last changes are not saved there yet."_s;
    return {
        .text =
            u"The project and its %1 (%2) were copied. Open it there, on any machine:\r\r%3"_s.arg(
                counted(plan.files.size(), u"file"_s), megabytes(plan.bytes),
                shownPath(plan.projectFile)),
        .more = more};
}

}  // namespace

void saveWithFiles(ProjectSession& session, const Services& services, QWidget* window) {
    if (!confirmTexts(session, services.prompts))
        return;
    const auto copied = [&](const QString& folder) -> std::optional<Message> {
        ProgressBox progress(window, Title);  // gone before the last box comes
        const auto plan = planned(session, services, folder, progress);
        if (!plan)
            return std::nullopt;
        if (!plan->missing.isEmpty())
            return missingMessage(plan->missing);
        copyBehindProgress(services.files, *plan, progress);
        return doneMessage(*plan, session);
    };
    try {
        const QString folder = chosenFolder(session, services);
        const auto message = folder.isEmpty() ? std::nullopt : copied(folder);
        if (message)
            services.prompts.tell(*message);
    } catch (const TessalyError& error) {
        services.prompts.tell(
            {.text = u"The project was not saved with its files.\r"_s + error.description,
             .icon = Message::Icon::Exclamation});
    }
}

}  // namespace tessaly
