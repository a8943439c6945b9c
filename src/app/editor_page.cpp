// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/editor_page.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

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
    }
}

void EditorPage::showSelection() {
    const EditorControls enabled = controls();
    first_.enable(enabled.first);
    second_.enable(enabled.second);
    file_.browseButton()->setEnabled(enabled.chooseFile);
    file_.showFile(display());
}

void EditorPage::entered(ListSection& section) {
    showSelection();
    if (section.addButton()->isEnabled())
        setDefaultButton(section.addButton());
    else
        unsetDefaultButton(section.addButton());
}

QString EditorPage::askForName(const ListSection& section, const QString& prompt) {
    return services_.prompts.inputText(prompt, section.list()->line(), section.limit(),
                                       u"Rename "_s + section.what());
}

QString EditorPage::askForFile(FileKind kind, const QString& item) {
    return services_.prompts.openFile({.filter = u"MP3 files (*.mp3)"_s,
                                       .folder = {},
                                       .title = u"Choose the MP3 File for "_s + item,
                                       .kind = kind});
}

}  // namespace tessaly
