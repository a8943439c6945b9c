// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/list_section.h"
#include "app/long_work.h"
#include "app/page.h"
#include "app/prompts.h"
#include "model/project.h"

namespace tessaly {

/// What the pages of music and speech have in common: two lists that together choose an MP3 file.
/// Whatever changed what is selected or entered ends in showSelection(), so that it does not matter
/// how that came about.
class EditorPage : public Page {
    Q_OBJECT

 public:
    /// The rows of both lists.
    QList<Rows> selectedRows() const override {
        return {first_.list()->rows(), second_.list()->rows()};
    }

    void soundLearned() override;
    ListenButton* listenButton() const override { return file_.listenButton(); }

 protected:
    EditorPage(Project& project, const Services& services, const ListSection::Names& first,
               const ListSection::Names& second, const FileSection::Names& file, QWidget* parent);

    /// What can be used, and the selected file, as they are now.
    virtual EditorControls controls() const = 0;
    virtual FileDisplay display() const = 0;

    virtual void showSelection();

    /// Shows the file of the selection.
    void showFile();

    void keyPressEvent(QKeyEvent* event) override;

    /// What the lists say behind their lines; of the project as it was last shown.
    const LineNotes& notes();

    /// The text of a section's field changed: Enter adds it, if it can be added.
    void entered(ListSection& section);

    /// Does something with many files as one edit, as runBehindProgress() does it.
    void runLong(const QString& title, const QString& what, const LongWork& work);

    /// Asks for the new name of the selected line of a section; empty when cancelled.
    QString askForName(const ListSection& section, const QString& prompt);

    /// Asks for an MP3 file for an item, in words; empty when cancelled.
    QString askForFile(FileKind kind, const QString& item);

    Project& project_;
    const Services& services_;
    ListSection& first_;
    ListSection& second_;
    FileSection& file_;

 private:
    QList<QAction*> browseCommands_;
    std::optional<LineNotes> notes_;
};

}  // namespace tessaly
