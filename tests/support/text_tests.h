// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <functional>

namespace tessaly::test {

/// Adds a test for each text file of a folder, named after it. A file begins with "# " and why it
/// is there. `play` carries out what the text says and returns the text as it should read: where
/// the file differs, the test fails and shows where. Started with --update, the program writes the
/// file anew instead, for a person to read what changed.
void addTextTests(const char* suite, const QString& folder,
                  const std::function<QString(const QString& text)>& play);

}  // namespace tessaly::test
