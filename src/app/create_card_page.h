#pragma once

#include <functional>
#include <memory>

#include "app/page.h"
#include "app/prompts.h"
#include "card/card_checks.h"
#include "card/card_writer.h"
#include "model/project_session.h"

namespace Ui {
class CreateCardPage;
}

namespace tessaly {

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

 private:
    void buttSelectCF_Click();
    void buttCFCheckAgain_Click();
    void buttCreateCard_Click();
    void buttCreateXD3_Click();
    void buttUpdateFirmware_Click();
    void buttGiveFiles_Click();
    void buttCancelWrite_Click();

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
