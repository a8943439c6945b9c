// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include "fat_volume.h"

namespace tessaly::fat {

/// Prints a line at once.
void say(const QString& line);

/// What the guards let onto a volume fits and what they stop does not, by mcopy into the image,
/// which makes entries as Windows does.
void tryLimits(FatVolume& volume);

/// On the mounted volume: creation on a used card, update of the settings and of the firmware;
/// updates of the settings on a card that Windows filled.
void tryFlow(FatVolume& volume);
void tryCardOfWindows(FatVolume& volume);

}  // namespace tessaly::fat
