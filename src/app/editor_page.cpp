// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/editor_page.h"

#include <QAction>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QScopeGuard>
#include <QVBoxLayout>

#include "app/listening.h"
#include "app/session_status.h"
#include "app/sound_watch.h"
#include "sound/sound_words.h"

namespace tessaly {

using namespace Qt::StringLiterals;

EditorPage::EditorPage(Project& project, const Services& services, const ListSection::Names& first,
                       const ListSection::Names& second, const FileSection::Names& file,
                       QWidget* parent)
    : Page(parent),
      project_(project),
      services_(services),
      first_(*new ListSection(first, widget())),
      second_(*new ListSection(second, widget())),
      file_(*new FileSection(file, widget())) {
    auto* layout = new QVBoxLayout(widget());
    auto* lists = new QHBoxLayout;
    layout->addLayout(lists);
    layout->addWidget(&file_);
    for (ListSection* section : {&first_, &second_}) {
        lists->addWidget(section);
        connect(section, &ListSection::refused, this, [this] { services_.prompts.beep(); });
        browseCommands_.append(
            section->addCommand(file_.browseButton()->text().remove(u'&'), u"Enter"_s));
        connect(browseCommands_.last(), &QAction::triggered, file_.browseButton(),
                &QPushButton::click);
        file_.listenButton()->addCommand(section->addCommand({}));
    }
}

const LineNotes& EditorPage::notes() {
    if (!notes_)
        notes_.emplace(project_, [this](const TrackRecord& record) {
            const ItemSound item = services_.sounds.remembered(record);
            return LineNotes::Sound{item.sound ? item.sound->quick.milliseconds : 0,
                                    !item.problem().isEmpty()};
        });
    return *notes_;
}

void EditorPage::showSelection() {
    if (notes_ && !notes_->areOf(project_))
        notes_.reset();
    for (const ListSection* section : {&first_, &second_})
        section->list()->viewport()->update();
    const EditorControls enabled = controls();
    first_.enable(enabled.first);
    second_.enable(enabled.second);
    file_.browseButton()->setEnabled(enabled.chooseFile);
    for (QAction* command : browseCommands_)
        command->setEnabled(enabled.chooseFile);
    showFile();
}

void EditorPage::showFile() {
    const FileDisplay shown = display();
    if (!shown.record)
        return file_.showFile(shown, {}, false);
    const ItemSound item = services_.sounds.of(*shown.record, shown.path, shown.stamp);
    const QString problem = item.isMissing ? u"File not found"_s : item.problem();
    const QString format = item.sound ? inMinutes(item.sound->quick.milliseconds) + u", "_s +
                                            formatInWords(item.sound->quick)
                                      : u"not looked at yet"_s;
    file_.showFile(shown, problem.isEmpty() ? format : problem, !problem.isEmpty());
}

void EditorPage::soundLearned() {
    notes_.reset();
    for (const ListSection* section : {&first_, &second_})
        section->list()->viewport()->update();
    if (isVisible())
        showFile();
}

void EditorPage::entered(ListSection& section) {
    showSelection();
    if (section.addButton()->isEnabled())
        setDefaultButton(section.addButton());
    else
        unsetDefaultButton(section.addButton());
}

QString EditorPage::askForName(const ListSection& section, const QString& prompt) {
    const QString name = section.list()->line();
    const QString answer = services_.prompts.inputText(prompt, name, section.limit());
    return section.keepsEqualName() && answer == name ? QString() : answer;
}

// Enter in a list chooses the file of what is selected there, unless a new name waits to be added.
void EditorPage::keyPressEvent(QKeyEvent* event) {
    const bool isInList = first_.list()->hasFocus() || second_.list()->hasFocus();
    if (isInList && isEnter(*event) && !hasEnabledDefault())
        file_.browseButton()->click();
    else
        Page::keyPressEvent(event);
}

QString EditorPage::askForFile(FileKind kind, const QString& item) {
    return services_.prompts.openFile({.filter = u"MP3 files (*.mp3)"_s,
                                       .folder = {},
                                       .title = u"Choose the MP3 File for "_s + item,
                                       .kind = kind});
}

void EditorPage::runLong(const QString& title, const QString& what, const LongWork& work) {
    emit editBegins();
    const auto ends = qScopeGuard([this] { emit editEnds(); });
    const qsizetype before = project_.TrackTable.size();
    runBehindProgress(window(), services_.prompts, title, what, work);
    emit projectChanged();
    QStringList added;
    for (const TrackRecord& record : project_.TrackTable.mid(before))
        added.append(record.sourcePath.text());
    tellUnsavablePaths(services_.prompts, added);
}

}  // namespace tessaly
