// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/bar_layout.h"

#include <gtest/gtest.h>

#include <numeric>

namespace tessaly {

// However many files and groups share however many pixels: each has its bar inside, a click on it
// finds it, and bars stand side by side in their order.
TEST(BarLayout, EveryFileHasABarThatFindsIt) {
    constexpr int Widest = 30;
    const QList<QList<int>> tours = {
        {1}, {3, 2}, {9, 23}, {1, 1, 1, 1}, {400, 300, 200}, {9995}, QList<int>(255, 39)};
    for (const QList<int>& sizes : tours)
        for (const int width : {1, 7, 299, 300, 801, 1024, 3840}) {
            const BarLayout layout(sizes, width, Widest);
            const int files = std::accumulate(sizes.begin(), sizes.end(), 0);
            BarLayout::Span before;
            for (int file = 0; file < files; ++file) {
                const BarLayout::Span bar = layout.bar(file);
                ASSERT_TRUE(bar.size() >= 1 && bar.size() <= Widest && bar.from >= 0 &&
                            bar.to <= width)
                    << file << " of " << files << " in " << width;
                ASSERT_TRUE(bar.from >= before.to || bar == before);
                for (const int x : {bar.from, bar.to - 1}) {
                    const BarLayout::Span found = layout.filesAt(x);
                    ASSERT_TRUE(found.from <= file && file < found.to);
                    ASSERT_TRUE(bar.size() == 1 || found.size() == 1);
                }
                before = bar;
            }
            EXPECT_EQ(layout.filesAt(-1).size(), 0);
            EXPECT_EQ(layout.filesAt(layout.end()).size(), 0);
            for (int group = 0; group < int(sizes.size()); ++group)
                EXPECT_LE(layout.group(group).to, layout.end());
        }
    EXPECT_EQ(BarLayout({}, 100, Widest).filesAt(0).size(), 0);
    const BarLayout few({2, 2}, 1000, Widest);
    EXPECT_EQ(few.filesAt(few.group(0).to).size(), 0) << "between two groups";
}

}  // namespace tessaly
