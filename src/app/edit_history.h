// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QUndoStack>
#include <QWidget>

#include "editor/item_lists.h"
#include "model/project.h"

namespace tessaly {

/// Where the operator is in the window: the page in front, and for each page what is selected on
/// it (see Page::selectedRows()).
struct WindowView {
    int page = 0;
    QList<QList<Rows>> rows;
};

/// What was done to the project, one step after the other, so that it can be undone and redone. A
/// step is whatever an edit changed in the project, found by comparing it with what it was: so no
/// edit can be forgotten, wherever it comes from.
class EditHistory : public QObject {
    Q_OBJECT

 public:
    explicit EditHistory(Project& project, QObject* parent = nullptr);

    QUndoStack& stack() { return stack_; }

    /// Another project is open: nothing of the old one can be undone.
    void start(const WindowView& view);

    /// The project may have been edited; `view` is what the window shows now. What is typed into
    /// one field while it has the focus is one step.
    void edited(const WindowView& view);

    /// The operator looks at something else: where the next step will have been made.
    void looked(const WindowView& view) { view_ = view; }

    /// From begin() to the end() that belongs to it, whatever is edited is one step.
    void begin() { ++open_; }
    void end(const WindowView& view);

 signals:
    /// A step was undone or redone: the project is another one, seen as it was.
    void restored(const WindowView& view);
    /// Lines were removed: what and with how many files, in words.
    void removed(const QString& words);

 private:
    class Step;
    friend class Step;

    void restore(const WindowView& view);

    Project& project_;
    QUndoStack stack_;
    Project known_;   ///< as it was after the last step
    Project before_;  ///< as it was before that
    WindowView view_;
    QPointer<QWidget>
        field_;  ///< the last step was typed there and goes on as long as it has focus
    int fieldNumber_ = 0;
    int open_ = 0;
};

}  // namespace tessaly
