// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include "app/prompts.h"
#include "editor/relink_plan.h"
#include "model/project.h"

class QLabel;
class QPushButton;

namespace tessaly {

class RelinkModel;
class RelinkTable;

/// Shows which file would take the place of which missing one before anything is changed. Lines can
/// be left out, and files chosen by hand; what that brings to light is shown at once.
class RelinkDialog : public QDialog {
    Q_OBJECT

 public:
    RelinkDialog(const RelinkPlan& plan, const Services& services, QWidget* parent);

    /// The plan as it was corrected.
    const RelinkPlan& plan() const;

 private:
    void buttChoose_Click();
    QString askForFile(const RelinkLine& line);
    void showWords();

    const Services& services_;
    RelinkModel* model_;
    RelinkTable* table_;
    QLabel* words_;
    QPushButton* ok_;
};

/// Looks in a folder, which the operator is asked for, for the MP3 files of the project that are
/// missing, and gives the project those that the operator agrees to. Returns their new paths;
/// without one nothing was changed. That nothing is missing is told.
QStringList findMissingFiles(Project& project, const Services& services, QWidget* window);

}  // namespace tessaly
