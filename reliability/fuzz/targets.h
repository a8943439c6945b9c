// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <stdexcept>

#include "model/project.h"

// The readers of Tessaly, each as a function that takes any bytes: libFuzzer calls it with bytes of
// its own, the tests with those of reliability/fuzz/corpus. A function returns when everything it
// promises held, and throws BrokenPromise when not.

namespace tessaly::fuzz {

class BrokenPromise : public std::logic_error {
    using std::logic_error::logic_error;
};

inline void require(bool holds, const char* promise) {
    if (!holds)
        throw BrokenPromise(promise);
}

/// Whether it is the turn of promise number `turn` of `turns`. The fuzzers take them by turns, by
/// the input's length, for the sake of speed: any input soon has neighbours of all lengths. The
/// tests look at every promise of every input.
inline bool isTurn([[maybe_unused]] QByteArrayView bytes, [[maybe_unused]] int turn,
                   [[maybe_unused]] int turns) {
#ifdef TESSALY_BY_TURNS
    return bytes.size() % turns == turn;
#else
    return true;
#endif
}

void fuzzProject(QByteArrayView bytes);   ///< a project file (.crd2)
void fuzzImage(QByteArrayView bytes);     ///< a configuration image
void fuzzHex(QByteArrayView bytes);       ///< a HEX file
void fuzzPlaylist(QByteArrayView bytes);  ///< a playlist, exported or standard
void fuzzMounts(QByteArrayView bytes);    ///< Linux's table of mounts
void fuzzTags(QByteArrayView bytes);      ///< an MP3 file whose tags are read
void fuzzSound(QByteArrayView bytes);     ///< an MP3 file that is looked at and decoded
void fuzzSnapshot(QByteArrayView bytes);  ///< what a recovery copy holds behind its checksum

struct Target {
    const char* name;  ///< also that of its corpus
    void (*run)(QByteArrayView bytes);
};

inline constexpr Target Targets[] = {{"project", fuzzProject}, {"image", fuzzImage},
                                     {"hex", fuzzHex},         {"playlist", fuzzPlaylist},
                                     {"mounts", fuzzMounts},   {"tags", fuzzTags},
                                     {"sound", fuzzSound},     {"snapshot", fuzzSnapshot}};

/// The path of a file in memory that holds `bytes` until the next call. Linux only.
QString fileOf(QByteArrayView bytes);

/// What holds for every project, wherever it came from.
void requireConsistent(const Project& project);

/// A project is saved and opened as it is.
void requireSaved(const Project& project);

}  // namespace tessaly::fuzz
