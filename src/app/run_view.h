#pragma once

#include <functional>
#include <utility>

#include "app/prompts.h"
#include "card/card_writer.h"

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

}  // namespace tessaly
