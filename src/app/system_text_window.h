#pragma once

#include <QWidget>
#include <array>
#include <memory>

#include "app/prompts.h"
#include "model/project.h"
#include "setup/system_texts.h"

namespace Ui {
class SystemTextWindow;
}

namespace tessaly {

class LimitedLineEdit;

/// The window "Change System Text", beside the main window. Its boxes keep what was typed into
/// them while it is hidden; closing it is Cancel.
class SystemTextWindow : public QWidget {
    Q_OBJECT

 public:
    SystemTextWindow(Project& project, Prompts& prompts, QWidget* parent);
    ~SystemTextWindow() override;

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

    SystemTextBoxes boxes() const;
    void showBoxes(const SystemTextBoxes& boxes);
    void preview(int row);

    Project& project_;
    const std::unique_ptr<Ui::SystemTextWindow> ui_;
    std::array<LimitedLineEdit*, SystemTextsUsed> edits_{};
    int previewRow_ = 0;  ///< the row being edited
};

}  // namespace tessaly
