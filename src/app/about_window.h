// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
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
    /// `makersFiles` says where the maker's files come from.
    AboutWindow(const QString& firmwareVersion, const QStringList& makersFiles, Prompts& prompts,
                QWidget* parent);
    ~AboutWindow() override;

 private:
    void cmdSysInfo_Click();

    const std::unique_ptr<Ui::AboutWindow> ui_;
    Prompts& prompts_;
};

}  // namespace tessaly
