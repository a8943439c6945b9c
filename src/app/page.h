#pragma once

#include <QWidget>

class QPushButton;

namespace tessaly {

/// One page of the main window.
class Page : public QWidget {
    Q_OBJECT

 public:
    using QWidget::QWidget;

    /// Shows the project as it is now: called whenever the page comes to the front and after the
    /// project was replaced.
    virtual void showProject() = 0;

    /// Called when the project was replaced: what the page remembers of the old one is void.
    virtual void projectReplaced() {}

 signals:
    /// The page changed the project, or its flag of unsaved changes.
    void projectChanged();

    /// The files that go onto the card, or what is shown of them, changed: the summary is due.
    void summaryDue();

 protected:
    /// The button that Enter presses on this page; nullptr for none.
    void setDefaultButton(QPushButton* button);
    /// Takes the default away from `button` if it has it.
    void unsetDefaultButton(QPushButton* button);

    void keyPressEvent(QKeyEvent* event) override;

 private:
    QPushButton* default_ = nullptr;
};

}  // namespace tessaly
