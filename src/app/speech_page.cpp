// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/speech_page.h"

#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "app/session_status.h"
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
                  .lines = {{u"lblSpFilesize", u"File Size:"}},
                  .clear = u"buttNoSpFile"},
                 parent),
      overview_(*new OverviewSection(services.files, widget())),
      asList_(new QRadioButton(u"L&ist"_s, widget())),
      asOverview_(new QRadioButton(u"O&verview"_s, widget())) {
    addViews();
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
    connect(file_.clearButton(), &QPushButton::clicked, this, &SpeechPage::buttNoSpFile_Click);
    showSelection();
}

// The switch between the lists and the overview, which have the same place.
void SpeechPage::addViews() {
    const QKeySequence key(Qt::CTRL | Qt::Key_G);
    asList_->setObjectName(u"buttSpList"_s);
    asOverview_->setObjectName(u"buttSpOverview"_s);
    asList_->setChecked(true);
    asOverview_->setToolTip(u"All titles in all languages ("_s +
                            key.toString(QKeySequence::NativeText) + u')');
    auto* views = new QHBoxLayout;
    views->addWidget(asList_);
    views->addWidget(asOverview_);
    views->addStretch();
    auto* layout = qobject_cast<QVBoxLayout*>(widget()->layout());
    layout->insertLayout(0, views);
    layout->insertWidget(1, &overview_, 1);
    overview_.hide();
    auto* shortcut = new QShortcut(key, this);
    connect(shortcut, &QShortcut::activated, this,
            [this] { (asOverview_->isChecked() ? asList_ : asOverview_)->setChecked(true); });
    connect(asOverview_, &QRadioButton::toggled, this, &SpeechPage::buttSpOverview_Toggle);
    connect(overview_.table(), &OverviewTable::searched, titles_.list(), &LineList::keyboardSearch);
    connect(&overview_, &OverviewSection::browseChosen, file_.browseButton(), &QPushButton::click);
    connect(&overview_, &OverviewSection::clearChosen, file_.clearButton(), &QPushButton::click);
    connect(&overview_, &OverviewSection::selectionMoved, this, [this] {
        const SpeechSelection pair = overview_.current();
        titles_.list()->selectRow(pair.title);
        langs_.list()->selectRow(pair.language);
        showSelection();
        emit looked();
    });
}

void SpeechPage::showSelection() {
    EditorPage::showSelection();
    const bool isOverview = asOverview_->isChecked();
    if (isOverview)
        overview_.select(selection());
    const bool canClear = isOverview ? overview_.hasFile() : controls().clearFile;
    file_.clearButton()->setEnabled(canClear);
    overview_.enableClear(canClear);
}

void SpeechPage::buttSpOverview_Toggle(bool isOverview) {
    titles_.setVisible(!isOverview);
    langs_.setVisible(!isOverview);
    overview_.setVisible(isOverview);
    if (isOverview) {  // where nothing is selected, the first pair is
        showRows(project_.lstSpTitles.isEmpty() ? -1 : std::max(0, selection().title),
                 project_.lstLangs.isEmpty() ? -1 : std::max(0, selection().language));
        emit looked();
    }
    (isOverview ? static_cast<QWidget*>(overview_.table()) : titles_.list())->setFocus();
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
    const QString path = askForFile();
    if (chooseSpeechFile(project_, selection(), path).isDone) {
        showProject();
        emit summaryDue();
    }
    emit projectChanged();
    tellUnsavablePaths(services_.prompts, {path});
}

void SpeechPage::buttNoSpFile_Click() {
    clearSpeechFiles(project_, asOverview_->isChecked() ? overview_.selected()
                                                        : QList<SpeechSelection>{selection()});
    showProject();
    emit summaryDue();
    emit projectChanged();
}

}  // namespace tessaly
