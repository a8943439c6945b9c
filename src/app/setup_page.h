// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include "app/page.h"
#include "app/prompts.h"
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
    ListenButton* listenButton() const override;
    void projectReplaced() override;

    /// Brings the project's system texts into the boxes of their window: after New, and after a
    /// file was read. Until then the boxes keep what was typed into them.
    void showSystemTexts();

 private:
    void txtCardTitle1_KeyPress() { typedInTitle(); }
    void txtCardTitle2_KeyPress() { typedInTitle(); }
    void lstDefaultLangs_Click();
    void buttDisableChime_Click() { clickedChime(&Project::buttDisableChime); }
    void buttPlayIntChime_Click() { clickedChime(&Project::buttPlayIntChime); }
    void buttPlayExtChime_Click() { clickedChime(&Project::buttPlayExtChime); }
    void buttChimeAlways_Click() { clickedChime(&Project::buttChimeAlways); }
    void buttChimeOnce_Click() { clickedChime(&Project::buttChimeOnce); }
    void buttGetChimeFile_Click();
    void txtChimeFileName_Change(const QString& text);
    void buttAdvancedSettings_Click();

    void connectTitle(LimitedLineEdit* edit, QString Project::*line, void (SetupPage::*keyPress)());
    void typedInTitle();
    void clickedChime(bool Project::*option);
    void connectChime();
    void showTitle();
    void showDefaultLangs();
    void showChime();
    void offerChime();

    Project& project_;
    const Services& services_;
    const SupportFolders folders_;
    const std::unique_ptr<Ui::SetupPage> ui_;
    QButtonGroup* const chimeSound_;
    QButtonGroup* const chimeRepeat_;
    SystemTextWindow* const systemTexts_;
};

}  // namespace tessaly
