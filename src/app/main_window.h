// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMainWindow>
#include <memory>

#include "app/edit_history.h"
#include "app/prompts.h"
#include "app/remembered.h"
#include "card/card_files.h"
#include "editor/find.h"
#include "model/project_session.h"
#include "model/recovery.h"

class QCloseEvent;

namespace Ui {
class MainWindow;
}

namespace tessaly {

class CreateCardPage;
class ElidedLabel;
class FindBar;
class KeysWindow;
class Listening;
class Page;
class RecentMenu;
class SessionStatus;
class SetupPage;

/// The program's working window: menus, five pages, status bar.
class MainWindow : public QMainWindow {
    Q_OBJECT

 public:
    MainWindow(ProjectSession& session, const Services& services);
    ~MainWindow() override;

    /// What every start does, in its order. False when another instance is running: that was said,
    /// and the program is to end.
    bool startUp();

    /// After a crash, offers the newest recovery copy once. Called when the window is shown.
    void offerRecovery();

    /// Opens the file that the program was started with, as Open does with the one that was chosen.
    /// Called last, when the window is shown. A project that was recovered just now is not saved
    /// yet and stays; that is said.
    void openAtStart(const QString& path);

 protected:
    void closeEvent(QCloseEvent* event) override;

 private slots:
    void Form_SessionEnds();

 private:
    void mnuFileNew_Click();
    void mnuFileOpen_Click();
    void mnuFileSave_Click();
    void mnuFileSaveAs_Click();
    void mnuFileSaveWithFiles_Click();
    void mnuFileRecover_Click();
    void mnuFileFindMissing_Click();
    void mnuFileCheckSound_Click();
    void mnuFileExit_Click();
    void mnuHelpManual_Click();
    void mnuHelpKeys_Click();
    void mnuHelpAbout_Click();
    void Tabs_Click();
    void tmrRecovery_Timer();

    void connectMenus();
    void addIcons();
    void addPageKeys();
    void addPages();
    void standWhereRemembered();
    void remember();
    QString readFirmwareVersion();
    void open(const QString& path);
    void openProject(const QString& path);
    void readProjectFile(const QString& path);
    bool saveTo(const QString& path);
    bool keepBeforeDiscard();
    void recover(const RecoveryCopy& copy);
    void bringBack();
    bool confirmExit();
    void closeAll();

    WindowView view() const;
    void showProject();
    void showReplaced();
    void showRestored(const WindowView& view);
    FindBar& findBar();
    void goTo(const Place& place);
    Page* page(int index) const;
    void measure();
    void showTotals();
    void showPlaying();
    void listenOrStop();
    void showCaption();

    ProjectSession& session_;
    EditHistory history_;
    Remembered remembered_;
    RememberingPrompts prompts_;
    const Services services_;  ///< with those prompts
    const SupportFolders folders_;
    const std::unique_ptr<Ui::MainWindow> ui_;
    ElidedLabel* statusText_;
    ElidedLabel* playing_;  ///< in its place while there is something to say of listening
    Listening* listening_;
    SessionStatus* sessionStatus_;
    RecentMenu* recent_;
    FindBar* findBar_ = nullptr;  ///< once it was asked for
    KeysWindow* keys_ = nullptr;  ///< once it was asked for
    CardTotals totals_;           ///< as last measured, by whichever page
    SetupPage* setup_ = nullptr;
    CreateCardPage* createCard_ = nullptr;
    std::unique_ptr<RecoveryFolder> recovery_;
    QString firmwareVersion_;
    bool isClosing_ = false;
};

}  // namespace tessaly
