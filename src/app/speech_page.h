// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/editor_page.h"
#include "editor/speech_editor.h"

class QRadioButton;

namespace tessaly {

class OverviewSection;
struct SpeechPlan;

/// The page of speech titles, languages and the file of each pair: two lists, or all pairs in one
/// table. Both have the same selection.
class SpeechPage : public EditorPage {
    Q_OBJECT

 public:
    SpeechPage(Project& project, const Services& services, QWidget* parent = nullptr);

    void showProject() override;
    void projectReplaced() override;
    void selectRows(const QList<Rows>& rows) override { showRows(rows.value(0), rows.value(1)); }
    void soundLearned() override;

 protected:
    EditorControls controls() const override;
    FileDisplay display() const override;
    void showSelection() override;

 private:
    void buttAddSpTitle_Click();
    void buttEditSpTitle_Click();
    void buttDelSpTitle_Click();
    void buttAddLang_Click();
    void buttEditLang_Click();
    void buttDelLang_Click();
    void buttAddSpFile_Click();
    void buttNoSpFile_Click();
    void buttHearSpTitle_Click();
    void buttAddSpFolder_Click();
    void buttSpOverview_Toggle(bool isOverview);
    void moveTitles(const QList<RowTravel>& travels);
    void moveLangs(const QList<RowTravel>& travels);
    void txtNewSpTitle_Change();
    void txtNewLang_Change();

    void addViews();
    void addFiles(const QStringList& paths, const SpeechSelection& onto);
    void showPlan(const SpeechPlan& plan);
    void addPlanned(const SpeechPlan& plan);
    void chooseFile(const QString& path);
    SpeechSelection selection() const;
    void showRows(const Rows& titles, const Rows& languages);

    ListSection& titles_ = first_;
    ListSection& langs_ = second_;
    OverviewSection& overview_;
    QRadioButton* asList_;
    QRadioButton* asOverview_;
    QList<QAction*> hearCommands_;
};

}  // namespace tessaly
