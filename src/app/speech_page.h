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
    void selectRows(const QList<int>& rows) override {
        showRows(rows.value(0, -1), rows.value(1, -1));
    }

    /// Files and folders were dropped on a row of a list, or beside them all (-1). Loose files are
    /// for that title or that language, and so is a folder that holds nothing but files for a
    /// language; all else says by its names whose it is.
    void dropOnTitles(const QStringList& paths, int row);
    void dropOnLanguages(const QStringList& paths, int row);

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
    void buttAddSpFolder_Click();
    void buttSpOverview_Toggle(bool isOverview);
    void moveTitle(Direction direction);
    void moveLang(Direction direction);
    void txtNewSpTitle_Change();
    void txtNewLang_Change();

    void addViews();
    void drop(const QStringList& paths, const SpeechSelection& onto);
    void addFiles(const QStringList& paths, const SpeechSelection& onto);
    void addPlanned(const SpeechPlan& plan);
    void chooseFile(const QString& path);
    SpeechSelection selection() const;
    void showRows(int title, int language);

    ListSection& titles_ = first_;
    ListSection& langs_ = second_;
    OverviewSection& overview_;
    QRadioButton* asList_;
    QRadioButton* asOverview_;
    QString lastFolder_;
};

}  // namespace tessaly
