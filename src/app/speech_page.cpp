#include "app/speech_page.h"

#include <QFileInfo>
#include <QListWidget>

#include "app/limited_line_edit.h"
#include "app/list_view_tools.h"
#include "app/save_questions.h"
#include "editor/file_display.h"
#include "model/format_limits.h"
#include "ui_speech_page.h"

namespace tessaly {

SpeechPage::SpeechPage(Project& project, const Services& services, QWidget* parent)
    : Page(parent),
      project_(project),
      services_(services),
      ui_(std::make_unique<Ui::SpeechPage>()) {
    ui_->setupUi(widget());
    ui_->txtNewSpTitle->setLimit(limits::DisplayText);
    ui_->txtNewLang->setLimit(limits::LanguageName);
    makeMoveButtons(ui_->imgSpUp, ui_->imgSpDn, ui_->lstSpTitles, "title");
    makeMoveButtons(ui_->imgLangsUp, ui_->imgLangsDn, ui_->lstLangs, "language");
    const auto clicked = [this](QAbstractButton* button, void (SpeechPage::*handler)()) {
        connect(button, &QAbstractButton::clicked, this, handler);
    };
    clicked(ui_->buttAddSpTitle, &SpeechPage::buttAddSpTitle_Click);
    clicked(ui_->buttEditSpTitle, &SpeechPage::buttEditSpTitle_Click);
    clicked(ui_->buttDelSpTitle, &SpeechPage::buttDelSpTitle_Click);
    clicked(ui_->buttAddLang, &SpeechPage::buttAddLang_Click);
    clicked(ui_->buttEditLang, &SpeechPage::buttEditLang_Click);
    clicked(ui_->buttDelLang, &SpeechPage::buttDelLang_Click);
    clicked(ui_->buttAddSpFile, &SpeechPage::buttAddSpFile_Click);
    connect(ui_->imgSpUp, &QToolButton::clicked, this, [this] { moveTitle(Direction::Up); });
    connect(ui_->imgSpDn, &QToolButton::clicked, this, [this] { moveTitle(Direction::Down); });
    connect(ui_->imgLangsUp, &QToolButton::clicked, this, [this] { moveLang(Direction::Up); });
    connect(ui_->imgLangsDn, &QToolButton::clicked, this, [this] { moveLang(Direction::Down); });
    for (QListWidget* list : {ui_->lstSpTitles, ui_->lstLangs})
        connect(list, &QListWidget::itemSelectionChanged, this, &SpeechPage::showSelection);
    connect(ui_->txtNewSpTitle, &QLineEdit::textChanged, this, &SpeechPage::txtNewSpTitle_Change);
    connect(ui_->txtNewLang, &QLineEdit::textChanged, this, &SpeechPage::txtNewLang_Change);
    for (LimitedLineEdit* field : {ui_->txtNewSpTitle, ui_->txtNewLang})
        connect(field, &LimitedLineEdit::refused, this, [this] { services_.prompts.beep(); });
    showSelection();
}

SpeechPage::~SpeechPage() = default;

SpeechSelection SpeechPage::selection() const {
    return {.title = selectedRow(ui_->lstSpTitles), .language = selectedRow(ui_->lstLangs)};
}

// ---- showing -----------------------------------------------------------------------------------

void SpeechPage::projectReplaced() {
    ui_->txtNewSpTitle->clear();
    ui_->txtNewLang->clear();
    showTitles(-1);
    showLangs(-1);
    showSelection();
}

void SpeechPage::showProject() {
    showTitles(selectedRow(ui_->lstSpTitles));
    showLangs(selectedRow(ui_->lstLangs));
    showSelection();
}

void SpeechPage::showTitles(int row) {
    showLines(ui_->lstSpTitles, project_.lstSpTitles, row);
}

void SpeechPage::showLangs(int row) {
    showLines(ui_->lstLangs, project_.lstLangs, row);
}

// Whatever changed what is selected or entered ends here: which buttons can be used, and the file
// of the selected pair.
void SpeechPage::showSelection() {
    const SpeechControls enabled =
        speechControls(project_, selection(), ui_->txtNewSpTitle->text(), ui_->txtNewLang->text());
    ui_->buttAddSpTitle->setEnabled(enabled.buttAddSpTitle);
    ui_->buttEditSpTitle->setEnabled(enabled.buttEditSpTitle);
    ui_->buttDelSpTitle->setEnabled(enabled.buttDelSpTitle);
    ui_->buttAddLang->setEnabled(enabled.buttAddLang);
    ui_->buttEditLang->setEnabled(enabled.buttEditLang);
    ui_->buttDelLang->setEnabled(enabled.buttDelLang);
    ui_->buttAddSpFile->setEnabled(enabled.buttAddSpFile);
    const FileDisplay display = speechDisplay(project_, selection(), services_.files);
    ui_->txtSpeechFile->setText(display.path);
    ui_->lblSpFilesize->setText(display.size);
}

// ---- entry fields ------------------------------------------------------------------------------

void SpeechPage::txtNewSpTitle_Change() {
    selectRowSilently(ui_->lstSpTitles, -1);
    entered(ui_->buttAddSpTitle);
}

void SpeechPage::txtNewLang_Change() {
    entered(ui_->buttAddLang);
}

// Enter adds what was typed last, if it can be added.
void SpeechPage::entered(QPushButton* add) {
    showSelection();
    if (add->isEnabled())
        setDefaultButton(add);
    else
        unsetDefaultButton(add);
}

// ---- titles ------------------------------------------------------------------------------------

void SpeechPage::buttAddSpTitle_Click() {
    const EditResult result = addSpeechTitle(project_, ui_->txtNewSpTitle->text());
    if (result.isDone) {
        ui_->txtNewSpTitle->clear();
        showTitles(result.row);
        showSelection();
        ui_->lstSpTitles->scrollToBottom();
    }
    emit projectChanged();
}

void SpeechPage::buttEditSpTitle_Click() {
    const int row = selectedRow(ui_->lstSpTitles);
    const auto name = lineAt(project_.lstSpTitles, row);
    const QString answer = name
                               ? services_.prompts.inputText(
                                     "Enter new text for speech title:", *name, limits::DisplayText)
                               : QString();
    const EditResult result = renameSpeechTitle(project_, row, answer);
    showTitles(result.row);
    showSelection();
    emit projectChanged();
}

void SpeechPage::buttDelSpTitle_Click() {
    const EditResult result = deleteSpeechTitle(project_, selectedRow(ui_->lstSpTitles));
    if (result.isDone) {
        showTitles(result.row);
        showSelection();
        emit summaryDue();
    }
    emit projectChanged();
}

void SpeechPage::moveTitle(Direction direction) {
    const EditResult result = moveSpeechTitle(project_, selectedRow(ui_->lstSpTitles), direction);
    if (!result.isDone)
        return;
    showTitles(result.row);
    showSelection();
    emit projectChanged();
}

// ---- languages ---------------------------------------------------------------------------------

void SpeechPage::buttAddLang_Click() {
    const EditResult result = addLanguage(project_, ui_->txtNewLang->text());
    if (result.isDone) {
        ui_->txtNewLang->clear();
        showLangs(selectedRow(ui_->lstLangs));
        ui_->lstLangs->scrollToBottom();
    }
    emit projectChanged();
}

void SpeechPage::buttEditLang_Click() {
    const int row = selectedRow(ui_->lstLangs);
    const auto name = lineAt(project_.lstLangs, row);
    const QString answer = name ? services_.prompts.inputText("Enter new text for language:", *name,
                                                              limits::LanguageName)
                                : QString();
    const EditResult result = renameLanguage(project_, row, answer);
    showLangs(result.row);
    showSelection();
    emit projectChanged();
}

void SpeechPage::buttDelLang_Click() {
    const EditResult result = deleteLanguage(project_, selectedRow(ui_->lstLangs));
    if (result.isDone) {
        showLangs(result.row);
        txtNewLang_Change();  // there may be room for it now
        emit summaryDue();
    }
    emit projectChanged();
}

void SpeechPage::moveLang(Direction direction) {
    const EditResult result = moveLanguage(project_, selectedRow(ui_->lstLangs), direction);
    if (!result.isDone)
        return;
    showLangs(result.row);
    showSelection();
    emit projectChanged();
}

// ---- files -------------------------------------------------------------------------------------

void SpeechPage::buttAddSpFile_Click() {
    const SpeechSelection selected = selection();
    QString path;
    if (selected.title >= 0 && selected.language >= 0)
        path =
            services_.prompts.openFile({.filter = "MP3 files (*.mp3)", .folder = lastFileFolder_});
    if (!path.isEmpty())
        lastFileFolder_ = QFileInfo(path).path();
    if (chooseSpeechFile(project_, selected, path).isDone) {
        showSelection();
        emit summaryDue();
    }
    emit projectChanged();
    tellUnsavablePaths(services_.prompts, {path});
}

}  // namespace tessaly
