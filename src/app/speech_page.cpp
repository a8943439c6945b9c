// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/speech_page.h"

#include <QPushButton>

#include "app/session_status.h"
#include "model/format_limits.h"

namespace tessaly {

using namespace Qt::StringLiterals;

SpeechPage::SpeechPage(Project& project, const Services& services, QWidget* parent)
    : EditorPage(project, services,
                 {.item = u"SpTitle",
                  .list = u"lstSpTitles",
                  .image = u"imgSp",
                  .step = 1,
                  .title = u"Select or add a new Speech title",
                  .label = u"New &title:",
                  .what = u"title",
                  .limit = limits::DisplayText},
                 {.item = u"Lang",
                  .list = u"lstLangs",
                  .image = u"imgLangs",
                  .step = 2,
                  .title = u"Select or add a new Language",
                  .label = u"New &language:",
                  .what = u"language",
                  .limit = limits::LanguageName},
                 {.frame = u"fraSpFile",
                  .title = u"File to play for this Speech Title and Language:",
                  .path = u"txtSpeechFile",
                  .browse = u"buttAddSpFile",
                  .lines = {{u"lblSpFilesize", u"File Size:"}}},
                 parent) {
    titles_.connectTo(this, {.add = &SpeechPage::buttAddSpTitle_Click,
                             .edit = &SpeechPage::buttEditSpTitle_Click,
                             .remove = &SpeechPage::buttDelSpTitle_Click,
                             .move = &SpeechPage::moveTitle,
                             .enter = &SpeechPage::txtNewSpTitle_Change,
                             .select = &SpeechPage::showSelection});
    langs_.connectTo(this, {.add = &SpeechPage::buttAddLang_Click,
                            .edit = &SpeechPage::buttEditLang_Click,
                            .remove = &SpeechPage::buttDelLang_Click,
                            .move = &SpeechPage::moveLang,
                            .enter = &SpeechPage::txtNewLang_Change,
                            .select = &SpeechPage::showSelection});
    connect(file_.browseButton(), &QPushButton::clicked, this, &SpeechPage::buttAddSpFile_Click);
    showSelection();
}

SpeechSelection SpeechPage::selection() const {
    return {.title = titles_.list()->row(), .language = langs_.list()->row()};
}

EditorControls SpeechPage::controls() const {
    return speechControls(project_, selection(), titles_.entry(), langs_.entry());
}

FileDisplay SpeechPage::display() const {
    return speechDisplay(project_, selection(), services_.files);
}

void SpeechPage::projectReplaced() {
    titles_.clearEntry();
    langs_.clearEntry();
    showRows(-1, -1);
}

void SpeechPage::showProject() {
    showRows(selection().title, selection().language);
}

// Shows the project's lines with these rows selected.
void SpeechPage::showRows(int title, int language) {
    titles_.list()->showLines(project_.lstSpTitles, title);
    langs_.list()->showLines(project_.lstLangs, language);
    showSelection();
}

// ---- titles ------------------------------------------------------------------------------------

void SpeechPage::txtNewSpTitle_Change() {
    titles_.list()->selectRow(-1);
    entered(titles_);
}

void SpeechPage::buttAddSpTitle_Click() {
    const EditResult result = addSpeechTitle(project_, titles_.entry());
    if (result.isDone) {
        titles_.clearEntry();
        showRows(result.row, selection().language);
        titles_.list()->scrollToBottom();
    }
    emit projectChanged();
}

void SpeechPage::buttEditSpTitle_Click() {
    const QString answer = askForName(titles_, u"Enter new text for speech title:"_s);
    showRows(renameSpeechTitle(project_, selection().title, answer).row, selection().language);
    emit projectChanged();
}

void SpeechPage::buttDelSpTitle_Click() {
    const EditResult result = deleteSpeechTitle(project_, selection().title);
    if (result.isDone) {
        showRows(result.row, selection().language);
        emit summaryDue();
    }
    emit projectChanged();
}

void SpeechPage::moveTitle(Direction direction) {
    const EditResult result = moveSpeechTitle(project_, selection().title, direction);
    if (!result.isDone)
        return;
    showRows(result.row, selection().language);
    emit projectChanged();
}

// ---- languages ---------------------------------------------------------------------------------

void SpeechPage::txtNewLang_Change() {
    entered(langs_);
}

void SpeechPage::buttAddLang_Click() {
    const EditResult result = addLanguage(project_, langs_.entry());
    if (result.isDone) {
        langs_.clearEntry();
        showProject();
        langs_.list()->scrollToBottom();
    }
    emit projectChanged();
}

void SpeechPage::buttEditLang_Click() {
    const QString answer = askForName(langs_, u"Enter new text for language:"_s);
    showRows(selection().title, renameLanguage(project_, selection().language, answer).row);
    emit projectChanged();
}

void SpeechPage::buttDelLang_Click() {
    const EditResult result = deleteLanguage(project_, selection().language);
    if (result.isDone) {
        showRows(selection().title, result.row);
        txtNewLang_Change();  // there may be room for it now
        emit summaryDue();
    }
    emit projectChanged();
}

void SpeechPage::moveLang(Direction direction) {
    const EditResult result = moveLanguage(project_, selection().language, direction);
    if (!result.isDone)
        return;
    showRows(selection().title, result.row);
    emit projectChanged();
}

// ---- files -------------------------------------------------------------------------------------

void SpeechPage::buttAddSpFile_Click() {
    const QString path = askForFile(
        FileKind::Speech, u"'%1' in '%2'"_s.arg(titles_.list()->line(), langs_.list()->line()));
    if (chooseSpeechFile(project_, selection(), path).isDone) {
        showSelection();
        emit summaryDue();
    }
    emit projectChanged();
    tellUnsavablePaths(services_.prompts, {path});
}

}  // namespace tessaly
