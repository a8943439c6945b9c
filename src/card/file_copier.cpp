#include "card/file_copier.h"

#include <xxhash.h>

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

// What a full card has cut off must not look like the file that it is a part of. But a card may
// have been exchanged for another meanwhile: only the file that was made here is removed.
void removeShortFile(FileSystem& files, const QString& path,
                     const std::optional<FileIdentity>& made) {
    try {
        if (made && files.identity(path) == made)
            files.removeFile(path);
    } catch (const TessalyError&) {
        // The failure that led here is the one to report.
    }
}

}  // namespace

WrittenFile copyFile(FileSystem& files, const QString& from, const QString& to,
                     const BlockDone& blockDone) {
    const auto source = files.openForReading(from, FileSystem::ReadMode::Normal);
    auto target = files.create(to);
    const auto made = files.identity(to);
    WrittenFile written{.path = to};
    Hasher hasher;
    try {
        for (auto block = source->nextBlock(); !block.isEmpty(); block = source->nextBlock()) {
            hasher.add(block);
            target->write(block);
            written.size += block.size();
            blockDone(block.size());
        }
        target->setModificationTime(source->modificationTime());
        target->close();
    } catch (const TessalyError&) {
        target.reset();  // an open file cannot be removed everywhere
        removeShortFile(files, to, made);
        throw;
    }
    written.hash = hasher.result();
    return written;
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
