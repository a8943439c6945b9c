#pragma once

#include <QWidget>
#include <functional>
#include <string>
#include <vector>

namespace tessaly::size {

/// Times what an operator does: from the event until the window has processed it, with everything
/// that it set off, and has painted itself whole. Prints a line a step, in milliseconds: median and
/// worst of the rounds, and the median without the time that the program waited for a processor
/// because others had it ("alone"). A step is kept when that is.
class StepTable {
 public:
    explicit StepTable(QWidget& window);

    /// Prints how many steps were kept.
    ~StepTable();

    /// Does `act` once a round, after `prepare`, which is not timed.
    void time(
        const std::string& step, const std::function<void()>& act,
        const std::function<void()>& prepare = [] {}, int rounds = Rounds);

    /// Times the silences of a long task, in which the window did not answer; the longest counts.
    void timeSilence(const std::string& task, const std::function<void()>& act);

 private:
    static constexpr int Rounds = 5;

    void settle();
    void judge(const std::string& step, const std::vector<double>& elapsed, double alone);

    QWidget& window_;
    int kept_ = 0, missed_ = 0;
};

}  // namespace tessaly::size
