// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "app/page.h"
#include "app/prompts.h"
#include "card/card_checks.h"
#include "card/card_writer.h"
#include "editor/find.h"
#include "model/project_session.h"

namespace Ui {
class CreateCardPage;
}

namespace tessaly {

/// Shows a run on the Create Card page and keeps the window alive meanwhile.
class RunView : public CardRunObserver {
 public:
    /// `stopRequested` is set from outside, by what the operator clicks during the run.
    /// `beforeLook` is called before the operator gets to see the window again.
    RunView(Ui::CreateCardPage& ui, Prompts& prompts, const bool& stopRequested,
            std::function<void()> beforeLook)
        : ui_(ui),
          prompts_(prompts),
          stopRequested_(stopRequested),
          beforeLook_(std::move(beforeLook)) {}

    bool confirm(const QString& question) override;
    void begin() override;
    void showProgress(const RunProgress& progress) override;
    bool checkForStop() override;
    void finished(const CardRunReport& report) override;

 private:
    Ui::CreateCardPage& ui_;
    Prompts& prompts_;
    const bool& stopRequested_;
    const std::function<void()> beforeLook_;
};

/// The page that checks a project, picks the card's drive and writes the card.
///
/// A run keeps the window alive: whatever is clicked meanwhile comes back here. What must not go on
/// beside a run goes through afterRun(), which asks for the run to be stopped first.
class CreateCardPage : public Page {
    Q_OBJECT

 public:
    /// `totals` is the summary that all pages share.
    CreateCardPage(ProjectSession& session, const Services& services, CardTotals& totals,
                   QWidget* parent = nullptr);
    ~CreateCardPage() override;

    /// Runs the checks; while a card is written, once that has ended.
    void showProject() override;
    /// The checks are for a page that is seen.
    void selectRows(const QList<Rows>& rows) override;
    void soundLearned() override;

    bool isRunning() const { return writer_.isRunning(); }

    /// Does `action` at once when no card is being written. Otherwise asks whether to stop, and on
    /// Yes does it after the run has ended.
    void afterRun(std::function<void()> action);

    /// Stops the run that is going on without a question, and does `action` after it.
    void stopThen(std::function<void()> action);

    /// Lets the next creation be a whole one after an update that was declined or failed.
    void endUpdate();

 signals:
    /// The size summary was measured anew.
    void totalsMeasured();
    /// The operator wants to see an item that a check is about.
    void placeChosen(const Place& place);
    /// The operator wants to know how the files sound.
    void checkSoundChosen();
    /// A card is about to be written.
    void writing();
    /// The operator wants to look for files that are missing.
    void findMissingChosen();

 private:
    void buttSelectCF_Click();
    void buttCFCheckAgain_Click();
    void buttCreateCard_Click();
    void buttCreateXD3_Click();
    void buttUpdateFirmware_Click();
    void buttGiveFiles_Click();
    void buttCancelWrite_Click();
    void lstSound_Activated(int line);

    void renewChecks();
    void showChecks(const CardChecks& checks);
    void showUpdateBegun();
    bool askToStop();
    void write(bool settingsOnly);
    void showMark();
    CardJob job(bool settingsOnly) const;
    void updateFirmwareOnCard();

    ProjectSession& session_;
    const Services& services_;
    const SupportFolders folders_;
    const std::unique_ptr<Ui::CreateCardPage> ui_;
    CardWriter writer_;
    CardTotals& totals_;
    bool stopRequested_ = false;
    bool checksDue_ = false;
    bool markShown_ = false;  ///< while a card is written
    std::function<void()> afterRun_;
};

}  // namespace tessaly
