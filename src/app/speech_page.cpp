// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/speech_page.h"

#include <QPushButton>
#include <QRadioButton>

#include "app/speech_overview.h"
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
                  .hint = u"Type a title below and press Enter, or drop a folder with a folder for "
                          u"each language here",
                  .limit = limits::DisplayText},
                 {.item = u"Lang",
                  .list = u"lstLangs",
                  .image = u"imgLangs",
                  .step = 2,
                  .title = u"Select or add a new Language",
                  .label = u"New &language:",
                  .what = u"language",
                  .hint = u"Type a language below and press Enter, or drop the folder of a "
                          u"language here",
                  .limit = limits::LanguageName},
                 {.frame = u"fraSpFile",
                  .title = u"File to play for this Speech Title and Language:",
                  .path = u"txtSpeechFile",
                  .browse = u"buttAddSpFile",
                  .listen = u"buttListenSpFile",
                  .lines = {{u"lblSpFilesize", u"File Size:"}},
                  .sound = u"lblSpSound",
                  .clear = u"buttNoSpFile",
                  .hear = u"buttHearSpTitle"},
                 parent),
      overview_(*new OverviewSection(services.files, services.sounds, widget())),
      asList_(new QRadioButton(u"L&ist"_s, widget())),
      asOverview_(new QRadioButton(u"O&verview"_s, widget())) {
    addViews();
    titles_.list()->setNotes(
        [this](int row) { return notes().title(project_.lstSpTitles.value(row)); });
    langs_.list()->setNotes(
        [this](int row) { return notes().language(project_.lstLangs.value(row)); });
    titles_.connectTo(this, {.add = &SpeechPage::buttAddSpTitle_Click,
                             .edit = &SpeechPage::buttEditSpTitle_Click,
                             .remove = &SpeechPage::buttDelSpTitle_Click,
                             .move = &SpeechPage::moveTitles,
                             .enter = &SpeechPage::txtNewSpTitle_Change,
                             .select = &SpeechPage::showSelection});
    langs_.connectTo(this, {.add = &SpeechPage::buttAddLang_Click,
                            .edit = &SpeechPage::buttEditLang_Click,
                            .remove = &SpeechPage::buttDelLang_Click,
                            .move = &SpeechPage::moveLangs,
                            .enter = &SpeechPage::txtNewLang_Change,
                            .select = &SpeechPage::showSelection});
    connect(file_.browseButton(), &QPushButton::clicked, this, &SpeechPage::buttAddSpFile_Click);
    connect(file_.clearButton(), &QPushButton::clicked, this, &SpeechPage::buttNoSpFile_Click);
    connect(file_.hearButton(), &QPushButton::clicked, this, &SpeechPage::buttHearSpTitle_Click);
    showSelection();
}

void SpeechPage::soundLearned() {
    EditorPage::soundLearned();
    if (overview_.isVisible())
        overview_.lookAgain();
}

SpeechSelection SpeechPage::selection() const {
    return {.title = titles_.list()->row(), .language = langs_.list()->row()};
}

EditorControls SpeechPage::controls() const {
    return speechControls(project_, titles_.list()->rows(), langs_.list()->rows(), titles_.entry(),
                          langs_.entry());
}

FileDisplay SpeechPage::display() const {
    return speechDisplay(project_, selection(), services_.files);
}

void SpeechPage::projectReplaced() {
    titles_.clearEntry();
    langs_.clearEntry();
    showRows({}, {});
}

void SpeechPage::showProject() {
    showRows(titles_.list()->rows(), langs_.list()->rows());
}

// Shows the project's lines with these rows selected.
void SpeechPage::showRows(const Rows& titles, const Rows& languages) {
    titles_.list()->showLines(project_.lstSpTitles, titles);
    langs_.list()->showLines(project_.lstLangs, languages);
    if (asOverview_->isChecked())
        overview_.showProject(project_, selection());
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
        showRows({}, langs_.list()->rows());
        titles_.list()->scrollToBottom();
    }
    emit projectChanged();
}

void SpeechPage::buttEditSpTitle_Click() {
    const QString answer = askForName(titles_, u"Enter new text for speech title:"_s);
    const EditResult result = renameSpeechTitle(project_, selection().title, answer);
    showRows(LineList::rowsOf(result.row), langs_.list()->rows());
    emit projectChanged();
}

void SpeechPage::buttDelSpTitle_Click() {
    const EditResult result = deleteSpeechTitles(project_, titles_.list()->rows());
    if (result.isDone) {
        showRows(LineList::rowsOf(result.row), langs_.list()->rows());
        emit summaryDue();
    }
    emit projectChanged();
}

void SpeechPage::moveTitles(const QList<RowTravel>& travels) {
    const Rows rows = moveLines(project_.lstSpTitles, travels);
    if (rows == titles_.list()->rows())
        return;
    showRows(rows, langs_.list()->rows());
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
    const EditResult result = renameLanguage(project_, selection().language, answer);
    showRows(titles_.list()->rows(), LineList::rowsOf(result.row));
    emit projectChanged();
}

void SpeechPage::buttDelLang_Click() {
    const EditResult result = deleteLanguages(project_, langs_.list()->rows());
    if (result.isDone) {
        showRows(titles_.list()->rows(), LineList::rowsOf(result.row));
        txtNewLang_Change();  // there may be room for it now
        emit summaryDue();
    }
    emit projectChanged();
}

void SpeechPage::moveLangs(const QList<RowTravel>& travels) {
    const Rows rows = moveLines(project_.lstLangs, travels);
    if (rows == langs_.list()->rows())
        return;
    showRows(titles_.list()->rows(), rows);
    emit projectChanged();
}

}  // namespace tessaly
