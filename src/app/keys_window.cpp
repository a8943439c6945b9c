// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/keys_window.h"

#include <QDialogButtonBox>
#include <QScreen>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace tessaly {

using namespace Qt::StringLiterals;

QList<KeyGroup> programKeys() {
    return {
        {u"Project"_s,
         {{u"Ctrl+N"_s, u"New project"_s},
          {u"Ctrl+O"_s, u"Open a project"_s},
          {u"Ctrl+S"_s, u"Save it"_s},
          {u"Ctrl+Shift+S"_s, u"Save it under another name"_s},
          {u"Ctrl+Q"_s, u"Leave the program"_s}}},
        {u"Edits"_s,
         {{u"Ctrl+Z"_s, u"Undo the last edit"_s},
          {u"Ctrl+Shift+Z, Ctrl+Y"_s, u"Redo what was undone"_s}}},
        {u"Pages"_s,
         {{u"Alt+1 to Alt+5"_s, u"Go to the page of that number"_s},
          {u"Ctrl+PageDown, Ctrl+PageUp"_s, u"Next page, page before"_s},
          {u"Tab, Shift+Tab"_s, u"Next control, control before"_s},
          {u"Alt and an underlined letter"_s, u"Press the button, or go to the field"_s}}},
        {u"Find"_s,
         {{u"Ctrl+F"_s, u"Find a list, track, title, language or file"_s},
          {u"Up, Down"_s, u"Choose among what was found"_s},
          {u"Enter"_s, u"Go there"_s},
          {u"F3, Shift+F3"_s, u"Go to the next one, to the one before"_s},
          {u"Escape"_s, u"Close the bar"_s}}},
        {u"Lists"_s,
         {{u"Up, Down, Home, End"_s, u"Choose a row"_s},
          {u"Letters"_s, u"Go to the row that begins with them"_s},
          {u"Shift or Ctrl with a click"_s, u"Choose several rows"_s},
          {u"Ctrl+A"_s, u"Choose all rows"_s},
          {u"Alt+Up, Alt+Down"_s, u"Move the chosen rows"_s},
          {u"F2"_s, u"Rename the row"_s},
          {u"Delete"_s, u"Remove the chosen rows"_s},
          {u"Enter"_s, u"Browse for the row's MP3 file"_s},
          {u"Ctrl+Space"_s, u"Listen to the row's MP3 file or to the chime; stop it"_s},
          {u"Menu key, Shift+F10"_s, u"Show what can be done with the rows"_s}}},
        {u"Speech Files"_s,
         {{u"Ctrl+G"_s, u"Change between List and Overview"_s},
          {u"Ctrl+Down"_s, u"Go to the next title and language without a file"_s}}},
        {u"Help"_s, {{u"F1"_s, u"Open the manual"_s}}},
    };
}

KeysWindow::KeysWindow(QWidget* parent) : QDialog(parent) {
    setObjectName(u"frmKeys"_s);
    setWindowTitle(u"Keys of Tessaly"_s);
    auto* list = new QTreeWidget;
    list->setObjectName(u"lstKeys"_s);
    list->setAccessibleName(u"Keys and what they do"_s);
    list->setHeaderLabels({u"Key"_s, u"What it does"_s});
    list->setRootIsDecorated(false);
    list->setItemsExpandable(false);
    list->setUniformRowHeights(true);
    QFont bold = list->font();
    bold.setBold(true);
    for (const KeyGroup& group : programKeys()) {
        auto* title = new QTreeWidgetItem(list, {group.title});
        title->setFont(0, bold);
        title->setFirstColumnSpanned(true);
        for (const auto& [keys, what] : group.keys)
            new QTreeWidgetItem(title, {keys, what});
    }
    list->expandAll();
    list->resizeColumnToContents(0);
    list->setColumnWidth(0, list->columnWidth(0) + fontMetrics().height());
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(list);
    layout->addWidget(buttons);
    resize(QSize(list->columnWidth(0) + fontMetrics().averageCharWidth() * 60,
                 fontMetrics().height() * 28)
               .boundedTo(screen()->availableSize() * 9 / 10));
}

}  // namespace tessaly
