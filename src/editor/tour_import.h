// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include "model/project.h"
#include "platform/file_system.h"
#include "platform/mp3_tags.h"

namespace tessaly {

/// What an import took, and what it left alone.
struct ImportReport {
    int tracks = 0;
    int speechFiles = 0;
    QStringList notes;  ///< one sentence for everything that was passed over or cut
};

/// Whether a folder holds a Music or a Speech folder, which is what importFolder() takes. Throws
/// error 555 when it holds one of them twice.
bool isTourFolder(const FileSystem& files, const QString& folder);

/// Fills an empty project from a folder tree:
///   Music/<list>/*.mp3, Speech/<language>/<title>.mp3
/// in the order of comesBefore(). Names come from folders and files, for music from the title tag
/// when `titlesFromTags` is set and there is one. They are cut to 16 characters (languages to 8)
/// and made unique; a title is the same in several languages when its whole file name is. Of two
/// files for one title and language the first counts. Throws error 555 when the folder holds
/// neither Music nor Speech, one of them twice (Music and music), no MP3 file at all, or more names
/// than a project keeps: then the project is half filled and to be thrown away.
ImportReport importFolder(const FileSystem& files, const Mp3Tags& tags, const QString& folder,
                          bool titlesFromTags, Project& project);

}  // namespace tessaly
