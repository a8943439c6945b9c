// SPDX-License-Identifier: GPL-3.0-or-later
// The main window's menus and keys.
#include "app/main_window.h"

#include <QShortcut>

#include "app/about_window.h"
#include "app/create_card_page.h"
#include "app/find_bar.h"
#include "app/keys_window.h"
#include "app/recent_menu.h"
#include "app/relink_dialog.h"
#include "app/session_status.h"
#include "app/small_widgets.h"
#include "app/sound_window.h"
#include "ui_main_window.h"

namespace tessaly {

using namespace Qt::StringLiterals;

void MainWindow::connectMenus() {
    const auto triggered = [this](QAction* action, void (MainWindow::*handler)()) {
        connect(action, &QAction::triggered, this, handler);
    };
    int steps = 0;  // stand before what the menu has besides
    const auto addStep = [&](QAction* action, const QString& name,
                             const QList<QKeySequence>& keys) {
        action->setObjectName(name);
        action->setShortcuts(keys);
        ui_->mnuEdit->insertAction(ui_->mnuEdit->actions().at(steps++), action);
    };
    addStep(history_.stack().createUndoAction(this, u"&Undo"_s), u"mnuEditUndo"_s,
            {Qt::CTRL | Qt::Key_Z});
    addStep(history_.stack().createRedoAction(this, u"&Redo"_s), u"mnuEditRedo"_s,
            {Qt::CTRL | Qt::SHIFT | Qt::Key_Z, Qt::CTRL | Qt::Key_Y});
    triggered(ui_->mnuFileNew, &MainWindow::mnuFileNew_Click);
    triggered(ui_->mnuFileOpen, &MainWindow::mnuFileOpen_Click);
    triggered(ui_->mnuFileSave, &MainWindow::mnuFileSave_Click);
    triggered(ui_->mnuFileSaveAs, &MainWindow::mnuFileSaveAs_Click);
    triggered(ui_->mnuFileSaveWithFiles, &MainWindow::mnuFileSaveWithFiles_Click);
    triggered(ui_->mnuFileRecover, &MainWindow::mnuFileRecover_Click);
    triggered(ui_->mnuFileFindMissing, &MainWindow::mnuFileFindMissing_Click);
    triggered(ui_->mnuFileCheckSound, &MainWindow::mnuFileCheckSound_Click);
    triggered(ui_->mnuFileExit, &MainWindow::mnuFileExit_Click);
    triggered(ui_->mnuHelpManual, &MainWindow::mnuHelpManual_Click);
    triggered(ui_->mnuHelpKeys, &MainWindow::mnuHelpKeys_Click);
    triggered(ui_->mnuHelpAbout, &MainWindow::mnuHelpAbout_Click);
    connect(ui_->mnuEditFind, &QAction::triggered, this, [this] { findBar().open(); });
    connect(ui_->mnuEditFindNext, &QAction::triggered, this, [this] { findBar().goOn(1); });
    connect(ui_->mnuEditFindPrevious, &QAction::triggered, this, [this] { findBar().goOn(-1); });
    recent_ = new RecentMenu(remembered_, this);
    ui_->mnuFile->insertMenu(ui_->mnuFileSave, recent_);
    connect(recent_, &RecentMenu::chosen, this, &MainWindow::open);
    addIcons();
    addPageKeys();
}

void MainWindow::addIcons() {
    const auto set = [](QAction* action, const QString& name, QStyle::StandardPixmap otherwise) {
        action->setIcon(themedIcon(name, otherwise));
    };
    set(ui_->mnuFileNew, u"document-new"_s, QStyle::SP_FileIcon);
    set(ui_->mnuFileOpen, u"document-open"_s, QStyle::SP_DialogOpenButton);
    set(recent_->menuAction(), u"document-open-recent"_s, QStyle::SP_DirOpenIcon);
    set(ui_->mnuFileSave, u"document-save"_s, QStyle::SP_DialogSaveButton);
    set(ui_->mnuFileSaveAs, u"document-save-as"_s, QStyle::SP_DialogSaveButton);
    set(ui_->mnuFileSaveWithFiles, u"folder-new"_s, QStyle::SP_DirIcon);
    set(ui_->mnuFileRecover, u"document-revert"_s, QStyle::SP_BrowserReload);
    set(ui_->mnuFileFindMissing, u"system-search"_s, QStyle::SP_FileDialogContentsView);
    set(ui_->mnuFileCheckSound, u"audio-volume-medium"_s, QStyle::SP_MediaVolume);
    set(ui_->mnuFileExit, u"application-exit"_s, QStyle::SP_DialogCloseButton);
    set(findChild<QAction*>(u"mnuEditUndo"_s), u"edit-undo"_s, QStyle::SP_ArrowBack);
    set(findChild<QAction*>(u"mnuEditRedo"_s), u"edit-redo"_s, QStyle::SP_ArrowForward);
    set(ui_->mnuEditFind, u"edit-find"_s, QStyle::SP_FileDialogContentsView);
    set(ui_->mnuEditFindNext, u"go-down"_s, QStyle::SP_ArrowDown);
    set(ui_->mnuEditFindPrevious, u"go-up"_s, QStyle::SP_ArrowUp);
    set(ui_->mnuHelpManual, u"help-contents"_s, QStyle::SP_DialogHelpButton);
    set(ui_->mnuHelpKeys, u"input-keyboard"_s, QStyle::SP_FileDialogDetailedView);
    set(ui_->mnuHelpAbout, u"help-about"_s, QStyle::SP_MessageBoxInformation);
}

// They work wherever the focus is: no field and no list has a use for them.
void MainWindow::addPageKeys() {
    const auto add = [this](const QKeySequence& key, const auto& pageOf) {
        auto* shortcut = new QShortcut(key, this);
        connect(shortcut, &QShortcut::activated, this,
                [this, pageOf] { ui_->Tabs->setCurrentIndex(pageOf()); });
    };
    const int count = ui_->Tabs->count();
    for (int i = 0; i < count; ++i) {
        const QKeySequence key(Qt::ALT | Qt::Key(Qt::Key_1 + i));
        add(key, [i] { return i; });
        ui_->Tabs->setTabToolTip(i, key.toString(QKeySequence::NativeText));
    }
    add(Qt::CTRL | Qt::Key_PageDown,
        [this, count] { return (ui_->Tabs->currentIndex() + 1) % count; });
    add(Qt::CTRL | Qt::Key_PageUp,
        [this, count] { return (ui_->Tabs->currentIndex() + count - 1) % count; });
    auto* listen = new QShortcut(Qt::CTRL | Qt::Key_Space, this);
    listen->setAutoRepeat(false);
    connect(listen, &QShortcut::activated, this, &MainWindow::listenOrStop);
}

void MainWindow::mnuFileFindMissing_Click() {
    const QStringList found = findMissingFiles(session_.project, services_, this);
    if (found.isEmpty())
        return;
    Tabs_Click();
    history_.edited(view());
    measure();
    tellUnsavablePaths(services_.prompts, found);
}

// Not beside a run, which would stand still while the dialog is there.
void MainWindow::mnuFileCheckSound_Click() {
    createCard_->afterRun([this] {
        const auto place = showSoundCheck(session_.project, services_, this);
        measure();  // how loud the files are on average is known now
        for (int i = 0; i < ui_->Tabs->count(); ++i)
            page(i)->soundLearned();
        if (place)
            goTo(*place);
    });
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

void MainWindow::mnuHelpKeys_Click() {
    if (!keys_)
        keys_ = new KeysWindow(this);
    keys_->show();
    keys_->raise();
    keys_->activateWindow();
}

void MainWindow::mnuHelpAbout_Click() {
    AboutWindow(firmwareVersion_, folders_.makersFiles(), services_.prompts, this).exec();
}

}  // namespace tessaly
