// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include "app/prompts.h"

class QDialogButtonBox;
class QTreeWidget;

namespace tessaly {

/// Real dialogs, above the window that is active, else above the main window.
class QtPrompts : public Prompts {
 public:
    void tell(const Message& message) override;
    bool ask(const Message& question, bool defaultsToNo) override;
    bool offer(const Message& message, const QString& action) override;
    QString openFile(const FileRequest& request) override;
    QStringList openFiles(const FileRequest& request) override;
    QString saveFile(const FileRequest& request) override;
    QString pickFolder(const QString& caption, const QString& start, FileKind kind) override;
    QString pickDrive(const Drives& drives, const QString& current) override;
    int pickLine(const QString& caption, const QStringList& lines) override;
    QString inputText(const QString& prompt, const QString& initial, int limit) override;
    bool openDocument(const QString& file) override;
    void beep() override;
};

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
