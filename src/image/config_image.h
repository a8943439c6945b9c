// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <functional>

#include "model/project.h"

namespace tessaly {

/// Called with the step code of each stage of the builder (step_code::BeginImage to BuildTriggers)
/// before the stage begins.
using StepReporter = std::function<void(int stepCode)>;

/// Numbers every music and speech record in table order: `typeTag` becomes "0001", "0002", ...
/// Returns how many there are.
int numberTrackFiles(Project& project);

/// A number from 1 to 65535 for the image's first two bytes.
quint16 randomIdentifier();

/// The number by which the image names a power-up or trigger item (see image_layout.h); 0xFFFF when
/// its list, track or title does not exist. `kind` is "music" or "speech".
quint16 ItemReference(const Project& project, const QString& kind, const QString& listName,
                      const QString& itemName);

/// The word of a music or speech record: its file number and flags. The sum is taken modulo 65,536,
/// so that numbers above 4095 run into the flags.
quint16 trackWord(const TrackRecord& record);

/// Numbers the project's files and returns its configuration image (layout in image_layout.h).
/// Throws error 516 to 519 when the format cannot hold the project.
QByteArray BuildConfigImage(Project& project, quint16 identifier = randomIdentifier(),
                            const StepReporter& step = {});

/// The same of a project whose files keep the numbers that they have.
QByteArray composeConfigImage(const Project& project, quint16 identifier,
                              const StepReporter& step = {});

}  // namespace tessaly
