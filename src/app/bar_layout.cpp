// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/bar_layout.h"

#include <algorithm>

namespace tessaly {

BarLayout::BarLayout(const QList<int>& groupSizes, int width, int widestBar) {
    constexpr double WidestGap = 12, MostForGaps = 0.25;
    int files = 0;
    for (const int size : groupSizes) {
        starts_.append(files);
        files += size;
    }
    if (files == 0 || width <= 0) {
        starts_.clear();
        return;
    }
    const auto gaps = double(starts_.size() - 1);
    starts_.append(files);
    if (gaps > 0)
        gap_ = std::min(WidestGap, width * MostForGaps / gaps);
    slot_ = std::min(double(widestBar), (width - gaps * gap_) / files);
}

double BarLayout::left(int file) const {
    const auto group = std::upper_bound(starts_.begin(), starts_.end() - 1, file) - 1;
    return file * slot_ + double(group - starts_.begin()) * gap_;
}

// The bar with the blank beside it.
BarLayout::Span BarLayout::place(int file) const {
    constexpr double Rounding = 1e-6;
    const double from = left(file) + Rounding;
    return {int(from), std::max(int(from) + 1, int(from + slot_))};
}

BarLayout::Span BarLayout::bar(int file) const {
    constexpr int NarrowestWithBlank = 4;
    Span span = place(file);
    if (span.size() >= NarrowestWithBlank)
        --span.to;
    return span;
}

BarLayout::Span BarLayout::group(int group) const {
    return {place(starts_[group]).from, place(starts_[group + 1] - 1).to};
}

BarLayout::Span BarLayout::filesAt(int x) const {
    if (starts_.isEmpty())
        return {};
    // The first file for which that is no longer so: places ascend.
    const auto firstNot = [this](const auto& isBefore) {
        int from = 0, end = starts_.last();
        while (from < end)
            if (const int middle = (from + end) / 2; isBefore(place(middle)))
                from = middle + 1;
            else
                end = middle;
        return from;
    };
    const int first = firstNot([x](const Span& bar) { return bar.to <= x; });
    const int behind = firstNot([x](const Span& bar) { return bar.from <= x; });
    return {first, std::max(first, behind)};
}

}  // namespace tessaly
