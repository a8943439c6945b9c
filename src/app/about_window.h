#pragma once

#include <QDialog>
#include <functional>
#include <memory>

#include "app/prompts.h"

namespace Ui {
class AboutWindow;
}

namespace tessaly {

/// The About window, shown modally by the Help menu.
class AboutWindow : public QDialog {
    Q_OBJECT

 public:
    /// `makersFiles` says where the maker's files come from. `showSystemInformation` starts the
    /// system's own tool and says whether there is one.
    AboutWindow(const QString& firmwareVersion, const QStringList& makersFiles, Prompts& prompts,
                std::function<bool()> showSystemInformation, QWidget* parent);
    ~AboutWindow() override;

 private:
    void cmdSysInfo_Click();

    const std::unique_ptr<Ui::AboutWindow> ui_;
    Prompts& prompts_;
    const std::function<bool()> showSystemInformation_;
};

}  // namespace tessaly
