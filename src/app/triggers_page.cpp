#include "app/triggers_page.h"

#include "app/elided_label.h"
#include "app/list_view_tools.h"
#include "ui_triggers_page.h"

namespace tessaly {

TriggersPage::TriggersPage(Project& project, QWidget* parent)
    : Page(parent), project_(project), ui_(std::make_unique<Ui::TriggersPage>()) {
    ui_->setupUi(widget());
    rows_ = {Row{ui_->buttTrig_0, ui_->lblTrig_0, ui_->buttViewTrig_0},
             Row{ui_->buttTrig_1, ui_->lblTrig_1, ui_->buttViewTrig_1},
             Row{ui_->buttTrig_2, ui_->lblTrig_2, ui_->buttViewTrig_2}};
    const QFont fixed = fixedFont(font());
    ui_->lstTrigLeft->setFont(fixed);
    ui_->lstTrigRight->setFont(fixed);
    measureLinesFast(ui_->lstTrigRight);
    ui_->buttTrigMusic->setChecked(true);

    connect(ui_->buttTrigMusic, &QRadioButton::clicked, this, &TriggersPage::buttTrigMusic_Click);
    connect(ui_->buttTrigSpeech, &QRadioButton::clicked, this, &TriggersPage::buttTrigSpeech_Click);
    connect(ui_->lstTrigLeft, &QListWidget::itemSelectionChanged, this,
            &TriggersPage::lstTrigLeft_Click);
    connect(ui_->lstTrigRight, &QListWidget::itemSelectionChanged, this,
            &TriggersPage::lstTrigRight_Click);
    connectAttributes();
    for (int slot = 0; slot < TriggerRows; ++slot) {
        const Row& row = rows_[size_t(slot)];
        row.buttTrig->setAccessibleName(QString("Trigger %1").arg(slot + 1));
        row.buttViewTrig->setAccessibleName(QString("View trigger %1").arg(slot + 1));
        connect(row.buttTrig, &QCheckBox::clicked, this,
                [this, slot](bool checked) { buttTrig_Click(slot, checked); });
        connect(row.buttViewTrig, &QPushButton::clicked, this,
                [this, slot] { buttViewTrig_Click(slot); });
    }
}

TriggersPage::~TriggersPage() = default;

// Only clicks count: what the program checks itself raises no "clicked".
void TriggersPage::connectAttributes() {
    const auto option = [this](QRadioButton* button,
                               void (*set)(Project&, const TriggerSelection&, bool), bool value) {
        connect(button, &QRadioButton::clicked, this, [this, set, value] {
            set(project_, selectionOf(selector_), value);
            showItem();
            emit projectChanged();
        });
    };
    option(ui_->buttPlayNormVolume, setLoudVolume, false);
    option(ui_->buttPlayLoudVolume, setLoudVolume, true);
    option(ui_->buttResumeOnInt, setCancelOnInterrupt, false);
    option(ui_->buttCancelOnInt, setCancelOnInterrupt, true);
    connect(ui_->chkEndlessLoop, &QCheckBox::clicked, this, &TriggersPage::chkEndlessLoop_Click);
    connect(ui_->chkPowerUp, &QCheckBox::clicked, this, &TriggersPage::chkPowerUp_Click);
    connect(ui_->buttClearPowerUp, &QPushButton::clicked, this,
            &TriggersPage::buttClearPowerUp_Click);
}

void TriggersPage::showProject() {
    if (ui_->buttTrigMusic->isChecked())
        buttTrigMusic_Click();
    else
        buttTrigSpeech_Click();
}

void TriggersPage::buttTrigMusic_Click() {
    selector_ = selectTriggerMode(project_, TriggerMode::Music);
    showSelector();
}

void TriggersPage::buttTrigSpeech_Click() {
    selector_ = selectTriggerMode(project_, TriggerMode::Speech);
    showSelector();
}

void TriggersPage::lstTrigLeft_Click() {
    selectTriggerLeft(project_, selector_, selectedRow(ui_->lstTrigLeft));
    showSelector();
}

void TriggersPage::lstTrigRight_Click() {
    selectTriggerRight(selector_, selectedRow(ui_->lstTrigRight));
    showItem();
}

void TriggersPage::chkEndlessLoop_Click(bool checked) {
    setEndlessLoop(project_, selectionOf(selector_), checked);
    showItem();
    emit projectChanged();
}

void TriggersPage::chkPowerUp_Click(bool checked) {
    setPowerUpItem(project_, selectionOf(selector_), checked);
    showItem();
    emit projectChanged();
}

void TriggersPage::buttClearPowerUp_Click() {
    clearPowerUpItem(project_);
    showItem();
    emit projectChanged();
}

void TriggersPage::buttTrig_Click(int slot, bool checked) {
    if (checked)
        assignTrigger(project_, selectionOf(selector_), slot);
    else
        clearTrigger(project_, slot);
    showItem();
    emit projectChanged();
}

void TriggersPage::buttViewTrig_Click(int slot) {
    if (const auto view = viewTrigger(project_, slot)) {
        selector_ = *view;
        showSelector();
    }
    emit projectChanged();
}

void TriggersPage::showSelector() {
    const bool isMusic = selector_.mode == TriggerMode::Music;
    ui_->buttTrigMusic->setChecked(isMusic);
    ui_->buttTrigSpeech->setChecked(!isMusic);
    ui_->lblTrigSpTitles->setText(selector_.lblTrigSpTitles);
    ui_->lblTrigMuTitles->setVisible(selector_.rightVisible);
    ui_->lstTrigRight->setVisible(selector_.rightVisible);
    showLines(ui_->lstTrigLeft, selector_.lstTrigLeft, selector_.leftRow);
    showLines(ui_->lstTrigRight, selector_.lstTrigRight, selector_.rightRow);
    showItem();
}

void TriggersPage::showItem() {
    const TriggerSelection selection = selectionOf(selector_);
    const AttributeControls enabled = enabledControls(selection);
    ui_->buttPlayNormVolume->setEnabled(enabled.buttPlayNormVolume);
    ui_->buttPlayLoudVolume->setEnabled(enabled.buttPlayLoudVolume);
    ui_->buttResumeOnInt->setEnabled(enabled.buttResumeOnInt);
    ui_->buttCancelOnInt->setEnabled(enabled.buttCancelOnInt);
    ui_->chkEndlessLoop->setEnabled(enabled.chkEndlessLoop);
    ui_->chkPowerUp->setEnabled(enabled.chkPowerUp);

    const AttributeDisplay shown = displayedAttributes(project_, selection);
    ui_->buttPlayNormVolume->setChecked(shown.buttPlayNormVolume);
    ui_->buttPlayLoudVolume->setChecked(shown.buttPlayLoudVolume);
    ui_->buttResumeOnInt->setChecked(shown.buttResumeOnInt);
    ui_->buttCancelOnInt->setChecked(shown.buttCancelOnInt);
    ui_->chkEndlessLoop->setChecked(shown.chkEndlessLoop);
    ui_->chkPowerUp->setChecked(shown.chkPowerUp);
    QString note;
    if (enabled.buttPlayNormVolume && !shown.hasRecord)
        note = tr("No MP3 file is chosen for this item yet: its attributes cannot be kept.");
    else if (enabled.buttPlayNormVolume && shown.differs)
        note = tr("Its files differ in these attributes; a click makes them alike.");
    ui_->lblAttribNote->setText(note);
    ui_->lblAttribNote->setVisible(!note.isEmpty());

    const PowerUpItem powerUp = powerUpItem(project_);
    ui_->lblPowerUpItem->setText(powerUp.words);
    ui_->buttClearPowerUp->setVisible(powerUp.isGone);
    showRows(selection);
}

void TriggersPage::showRows(const TriggerSelection& selection) {
    const auto states = triggerRows(project_, selection);
    for (size_t slot = 0; slot < rows_.size(); ++slot) {
        const TriggerRow& state = states[slot];
        const Row& row = rows_[slot];
        row.buttTrig->setChecked(state.buttTrigChecked);
        row.buttTrig->setEnabled(state.buttTrigEnabled);
        row.lblTrig->setText(state.words);
        row.lblTrig->setEnabled(state.lblTrigEnabled);
        row.buttViewTrig->setEnabled(state.buttViewTrigEnabled);
    }
}

}  // namespace tessaly
