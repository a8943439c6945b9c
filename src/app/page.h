// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QScrollArea>

#include "editor/file_display.h"
#include "editor/item_lists.h"

class QPushButton;

namespace tessaly {

class ListenButton;

/// Presses the button below `widget` that has the focus, if `event` is Enter: outside dialogs Qt
/// gives Enter to no button. False when it is another key or no button has the focus.
bool pressFocusedButton(const QKeyEvent& event, const QWidget& widget);

bool isEnter(const QKeyEvent& event);

/// One page of the main window. Where the window has no room for it, as with a large font or on a
/// small screen, it scrolls.
class Page : public QScrollArea {
    Q_OBJECT

 public:
    explicit Page(QWidget* parent = nullptr);

    /// The size at which nothing needs to scroll.
    QSize sizeHint() const override { return widget()->sizeHint(); }

    /// Shows the project as it is now: called whenever the page comes to the front and after the
    /// project was replaced.
    virtual void showProject() = 0;

    /// Called when the project was replaced: what the page remembers of the old one is void.
    virtual void projectReplaced() {}

    /// What is selected on the page, as the rows of each of its lists; selectRows() takes it back,
    /// and shows the project as it is now.
    virtual QList<Rows> selectedRows() const { return {}; }
    virtual void selectRows(const QList<Rows>&) { showProject(); }

    /// More is known of the sound of files.
    virtual void soundLearned() {}
    /// The button that plays what is selected on the page; nullptr where there is none.
    virtual ListenButton* listenButton() const { return nullptr; }

 signals:
    /// The page changed the project, or its flag of unsaved changes.
    void projectChanged();

    /// The files that go onto the card, or what is shown of them, changed: the summary is due.
    void summaryDue();

    /// The operator selected something else.
    void looked();

    /// The operator wants to hear these, one after the other.
    void listenChosen(const QList<Sound>& sounds);

    /// Until editEnds(), all that changes the project is one edit.
    void editBegins();
    void editEnds();

 protected:
    /// The button that Enter presses on this page while no other has the focus; nullptr for none.
    void setDefaultButton(QPushButton* button);
    /// Whether Enter presses one now.
    bool hasEnabledDefault() const;
    /// Takes the default away from `button` if it has it.
    void unsetDefaultButton(QPushButton* button);

    void keyPressEvent(QKeyEvent* event) override;

 private:
    QPushButton* default_ = nullptr;
};

}  // namespace tessaly
