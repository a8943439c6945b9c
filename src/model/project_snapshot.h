// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <optional>

#include "model/project.h"

// A project with everything in it, also what its file cannot hold (tracks without a file, any
// character). Used for recovery copies, which only this program reads.

namespace tessaly {

/// The bytes of a snapshot: a magic text, a checksum, a QDataStream of its counts and everything.
QByteArray encodeSnapshot(const Project& project);

/// The project of a snapshot; nothing when the bytes are no whole snapshot.
std::optional<Project> decodeSnapshot(const QByteArray& bytes);

/// What a snapshot holds, in numbers.
struct SnapshotCounts {
    int lists = 0;
    int tracks = 0;
    int titles = 0;
};

/// What a snapshot says of itself, without reading the rest; nothing when the checksum is wrong.
std::optional<SnapshotCounts> countSnapshot(const QByteArray& bytes);

/// Whether two states of a project hold the same. What an operator cannot see does not count: the
/// flag of unsaved changes, the list on view, the numbers that a card gave the files, what was
/// deleted, what a free trigger once played.
bool sameContent(const Project& a, const Project& b);

}  // namespace tessaly
