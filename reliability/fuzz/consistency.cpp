#include <algorithm>

#include "targets.h"

namespace tessaly::fuzz {

void requireConsistent(const Project& project) {
    require(project.TrackTable.value(0) == TrackRecord(), "slot 0 of the tracks is blank");
    require(project.DefaultLanguageTable.value(0) == TrackRecord(),
            "slot 0 of the default languages is blank");
    require(project.lstMuTrack.size() == project.MusicListNames.size(), "each slot has its tracks");
    require(!project.MusicListNames.isEmpty() && project.MusicListNames.last().isEmpty(),
            "the last slot is spare");
    require(
        project.currentMusicList >= 0 && project.currentMusicList < project.MusicListNames.size(),
        "the list on view is one");
    // A list without a name, which only a file brings, lives in the spare slot.
    QStringList named = project.MusicListNames, shown = project.lstMuList;
    const bool hasNameless = shown.removeAll(QString()) > 0;
    require(hasNameless || project.lstMuTrack.last().isEmpty(), "the spare slot has no tracks");
    named.removeAll(QString());
    named.sort();
    shown.sort();
    require(named == shown, "each list has its slot");
    require(shown.removeDuplicates() == 0, "names of lists are unique");
    for (QStringList tracks : project.lstMuTrack)
        require(tracks.removeDuplicates() == 0, "names of tracks are unique in their list");
    require(!(project.buttChimeAlways && project.buttChimeOnce), "one chime repeat");
    require(project.buttPlayExtChime + project.buttPlayIntChime + project.buttDisableChime <= 1,
            "one chime sound");
}

}  // namespace tessaly::fuzz
