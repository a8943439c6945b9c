#pragma once

#include <memory>

#include "app/page.h"
#include "app/services.h"
#include "editor/speech_editor.h"

namespace Ui {
class SpeechPage;
}

namespace tessaly {

/// The page of speech titles, languages and the file of each pair. Code that selects a row runs
/// the same handler as a click.
class SpeechPage : public Page {
    Q_OBJECT

 public:
    SpeechPage(Project& project, const Services& services, QWidget* parent = nullptr);
    ~SpeechPage() override;

    void showProject() override;
    void projectReplaced() override;

 private:
    void buttAddSpTitle_Click();
    void buttEditSpTitle_Click();
    void buttDelSpTitle_Click();
    void buttAddLang_Click();
    void buttEditLang_Click();
    void buttDelLang_Click();
    void buttAddSpFile_Click();
    void moveTitle(Direction direction);
    void moveLang(Direction direction);
    void txtNewSpTitle_Change();
    void txtNewLang_Change();
    void entered(QPushButton* add);

    SpeechSelection selection() const;
    void showTitles(int row);
    void showLangs(int row);
    void showSelection();

    Project& project_;
    const Services& services_;
    const std::unique_ptr<Ui::SpeechPage> ui_;
    QString lastFileFolder_;
};

}  // namespace tessaly
