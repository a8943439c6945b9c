// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

#include "app/prompts.h"
#include "model/project_session.h"

namespace tessaly {

/// File > Save With Files...: asks for a folder, copies the project and its files into it behind a
/// dialog with Cancel that stands before `window`, and says what came of it. The project on screen
/// stays the one that was open: the copies may leave on a stick at once, and the work must not hang
/// on them.
void saveWithFiles(ProjectSession& session, const Services& services, QWidget* window);

}  // namespace tessaly
