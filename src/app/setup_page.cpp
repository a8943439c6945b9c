// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/setup_page.h"

#include <QButtonGroup>
#include <QSignalBlocker>

#include "app/display_preview.h"
#include "app/listening.h"
#include "app/session_status.h"
#include "app/small_widgets.h"
#include "app/system_text_window.h"
#include "model/display_text.h"
#include "setup/setup_items.h"
#include "ui_setup_page.h"

namespace tessaly {

using namespace Qt::StringLiterals;

SetupPage::SetupPage(Project& project, const Services& services, QWidget* parent)
    : Page(parent),
      project_(project),
      services_(services),
      folders_(foldersOfProgram(services.appFolder, services.userFolder)),
      ui_(std::make_unique<Ui::SetupPage>()),
      chimeSound_(new QButtonGroup(this)),
      chimeRepeat_(new QButtonGroup(this)),
      systemTexts_(new SystemTextWindow(project, services.prompts, this)) {
    ui_->setupUi(widget());
    ui_->lstDefaultLangs->setFont(fixedFont(font()));
    connectTitle(ui_->txtCardTitle1, &Project::txtCardTitle1, &SetupPage::txtCardTitle1_KeyPress);
    connectTitle(ui_->txtCardTitle2, &Project::txtCardTitle2, &SetupPage::txtCardTitle2_KeyPress);
    connectChime();
    connect(ui_->lstDefaultLangs, &QListWidget::itemSelectionChanged, this,
            &SetupPage::lstDefaultLangs_Click);
    connect(ui_->buttAdvancedSettings, &QPushButton::clicked, this,
            &SetupPage::buttAdvancedSettings_Click);
    connect(systemTexts_, &SystemTextWindow::projectChanged, this, &Page::projectChanged);
}

SetupPage::~SetupPage() = default;

void SetupPage::connectTitle(LimitedLineEdit* edit, QString Project::*line,
                             void (SetupPage::*keyPress)()) {
    edit->setFont(fixedFont(font()));
    connect(edit, &LimitedLineEdit::refused, this, [this] { services_.prompts.beep(); });
    connect(edit, &LimitedLineEdit::keyTyped, this, keyPress);
    connect(edit, &QLineEdit::textEdited, this, [this, line](const QString& text) {
        setCardTitle(project_, line, text);
        showTitle();
        emit projectChanged();
    });
}

// Every key marks the project, also one that the full line refuses.
void SetupPage::typedInTitle() {
    typeInCardTitle(project_);
    emit projectChanged();
}

// Two groups: an arrow key moves within its own, and Tab leads from one to the other. By
// themselves all option buttons in a frame would be one.
void SetupPage::connectChime() {
    const auto add = [this](QButtonGroup* group, QRadioButton* button,
                            void (SetupPage::*handler)()) {
        group->addButton(button);
        connect(button, &QRadioButton::clicked, this, handler);
    };
    add(chimeSound_, ui_->buttDisableChime, &SetupPage::buttDisableChime_Click);
    add(chimeSound_, ui_->buttPlayIntChime, &SetupPage::buttPlayIntChime_Click);
    add(chimeSound_, ui_->buttPlayExtChime, &SetupPage::buttPlayExtChime_Click);
    add(chimeRepeat_, ui_->buttChimeAlways, &SetupPage::buttChimeAlways_Click);
    add(chimeRepeat_, ui_->buttChimeOnce, &SetupPage::buttChimeOnce_Click);
    connect(ui_->txtChimeFileName, &QLineEdit::textEdited, this,
            &SetupPage::txtChimeFileName_Change);
    connect(ui_->buttGetChimeFile, &QPushButton::clicked, this, &SetupPage::buttGetChimeFile_Click);
    // Not at every key: to look for a part of a path may take long.
    connect(ui_->txtChimeFileName, &QLineEdit::editingFinished, this, &SetupPage::offerChime);
}

void SetupPage::clickedChime(bool Project::*option) {
    clickChimeOption(project_, option);
    showChime();
    emit projectChanged();
}

void SetupPage::showProject() {
    for (const auto& [edit, text] : {std::pair(ui_->txtCardTitle1, project_.txtCardTitle1),
                                     std::pair(ui_->txtCardTitle2, project_.txtCardTitle2)})
        if (edit->text() != text)
            edit->setText(text);
    showTitle();
    showDefaultLangs();
    showChime();
}

void SetupPage::projectReplaced() {
    showProject();
}

void SetupPage::showSystemTexts() {
    systemTexts_->projectReplaced();
}

void SetupPage::showTitle() {
    ui_->previewTitle->setLine(0, project_.txtCardTitle1);
    ui_->previewTitle->setLine(1, project_.txtCardTitle2);
    ui_->lblTitleLength1->setText(displayLengthText(project_.txtCardTitle1));
    ui_->lblTitleLength2->setText(displayLengthText(project_.txtCardTitle2));
}

void SetupPage::showDefaultLangs() {
    const DefaultLanguageList list = showDefaultLanguages(project_);
    const QSignalBlocker blocker(ui_->lstDefaultLangs);
    ui_->lstDefaultLangs->clear();
    ui_->lstDefaultLangs->addItems(list.items);
    for (int row = 0; row < int(list.items.size()); ++row)
        ui_->lstDefaultLangs->item(row)->setSelected(list.selected[row]);
}

void SetupPage::lstDefaultLangs_Click() {
    DefaultLanguageList list;
    for (int row = 0; row < ui_->lstDefaultLangs->count(); ++row) {
        list.items.append(ui_->lstDefaultLangs->item(row)->text());
        list.selected.append(ui_->lstDefaultLangs->item(row)->isSelected());
    }
    setDefaultLanguages(project_, list);
    emit projectChanged();
}

void SetupPage::showChime() {
    // As long as a group is exclusive it cannot lose its choice; a project may have none.
    for (QButtonGroup* group : {chimeSound_, chimeRepeat_})
        group->setExclusive(false);
    ui_->buttDisableChime->setChecked(project_.buttDisableChime);
    ui_->buttPlayIntChime->setChecked(project_.buttPlayIntChime);
    ui_->buttPlayExtChime->setChecked(project_.buttPlayExtChime);
    ui_->buttChimeAlways->setChecked(project_.buttChimeAlways);
    ui_->buttChimeOnce->setChecked(project_.buttChimeOnce);
    for (QButtonGroup* group : {chimeSound_, chimeRepeat_})
        group->setExclusive(true);
    if (ui_->txtChimeFileName->text() != project_.txtChimeFileName)
        ui_->txtChimeFileName->setText(project_.txtChimeFileName);
    const ChimeControls enabled = chimeControls(project_);
    ui_->Label24->setEnabled(enabled.file);
    ui_->txtChimeFileName->setEnabled(enabled.file);
    ui_->buttGetChimeFile->setEnabled(enabled.file);
    ui_->buttChimeAlways->setEnabled(enabled.repetition);
    ui_->buttChimeOnce->setEnabled(enabled.repetition);
    offerChime();
}

void SetupPage::offerChime() {
    QList<Sound> sounds = chimeSound(project_);
    sounds.removeIf([this](const Sound& one) { return !services_.files.fileSize(one.path); });
    ui_->buttListenChime->offer(sounds);
}

ListenButton* SetupPage::listenButton() const {
    return ui_->buttListenChime;
}

void SetupPage::buttGetChimeFile_Click() {
    const QString path =
        services_.prompts.openFile({.filter = u"MP3 files (*.mp3)"_s,
                                    .folder = folders_.chimesStart(),
                                    .title = u"Choose the MP3 File for the Chime"_s,
                                    .kind = FileKind::Chime});
    chooseChimeFile(project_, path.isEmpty() ? std::nullopt : std::optional(path));
    showChime();
    if (!path.isEmpty())
        emit summaryDue();
    emit projectChanged();
    tellUnsavablePaths(services_.prompts, {path});
}

void SetupPage::txtChimeFileName_Change(const QString& text) {
    setChimeFileName(project_, text);
    ui_->buttListenChime->offer(chimeSound(project_));
    emit projectChanged();
}

void SetupPage::buttAdvancedSettings_Click() {
    openSystemTexts(project_);
    systemTexts_->show();
    systemTexts_->raise();
    systemTexts_->activateWindow();
    emit projectChanged();
}

}  // namespace tessaly
