// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <memory>

#include "app/page.h"
#include "triggers/item_settings.h"
#include "triggers/trigger_selector.h"

class QCheckBox;
class QPushButton;

namespace Ui {
class TriggersPage;
}

namespace tessaly {

class ElidedLabel;

/// The page of playback attributes, the power-up item and the discrete triggers. It keeps what is
/// selected and shows what the rules make of it; only clicks of the operator change the project.
class TriggersPage : public Page {
    Q_OBJECT

 public:
    explicit TriggersPage(Project& project, QWidget* parent = nullptr);
    ~TriggersPage() override;

    void showProject() override;
    /// Music or speech, then the rows of both lists.
    QList<Rows> selectedRows() const override;
    void selectRows(const QList<Rows>& rows) override;

 private:
    struct Row {
        QCheckBox* buttTrig;
        ElidedLabel* lblTrig;
        QPushButton* buttViewTrig;
    };

    void buttTrigMusic_Click();
    void buttTrigSpeech_Click();
    void lstTrigLeft_Click();
    void lstTrigRight_Click();
    void buttPlayNormVolume_Click();
    void buttPlayLoudVolume_Click();
    void buttResumeOnInt_Click();
    void buttCancelOnInt_Click();
    void chkEndlessLoop_Click(bool checked);
    void chkPowerUp_Click(bool checked);
    void buttClearPowerUp_Click();
    void buttTrig_Click(int slot, bool checked);
    void buttViewTrig_Click(int slot);

    void connectAttributes();
    void showSelector();
    void showItem();
    void edited();
    void showRows(const TriggerSelection& selection);

    Project& project_;
    const std::unique_ptr<Ui::TriggersPage> ui_;
    std::array<Row, TriggerRows> rows_;
    TriggerSelector selector_;
};

}  // namespace tessaly
