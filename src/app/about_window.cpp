#include "app/about_window.h"

#include "ui_about_window.h"

namespace tessaly {

AboutWindow::AboutWindow(const QString& firmwareVersion, const QStringList& makersFiles,
                         Prompts& prompts, std::function<bool()> showSystemInformation,
                         QWidget* parent)
    : QDialog(parent),
      ui_(std::make_unique<Ui::AboutWindow>()),
      prompts_(prompts),
      showSystemInformation_(std::move(showSystemInformation)) {
    ui_->setupUi(this);
    ui_->lblFirmwareVersion->setText(firmwareVersion);
    ui_->lblMakersFiles->setText(makersFiles.join('\n'));
    ui_->cmdOK->setFocus();
    connect(ui_->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(ui_->cmdSysInfo, &QPushButton::clicked, this, &AboutWindow::cmdSysInfo_Click);
}

AboutWindow::~AboutWindow() = default;

void AboutWindow::cmdSysInfo_Click() {
    if (!showSystemInformation_())
        prompts_.tell({.text = "System Information Is Unavailable At This Time"});
}

}  // namespace tessaly
