#include "card/source_files.h"

#include "model/text_codec.h"

namespace tessaly {

QString SourceFile::number() const {
    return fromCodePage({typeTag.data(), qsizetype(typeTag.size())});
}

SourceFiles measureSources(const Project& project, const FileSystem& files,
                           const FileDone& fileDone) {
    SourceFiles sources;
    sources.tracks.reserve(project.TrackTable.size());
    for (const TrackRecord& record : project.TrackTable) {
        if (!isTrackFile(record))
            continue;
        const QString path = record.sourcePath.text();
        sources.tracks.append({path, files.fileSize(path), record.typeTag});
        fileDone();
    }
    if (usesChimeFile(project))
        sources.chime = {.path = project.txtChimeFileName,
                         .size = files.fileSize(project.txtChimeFileName)};
    return sources;
}

}  // namespace tessaly
