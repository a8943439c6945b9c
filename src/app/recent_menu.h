// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMenu>

#include "app/presence.h"

namespace tessaly {

class Remembered;

/// The menu of the project files that were opened or saved last. Those that are not there when it
/// opens are grey.
class RecentMenu : public QMenu {
    Q_OBJECT

 public:
    RecentMenu(Remembered& remembered, QWidget* parent);

    /// A file was opened or saved.
    void add(const QString& file);

 signals:
    /// The operator wants a file opened.
    void chosen(const QString& file);

 private:
    void showFiles();
    void lookForFiles();
    void showPresence();

    Remembered& remembered_;
    Presence presence_;
    QStringList files_;
    QList<QAction*> lines_;  // as many as there can be files; the others are hidden
};

}  // namespace tessaly
