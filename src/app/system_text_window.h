// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>
#include <array>

#include "app/prompts.h"
#include "model/project.h"
#include "setup/setup_items.h"

class QLabel;
class QScrollArea;

namespace tessaly {

class DisplayPreview;
class LimitedLineEdit;

/// The window "Change System Text", beside the main window. Its boxes keep what was typed into
/// them while it is hidden; closing it is Cancel.
class SystemTextWindow : public QWidget {
    Q_OBJECT

 public:
    SystemTextWindow(Project& project, Prompts& prompts, QWidget* parent);

    /// Shows the texts of the project that is there now.
    void projectReplaced();

 signals:
    void projectChanged();

 protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

 private:
    void buttSystemTextRestore_Click();
    void buttSystemTextSave_Click();
    void buttSystemTextCancel_Click();
    void txtSystemText_KeyPress(int row);

    QScrollArea* makeRows(Prompts& prompts);
    QLayout* makeButtons();
    SystemTextBoxes boxes() const;
    void showBoxes(const SystemTextBoxes& texts);
    void preview(int row);

    Project& project_;
    std::array<LimitedLineEdit*, SystemTextsUsed> edits_{};
    DisplayPreview* previewText_;
    QLabel* lblLength_;
    int previewRow_ = 0;  ///< the row being edited
};

}  // namespace tessaly
