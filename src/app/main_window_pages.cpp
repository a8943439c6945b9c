// SPDX-License-Identifier: GPL-3.0-or-later
// What the main window is made of and what it shows; main_window.cpp has what happens to projects.
#include "app/main_window.h"

#include <QApplication>
#include <QFileInfo>
#include <QScreen>
#include <QStyle>
#include <QTabBar>
#include <QTableView>
#include <QTimer>

#include "app/create_card_page.h"
#include "app/find_bar.h"
#include "app/list_section.h"
#include "app/listening.h"
#include "app/music_page.h"
#include "app/session_status.h"
#include "app/setup_page.h"
#include "app/small_widgets.h"
#include "app/sound_watch.h"
#include "app/speech_page.h"
#include "app/triggers_page.h"
#include "platform/paths.h"
#include "ui_main_window.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

constexpr int KeepCopyEveryMs = 60 * 1000;

// The pages that places are found on.
constexpr int SpeechIndex = 0, MusicIndex = 1, SetupIndex = 3;

}  // namespace

MainWindow::MainWindow(ProjectSession& session, const Services& services)
    : session_(session),
      history_(session.project),
      remembered_(pathIn(services.userFolder, u"tessaly.ini"_s)),
      prompts_(services.prompts, remembered_),
      services_{services.files,  services.drives,    prompts_,
                services.tags,   services.instance,  services.sounds,
                services.player, services.appFolder, services.userFolder},
      folders_(foldersOfProgram(services.appFolder, services.userFolder)),
      ui_(std::make_unique<Ui::MainWindow>()),
      statusText_(new ElidedLabel),
      playing_(new ElidedLabel),
      listening_(new Listening(services.player, prompts_, this)) {
    ui_->setupUi(this);
    statusText_->setObjectName(u"lblStatus"_s);
    playing_->setObjectName(u"lblPlaying"_s);
    for (ElidedLabel* text : {statusText_, playing_}) {  // one in place of the other
        text->setTextFormat(Qt::PlainText);
        text->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        ui_->sbStatusBar->addWidget(text, 1);
    }
    playing_->hide();
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
    standWhereRemembered();
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

void MainWindow::standWhereRemembered() {
    const Remembered::Window window = remembered_.window();
    if (window.page > 0 && window.page < ui_->Tabs->count())
        ui_->Tabs->setCurrentIndex(window.page);
    if (!window.place.isValid())
        return;
    const int titleBar = style()->pixelMetric(QStyle::PM_TitleBarHeight);
    QList<QRect> available;
    for (const QScreen* one : QGuiApplication::screens())
        available.append(one->availableGeometry().adjusted(0, titleBar, 0, 0));
    setGeometry(placeOnScreen(window.place, available));
    if (window.isMaximized)
        setWindowState(windowState() | Qt::WindowMaximized);
}

void MainWindow::remember() {
    remembered_.keepWindow({.place = normalGeometry(),
                            .isMaximized = isMaximized(),
                            .page = ui_->Tabs->currentIndex()});
}

Page* MainWindow::page(int index) const {
    return qobject_cast<Page*>(ui_->Tabs->widget(index));
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
    connect(createCard_, &CreateCardPage::placeChosen, this, &MainWindow::goTo);
    connect(createCard_, &CreateCardPage::checkSoundChosen, this,
            &MainWindow::mnuFileCheckSound_Click);
    connect(createCard_, &CreateCardPage::writing, listening_, &Listening::stop);
    connect(listening_, &Listening::changed, this, &MainWindow::showPlaying);
    connect(createCard_, &CreateCardPage::findMissingChosen, this,
            &MainWindow::mnuFileFindMissing_Click);
    for (int i = 0; i < ui_->Tabs->count(); ++i) {
        Page* one = page(i);
        connect(one, &Page::projectChanged, this, [this] {
            history_.edited(view());
            showCaption();
        });
        const auto look = [this] { history_.looked(view()); };
        connect(one, &Page::looked, this, look);
        for (const LineList* list : one->findChildren<LineList*>())
            connect(list, &LineList::rowChanged, this, look);
        connect(one, &Page::editBegins, this, [this] { history_.begin(); });
        connect(one, &Page::editEnds, this, [this] { history_.end(view()); });
        connect(one, &Page::summaryDue, this, &MainWindow::measure);
        connect(&services_.sounds, &SoundWatch::learned, one, &Page::soundLearned);
        connect(one, &Page::listenChosen, listening_, &Listening::play);
        if (const ListenButton* button = one->listenButton()) {
            connect(button, &ListenButton::listenChosen, listening_, &Listening::play);
            connect(button, &ListenButton::stopChosen, listening_, &Listening::stop);
        }
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
        view.rows.append(page(i)->selectedRows());
    return view;
}

void MainWindow::showPlaying() {
    const QString words = listening_->words();
    playing_->setText(words);
    playing_->setVisible(!words.isEmpty());
    statusText_->setVisible(words.isEmpty());
    for (int i = 0; i < ui_->Tabs->count(); ++i)
        if (ListenButton* button = page(i)->listenButton())
            button->showPlaying(listening_->isPlaying());
}

// By the key: plays what is selected in front, or stops what plays, also where nothing can be
// selected.
void MainWindow::listenOrStop() {
    ListenButton* button = page(ui_->Tabs->currentIndex())->listenButton();
    if (listening_->isPlaying())
        listening_->stop();
    else if (button)
        button->click();
}

void MainWindow::showProject() {
    listening_->stop();
    for (int i = 0; i < ui_->Tabs->count(); ++i)
        page(i)->projectReplaced();
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
            page(i)->selectRows(view.rows[i]);
    page(view.page)->selectRows(view.rows[view.page]);
    setup_->showSystemTexts();
    measure();
}

FindBar& MainWindow::findBar() {
    if (!findBar_) {
        findBar_ = new FindBar(session_.project, centralWidget());
        ui_->layout_central->addWidget(findBar_);
        connect(findBar_, &FindBar::chosen, this, &MainWindow::goTo);
    }
    return *findBar_;
}

// Brings a place that was found to the front.
void MainWindow::goTo(const Place& place) {
    using Kind = Place::Kind;
    const bool isMusic =
        place.kind == Kind::MusicList || place.kind == Kind::Track || place.kind == Kind::MusicFile;
    const int index = place.kind == Kind::Chime ? SetupIndex : isMusic ? MusicIndex : SpeechIndex;
    ui_->Tabs->setCurrentIndex(index);
    QList<Rows> rows = page(index)->selectedRows();
    if (place.kind == Kind::MusicList)
        rows = {{place.first}, {}};
    else if (place.kind == Kind::Title)
        rows[0] = {place.first};
    else if (place.kind == Kind::Language)
        rows[1] = {place.second};
    else if (place.kind != Kind::Chime)
        rows = {{place.first}, {place.second}};
    page(index)->selectRows(rows);
    history_.looked(view());
    const QString name = place.kind == Kind::Chime       ? u"txtChimeFileName"_s
                         : place.kind == Kind::MusicList ? u"lstMuList"_s
                         : isMusic                       ? u"lstMuTrack"_s
                         : place.kind == Kind::Language  ? u"lstLangs"_s
                                                         : u"lstSpTitles"_s;
    auto* widget = page(index)->findChild<QWidget*>(name);
    if (!widget->isVisible())  // speech as one table
        widget = page(index)->findChild<QTableView*>();
    widget->setFocus();
    if (auto* list = qobject_cast<QAbstractItemView*>(widget))
        list->scrollTo(list->currentIndex());
}

// Shows another project, the system texts that it brought included.
void MainWindow::showReplaced() {
    showProject();
    setup_->showSystemTexts();
}

void MainWindow::measure() {
    const SourceFiles sources = measureSources(session_.project, services_.files);
    totals_ = updateSummary(sources);
    services_.sounds.lookAtAll(session_.project, sources);
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

}  // namespace tessaly
