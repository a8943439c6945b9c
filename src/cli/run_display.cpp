// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/run_display.h"

#include <csignal>
#include <cstdio>
#include <utility>

#include "cli/console.h"

namespace tessaly::cli {

using namespace Qt::StringLiterals;

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
    const QString names[] = {u"Checking"_s, u"Erasing"_s, u"Copying"_s, u"Settling"_s,
                             u"Verifying"_s};
    return names[size_t(phase)];
}

RunDisplay::RunDisplay(bool answerYes) : answerYes_(answerYes), isTerminal_(outputIsTerminal()) {}

RunDisplay::~RunDisplay() {
    std::signal(SIGINT, SIG_DFL);
}

bool RunDisplay::confirm(const QString& question) {
    return answerYes_ || askYesNo(question);
}

void RunDisplay::begin() {
    watchForStop();
    print(RunProgress().caption());
}

void RunDisplay::watchForStop() {
    interrupted = 0;
    std::signal(SIGINT, onInterrupt);
}

void RunDisplay::clear() {
    if (!isTerminal_)
        return;
    std::fputs("\r\x1b[K", stdout);
    std::fflush(stdout);
}

void RunDisplay::showProgress(const RunProgress& progress) {
    if (std::exchange(phase_, progress.phase) != progress.phase) {
        drawTimer_.invalidate();
        lastQuarter_ = -1;
    }
    if (progress.bytesTotal == 0)
        return;
    if (isTerminal_)
        drawBar(progress);
    else
        printStep(progress);
}

void RunDisplay::drawBar(const RunProgress& progress) {
    const qint64 done = progress.bytesDone, total = progress.bytesTotal;
    if (drawTimer_.isValid() && drawTimer_.elapsed() < DrawEveryMs && done < total)
        return;
    drawTimer_.start();
    const int filled = int(BarWidth * done / total);
    QString line = phaseName(phase_).leftJustified(10) + u'[' + QString(filled, u'#') +
                   QString(BarWidth - filled, u'.') + u"] "_s;
    if (phase_ == RunPhase::Copy)
        line += u"%1 of %2 files  "_s.arg(progress.trackFile).arg(progress.trackFileCount);
    line += u"%1 of %2  %3/s"_s.arg(size(done), size(total), size(progress.bytesPerSecond()));
    if (const qint64 left = progress.millisecondsLeft(); left >= 0)
        line += u"  %1 left"_s.arg(durationText(left));
    const QByteArray bytes = '\r' + line.toUtf8() + "\x1b[K";
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
    std::fflush(stdout);
}

void RunDisplay::printStep(const RunProgress& progress) {
    const int quarter = int(4 * progress.bytesDone / progress.bytesTotal);
    if (std::exchange(lastQuarter_, quarter) != quarter)
        print(u"%1: %2 % of %3"_s.arg(phaseName(phase_))
                  .arg(25 * quarter)
                  .arg(size(progress.bytesTotal)));
}

bool RunDisplay::checkForStop() {
    return interrupted != 0;
}

// What failed, and where, is the command's one line on standard error.
void RunDisplay::finished(const CardRunReport& report) {
    clear();
    print(report.message());
}

}  // namespace tessaly::cli
