// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

namespace tessaly::monkey {

/// Random numbers that are the same everywhere for the same two numbers. Each event has dice of its
/// own, so that one left out does not change what the others would do.
class Dice {
 public:
    Dice(quint64 seed, quint64 event) : state_(seed * 0x9E3779B97F4A7C15 + event) { next(); }

    /// 0 to count - 1; `count` is at least 1.
    int below(qsizetype count) { return int(next() % quint64(count)); }
    bool oneIn(int count) { return below(count) == 0; }

    template <typename List>
    const auto& anyOf(const List& list) {
        return *(std::begin(list) + below(std::size(list)));
    }

 private:
    quint64 next() {
        quint64 z = state_ += 0x9E3779B97F4A7C15;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
        return z ^ (z >> 31);
    }

    quint64 state_;
};

}  // namespace tessaly::monkey
