// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/main_window.h"

#include <QCloseEvent>

#include "app/create_card_page.h"
#include "app/listening.h"
#include "app/recent_menu.h"
#include "app/save_with_files.h"
#include "app/session_status.h"
#include "app/small_widgets.h"
#include "card/firmware.h"
#include "model/numbers.h"
#include "platform/error.h"
#include "platform/paths.h"
#include "ui_main_window.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

const QString CardFiles = u"TRL-740 Card files (*.crd2)"_s;

}  // namespace

bool MainWindow::startUp() {
    if (!services_.instance.isOnlyOne()) {
        services_.prompts.tell({.text = u"A previous instance of Tessaly is still running.  Use "_s
                                        u"CTRL-ALT-DEL to stop the previous task, and run the "_s
                                        u"program again."_s,
                                .icon = Message::Icon::Exclamation,
                                .title = u"Tessaly Error "_s});
        return false;
    }
    session_.startNew();
    createCard_->endUpdate();
    if (!recovery_) {
        recovery_ = std::make_unique<RecoveryFolder>(services_.files,
                                                     pathIn(services_.userFolder, u"recovery"_s));
        session_.setRecovery(recovery_.get());
    }
    const QString problem = readFirmwareVersion();
    showReplaced();
    if (!problem.isEmpty())
        services_.prompts.tell({.text = problem, .icon = Message::Icon::Critical});
    return true;
}

// Returns what keeps the firmware from being read, or nothing.
QString MainWindow::readFirmwareVersion() {
    const QString file = folders_.firmwareFile();
    firmwareVersion_.clear();
    try {
        if (!services_.files.fileSize(file))
            return u"Cannot find TRL740 firmware file "_s + file + u". Please reinstall Tessaly."_s;
        firmwareVersion_ = firmwareVersion(services_.files, file);
        sessionStatus_->sayStandIn(isStandIn(services_.files, file));
        statusText_->setText(QString(40, u' ') + u"TRL740 firmware version: "_s + firmwareVersion_);
        return {};
    } catch (const TessalyError& error) {
        return error.description;
    }
}

void MainWindow::offerRecovery() {
    const auto copy = recovery_ ? recovery_->takeCrashedCopy() : std::nullopt;
    if (copy && services_.prompts.ask({.text = u"Tessaly was not closed properly. Open the copy "_s
                                               u"that it kept of the unsaved project?\r"_s +
                                               copy->description(),
                                       .icon = Message::Icon::Question}))
        recover(*copy);
}

// Keeps a copy of what is about to be discarded. False when that fails and the operator would
// rather not go on.
bool MainWindow::keepBeforeDiscard() {
    const QString problem = session_.keepCopy();
    return problem.isEmpty() ||
           services_.prompts.ask(
               {.text = u"The unsaved project could not be kept for recovery ("_s + problem +
                        u").  Continue and lose it?"_s,
                .icon = Message::Icon::Exclamation},
               true);
}

void MainWindow::mnuFileNew_Click() {
    createCard_->afterRun([this] {
        if (!services_.prompts.ask({.text = u"You will lose any unsaved changes!  Continue? "_s,
                                    .icon = Message::Icon::Exclamation},
                                   true))
            return;
        if (!keepBeforeDiscard())
            return;
        session_.clear();
        statusText_->clear();
        if (!startUp())
            closeAll();
        else
            measure();
    });
}

void MainWindow::mnuFileOpen_Click() {
    open({});
}

// Opens a file; without one it asks for it.
void MainWindow::open(const QString& path) {
    createCard_->afterRun([this, path] {
        if (keepBeforeDiscard())
            openProject(path);
    });
}

void MainWindow::openProject(const QString& path) {
    session_.clear();
    measure();
    showProject();
    const QString chosen =
        path.isEmpty()
            ? services_.prompts.openFile({.filter = CardFiles,
                                          .folder = folders_.projectsStart(services_.files),
                                          .title = u"Open Project"_s,
                                          .kind = FileKind::Project})
            : path;
    if (!chosen.isEmpty())
        readProjectFile(chosen);
}

void MainWindow::openAtStart(const QString& path) {
    if (session_.differs())
        services_.prompts.tell(
            {.text =
                 u"%1 was not opened, because the recovered project is not saved yet. "_s
                 u"Save that first, then open the file with File > Open."_s.arg(shownPath(path))});
    else
        readProjectFile(path);
}

void MainWindow::readProjectFile(const QString& path) {
    try {
        const ReadReport report = session_.open(path);
        recent_->add(path);
        if (!report.isComplete)
            services_.prompts.tell(
                {.text = u"%1 could be read up to byte %2 only: %3.\r%4 could be read. "_s
                         u"The project has no file now, so that the next Save asks for a "_s
                         u"name and leaves the damaged file as it is."_s.arg(shownPath(path))
                             .arg(report.stoppedAt)
                             .arg(report.stopReason, counted(report.records, u"record"_s)),
                 .icon = Message::Icon::Exclamation});
    } catch (const TessalyError& error) {
        services_.prompts.tell({.text = error.description, .icon = Message::Icon::Exclamation});
    }
    measure();
    showReplaced();
}

void MainWindow::mnuFileSave_Click() {
    if (session_.fileName().isEmpty())
        mnuFileSaveAs_Click();
    else if (confirmSave(session_, services_.prompts))
        saveTo(session_.fileName());
}

void MainWindow::mnuFileSaveAs_Click() {
    if (!confirmSave(session_, services_.prompts))
        return;
    const QString path =
        services_.prompts.saveFile({.filter = CardFiles,
                                    .folder = folders_.projectsStart(services_.files),
                                    .suffix = u"crd2"_s,
                                    .title = u"Save Project As"_s,
                                    .kind = FileKind::Project});
    if (!path.isEmpty())
        saveTo(path);
}

void MainWindow::mnuFileSaveWithFiles_Click() {
    createCard_->afterRun([this] { saveWithFiles(session_, services_, this); });
}

bool MainWindow::saveTo(const QString& path) {
    try {
        session_.save(path);
        recent_->add(path);
        showCaption();
        return true;
    } catch (const TessalyError& error) {
        services_.prompts.tell({.text = u"The project was not saved.\r"_s + error.description,
                                .icon = Message::Icon::Exclamation});
        return false;
    }
}

void MainWindow::mnuFileRecover_Click() {
    createCard_->afterRun([this] {
        session_.keepCopy();  // what is open now is on offer, too
        const QList<RecoveryCopy> copies = recovery_ ? recovery_->copies() : QList<RecoveryCopy>();
        if (copies.isEmpty()) {
            services_.prompts.tell({.text = u"There are no recovery copies."_s});
            return;
        }
        QStringList lines;
        for (const RecoveryCopy& copy : copies)
            lines.append(copy.description());
        const int line = services_.prompts.pickLine(u"Recover"_s, lines);
        if (line >= 0 && keepBeforeDiscard())
            recover(copies[line]);
    });
}

void MainWindow::recover(const RecoveryCopy& copy) {
    try {
        session_.recover(copy);
    } catch (const TessalyError& error) {
        services_.prompts.tell({.text = error.description, .icon = Message::Icon::Exclamation});
    }
    measure();
    showReplaced();
}

void MainWindow::bringBack() {
    session_.bringBack();
    measure();
    showReplaced();
}

void MainWindow::tmrRecovery_Timer() {
    const bool isSaid = session_.copyFailed();
    const QString problem = session_.keepCopy();
    if (!problem.isEmpty() && !isSaid)
        sessionStatus_->sayCopyFailed(problem);
}

bool MainWindow::confirmExit() {
    return (!session_.project.unsavedChanges && !session_.differs()) ||
           services_.prompts.ask(
               {.text = u"Changes will be lost unless the card file was saved.  Really exit?"_s,
                .icon = Message::Icon::Exclamation});
}

// A session that ends asks nothing, but loses nothing either.
void MainWindow::Form_SessionEnds() {
    session_.keepCopy();
    remember();
}

void MainWindow::mnuFileExit_Click() {
    createCard_->afterRun([this] {
        if (confirmExit() && keepBeforeDiscard())
            closeAll();
    });
}

void MainWindow::closeAll() {
    isClosing_ = true;
    close();
}

// Only the operator's own close command is asked about; whoever else closes the window, as the end
// of a session does, meets no question. Nothing is lost either way.
void MainWindow::closeEvent(QCloseEvent* event) {
    const bool asks = event->spontaneous() && !isClosing_;
    if (createCard_->isRunning()) {
        event->ignore();
        if (asks)
            mnuFileExit_Click();  // asks to stop first, and closes once the run has ended
        else
            createCard_->stopThen([this] { closeAll(); });
        return;
    }
    if (asks && !(confirmExit() && keepBeforeDiscard())) {
        event->ignore();
        return;
    }
    session_.keepCopy();
    remember();
    listening_->stop();
    event->accept();  // the other windows belong to this one, and end with it
}

}  // namespace tessaly
