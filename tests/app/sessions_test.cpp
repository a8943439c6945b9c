// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/session.h"
#include "support/text_tests.h"

namespace tessaly {

// What the window shows after each gesture is compared with what the file says.
static const bool AreSessionsAdded = [] {
    test::addTextTests("Sessions", TESSALY_SESSIONS,
                       [](const QString& text) { return test::Session().play(text); });
    return true;
}();

}  // namespace tessaly
