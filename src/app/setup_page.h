#pragma once

#include <memory>

#include "app/page.h"
#include "app/services.h"
#include "model/project.h"

class QButtonGroup;

namespace Ui {
class SetupPage;
}

namespace tessaly {

class LimitedLineEdit;
class SystemTextWindow;

/// The page of what applies to the whole card: title, default languages, chime, system texts.
class SetupPage : public Page {
    Q_OBJECT

 public:
    SetupPage(Project& project, const Services& services, QWidget* parent = nullptr);
    ~SetupPage() override;

    void showProject() override;
    void projectReplaced() override;

    /// Brings the project's system texts into the boxes of their window: after New, and after a
    /// file was read. Until then the boxes keep what was typed into them.
    void showSystemTexts();

 private:
    void lstDefaultLangs_Click();
    void buttGetChimeFile_Click();
    void txtChimeFileName_Change(const QString& text);
    void buttAdvancedSettings_Click();

    void connectTitle(LimitedLineEdit* edit, QString Project::*line);
    void connectChime();
    void showTitle();
    void showDefaultLangs();
    void showChime();

    Project& project_;
    const Services& services_;
    const SupportFolders folders_;
    const std::unique_ptr<Ui::SetupPage> ui_;
    QButtonGroup* const chimeSound_;
    QButtonGroup* const chimeRepeat_;
    SystemTextWindow* const systemTexts_;
};

}  // namespace tessaly
