// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/triggers_page.h"

#include "app/list_section.h"
#include "app/small_widgets.h"
#include "ui_triggers_page.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// One of two option buttons is checked, or none where several items differ.
void showChoice(QRadioButton* first, QRadioButton* second, bool isSecond, bool isNone) {
    for (QRadioButton* button : {first, second})
        button->setAutoExclusive(false);  // else one of them stays checked
    first->setChecked(!isNone && !isSecond);
    second->setChecked(!isNone && isSecond);
    for (QRadioButton* button : {first, second})
        button->setAutoExclusive(true);
}

}  // namespace

TriggersPage::TriggersPage(Project& project, QWidget* parent)
    : Page(parent), project_(project), ui_(std::make_unique<Ui::TriggersPage>()) {
    ui_->setupUi(widget());
    rows_ = {Row{ui_->buttTrig_0, ui_->lblTrig_0, ui_->buttViewTrig_0},
             Row{ui_->buttTrig_1, ui_->lblTrig_1, ui_->buttViewTrig_1},
             Row{ui_->buttTrig_2, ui_->lblTrig_2, ui_->buttViewTrig_2}};
    const QFont fixed = fixedFont(font());
    ui_->lstTrigLeft->setFont(fixed);
    ui_->lstTrigRight->setFont(fixed);
    ui_->buttTrigMusic->setChecked(true);
    ui_->lstTrigRight->allowSeveral();

    connect(ui_->buttTrigMusic, &QRadioButton::clicked, this, &TriggersPage::buttTrigMusic_Click);
    connect(ui_->buttTrigSpeech, &QRadioButton::clicked, this, &TriggersPage::buttTrigSpeech_Click);
    connect(ui_->lstTrigLeft, &LineList::rowChanged, this, &TriggersPage::lstTrigLeft_Click);
    connect(ui_->lstTrigRight, &LineList::rowChanged, this, &TriggersPage::lstTrigRight_Click);
    connectAttributes();
    for (int slot = 0; slot < TriggerRows; ++slot) {
        const Row& row = rows_[size_t(slot)];
        row.buttTrig->setAccessibleName(u"Trigger %1"_s.arg(slot + 1));
        row.buttViewTrig->setAccessibleName(u"View trigger %1"_s.arg(slot + 1));
        connect(row.buttTrig, &QCheckBox::clicked, this,
                [this, slot](bool checked) { buttTrig_Click(slot, checked); });
        connect(row.buttViewTrig, &QPushButton::clicked, this,
                [this, slot] { buttViewTrig_Click(slot); });
    }
}

TriggersPage::~TriggersPage() = default;

// Only clicks count: what the program checks itself raises no "clicked".
void TriggersPage::connectAttributes() {
    const auto clicked = [this](QAbstractButton* button, void (TriggersPage::*handler)()) {
        connect(button, &QAbstractButton::clicked, this, handler);
    };
    clicked(ui_->buttPlayNormVolume, &TriggersPage::buttPlayNormVolume_Click);
    clicked(ui_->buttPlayLoudVolume, &TriggersPage::buttPlayLoudVolume_Click);
    clicked(ui_->buttResumeOnInt, &TriggersPage::buttResumeOnInt_Click);
    clicked(ui_->buttCancelOnInt, &TriggersPage::buttCancelOnInt_Click);
    clicked(ui_->buttClearPowerUp, &TriggersPage::buttClearPowerUp_Click);
    connect(ui_->chkEndlessLoop, &QCheckBox::clicked, this, &TriggersPage::chkEndlessLoop_Click);
    connect(ui_->chkPowerUp, &QCheckBox::clicked, this, &TriggersPage::chkPowerUp_Click);
}

void TriggersPage::showProject() {
    if (ui_->buttTrigMusic->isChecked())
        buttTrigMusic_Click();
    else
        buttTrigSpeech_Click();
}

QList<Rows> TriggersPage::selectedRows() const {
    return {{int(selector_.mode)}, ui_->lstTrigLeft->rows(), ui_->lstTrigRight->rows()};
}

void TriggersPage::selectRows(const QList<Rows>& rows) {
    selector_ = selectTriggerMode(project_, TriggerMode(rows.value(0).value(0)));
    selectTriggerLeft(project_, selector_, rows.value(1).value(0, -1));
    selectTriggerRight(selector_, rows.value(2).value(0, -1));
    const Rows items = rows.value(selector_.mode == TriggerMode::Music ? 2 : 1);
    if (items.size() > 1)
        selectSeveral(selector_, items);
    showSelector();
}

void TriggersPage::buttTrigMusic_Click() {
    selector_ = selectTriggerMode(project_, TriggerMode::Music);
    showSelector();
    emit looked();
}

void TriggersPage::buttTrigSpeech_Click() {
    selector_ = selectTriggerMode(project_, TriggerMode::Speech);
    showSelector();
    emit looked();
}

void TriggersPage::lstTrigLeft_Click() {
    const Rows rows = ui_->lstTrigLeft->rows();
    if (rows.size() > 1) {
        selectSeveral(selector_, rows);
        return showItem();
    }
    selectTriggerLeft(project_, selector_, rows.value(0, -1));
    showSelector();
}

void TriggersPage::lstTrigRight_Click() {
    const Rows rows = ui_->lstTrigRight->rows();
    if (rows.size() > 1)
        selectSeveral(selector_, rows);
    else
        selectTriggerRight(selector_, rows.value(0, -1));
    showItem();
}

void TriggersPage::buttPlayNormVolume_Click() {
    setLoudVolume(project_, selectionOf(selector_), false);
    edited();
}

void TriggersPage::buttPlayLoudVolume_Click() {
    setLoudVolume(project_, selectionOf(selector_), true);
    edited();
}

void TriggersPage::buttResumeOnInt_Click() {
    setCancelOnInterrupt(project_, selectionOf(selector_), false);
    edited();
}

void TriggersPage::buttCancelOnInt_Click() {
    setCancelOnInterrupt(project_, selectionOf(selector_), true);
    edited();
}

void TriggersPage::chkEndlessLoop_Click(bool checked) {
    setEndlessLoop(project_, selectionOf(selector_), checked);
    edited();
}

void TriggersPage::chkPowerUp_Click(bool checked) {
    setPowerUpItem(project_, selectionOf(selector_), checked);
    edited();
}

void TriggersPage::buttClearPowerUp_Click() {
    clearPowerUpItem(project_);
    edited();
}

void TriggersPage::buttTrig_Click(int slot, bool checked) {
    if (checked)
        assignTrigger(project_, selectionOf(selector_), slot);
    else
        clearTrigger(project_, slot);
    edited();
}

void TriggersPage::buttViewTrig_Click(int slot) {
    if (const auto view = viewTrigger(project_, slot)) {
        selector_ = *view;
        showSelector();
        emit looked();
    }
    emit projectChanged();
}

void TriggersPage::edited() {
    showItem();
    emit projectChanged();
}

void TriggersPage::showSelector() {
    const bool isMusic = selector_.mode == TriggerMode::Music;
    ui_->buttTrigMusic->setChecked(isMusic);
    ui_->buttTrigSpeech->setChecked(!isMusic);
    ui_->lblTrigSpTitles->setText(selector_.lblTrigSpTitles);
    ui_->lblTrigMuTitles->setVisible(selector_.rightVisible);
    ui_->lstTrigRight->setVisible(selector_.rightVisible);
    ui_->lstTrigLeft->allowSeveral(!isMusic);
    const auto rows = [&](int row, bool hasItems) {
        return hasItems && !selector_.several.isEmpty() ? selector_.several : LineList::rowsOf(row);
    };
    ui_->lstTrigLeft->showLines(selector_.lstTrigLeft, rows(selector_.leftRow, !isMusic));
    ui_->lstTrigRight->showLines(selector_.lstTrigRight, rows(selector_.rightRow, isMusic));
    showItem();
}

void TriggersPage::showItem() {
    const TriggerSelection selection = selectionOf(selector_);
    const AttributeControls enabled = enabledControls(selection);
    for (QWidget* button :
         std::initializer_list<QWidget*>{ui_->buttPlayNormVolume, ui_->buttPlayLoudVolume,
                                         ui_->buttResumeOnInt, ui_->buttCancelOnInt})
        button->setEnabled(enabled.attributes);
    ui_->chkEndlessLoop->setEnabled(enabled.endlessLoop);
    ui_->chkPowerUp->setEnabled(enabled.play);

    const AttributeDisplay shown = displayedAttributes(project_, selection);
    const bool isSeveral = !selection.several.isEmpty();
    showChoice(ui_->buttPlayNormVolume, ui_->buttPlayLoudVolume, shown.loud,
               isSeveral && shown.loudDiffers);
    showChoice(ui_->buttResumeOnInt, ui_->buttCancelOnInt, shown.cancel,
               isSeveral && shown.cancelDiffers);
    const bool isPartly = isSeveral && shown.loopDiffers;
    ui_->chkEndlessLoop->setCheckState(isPartly     ? Qt::PartiallyChecked
                                       : shown.loop ? Qt::Checked
                                                    : Qt::Unchecked);
    ui_->chkEndlessLoop->setTristate(isPartly);
    ui_->chkPowerUp->setChecked(shown.powerUp);
    QString note;
    if (enabled.attributes && !shown.hasRecord)
        note = tr("No MP3 file is chosen for this item yet: its attributes cannot be kept.");
    else if (isSeveral)
        note =
            tr("%1 items are selected%2.")
                .arg(selection.several.size())
                .arg(shown.differs ? tr("; where they differ, a click makes them alike") : u""_s);
    else if (enabled.attributes && shown.differs)
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
        row.buttTrig->setChecked(state.isAssigned);
        row.buttTrig->setEnabled(state.isEnabled);
        row.lblTrig->setText(state.words);
        row.lblTrig->setEnabled(state.isEnabled);
        row.buttViewTrig->setEnabled(state.isAssigned && !state.isEnabled);
    }
}

}  // namespace tessaly
