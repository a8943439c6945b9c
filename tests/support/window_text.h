// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMap>
#include <QStringList>
#include <QWidget>

namespace tessaly::test {

/// What the windows show, as lines of text for people: one for each control, by its name.
class WindowText {
 public:
    /// Takes what the pages of `window` show now for known, also of those that are not in front.
    explicit WindowText(QWidget* window);

    /// What changed in the windows since the last call. Pages that are not in front and windows
    /// behind a box have to wait.
    QStringList changes();

    /// All controls of a window or box with everything that can be said about them, and the order
    /// in which the key Tab goes through them.
    static QStringList everything(QWidget* window);

    /// A box as it comes: its text and buttons, or its controls. The default button has a star.
    static QStringList ofBox(QWidget* box);

 private:
    QStringList newsOf(QWidget* window, bool isSilent);

    QWidget* window_;
    QMap<QString, QString> known_;
};

}  // namespace tessaly::test
