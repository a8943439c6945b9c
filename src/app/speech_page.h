// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/editor_page.h"
#include "editor/speech_editor.h"

namespace tessaly {

/// The page of speech titles, languages and the file of each pair.
class SpeechPage : public EditorPage {
    Q_OBJECT

 public:
    SpeechPage(Project& project, const Services& services, QWidget* parent = nullptr);

    void showProject() override;
    void projectReplaced() override;
    void selectRows(const QList<Rows>& rows) override { showRows(rows.value(0), rows.value(1)); }

 protected:
    EditorControls controls() const override;
    FileDisplay display() const override;

 private:
    void buttAddSpTitle_Click();
    void buttEditSpTitle_Click();
    void buttDelSpTitle_Click();
    void buttAddLang_Click();
    void buttEditLang_Click();
    void buttDelLang_Click();
    void buttAddSpFile_Click();
    void moveTitles(const QList<RowTravel>& travels);
    void moveLangs(const QList<RowTravel>& travels);
    void txtNewSpTitle_Change();
    void txtNewLang_Change();

    SpeechSelection selection() const;
    void showRows(const Rows& titles, const Rows& languages);

    ListSection& titles_ = first_;
    ListSection& langs_ = second_;
};

}  // namespace tessaly
