#include "step_table.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <fstream>

namespace tessaly::size {

namespace {

constexpr double PromisedMs = 100;

// How long the program has waited for a processor so far. Without the kernel's figure: never.
double waitedMs() {
    std::ifstream schedule("/proc/self/schedstat");
    double ran = 0, waited = 0;
    schedule >> ran >> waited;
    return waited / 1e6;
}

// What passed since the start, and how much of it the program had a processor or waited for a disk.
class Watch {
 public:
    Watch() { timer_.start(); }
    double elapsed() const { return double(timer_.nsecsElapsed()) / 1e6; }
    double alone() const { return elapsed() - (waitedMs() - waited_); }

 private:
    QElapsedTimer timer_;
    double waited_ = waitedMs();
};

double worst(const std::vector<double>& values) {
    return *std::max_element(values.begin(), values.end());
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

}  // namespace

StepTable::StepTable(QWidget& window) : window_(window) {
    std::printf("\nFrom the event to the painted window, in milliseconds, promised %.0f:\n",
                PromisedMs);
    std::printf("%-58s%8s%8s%8s\n", "", "median", "worst", "alone");
}

StepTable::~StepTable() {
    std::printf("%d steps kept, %d missed\n", kept_, missed_);
}

void StepTable::settle() {
    QCoreApplication::processEvents();
    window_.repaint();
    QGuiApplication::sync();
    QCoreApplication::processEvents();
}

void StepTable::judge(const std::string& step, const std::vector<double>& elapsed, double alone) {
    const bool kept = alone <= PromisedMs;
    ++(kept ? kept_ : missed_);
    std::printf("%-58s%8.1f%8.1f%8.1f  %s\n", step.c_str(), median(elapsed), worst(elapsed), alone,
                kept ? "kept" : "MISSED");
    std::fflush(stdout);
}

void StepTable::time(const std::string& step, const std::function<void()>& act,
                     const std::function<void()>& prepare, int rounds) {
    std::vector<double> elapsed, alone;
    for (int round = 0; round < rounds; ++round) {
        prepare();
        settle();
        const Watch watch;
        act();
        settle();
        elapsed.push_back(watch.elapsed());
        alone.push_back(watch.alone());
    }
    judge(step, elapsed, median(alone));
}

void StepTable::timeSilence(const std::string& task, const std::function<void()>& act) {
    std::vector<double> elapsed, alone;
    settle();
    Watch watch;
    const auto heard = [&] {
        elapsed.push_back(watch.elapsed());
        alone.push_back(watch.alone());
        watch = Watch();
    };
    QTimer heart;
    QObject::connect(&heart, &QTimer::timeout, heard);
    heart.start(1);
    act();
    settle();
    heard();
    judge(task + ", silences", elapsed, worst(alone));
}

}  // namespace tessaly::size
