#include "cli/run_display.h"

#include <csignal>
#include <cstdio>

#include "cli/console.h"

namespace tessaly::cli {

namespace {

constexpr int BarWidth = 30;
constexpr int DrawEveryMs = 100;

// A signal handler can reach nothing but a global.
volatile std::sig_atomic_t interrupted = 0;

void onInterrupt(int) {
    interrupted = 1;
    std::signal(SIGINT, SIG_DFL);  // a second one ends the process, in the midst of a flush too
}

}  // namespace

QString phaseName(RunPhase phase) {
    switch (phase) {
        case RunPhase::Prepare:
            return "Checking";
        case RunPhase::Erase:
            return "Erasing";
        case RunPhase::Copy:
            return "Copying";
        case RunPhase::Flush:
            return "Settling";
        case RunPhase::Verify:
            break;
    }
    return "Verifying";
}

RunDisplay::RunDisplay(bool answerYes) : answerYes_(answerYes), isTerminal_(outputIsTerminal()) {}

RunDisplay::~RunDisplay() {
    std::signal(SIGINT, SIG_DFL);
}

bool RunDisplay::confirm(const QString& question) {
    return answerYes_ || askYesNo(question);
}

void RunDisplay::showProgress(const QString& caption) {
    interrupted = 0;
    std::signal(SIGINT, onInterrupt);
    print(caption);
}

void RunDisplay::hideProgress() {
    if (isTerminal_) {
        std::fputs("\r\x1b[K", stdout);
        std::fflush(stdout);
    }
}

void RunDisplay::phaseProgress(RunPhase phase, qint64 done, qint64 total) {
    if (done == 0) {
        phase_ = phase;
        estimate_.start();
        drawTimer_.invalidate();
        lastQuarter_ = -1;
    }
    if (total == 0)
        return;
    if (isTerminal_)
        drawBar(done, total);
    else
        printStep(done, total);
}

void RunDisplay::drawBar(qint64 done, qint64 total) {
    if (drawTimer_.isValid() && drawTimer_.elapsed() < DrawEveryMs && done < total)
        return;
    drawTimer_.start();
    const int filled = int(BarWidth * done / total);
    QString line = phaseName(phase_).leftJustified(10) + '[' + QString(filled, '#') +
                   QString(BarWidth - filled, '.') + "] ";
    if (phase_ == RunPhase::Copy)
        line += QString("%1 of %2 files  ").arg(file_).arg(files_);
    line += QString("%1 of %2  %3/s")
                .arg(size(done), size(total), size(estimate_.bytesPerSecond(done)));
    if (const qint64 left = estimate_.millisecondsLeft(done, total); left >= 0)
        line += "  " + durationText(left) + " left";
    const QByteArray bytes = '\r' + line.toUtf8() + "\x1b[K";
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
    std::fflush(stdout);
}

void RunDisplay::printStep(qint64 done, qint64 total) {
    const int quarter = int(4 * done / total);
    if (quarter == lastQuarter_)
        return;
    lastQuarter_ = quarter;
    print(QString("%1: %2 % of %3").arg(phaseName(phase_)).arg(25 * quarter).arg(size(total)));
}

bool RunDisplay::keepGoing() {
    return interrupted == 0;
}

void RunDisplay::succeeded(const QString& message) {
    print(message);
}

void RunDisplay::failed(const QString&, const QString&, const QString& second) {
    // What failed, and where, is the command's one line on standard error.
    print(second);
}

}  // namespace tessaly::cli
