#include "app/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QScreen>
#include <QStyle>
#include <QTabBar>
#include <QTimer>

#include "app/about_window.h"
#include "app/create_card_page.h"
#include "app/elided_label.h"
#include "app/music_page.h"
#include "app/save_questions.h"
#include "app/session_status.h"
#include "app/setup_page.h"
#include "app/speech_page.h"
#include "app/system_information.h"
#include "app/triggers_page.h"
#include "card/firmware.h"
#include "model/numbers.h"
#include "platform/error.h"
#include "platform/paths.h"
#include "ui_main_window.h"

namespace tessaly {

namespace {

constexpr int KeepCopyEveryMs = 60 * 1000;
const QString CardFiles = QStringLiteral("TRL-740 Card files (*.crd2)");

}  // namespace

MainWindow::MainWindow(ProjectSession& session, const Services& services)
    : session_(session),
      services_(services),
      folders_(foldersOfProgram(services.appFolder, services.userFolder)),
      ui_(std::make_unique<Ui::MainWindow>()),
      statusText_(new ElidedLabel) {
    ui_->setupUi(this);
    statusText_->setObjectName("lblStatus");
    statusText_->setTextFormat(Qt::PlainText);
    statusText_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    ui_->sbStatusBar->addWidget(statusText_, 1);
    sessionStatus_ = new SessionStatus(session_, ui_->sbStatusBar);
    connect(sessionStatus_, &SessionStatus::bringBackChosen, this, &MainWindow::bringBack);
    addPages();
    // Large enough for every page, whatever the font, if the screen is.
    const QSize frame(0, style()->pixelMetric(QStyle::PM_TitleBarHeight));
    const QSize tabs(ui_->Tabs->tabBar()->sizeHint().width(), 0);
    resize(size()
               .expandedTo(sizeHint())
               .expandedTo(tabs)
               .boundedTo(screen()->availableSize() - frame));

    const auto triggered = [this](QAction* action, void (MainWindow::*handler)()) {
        connect(action, &QAction::triggered, this, handler);
    };
    triggered(ui_->mnuFileNew, &MainWindow::mnuFileNew_Click);
    triggered(ui_->mnuFileOpen, &MainWindow::mnuFileOpen_Click);
    triggered(ui_->mnuFileSave, &MainWindow::mnuFileSave_Click);
    triggered(ui_->mnuFileSaveAs, &MainWindow::mnuFileSaveAs_Click);
    triggered(ui_->mnuFileRecover, &MainWindow::mnuFileRecover_Click);
    triggered(ui_->mnuFileExit, &MainWindow::mnuFileExit_Click);
    triggered(ui_->mnuHelpManual, &MainWindow::mnuHelpManual_Click);
    triggered(ui_->mnuHelpAbout, &MainWindow::mnuHelpAbout_Click);
    connect(ui_->Tabs, &QTabWidget::currentChanged, this, &MainWindow::Tabs_Click);

    auto* timer = new QTimer(this);
    timer->setObjectName("tmrRecovery");
    timer->setInterval(KeepCopyEveryMs);
    connect(timer, &QTimer::timeout, this, &MainWindow::tmrRecovery_Timer);
    timer->start();
    connect(qApp, &QGuiApplication::commitDataRequest, this, &MainWindow::Form_SessionEnds);
}

MainWindow::~MainWindow() {
    session_.setRecovery(nullptr);
}

void MainWindow::addPages() {
    ui_->Tabs->addTab(new SpeechPage(session_.project, services_), "Speech Files");
    ui_->Tabs->addTab(new MusicPage(session_.project, services_), "Music Files");
    // Two ampersands are shown as one.
    ui_->Tabs->addTab(new TriggersPage(session_.project), "Triggers && Attributes");
    setup_ = new SetupPage(session_.project, services_);
    ui_->Tabs->addTab(setup_, "Setup Items");
    createCard_ = new CreateCardPage(session_, services_, totals_);
    ui_->Tabs->addTab(createCard_, "Create Card");
    connect(createCard_, &CreateCardPage::totalsMeasured, this, &MainWindow::showTotals);
    for (int i = 0; i < ui_->Tabs->count(); ++i) {
        auto* page = qobject_cast<Page*>(ui_->Tabs->widget(i));
        connect(page, &Page::projectChanged, this, &MainWindow::showCaption);
        connect(page, &Page::summaryDue, this, &MainWindow::measure);
    }
}

bool MainWindow::startUp() {
    if (!services_.instance.isOnlyOne()) {
        services_.prompts.tell({.text = "A previous instance of Tessaly is still running.  Use "
                                        "CTRL-ALT-DEL to stop the previous task, and run the "
                                        "program again.",
                                .icon = Message::Icon::Exclamation,
                                .title = "Tessaly Error "});
        return false;
    }
    session_.startNew();
    createCard_->endUpdate();
    if (!recovery_) {
        recovery_ = std::make_unique<RecoveryFolder>(services_.files,
                                                     pathIn(services_.userFolder, "recovery"));
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
            return "Cannot find TRL740 firmware file " + file + ". Please reinstall Tessaly.";
        firmwareVersion_ = firmwareVersion(services_.files, file);
        statusText_->setText(QString(40, ' ') + "TRL740 firmware version: " + firmwareVersion_);
        return {};
    } catch (const TessalyError& error) {
        return error.description;
    }
}

void MainWindow::offerRecovery() {
    const auto copy = recovery_ ? recovery_->takeCrashedCopy() : std::nullopt;
    if (copy && services_.prompts.ask({.text = "Tessaly was not closed properly. Open the copy "
                                               "that it kept of the unsaved project?\r" +
                                               copy->description(),
                                       .icon = Message::Icon::Question}))
        recover(*copy);
}

// Keeps a copy of what is about to be discarded. False when that fails and the operator would
// rather not go on.
bool MainWindow::keepBeforeDiscard() {
    const QString problem = session_.keepCopy();
    return problem.isEmpty() ||
           services_.prompts.ask({.text = "The unsaved project could not be kept for recovery (" +
                                          problem + ").  Continue and lose it?",
                                  .icon = Message::Icon::Exclamation},
                                 true);
}

void MainWindow::mnuFileNew_Click() {
    createCard_->afterRun([this] {
        if (!services_.prompts.ask({.text = "You will lose any unsaved changes!  Continue? ",
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
    createCard_->afterRun([this] {
        if (keepBeforeDiscard())
            openProject();
    });
}

void MainWindow::openProject() {
    session_.clear();
    measure();
    showProject();
    const QString path = services_.prompts.openFile(
        {.filter = CardFiles, .folder = folders_.projectsStart(services_.files)});
    if (!path.isEmpty())
        readProjectFile(path);
}

void MainWindow::openAtStart(const QString& path) {
    if (session_.differs())
        services_.prompts.tell(
            {.text = QString("%1 was not opened, because the recovered project is not saved yet. "
                             "Save that first, then open the file with File > Open.")
                         .arg(shownPath(path))});
    else
        readProjectFile(path);
}

void MainWindow::readProjectFile(const QString& path) {
    try {
        const ReadReport report = session_.open(path);
        if (!report.isComplete)
            services_.prompts.tell(
                {.text = QString("%1 could be read up to byte %2 only: %3.\r%4 could be read. "
                                 "The project has no file now, so that the next Save asks for a "
                                 "name and leaves the damaged file as it is.")
                             .arg(shownPath(path))
                             .arg(report.stoppedAt)
                             .arg(report.stopReason, counted(report.records, "record")),
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
    const QString path = services_.prompts.saveFile(
        {.filter = CardFiles, .folder = folders_.projectsStart(services_.files), .suffix = "crd2"});
    if (!path.isEmpty())
        saveTo(path);
}

bool MainWindow::saveTo(const QString& path) {
    try {
        session_.save(path);
        showCaption();
        return true;
    } catch (const TessalyError& error) {
        services_.prompts.tell({.text = "The project was not saved.\r" + error.description,
                                .icon = Message::Icon::Exclamation});
        return false;
    }
}

void MainWindow::mnuFileRecover_Click() {
    createCard_->afterRun([this] {
        session_.keepCopy();  // what is open now is on offer, too
        const QList<RecoveryCopy> copies = recovery_ ? recovery_->copies() : QList<RecoveryCopy>();
        if (copies.isEmpty()) {
            services_.prompts.tell({.text = "There are no recovery copies."});
            return;
        }
        QStringList lines;
        for (const RecoveryCopy& copy : copies)
            lines.append(copy.description());
        const int line = services_.prompts.pickLine("Recover", lines);
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
               {.text = "Changes will be lost unless the card file was saved.  Really exit?",
                .icon = Message::Icon::Exclamation});
}

// A session that ends asks nothing, but loses nothing either.
void MainWindow::Form_SessionEnds() {
    session_.keepCopy();
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
    event->accept();  // the other windows belong to this one, and end with it
}

void MainWindow::mnuHelpManual_Click() {
    const QString& file = folders_.manualFile;
    const bool exists = services_.files.fileSize(file).has_value();
    if (!exists)
        services_.prompts.tell(
            {.text = "Cannot find the manual " + file + ".", .icon = Message::Icon::Exclamation});
    else if (!services_.prompts.openDocument(file))
        services_.prompts.tell({.text = "No program could be found that shows the manual.  It is "
                                        "the file " +
                                        file + ", for any web browser.",
                                .icon = Message::Icon::Exclamation});
}

void MainWindow::mnuHelpAbout_Click() {
    AboutWindow(firmwareVersion_, folders_.makersFiles(), services_.prompts, showSystemInformation,
                this)
        .exec();
}

Page* MainWindow::currentPage() const {
    return qobject_cast<Page*>(ui_->Tabs->currentWidget());
}

void MainWindow::Tabs_Click() {
    if (Page* page = currentPage())
        page->showProject();
}

void MainWindow::showProject() {
    for (int i = 0; i < ui_->Tabs->count(); ++i)
        qobject_cast<Page*>(ui_->Tabs->widget(i))->projectReplaced();
    Tabs_Click();
    showCaption();
}

// Shows another project, the system texts that it brought included.
void MainWindow::showReplaced() {
    showProject();
    setup_->showSystemTexts();
}

void MainWindow::measure() {
    totals_ = updateSummary(session_.project, services_.files);
    showTotals();
}

void MainWindow::showTotals() {
    statusText_->setText(summaryLine(totals_, firmwareVersion_));
    showCaption();
}

void MainWindow::showCaption() {
    QString caption = "TRL740 Card Preparation";
    if (!session_.fileName().isEmpty())
        caption += " - " + QFileInfo(session_.fileName()).fileName();
    setWindowTitle(caption + "[*]");
    setWindowModified(session_.project.unsavedChanges);
    sessionStatus_->show();
}

}  // namespace tessaly
