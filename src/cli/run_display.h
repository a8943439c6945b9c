#pragma once

#include <QElapsedTimer>
#include <QString>

#include "card/card_writer.h"
#include "card/run_estimate.h"

namespace tessaly::cli {

/// Shows a card run on a terminal as one line that moves, elsewhere as plain lines, and asks the
/// operator unless the answer is known. Ctrl+C ends the program while it asks, and a run as an
/// error of its own; a second one ends the program at once.
class RunDisplay : public CardRunObserver {
 public:
    explicit RunDisplay(bool answerYes);
    ~RunDisplay() override;

    bool confirm(const QString& question) override;
    void showProgress(const QString& caption) override;
    void hideProgress() override;
    void setBarMaximum(int maximum) override { files_ = maximum - 1; }
    void setBarValue(int value) override { file_ = value; }
    void setCaption(const QString&) override {}
    void phaseProgress(RunPhase phase, qint64 done, qint64 total) override;
    bool keepGoing() override;
    void succeeded(const QString& message) override;
    void failed(const QString& title, const QString& text, const QString& second) override;

 private:
    void drawBar(qint64 done, qint64 total);
    void printStep(qint64 done, qint64 total);

    const bool answerYes_;
    const bool isTerminal_;
    int files_ = 0;
    int file_ = 0;
    RunPhase phase_ = RunPhase::Prepare;
    RunEstimate estimate_;
    QElapsedTimer drawTimer_;
    int lastQuarter_ = -1;
};

/// What a phase is called.
QString phaseName(RunPhase phase);

}  // namespace tessaly::cli
