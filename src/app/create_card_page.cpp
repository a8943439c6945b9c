// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/create_card_page.h"

#include <QDir>
#include <QGuiApplication>
#include <QListWidget>
#include <QTimer>

#include "app/small_widgets.h"
#include "app/sound_watch.h"
#include "app/sound_window.h"
#include "card/card_guards.h"
#include "card/firmware.h"
#include "editor/imported_list.h"
#include "platform/error.h"
#include "platform/paths.h"
#include "ui_create_card_page.h"

namespace tessaly {

using namespace Qt::StringLiterals;

CreateCardPage::CreateCardPage(ProjectSession& session, const Services& services,
                               CardTotals& totals, QWidget* parent)
    : Page(parent),
      session_(session),
      services_(services),
      folders_(foldersOfProgram(services.appFolder, services.userFolder)),
      ui_(std::make_unique<Ui::CreateCardPage>()),
      writer_(services.files, services.drives),
      totals_(totals) {
    ui_->setupUi(widget());
    ui_->fraSilentTracks->addBeside(ui_->buttGiveFiles);
    ui_->fraSound->addBeside(ui_->buttCheckSound);
    ui_->fraCC7->addBeside(ui_->buttFindMissing);
    ui_->fraCC4->addAbove(ui_->lblSelectPrompt, ui_->buttSelectCF);
    ui_->fraCC5->addBeside(ui_->buttCFCheckAgain);
    auto* problems = ui_->fraCC7->findChild<QListWidget*>();
    problems->setFont(font());  // sentences, to be read to their end
    problems->setResizeMode(QListView::Adjust);
    problems->setWordWrap(true);
    ui_->fraProgress->hide();
    ui_->fraCC7->hide();
    ui_->crcFirmware->setVerdict(Verdict::Yellow);
    ui_->crcUpdateBegun->setVerdict(Verdict::Yellow);
    showUpdateBegun();

    const auto clicked = [this](QPushButton* button, void (CreateCardPage::*handler)()) {
        connect(button, &QPushButton::clicked, this, handler);
    };
    clicked(ui_->buttSelectCF, &CreateCardPage::buttSelectCF_Click);
    clicked(ui_->buttCFCheckAgain, &CreateCardPage::buttCFCheckAgain_Click);
    clicked(ui_->buttCreateCard, &CreateCardPage::buttCreateCard_Click);
    clicked(ui_->buttCreateXD3, &CreateCardPage::buttCreateXD3_Click);
    clicked(ui_->buttUpdateFirmware, &CreateCardPage::buttUpdateFirmware_Click);
    clicked(ui_->buttGiveFiles, &CreateCardPage::buttGiveFiles_Click);
    connect(ui_->buttCheckSound, &QPushButton::clicked, this, &CreateCardPage::checkSoundChosen);
    connect(ui_->fraSound->findChild<QListWidget*>(), &QListWidget::itemActivated, this,
            [this](QListWidgetItem* item) { lstSound_Activated(item->listWidget()->row(item)); });
    clicked(ui_->buttCancelWrite, &CreateCardPage::buttCancelWrite_Click);
    clicked(ui_->buttEndUpdate, &CreateCardPage::endUpdate);
    clicked(ui_->buttFindMissing, &CreateCardPage::findMissingChosen);
}

CreateCardPage::~CreateCardPage() = default;

void CreateCardPage::showProject() {
    if (isRunning())
        checksDue_ = true;
    else
        renewChecks();
}

void CreateCardPage::selectRows(const QList<Rows>&) {
    if (isVisible())
        showProject();
}

void CreateCardPage::soundLearned() {
    if (isVisible())
        showProject();
}

// Goes to the item that a line of the sound check is about.
void CreateCardPage::lstSound_Activated(int line) {
    const SourceFiles sources = measureSources(session_.project, services_.files);
    const QList<ItemSound> problems =
        soundProblems(soundsOf(session_.project, sources, services_.sounds.book()));
    if (line < problems.size())
        if (const auto place = placeOf(session_.project, problems[line]))
            emit placeChosen(*place);
}

void CreateCardPage::renewChecks() {
    checksDue_ = false;
    const SourceFiles sources = measureSources(session_.project, services_.files);
    services_.sounds.lookAtAll(session_.project, sources);
    const CardChecks checks =
        runCardChecks(session_.project, sources, session_.project.cfDrive, services_.drives,
                      totals_.totalCardBytes, &services_.sounds.book());
    totals_ = checks.totals;
    showChecks(checks);
    emit totalsMeasured();
}

void CreateCardPage::showChecks(const CardChecks& checks) {
    ui_->fraCC1->showResult(checks.musicLists);
    ui_->fraCC2->showResult(checks.languages);
    ui_->fraCC3->showResult(checks.speechTitles);
    ui_->fraSilentTracks->showResult(checks.silentTracks);
    ui_->fraCC4->showResult(checks.driveSelected);
    ui_->fraCC5->showResult(checks.cardPresent, 0);
    ui_->fraCC5->showResult(checks.cardBigEnough, 1);
    ui_->fraCC6->showResult(checks.trackCount, 0);
    ui_->fraCC6->showResult(checks.fileNumbers, 1);
    ui_->fraEmptyFiles->showResult(checks.emptyFiles);
    ui_->fraSound->showResult(checks.sound);
    ui_->fraCC7->showResult(problemsOf(checks));

    const CardControls controls =
        cardControls(checks, ui_->buttUpdateFirmware->isEnabled(),
                     canGiveEachItsFile(session_.project, session_.project.lstMuList));
    ui_->buttCreateCard->setEnabled(controls.buttCreateCard);
    ui_->buttCreateXD3->setEnabled(controls.buttCreateXD3);
    ui_->buttUpdateFirmware->setEnabled(controls.buttUpdateFirmware);
    ui_->buttGiveFiles->setEnabled(controls.buttGiveFiles);
    ui_->buttFindMissing->setEnabled(controls.buttFindMissing);
    for (QWidget* widget :
         std::initializer_list<QWidget*>{ui_->fraCC1, ui_->fraCC2, ui_->fraCC3, ui_->fraCC5,
                                         ui_->fraCC6, ui_->buttCreateCard, ui_->buttCreateXD3})
        widget->setVisible(checks.hasItems);
    ui_->fraCCnone->setVisible(!checks.hasItems);
    ui_->fraProgress->hide();
    ui_->fraSilentTracks->setVisible(controls.fraSilentTracks);
    ui_->fraEmptyFiles->setVisible(controls.fraEmptyFiles);
    ui_->fraSound->setVisible(controls.fraSound);
    ui_->fraCC7->setVisible(controls.fraCC7);
    ui_->fraFirmware->setVisible(isStandIn(services_.files, folders_.firmwareFile()));
}

void CreateCardPage::buttSelectCF_Click() {
    session_.project.unsavedChanges = true;
    const QString root =
        withLastSeparator(services_.prompts.pickDrive(services_.drives, session_.project.cfDrive));
    emit projectChanged();
    if (root.isEmpty())
        return;
    const QString problem = selectCardDrive(session_.project, services_.drives, root);
    if (!problem.isEmpty())
        services_.prompts.tell({.text = problem, .icon = Message::Icon::Exclamation});
    emit projectChanged();
    showProject();
}

void CreateCardPage::buttCFCheckAgain_Click() {
    session_.project.unsavedChanges = true;
    emit projectChanged();
    showProject();
}

void CreateCardPage::buttGiveFiles_Click() {
    giveEachItsFile(session_.project, session_.project.lstMuList);
    emit projectChanged();
    showProject();
}

bool CreateCardPage::askToStop() {
    return services_.prompts.ask(
        {.text = u"Stop writing the card?"_s, .icon = Message::Icon::Exclamation}, true);
}

void CreateCardPage::afterRun(std::function<void()> action) {
    if (!isRunning()) {
        action();
        return;
    }
    if (askToStop())
        stopThen(std::move(action));
}

void CreateCardPage::stopThen(std::function<void()> action) {
    Q_ASSERT(action);
    stopRequested_ = true;
    afterRun_ = std::move(action);
}

void CreateCardPage::buttCreateCard_Click() {
    afterRun([this] { write(false); });
}

void CreateCardPage::buttCreateXD3_Click() {
    afterRun([this] { write(true); });
}

void CreateCardPage::buttCancelWrite_Click() {
    if (isRunning() && askToStop())
        stopRequested_ = true;
}

CardJob CreateCardPage::job(bool settingsOnly) const {
    QString workFolder = folders_.filesFolder;
    if (!services_.files.isWritableFolder(workFolder)) {
        workFolder = QDir::toNativeSeparators(pathIn(services_.userFolder, u"work"_s));
        QDir().mkpath(workFolder);
    }
    CardJob job;
    job.root = session_.project.cfDrive;
    job.settingsOnly = settingsOnly;
    job.folders = folders_;
    job.workFolder = workFolder;
    job.verify = ui_->chkVerify->isChecked();
    job.protectedPaths = {services_.userFolder};
    job.projectFile = session_.fileName();
    return job;
}

void CreateCardPage::endUpdate() {
    writer_.endUpdate();
    showUpdateBegun();
}

void CreateCardPage::showUpdateBegun() {
    ui_->fraUpdateBegun->setVisible(writer_.updateSettingsOnly);
}

void CreateCardPage::write(bool settingsOnly) {
    emit writing();
    stopRequested_ = false;
    ui_->fraUpdateBegun->hide();
    markShown_ = session_.project.unsavedChanges;
    RunView view(*ui_, services_.prompts, stopRequested_, [this] { showMark(); });
    writer_.createCard(session_.project, job(settingsOnly), view);
    showUpdateBegun();
    emit projectChanged();
    if (checksDue_)
        renewChecks();
    // The next action starts from the event loop, when nothing of this run is left on the stack.
    if (const auto next = std::exchange(afterRun_, nullptr))
        QTimer::singleShot(0, this, next);
}

// A run raises the mark of unsaved changes when it begins and takes it away before it ends.
void CreateCardPage::showMark() {
    const bool mark = session_.project.unsavedChanges;
    if (std::exchange(markShown_, mark) != mark)
        emit projectChanged();
}

void CreateCardPage::buttUpdateFirmware_Click() {
    afterRun([this] {
        try {
            updateFirmwareOnCard();
        } catch (const TessalyError& error) {
            services_.prompts.tell({.text = error.description, .icon = Message::Icon::Exclamation});
        }
    });
}

void CreateCardPage::updateFirmwareOnCard() {
    using Outcome = FirmwareResult::Outcome;
    const QString root = session_.project.cfDrive;
    requireRemovableRoot(services_.drives, root);
    const auto ask = [this](const QString& question, bool isDowngrade) {
        return services_.prompts.ask(
            {.text = question,
             .icon = isDowngrade ? Message::Icon::Question : Message::Icon::Information});
    };
    const FirmwareResult result =
        offerFirmware(services_.files, services_.drives, root, folders_, ask);
    if (result.outcome != Outcome::Declined)
        services_.prompts.tell({.text = result.message,
                                .icon = result.outcome == Outcome::NoCard
                                            ? Message::Icon::Critical
                                            : Message::Icon::Information});
}

}  // namespace tessaly
