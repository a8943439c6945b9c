#pragma once

#include <cstdio>
#include <string>

/// Sets what was measured against what is promised, a line each; counts what was missed.
class Promises {
 public:
    void check(const std::string& what, double measured, double allowed, const char* unit) {
        const bool kept = measured > 0 && measured <= allowed;  // 0: it was not measured
        std::printf("%-52s %9.3f %-2s  promised %7.2f  %s\n", what.c_str(), measured, unit, allowed,
                    kept ? "kept" : "MISSED");
        misses_ += kept ? 0 : 1;
    }

    int exitCode() const { return misses_ == 0 ? 0 : 1; }

 private:
    int misses_ = 0;
};
