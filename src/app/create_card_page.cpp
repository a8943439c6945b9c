#include "app/create_card_page.h"

#include <QDir>
#include <QGuiApplication>
#include <QListWidget>
#include <QTimer>

#include "app/run_view.h"
#include "app/small_widgets.h"
#include "card/card_guards.h"
#include "card/firmware.h"
#include "editor/imported_list.h"
#include "platform/error.h"
#include "platform/paths.h"
#include "ui_create_card_page.h"

namespace tessaly {

namespace {

constexpr int ProblemsShown = 200;
constexpr int RowsShown = 12;

void showResult(const CheckResult& result, StatusCircle* circle, QLabel* label) {
    circle->setVerdict(result.verdict);
    label->setText(result.text);
    label->setEnabled(result.isEnabled);
}

void showOffenders(const QStringList& offenders, QListWidget* list) {
    list->clear();
    for (const QString& offender : offenders)
        list->addItem(elided(offender));
    list->setVisible(!offenders.isEmpty());
    if (offenders.isEmpty())
        return;
    list->setCurrentRow(0);
    const int rows = int(std::min<qsizetype>(offenders.size() + 1, RowsShown));
    list->setMaximumHeight(rows * list->sizeHintForRow(0) + 2 * list->frameWidth());
}

}  // namespace

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
    for (QListWidget* list : {ui_->lstBadMuLists, ui_->lstBadLangs, ui_->lstBadSpTitles,
                              ui_->lstSilentTracks, ui_->lstEmptyFiles}) {
        list->setFont(fixedFont(font()));
        list->hide();
    }
    ui_->fraCC7->hide();
    ui_->fraProgress->hide();
    ui_->crcFirmware->setVerdict(Verdict::Yellow);
    ui_->crcProblems->setVerdict(Verdict::Red);
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
    clicked(ui_->buttCancelWrite, &CreateCardPage::buttCancelWrite_Click);
    clicked(ui_->buttEndUpdate, &CreateCardPage::endUpdate);
}

CreateCardPage::~CreateCardPage() = default;

void CreateCardPage::showProject() {
    if (isRunning())
        checksDue_ = true;
    else
        runCardChecks();
}

void CreateCardPage::runCardChecks() {
    checksDue_ = false;
    const CardChecks checks =
        tessaly::runCardChecks(session_.project, measureSources(session_.project, services_.files),
                               session_.project.cfDrive, services_.drives, totals_.totalCardBytes);
    totals_ = checks.totals;
    showChecks(checks);
    emit totalsMeasured();
}

void CreateCardPage::showChecks(const CardChecks& checks) {
    for (QWidget* widget :
         std::initializer_list<QWidget*>{ui_->fraCC1, ui_->fraCC2, ui_->fraCC3, ui_->fraCC5,
                                         ui_->fraCC6, ui_->buttCreateCard, ui_->buttCreateXD3})
        widget->setVisible(checks.hasItems);
    ui_->fraCCnone->setVisible(!checks.hasItems);
    ui_->fraProgress->hide();

    showResult(checks.musicLists, ui_->crcMuListCheck, ui_->lblMuListCheck);
    showOffenders(checks.musicLists.offenders, ui_->lstBadMuLists);
    showResult(checks.languages, ui_->crcLangCheck, ui_->lblLangCheck);
    showOffenders(checks.languages.offenders, ui_->lstBadLangs);
    showResult(checks.speechTitles, ui_->crcSpTitleCheck, ui_->lblSpTitleCheck);
    showOffenders(checks.speechTitles.offenders, ui_->lstBadSpTitles);
    showResult(checks.driveSelected, ui_->crcSelectCF, ui_->lblSelectCF);
    showResult(checks.cardPresent, ui_->crcCFCardPresent, ui_->lblCFCardPresent);
    showResult(checks.cardBigEnough, ui_->crcCFCardBigEnough, ui_->lblCFCardBigEnough);
    showResult(checks.trackCount, ui_->crcCheckTrackCount, ui_->lblCheckTrackCount);
    showWarnings(checks);
    showProblems(checks);

    if (checks.updateFirmwareEnabled)
        ui_->buttUpdateFirmware->setEnabled(*checks.updateFirmwareEnabled);
    ui_->buttCreateCard->setEnabled(!checks.blocked);
    ui_->buttCreateXD3->setEnabled(!checks.blocked);
}

// What is shown only when there is something to say.
void CreateCardPage::showWarnings(const CardChecks& checks) {
    showResult(checks.silentTracks, ui_->crcSilentTracks, ui_->lblSilentTracks);
    showOffenders(checks.silentTracks.offenders, ui_->lstSilentTracks);
    const bool isAnySilent = checks.silentTracks.verdict == Verdict::Yellow;
    ui_->fraSilentTracks->setVisible(checks.hasItems && isAnySilent);
    ui_->buttGiveFiles->setEnabled(
        isAnySilent && canGiveEachItsFile(session_.project, session_.project.lstMuList));
    showResult(checks.emptyFiles, ui_->crcEmptyFiles, ui_->lblEmptyFiles);
    showOffenders(checks.emptyFiles.offenders, ui_->lstEmptyFiles);
    ui_->fraEmptyFiles->setVisible(checks.emptyFiles.verdict == Verdict::Yellow);
    showResult(checks.fileNumbers, ui_->crcFileNumbers, ui_->lblFileNumbers);
    for (QWidget* widget :
         {static_cast<QWidget*>(ui_->crcFileNumbers), static_cast<QWidget*>(ui_->lblFileNumbers)})
        widget->setVisible(checks.fileNumbers.verdict == Verdict::Yellow);
}

// What blocks without a panel of its own: source files that are gone and limits of the formats.
void CreateCardPage::showProblems(const CardChecks& checks) {
    QStringList problems = checks.exceededLimits;
    for (const QString& path : checks.missingFiles)
        problems.append(tr("Cannot find file ") + path);
    if (problems.size() > ProblemsShown) {
        const qsizetype more = problems.size() - ProblemsShown;
        problems.resize(ProblemsShown);
        problems.append(tr("... and %1 more").arg(more));
    }
    showOffenders(problems, ui_->lstProblems);
    ui_->fraCC7->setVisible(!problems.isEmpty());
    ui_->fraFirmware->setVisible(services_.files.fileSize(folders_.firmwareFile()) &&
                                 !holdsFirmware(services_.files, folders_.firmwareFile()));
}

void CreateCardPage::buttSelectCF_Click() {
    session_.project.unsavedChanges = true;
    const QString root =
        withLastSeparator(services_.prompts.pickDrive(services_.drives, session_.project.cfDrive));
    emit projectChanged();
    if (root.isEmpty())
        return;
    try {
        const DriveType type = services_.drives.type(root);
        if (type == DriveType::Removable)
            session_.project.cfDrive = root;
        else
            services_.prompts.tell({.text = "Sorry, that is a " + driveTypeName(type) + " drive!",
                                    .icon = Message::Icon::Exclamation});
    } catch (const TessalyError& error) {
        if (error.number != error_number::DriveNotReady)
            return;
        session_.project.cfDrive = root;
    }
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
        {.text = "Stop writing the card?", .icon = Message::Icon::Exclamation}, true);
}

void CreateCardPage::afterRun(std::function<void()> action) {
    if (!isRunning()) {
        action();
        return;
    }
    if (!askToStop())
        return;
    if (!isRunning()) {  // it ended while the question stood
        action();
        return;
    }
    stopThen(std::move(action));
}

void CreateCardPage::stopThen(std::function<void()> action) {
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

CardJob CreateCardPage::job() const {
    QString workFolder = folders_.filesFolder;
    if (!services_.files.isWritableFolder(workFolder)) {
        workFolder = QDir::toNativeSeparators(pathIn(services_.userFolder, "work"));
        QDir().mkpath(workFolder);
    }
    CardJob job;
    job.root = session_.project.cfDrive;
    job.folders = folders_;
    job.workFolder = workFolder;
    job.verify = ui_->chkVerify->isChecked();
    job.kept = {services_.userFolder};
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
    stopRequested_ = false;
    ui_->fraUpdateBegun->hide();
    markShown_ = session_.project.unsavedChanges;
    RunView view(*ui_, services_.prompts, stopRequested_, [this] { showMark(); });
    if (settingsOnly)
        writer_.updateSettings(session_.project, job(), view);
    else
        writer_.createCard(session_.project, job(), view);
    showUpdateBegun();
    emit projectChanged();
    if (checksDue_)
        runCardChecks();
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
    using Relation = FirmwareComparison::Relation;
    Prompts& prompts = services_.prompts;
    const QString root = session_.project.cfDrive;
    requireRemovableRoot(services_.drives, root);  // it may mean another disk today
    const CardIdentity card = cardAt(services_.files, services_.drives, root);
    const FirmwareComparison comparison = compareFirmware(services_.files, root, folders_);
    switch (comparison.relation) {
        case Relation::NoCard:
            prompts.tell({.text = comparison.message, .icon = Message::Icon::Critical});
            return;
        case Relation::SameAsCard:
            prompts.tell({.text = comparison.message, .icon = Message::Icon::Information});
            return;
        case Relation::CardNewer:
        case Relation::CardOlder:
            break;
    }
    requireFirmware(services_.files, folders_);
    const auto icon = comparison.relation == Relation::CardNewer ? Message::Icon::Question
                                                                 : Message::Icon::Information;
    if (!prompts.ask({.text = comparison.message, .icon = icon}))
        return;
    requireCardAt(services_.files, services_.drives, root, card);
    updateFirmware(services_.files, root, folders_);
    prompts.tell({.text = FirmwareUpdatedText.toString()});
}

}  // namespace tessaly
