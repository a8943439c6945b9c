// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

/// Sets what was measured against what is promised, a line each; counts what was missed.
class Promises {
 public:
    /// Prints the least, the median and the most of several runs. The median is what is promised;
    /// the others tell how much the machine was disturbed. A run of 0 was not measured.
    void check(const std::string& what, std::vector<double> runs, double allowed,
               const char* unit) {
        std::sort(runs.begin(), runs.end());
        if (runs.empty())
            runs.push_back(0);
        const double median = runs[runs.size() / 2];
        const bool kept = runs.front() > 0 && median <= allowed;
        std::printf("%-46s %8.3f %8.3f %8.3f %-2s  promised %6.2f  %s\n", what.c_str(),
                    runs.front(), median, runs.back(), unit, allowed, kept ? "kept" : "MISSED");
        misses_ += kept ? 0 : 1;
    }

    int exitCode() const { return misses_ == 0 ? 0 : 1; }

 private:
    int misses_ = 0;
};
