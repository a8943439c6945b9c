// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/save_with_files.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProgressDialog>

#include <optional>

#include "app/session_status.h"
#include "card/pack.h"
#include "model/numbers.h"
#include "platform/error.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

const QString Title = u"Save With Files"_s;

constexpr int AppearsAfterMs = 50;  // an operator who waits longer wonders
constexpr int LooksEveryMs = 20;

// Shows how far a packing is, and lets the window live meanwhile: but only while the dialog is
// there and keeps the project from being changed.
class PackView {
 public:
    explicit PackView(QWidget* window) : dialog_({}, u"Cancel"_s, 0, 0, window) {
        dialog_.setWindowTitle(Title);
        dialog_.setWindowModality(Qt::ApplicationModal);
        dialog_.setAutoClose(false);
        dialog_.setAutoReset(false);
        // As wide as it will be: its text grows and shrinks.
        dialog_.setMinimumWidth(dialog_.fontMetrics().averageCharWidth() * 60);
        sinceStart_.start();
    }

    /// Of the files that are only looked at. False: cancelled.
    bool showLooking() {
        show(u"Looking at the files..."_s);
        return !dialog_.wasCanceled();
    }

    /// Of the copying. False: cancelled.
    bool show(const RunProgress& progress) {
        if (progress.phase == RunPhase::Erase) {
            dialog_.setCancelButton(nullptr);  // this must be done
            show(u"Removing what was copied..."_s);
        } else if (dialog_.wasCanceled()) {
            return false;
        } else if (progress.phase == RunPhase::Flush) {
            show(u"Writing to the disk..."_s);
        } else {
            QString text = u"Copying file %1 of %2\n%3 of %4"_s.arg(
                QString::number(progress.trackFile), QString::number(progress.trackFileCount),
                megabytes(progress.bytesDone), megabytes(progress.bytesTotal));
            if (const qint64 left = progress.millisecondsLeft(); left > 0)
                text += u", %1 left"_s.arg(durationText(left));
            show(text, progress.bytesDone, progress.bytesTotal);
        }
        return !dialog_.wasCanceled();
    }

 private:
    void show(const QString& text, qint64 done = 0, qint64 total = 0) {
        constexpr qint64 Steps = 1000;
        const bool isDue = !sinceLook_.isValid() || sinceLook_.elapsed() >= LooksEveryMs;
        if (!isDue || (sinceStart_.elapsed() < AppearsAfterMs && !dialog_.isVisible()))
            return;
        sinceLook_.start();
        dialog_.setLabelText(text);
        dialog_.setMaximum(total > 0 ? int(Steps) : 0);
        dialog_.setValue(total > 0 ? int(Steps * done / total) : 0);
        dialog_.show();
        QCoreApplication::processEvents();
    }

    QProgressDialog dialog_;
    QElapsedTimer sinceStart_, sinceLook_;
};

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
                                const QString& folder, PackView& progress) {
    try {
        return planPack(session.project, {folder, session.fileName()}, services.files,
                        services.drives, [&] {
                            if (!progress.showLooking())
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
        PackView progress(window);  // gone before the last box comes
        const auto plan = planned(session, services, folder, progress);
        if (!plan)
            return std::nullopt;
        if (!plan->missing.isEmpty())
            return missingMessage(plan->missing);
        packProject(services.files, *plan,
                    [&](const RunProgress& now) { return progress.show(now); });
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
