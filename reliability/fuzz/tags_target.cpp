#include <sys/mman.h>
#include <unistd.h>

#include "platform/mp3_tags.h"
#include "targets.h"

namespace tessaly::fuzz {

// Linux only: a file that is in memory alone.
void fuzzTags(QByteArrayView bytes) {
    static const int file = ::memfd_create("tags", MFD_CLOEXEC);
    static const QString path = QString("/proc/self/fd/%1").arg(file);
    require(file >= 0 && ::ftruncate(file, 0) == 0 &&
                ::pwrite(file, bytes.data(), size_t(bytes.size()), 0) == bytes.size(),
            "there is memory for a file");
    const TagBlocks blocks = LocalMp3Tags().read(path);
    for (const TagBlock* block : {&blocks.first, &blocks.second})
        for (const QString* text : {&block->title, &block->artist, &block->album})
            require(*text == text->trimmed(), "tags are trimmed");
    require(bytes.size() >= 128 || blocks.second == TagBlock(), "ID3v1 takes 128 bytes");
}

}  // namespace tessaly::fuzz
