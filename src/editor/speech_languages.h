// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

#include "editor/imported_list.h"
#include "editor/speech_matching.h"
#include "editor/speech_names.h"
#include "model/project.h"
#include "platform/file_system.h"

// The two halves of planSpeech().

namespace tessaly {

/// The MP3 files of all that was given with their languages, but without titles. `languages` are
/// the project's and new ones afterwards; what makes no line goes into `summary`.
QList<SpeechPlanLine> linesByLanguage(const Project& project, const FileSystem& files,
                                      const QStringList& paths,
                                      const std::optional<QString>& language,
                                      LanguageNames& languages, AddSummary& summary,
                                      const KeepGoing& keepGoing);

/// Finds the titles of lines that have their languages: the project's, or new ones. False when
/// `keepGoing` cancelled it.
bool matchTitles(const Project& project, const LanguageNames& languages,
                 QList<SpeechPlanLine>& lines, const KeepGoing& keepGoing);

}  // namespace tessaly
