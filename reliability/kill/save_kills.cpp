// SPDX-License-Identifier: GPL-3.0-or-later
#include "killer.h"
#include "model/card_file.h"
#include "platform/local_file_system.h"
#include "sample_project.h"
#include "support/scratch_folder.h"

namespace tessaly::kill {

int killSaves(int runs, std::mt19937& random) {
    const test::ScratchFolder scratch;
    const QString path = scratch.path("Täglich Tour.crd2");
    LocalFileSystem files;
    // Every record names its generation.
    Project projects[2];
    QByteArray bytes[2];
    for (int i : {0, 1}) {
        projects[i] = musicProject(9995, QString("/music/generation %1").arg(i));
        bytes[i] = encodeProject(projects[i]);
    }
    int now = 0;  // which of them the file holds
    const auto save = [&](int which) { saveProject(files, path, projects[which]); };
    save(now);

    Victim victim;
    victim.name = "a save of 9,995 records";
    victim.begin = [] {};
    victim.work = [&] { save(1 - now); };
    victim.look = [&](bool wasKilled) -> Finding {
        const QByteArray found = scratch.read("Täglich Tour.crd2");
        if (found == bytes[1 - now]) {
            now = 1 - now;
            return {"new", {}};
        }
        if (found != bytes[now])
            return {"broken", QString("%1 bytes that are neither project").arg(found.size())};
        return {"old", wasKilled ? QString() : "a save that came back left the old project"};
    };
    victim.finish = [&] {
        save(now = 1 - now);
        return scratch.read("Täglich Tour.crd2") == bytes[now] ? QString() : "the next save failed";
    };
    return killEverywhere(victim, runs, random);
}

}  // namespace tessaly::kill
