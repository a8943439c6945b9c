#pragma once

#include <functional>
#include <utility>

#include "app/prompts.h"
#include "card/card_writer.h"
#include "card/run_estimate.h"

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
    void showProgress(const QString& caption) override;
    void hideProgress() override;
    void setBarMaximum(int maximum) override;
    void setBarValue(int value) override;
    void setCaption(const QString& caption) override;
    void phaseProgress(RunPhase phase, qint64 done, qint64 total) override;
    bool keepGoing() override;
    void succeeded(const QString& message) override;
    void failed(const QString& title, const QString& text, const QString& second) override;

 private:
    Ui::CreateCardPage& ui_;
    Prompts& prompts_;
    const bool& stopRequested_;
    const std::function<void()> beforeLook_;
    RunEstimate estimate_;
};

}  // namespace tessaly
