// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <QList>
#include <QString>
#include <utility>

namespace tessaly {

/// Keys that belong together, each with what it does.
struct KeyGroup {
    QString title;
    QList<std::pair<QString, QString>> keys;
};

/// All keys of the program. The manual's chapter of them says the same.
QList<KeyGroup> programKeys();

/// Shows those keys beside the work.
class KeysWindow : public QDialog {
    Q_OBJECT

 public:
    explicit KeysWindow(QWidget* parent);
};

}  // namespace tessaly
