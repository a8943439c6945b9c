// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>

namespace tessaly {

/// Where the bars of a chart stand: one a file from left to right, with a gap between groups. Where
/// there are more files than pixels, several share a pixel.
class BarLayout {
 public:
    /// Files of each group, and pixels for all; no bar becomes wider than `widestBar`.
    BarLayout(const QList<int>& groupSizes, int width, int widestBar);

    /// From the first to behind the last: of pixels or of files.
    struct Span {
        int from = 0, to = 0;
        int size() const { return to - from; }
        bool operator==(const Span&) const = default;
    };
    Span bar(int file) const;     ///< pixels, at least one; blank ones beside it are not in it
    Span group(int group) const;  ///< pixels
    Span filesAt(int x) const;    ///< files with a part of that pixel; empty beside bars
    int end() const { return starts_.isEmpty() ? 0 : group(int(starts_.size()) - 2).to; }

 private:
    double left(int file) const;
    Span place(int file) const;

    QList<int> starts_;  ///< the first file of each group, then how many there are
    double slot_ = 0, gap_ = 0;
};

}  // namespace tessaly
