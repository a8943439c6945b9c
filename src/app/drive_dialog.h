#pragma once

#include <QDialog>
#include <QList>

#include "platform/drives.h"

class QDialogButtonBox;
class QTreeWidget;

namespace tessaly {

/// Lists all mounted volumes with name, type, size and free space, those that could be cards first.
class DriveDialog : public QDialog {
    Q_OBJECT

 public:
    explicit DriveDialog(const Drives& drives, QWidget* parent = nullptr);

    /// The root of the selected drive; empty when none is selected.
    QString selectedRoot() const;

 private:
    void fill();
    void updateButtons();

    const Drives& drives_;
    QTreeWidget* list_;
    QDialogButtonBox* buttons_;
};

/// Volumes in the order of the dialog: removable ones first, small before large.
QList<Volume> cardLikeFirst(QList<Volume> volumes);

}  // namespace tessaly
