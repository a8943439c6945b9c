// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>
#include <QPointer>

#include "editor/find.h"

class QLabel;
class QLineEdit;
class QTreeWidget;

namespace tessaly {

/// The bar that finds names and files of the project while words are typed into it. What was found
/// stands above it as a list until one is chosen.
class FindBar : public QFrame {
    Q_OBJECT

 public:
    FindBar(const Project& project, QWidget* parent);

    /// Shows the bar, ready for new words.
    void open();

    /// Goes to the next place (`step` 1) or to the one before (-1) of the last words, with the bar
    /// open or not; without words it opens.
    void goOn(int step);

 signals:
    /// The operator wants to go to a place.
    void chosen(const Place& place);

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

 private:
    void search();
    void showPlaces();
    void goTo(qsizetype index);
    void leave();

    const Project& project_;
    Finder finder_;
    QTreeWidget* list_;
    QLineEdit* field_;
    QLabel* count_;
    QList<Place> places_;       // all that were found; the list shows the first of them
    qsizetype current_ = -1;    // the one that was gone to last; -1 for none
    QPointer<QWidget> before_;  // had the focus when the bar was opened
};

}  // namespace tessaly
