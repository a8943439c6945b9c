#pragma once

#include <QList>
#include <QString>
#include <array>
#include <functional>
#include <optional>

#include "model/project.h"
#include "platform/file_system.h"

namespace tessaly {

/// Called after each file that was looked at. May throw to end the work.
using FileDone = std::function<void()>;

/// A file that goes onto the card, as it was measured.
struct SourceFile {
    QString path;
    std::optional<qint64> size;     ///< bytes; nothing when it cannot be measured
    std::array<char, 4> typeTag{};  ///< of its record

    /// The four digits of its name on the card, once the files are numbered.
    QString number() const;
};

/// The files of the operator that a project names. Measured once for an operation, however many of
/// its parts ask.
struct SourceFiles {
    QList<SourceFile> tracks;         ///< of the music and speech records, in table order
    std::optional<SourceFile> chime;  ///< when the card gets one
};

/// Asks for the size of every source file, once each.
SourceFiles measureSources(
    const Project& project, const FileSystem& files, const FileDone& fileDone = [] {});

}  // namespace tessaly
