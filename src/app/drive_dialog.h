#pragma once

#include <QDialog>

#include "platform/drives.h"

class QDialogButtonBox;
class QTreeWidget;

namespace tessaly {

/// Lists all mounted volumes with name, type, size and free space: removable ones first, among them
/// those with a card before empty readers, small before large. The row of `current`, the drive that
/// the project has now, is selected, or else the only card that there is. Without a selection there
/// is nothing to accept.
class DriveDialog : public QDialog {
    Q_OBJECT

 public:
    DriveDialog(const Drives& drives, const QString& current, QWidget* parent = nullptr);

    /// The root of the selected drive; empty when none is selected.
    QString selectedRoot() const;

    void accept() override;

 private:
    void fill(const QString& current);
    void updateButtons();

    const Drives& drives_;
    QTreeWidget* list_;
    QDialogButtonBox* buttons_;
};

}  // namespace tessaly
