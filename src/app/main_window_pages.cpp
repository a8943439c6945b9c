// SPDX-License-Identifier: GPL-3.0-or-later
// What the main window is made of and what it shows; main_window.cpp has what happens to projects.
#include "app/main_window.h"

#include <QApplication>
#include <QFileInfo>
#include <QScreen>
#include <QStyle>
#include <QTabBar>
#include <QTimer>

#include "app/about_window.h"
#include "app/create_card_page.h"
#include "app/list_section.h"
#include "app/music_page.h"
#include "app/session_status.h"
#include "app/setup_page.h"
#include "app/small_widgets.h"
#include "app/speech_page.h"
#include "app/triggers_page.h"
#include "ui_main_window.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

constexpr int KeepCopyEveryMs = 60 * 1000;

}  // namespace

MainWindow::MainWindow(ProjectSession& session, const Services& services)
    : session_(session),
      history_(session.project),
      services_(services),
      folders_(foldersOfProgram(services.appFolder, services.userFolder)),
      ui_(std::make_unique<Ui::MainWindow>()),
      statusText_(new ElidedLabel) {
    ui_->setupUi(this);
    statusText_->setObjectName(u"lblStatus"_s);
    statusText_->setTextFormat(Qt::PlainText);
    statusText_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    ui_->sbStatusBar->addWidget(statusText_, 1);
    sessionStatus_ = new SessionStatus(session_, ui_->sbStatusBar);
    connect(sessionStatus_, &SessionStatus::bringBackChosen, this, &MainWindow::bringBack);
    connect(sessionStatus_, &SessionStatus::undoChosen, this,
            [this] { findChild<QAction*>(u"mnuEditUndo"_s)->trigger(); });
    connect(&history_, &EditHistory::removed, sessionStatus_, &SessionStatus::sayRemoved);
    connect(&history_, &EditHistory::restored, this, &MainWindow::showRestored);
    addPages();
    // Large enough for every page, whatever the font, if the screen is.
    const QSize frame(0, style()->pixelMetric(QStyle::PM_TitleBarHeight));
    const QSize tabs(ui_->Tabs->tabBar()->sizeHint().width(), 0);
    resize(size()
               .expandedTo(sizeHint())
               .expandedTo(tabs)
               .boundedTo(screen()->availableSize() - frame));
    connectMenus();
    connect(ui_->Tabs, &QTabWidget::currentChanged, this, &MainWindow::Tabs_Click);

    auto* timer = new QTimer(this);
    timer->setObjectName(u"tmrRecovery"_s);
    timer->setInterval(KeepCopyEveryMs);
    connect(timer, &QTimer::timeout, this, &MainWindow::tmrRecovery_Timer);
    timer->start();
    connect(qApp, &QGuiApplication::commitDataRequest, this, &MainWindow::Form_SessionEnds);
}

MainWindow::~MainWindow() {
    session_.setRecovery(nullptr);
}

void MainWindow::connectMenus() {
    const auto triggered = [this](QAction* action, void (MainWindow::*handler)()) {
        connect(action, &QAction::triggered, this, handler);
    };
    const auto addStep = [this](QAction* action, const QString& name,
                                const QList<QKeySequence>& keys) {
        action->setObjectName(name);
        action->setShortcuts(keys);
        ui_->mnuEdit->addAction(action);
    };
    addStep(history_.stack().createUndoAction(this, u"&Undo"_s), u"mnuEditUndo"_s,
            {Qt::CTRL | Qt::Key_Z});
    addStep(history_.stack().createRedoAction(this, u"&Redo"_s), u"mnuEditRedo"_s,
            {Qt::CTRL | Qt::SHIFT | Qt::Key_Z, Qt::CTRL | Qt::Key_Y});
    triggered(ui_->mnuFileNew, &MainWindow::mnuFileNew_Click);
    triggered(ui_->mnuFileOpen, &MainWindow::mnuFileOpen_Click);
    triggered(ui_->mnuFileSave, &MainWindow::mnuFileSave_Click);
    triggered(ui_->mnuFileSaveAs, &MainWindow::mnuFileSaveAs_Click);
    triggered(ui_->mnuFileRecover, &MainWindow::mnuFileRecover_Click);
    triggered(ui_->mnuFileExit, &MainWindow::mnuFileExit_Click);
    triggered(ui_->mnuHelpManual, &MainWindow::mnuHelpManual_Click);
    triggered(ui_->mnuHelpAbout, &MainWindow::mnuHelpAbout_Click);
}

void MainWindow::addPages() {
    ui_->Tabs->addTab(new SpeechPage(session_.project, services_), u"Speech Files"_s);
    ui_->Tabs->addTab(new MusicPage(session_.project, services_), u"Music Files"_s);
    // Two ampersands are shown as one.
    ui_->Tabs->addTab(new TriggersPage(session_.project), u"Triggers && Attributes"_s);
    setup_ = new SetupPage(session_.project, services_);
    ui_->Tabs->addTab(setup_, u"Setup Items"_s);
    createCard_ = new CreateCardPage(session_, services_, totals_);
    ui_->Tabs->addTab(createCard_, u"Create Card"_s);
    connect(createCard_, &CreateCardPage::totalsMeasured, this, &MainWindow::showTotals);
    for (int i = 0; i < ui_->Tabs->count(); ++i) {
        auto* page = qobject_cast<Page*>(ui_->Tabs->widget(i));
        connect(page, &Page::projectChanged, this, [this] {
            history_.edited(view());
            showCaption();
        });
        const auto look = [this] { history_.looked(view()); };
        connect(page, &Page::looked, this, look);
        for (const LineList* list : page->findChildren<LineList*>())
            connect(list, &LineList::rowChanged, this, look);
        connect(page, &Page::editBegins, this, [this] { history_.begin(); });
        connect(page, &Page::editEnds, this, [this] { history_.end(view()); });
        connect(page, &Page::summaryDue, this, &MainWindow::measure);
    }
}

void MainWindow::Tabs_Click() {
    qobject_cast<Page*>(ui_->Tabs->currentWidget())->showProject();
    // Qt leaves the focus on the page behind if what had it on this one is disabled by now.
    if (const QWidget* focus = focusWidget(); focus && !focus->isVisible())
        ui_->Tabs->setFocus();
    history_.looked(view());
}

WindowView MainWindow::view() const {
    WindowView view{.page = ui_->Tabs->currentIndex(), .rows = {}};
    for (int i = 0; i < ui_->Tabs->count(); ++i)
        view.rows.append(qobject_cast<Page*>(ui_->Tabs->widget(i))->selectedRows());
    return view;
}

void MainWindow::showProject() {
    for (int i = 0; i < ui_->Tabs->count(); ++i)
        qobject_cast<Page*>(ui_->Tabs->widget(i))->projectReplaced();
    Tabs_Click();
    showCaption();
    history_.start(view());
}

// Shows the project as it was before or after an edit, and where the operator was then.
void MainWindow::showRestored(const WindowView& view) {
    session_.project.unsavedChanges = session_.differs();
    ui_->Tabs->setCurrentIndex(view.page);
    // What is selected for a trigger brings its list on view: the page in front has the last word.
    for (int i = ui_->Tabs->count() - 1; i >= 0; --i)
        if (i != view.page)
            qobject_cast<Page*>(ui_->Tabs->widget(i))->selectRows(view.rows[i]);
    qobject_cast<Page*>(ui_->Tabs->widget(view.page))->selectRows(view.rows[view.page]);
    setup_->showSystemTexts();
    measure();
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
    QString caption = u"TRL740 Card Preparation"_s;
    if (!session_.fileName().isEmpty())
        caption += u" - "_s + QFileInfo(session_.fileName()).fileName();
    setWindowTitle(caption + u"[*]"_s);
    setWindowModified(session_.project.unsavedChanges);
    sessionStatus_->show();
}

void MainWindow::mnuHelpManual_Click() {
    const QString& file = folders_.manualFile;
    const bool exists = services_.files.fileSize(file).has_value();
    if (!exists)
        services_.prompts.tell({.text = u"Cannot find the manual "_s + file + u"."_s,
                                .icon = Message::Icon::Exclamation});
    else if (!services_.prompts.openDocument(file))
        services_.prompts.tell(
            {.text = u"No program could be found that shows the manual.  It is "_s
                     u"the file "_s +
                     file + u", for any web browser."_s,
             .icon = Message::Icon::Exclamation});
}

void MainWindow::mnuHelpAbout_Click() {
    AboutWindow(firmwareVersion_, folders_.makersFiles(), services_.prompts, this).exec();
}

}  // namespace tessaly
