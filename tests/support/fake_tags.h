// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QString>

#include "platform/mp3_tags.h"
#include "platform/paths.h"

namespace tessaly::test {

/// Tags by file name; any other file has none.
class FakeTags : public Mp3Tags {
 public:
    QHash<QString, TagBlocks> blocks;

    TagBlocks read(const QString& path) const override { return blocks.value(lastNameOf(path)); }
};

/// A block with nothing but a title.
inline TagBlock titled(const QString& title) {
    return {.title = title, .artist = {}, .album = {}};
}

}  // namespace tessaly::test
