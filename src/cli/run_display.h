// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QString>

#include "card/card_writer.h"

namespace tessaly::cli {

/// Shows a card run on a terminal as one line that moves, elsewhere as plain lines, and asks the
/// operator unless the answer is known. Ctrl+C ends the program while it asks, and a run as an
/// error of its own; a second one ends the program at once.
class RunDisplay : public CardRunObserver {
 public:
    explicit RunDisplay(bool answerYes);
    ~RunDisplay() override;

    bool confirm(const QString& question) override;
    void begin() override;
    void showProgress(const RunProgress& progress) override;
    bool checkForStop() override;
    void finished(const CardRunReport& report) override;

    /// What begin() and finished() do for any work of that kind: from now on Ctrl+C stops it; what
    /// was drawn on the terminal goes.
    void watchForStop();
    void clear();

 private:
    void drawBar(const RunProgress& progress);
    void printStep(const RunProgress& progress);

    const bool answerYes_;
    const bool isTerminal_;
    RunPhase phase_ = RunPhase::Prepare;
    QElapsedTimer drawTimer_;
    int lastQuarter_ = -1;
};

/// What a phase is called.
QString phaseName(RunPhase phase);

}  // namespace tessaly::cli
