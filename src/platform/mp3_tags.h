// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace tessaly {

/// What one tag block of an MP3 file says; empty where the file has none.
struct TagBlock {
    QString title;
    QString artist;
    QString album;
    int trackNumber = 0;  ///< 0 for none
    bool operator==(const TagBlock&) const = default;
};

struct TagBlocks {
    TagBlock first;   ///< ID3v2
    TagBlock second;  ///< ID3v1

    /// Each text and number from the first block that has it.
    TagBlock merged() const;
};

/// Reads the tags of MP3 files.
class Mp3Tags {
 public:
    virtual ~Mp3Tags() = default;

    /// Both blocks of the file at `path`. A file that is missing, empty, a folder or no MP3 at all
    /// has empty blocks.
    virtual TagBlocks read(const QString& path) const = 0;
};

/// The tags as TagLib reads them.
class LocalMp3Tags : public Mp3Tags {
 public:
    TagBlocks read(const QString& path) const override;
};

}  // namespace tessaly
