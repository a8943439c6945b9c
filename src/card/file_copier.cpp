// SPDX-License-Identifier: GPL-3.0-or-later
#include "card/file_copier.h"

#include <xxhash.h>

#include <algorithm>
#include <memory>

#include "platform/error.h"

namespace tessaly {

namespace {

class Hasher {
 public:
    Hasher() : state_(XXH3_createState(), XXH3_freeState) { XXH3_128bits_reset(state_.get()); }

    void add(QByteArrayView bytes) {
        XXH3_128bits_update(state_.get(), bytes.data(), size_t(bytes.size()));
    }
    ContentHash result() const {
        const XXH128_hash_t hash = XXH3_128bits_digest(state_.get());
        return {hash.high64, hash.low64};
    }

 private:
    std::unique_ptr<XXH3_state_t, XXH_errorcode (*)(XXH3_state_t*)> state_;
};

// Removes what a failed copy has left: part of an MP3 file plays like a whole one.
void removeShortFile(OpenFolder& folder, const QString& name) {
    try {
        folder.removeFile(name);
    } catch (const TessalyError&) {
        // The failure that led here is the one to report.
    }
}

// Writes what `nextBlock` returns until that is empty, then calls `finish` and closes the file.
template <typename NextBlock, typename Finish>
WrittenFile writeBlocks(OpenFolder& folder, const QString& name, const BlockDone& blockDone,
                        const NextBlock& nextBlock, const Finish& finish) {
    auto target = folder.create(name);
    WrittenFile written{.name = name};
    Hasher hasher;
    try {
        for (QByteArrayView block = nextBlock(); !block.isEmpty(); block = nextBlock()) {
            hasher.add(block);
            target->write(block);
            written.size += block.size();
            blockDone(block.size());
        }
        finish(*target);
        target->close();
    } catch (const TessalyError&) {
        target.reset();  // an open file cannot be removed everywhere
        removeShortFile(folder, name);
        throw;
    }
    written.hash = hasher.result();
    return written;
}

}  // namespace

WrittenFile copyFile(FileSystem& files, const QString& from, OpenFolder& folder,
                     const QString& name, const BlockDone& blockDone) {
    const auto source = files.openForReading(from, FileSystem::ReadMode::Normal);
    return writeBlocks(
        folder, name, blockDone, [&] { return source->nextBlock(); },
        [&](OutputFile& copy) { copy.setModificationTime(source->modificationTime()); });
}

WrittenFile writeFile(QByteArrayView bytes, OpenFolder& folder, const QString& name,
                      const BlockDone& blockDone) {
    QByteArrayView left = bytes;
    const auto nextBlock = [&left] {
        const auto block = left.first(std::min<qsizetype>(left.size(), InputFile::BlockBytes));
        left = left.sliced(block.size());
        return block;
    };
    return writeBlocks(folder, name, blockDone, nextBlock, [](OutputFile&) {});
}

ContentHash hashOf(QByteArrayView bytes) {
    Hasher hasher;
    hasher.add(bytes);
    return hasher.result();
}

ReadBack readBack(FileSystem& files, const QString& path, const BlockDone& blockDone) {
    const auto file = files.openForReading(path, FileSystem::ReadMode::PastCache);
    ReadBack result;
    Hasher hasher;
    for (auto block = file->nextBlock(); !block.isEmpty(); block = file->nextBlock()) {
        hasher.add(block);
        result.size += block.size();
        blockDone(block.size());
    }
    result.hash = hasher.result();
    result.isPastCache = file->isPastCache();
    return result;
}

}  // namespace tessaly
