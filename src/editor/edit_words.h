// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include "model/project.h"

// What an edit is called, found by comparing the project before and after it.

namespace tessaly {

/// What was done to get from one state to the other, for a menu: "Remove Title 'Harbour'", "Add 14
/// Tracks", "Rename List 'Rock'". Empty when both hold the same.
QString editInWords(const Project& before, const Project& after);

/// Whether what differs is nothing but texts that are typed letter by letter: card title and chime
/// file.
bool isTypedText(const Project& before, Project after);

/// What a removal took along, as one sentence: "Harbour and its 5 files removed". Empty when
/// nothing was removed.
QString removalInWords(const Project& before, const Project& after);

}  // namespace tessaly
