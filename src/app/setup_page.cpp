#include "app/setup_page.h"

#include <QButtonGroup>
#include <QSignalBlocker>

#include "app/display_preview.h"
#include "app/limited_line_edit.h"
#include "app/list_view_tools.h"
#include "app/save_questions.h"
#include "app/system_text_window.h"
#include "model/display_text.h"
#include "setup/card_title.h"
#include "setup/chime.h"
#include "setup/default_languages.h"
#include "setup/system_texts.h"
#include "ui_setup_page.h"

namespace tessaly {

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
    connectTitle(ui_->txtCardTitle1, &Project::txtCardTitle1);
    connectTitle(ui_->txtCardTitle2, &Project::txtCardTitle2);
    connectChime();
    connect(ui_->lstDefaultLangs, &QListWidget::itemSelectionChanged, this,
            &SetupPage::lstDefaultLangs_Click);
    connect(ui_->buttAdvancedSettings, &QPushButton::clicked, this,
            &SetupPage::buttAdvancedSettings_Click);
    connect(systemTexts_, &SystemTextWindow::projectChanged, this, &Page::projectChanged);
}

SetupPage::~SetupPage() = default;

void SetupPage::connectTitle(LimitedLineEdit* edit, QString Project::*line) {
    edit->setFont(fixedFont(font()));
    connect(edit, &LimitedLineEdit::refused, this, [this] { services_.prompts.beep(); });
    // Every key marks the project, also one that the full line refuses.
    connect(edit, &LimitedLineEdit::keyTyped, this, [this] {
        typeInCardTitle(project_);
        emit projectChanged();
    });
    connect(edit, &QLineEdit::textEdited, this, [this, line](const QString& text) {
        setCardTitle(project_, line, text);
        showTitle();
        emit projectChanged();
    });
}

// Two groups: an arrow key moves within its own, and Tab leads from one to the other. By
// themselves all option buttons in a frame would be one.
void SetupPage::connectChime() {
    for (QAbstractButton* button : std::initializer_list<QAbstractButton*>{
             ui_->buttDisableChime, ui_->buttPlayIntChime, ui_->buttPlayExtChime})
        chimeSound_->addButton(button);
    for (QAbstractButton* button :
         std::initializer_list<QAbstractButton*>{ui_->buttChimeAlways, ui_->buttChimeOnce})
        chimeRepeat_->addButton(button);
    const std::pair<QRadioButton*, bool Project::*> options[] = {
        {ui_->buttDisableChime, &Project::buttDisableChime},
        {ui_->buttPlayIntChime, &Project::buttPlayIntChime},
        {ui_->buttPlayExtChime, &Project::buttPlayExtChime},
        {ui_->buttChimeAlways, &Project::buttChimeAlways},
        {ui_->buttChimeOnce, &Project::buttChimeOnce}};
    for (const auto& [button, option] : options)
        connect(button, &QRadioButton::clicked, this, [this, member = option] {
            clickChimeOption(project_, member);
            showChime();
            emit projectChanged();
        });
    connect(ui_->txtChimeFileName, &QLineEdit::textEdited, this,
            &SetupPage::txtChimeFileName_Change);
    connect(ui_->buttGetChimeFile, &QPushButton::clicked, this, &SetupPage::buttGetChimeFile_Click);
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
    ui_->Label24->setEnabled(enabled.Label24);
    ui_->txtChimeFileName->setEnabled(enabled.txtChimeFileName);
    ui_->buttGetChimeFile->setEnabled(enabled.buttGetChimeFile);
    ui_->buttChimeAlways->setEnabled(enabled.buttChimeAlways);
    ui_->buttChimeOnce->setEnabled(enabled.buttChimeOnce);
}

void SetupPage::buttGetChimeFile_Click() {
    const QString path = services_.prompts.openFile(
        {.filter = "MP3 files (*.mp3)", .folder = folders_.chimesStart()});
    chooseChimeFile(project_, path.isEmpty() ? std::nullopt : std::optional(path));
    showChime();
    if (!path.isEmpty())
        emit summaryDue();
    emit projectChanged();
    tellUnsavablePaths(services_.prompts, {path});
}

void SetupPage::txtChimeFileName_Change(const QString& text) {
    setChimeFileName(project_, text);
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
