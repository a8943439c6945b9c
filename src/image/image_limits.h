// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

#include "model/project.h"

namespace tessaly {

/// A limit of the formats that a project exceeds.
struct LimitViolation {
    int errorNumber = 0;
    int stepCode = 0;  ///< 300 up, one a limit, for the title of the card writer's error box
    QString text;      ///< one sentence with the number found and the number allowed
};

/// Size in bytes of the project's configuration image.
qsizetype configImageSize(const Project& project);

/// The limits that keep the image itself from being built: its size, languages, lists, titles and
/// numbered files.
QList<LimitViolation> imageLimitViolations(const Project& project);

/// Those, and the power-up or trigger items that stand too far back for a reference to name.
QList<LimitViolation> limitViolations(const Project& project);

/// Throws the first of them as a TessalyError, if there is one.
void throwFirst(const QList<LimitViolation>& violations);

}  // namespace tessaly
