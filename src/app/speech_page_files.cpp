// SPDX-License-Identifier: GPL-3.0-or-later
// The files of the speech page: in the overview, of one pair, and many at once; speech_page.cpp has
// its two lists.
#include <QFileInfo>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QVBoxLayout>
#include <algorithm>

#include "app/listening.h"
#include "app/overview_table.h"
#include "app/session_status.h"
#include "app/speech_overview.h"
#include "app/speech_page.h"
#include "app/speech_plan_dialog.h"
#include "editor/folder_tree.h"
#include "editor/speech_matching.h"
#include "model/music_lists.h"
#include "platform/error.h"

namespace tessaly {

using namespace Qt::StringLiterals;

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
    auto* addFolder = new QPushButton(u"Add F&older..."_s, widget());
    addFolder->setObjectName(u"buttAddSpFolder"_s);
    addFolder->setToolTip(u"Add the files of a folder that has a folder for each language"_s);
    views->addWidget(addFolder);
    connect(addFolder, &QPushButton::clicked, this, &SpeechPage::buttAddSpFolder_Click);
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
    file_.listenButton()->addCommand(overview_.addCommand({}));
    const QString hear = file_.hearButton()->text();
    for (QAction* command : {titles_.addCommand(hear), overview_.addCommand(hear)}) {
        connect(command, &QAction::triggered, file_.hearButton(), &QPushButton::click);
        hearCommands_.append(command);
    }
    // The program that files are dragged from waits until the drop is over: boxes come after it.
    const auto after = Qt::QueuedConnection;
    connect(overview_.table(), &OverviewTable::filesDropped, this, &SpeechPage::addFiles, after);
    connect(
        titles_.list(), &LineList::filesDropped, this,
        [this](const QStringList& paths, int row) { addFiles(paths, {.title = row}); }, after);
    connect(
        langs_.list(), &LineList::filesDropped, this,
        [this](const QStringList& paths, int row) { addFiles(paths, {.language = row}); }, after);
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
    const bool canHear = !announcement(project_, selection().title, services_.files).isEmpty();
    file_.hearButton()->setEnabled(canHear);
    for (QAction* command : hearCommands_)
        command->setEnabled(canHear);
}

void SpeechPage::buttSpOverview_Toggle(bool isOverview) {
    titles_.setVisible(!isOverview);
    langs_.setVisible(!isOverview);
    overview_.setVisible(isOverview);
    if (isOverview) {  // where nothing is selected, the first pair is
        const auto rowOf = [](const QStringList& lines, int row) {
            return LineList::rowsOf(lines.isEmpty() ? -1 : std::max(0, row));
        };
        showRows(rowOf(project_.lstSpTitles, selection().title),
                 rowOf(project_.lstLangs, selection().language));
        emit looked();
    } else {
        showSelection();
    }
    (isOverview ? static_cast<QWidget*>(overview_.table()) : titles_.list())->setFocus();
}

// ---- one pair ----------------------------------------------------------------------------------

void SpeechPage::buttAddSpFile_Click() {
    chooseFile(askForFile(FileKind::Speech,
                          u"'%1' in '%2'"_s.arg(titles_.list()->line(), langs_.list()->line())));
}

void SpeechPage::chooseFile(const QString& path) {
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

void SpeechPage::buttHearSpTitle_Click() {
    emit listenChosen(announcement(project_, selection().title, services_.files));
}

// ---- many files --------------------------------------------------------------------------------

void SpeechPage::buttAddSpFolder_Click() {
    const QString folder = services_.prompts.pickFolder(
        u"Select folder of languages, or of one language"_s, {}, FileKind::SpeechFolder);
    if (folder.isEmpty())
        return;
    addFiles({folder}, {});
}

// Plans whose the files are, lets the operator correct that, and adds them in one step. One file
// for a pair needs no plan.
void SpeechPage::addFiles(const QStringList& paths, const SpeechSelection& onto) {
    const FileSystem& files = services_.files;
    const auto isFolder = [&](const QString& path) { return files.isFolder(path); };
    const auto holdsFolders = [&](const QString& path) {
        return isFolder(path) && std::ranges::any_of(files.entries(path), &FolderEntry::isFolder);
    };
    try {
        const bool areFiles = std::ranges::none_of(paths, isFolder);
        auto title = areFiles ? lineAt(project_.lstSpTitles, onto.title) : std::nullopt;
        auto language = lineAt(project_.lstLangs, onto.language);
        if (onto.title >= 0 ? !areFiles : std::ranges::any_of(paths, holdsFolders))
            language.reset();
        if (title && language && paths.size() == 1 && isMp3Name(QFileInfo(paths[0]).fileName())) {
            showRows({onto.title}, {onto.language});
            return chooseFile(paths[0]);
        }
        if (language)  // several files on a cell are of its language
            title.reset();
        runLong(u"Add Speech Files"_s, u"Reading the files..."_s, [&](const KeepGoing& keepGoing) {
            const SpeechPlan plan = planSpeech(project_, files, paths, language, title, keepGoing);
            return [this, plan] { showPlan(plan); };
        });
    } catch (const TessalyError& error) {
        services_.prompts.tell({.text = error.description, .icon = Message::Icon::Exclamation});
    }
}

void SpeechPage::showPlan(const SpeechPlan& plan) {
    if (plan.leftOut.isCancelled)
        return;
    if (plan.lines.isEmpty())
        return services_.prompts.tell(
            {.text = u"There is no MP3 file to add."_s,
             .icon = Message::Icon::Exclamation,
             .more = plan.leftOut.leftOutInAll() > 0 ? plan.leftOut.text() + u'.' : QString(),
             .details = plan.leftOut.details()});
    SpeechPlanDialog dialog(project_, plan, window());
    if (dialog.exec() == QDialog::Accepted)
        addPlanned(dialog.plan());
}

void SpeechPage::addPlanned(const SpeechPlan& plan) {
    const AddSummary summary = applySpeechPlan(project_, plan);
    showProject();
    emit summaryDue();
    emit projectChanged();
    tellSummary(services_.prompts, summary);
    QStringList added;
    for (const SpeechPlanLine& line : plan.lines)
        if (line.taken && line.obstacle == SpeechPlanLine::Obstacle::None)
            added.append(line.path);
    tellUnsavablePaths(services_.prompts, added);
}

}  // namespace tessaly
