#include <xxhash.h>

#include "model/project_snapshot.h"
#include "targets.h"

namespace tessaly::fuzz {

void fuzzSnapshot(QByteArrayView bytes) {
    const QByteArray plain = bytes.toByteArray();
    require(!decodeSnapshot(plain) || plain.startsWith("tessaly snapshot 2\n"),
            "bytes without the magic text are no snapshot");
    XXH64_canonical_t checksum;
    XXH64_canonicalFromHash(&checksum, XXH3_64bits(plain.data(), size_t(plain.size())));
    const QByteArray whole =
        "tessaly snapshot 2\n" +
        QByteArray(reinterpret_cast<const char*>(checksum.digest), sizeof(checksum.digest)) + plain;
    const auto project = decodeSnapshot(whole);
    if (!project)
        return;
    require(project->lstMuTrack.size() == project->MusicListNames.size() &&
                project->currentMusicList >= 0 &&
                project->currentMusicList < project->lstMuTrack.size(),
            "the list on view is one");
    require(!project->TrackTable.isEmpty() && !project->DefaultLanguageTable.isEmpty(),
            "the tables have their slot 0");
    const auto again = decodeSnapshot(encodeSnapshot(*project));
    require(again && *again == *project, "a snapshot that was read is written as it was");
    require(countSnapshot(encodeSnapshot(*project))->lists == project->lstMuList.size(),
            "a snapshot tells its lists");
}

}  // namespace tessaly::fuzz
