// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/edit_history.h"

#include <QApplication>

#include "editor/edit_words.h"
#include "editor/project_change.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

constexpr int StepsKept = 1000;

}  // namespace

/// What one edit changed, and where the operator was before and after it.
class EditHistory::Step : public QUndoCommand {
 public:
    Step(EditHistory& history, const QString& words, const WindowView& after, int field)
        : history_(history),
          change_(history.before_, history.project_),
          viewBefore_(history.view_),
          viewAfter_(after),
          field_(field) {
        setText(QString(words).replace(u"&"_s, u"&&"_s));
    }

    // What came about since without an edit, as default languages that are gone when their page is
    // shown, belongs to the step: the way back leads to exactly where it began.
    void undo() override {
        const Project after = history_.project_;
        change_.undo(history_.project_);
        change_ = ProjectChange(history_.project_, after);
        history_.restore(viewBefore_);
    }

    void redo() override {
        if (std::exchange(isDone_, false))
            return;  // by the operator, before this step was made
        const Project before = history_.project_;
        change_.redo(history_.project_);
        change_ = ProjectChange(before, history_.project_);
        history_.restore(viewAfter_);
    }

    int id() const override { return field_; }

    bool mergeWith(const QUndoCommand* next) override {
        change_ = ProjectChange(history_.before_, history_.project_);
        viewAfter_ = static_cast<const Step*>(next)->viewAfter_;
        setText(next->text());
        setObsolete(editInWords(history_.before_, history_.project_).isEmpty());
        return true;
    }

 private:
    EditHistory& history_;
    ProjectChange change_;
    WindowView viewBefore_, viewAfter_;
    int field_;  ///< number of the field that it was typed into; -1 for none
    bool isDone_ = true;
};

EditHistory::EditHistory(Project& project, QObject* parent) : QObject(parent), project_(project) {
    stack_.setUndoLimit(StepsKept);
    connect(qApp, &QApplication::focusChanged, this, [this] { field_ = nullptr; });
}

void EditHistory::start(const WindowView& view) {
    stack_.clear();
    known_ = before_ = project_;
    view_ = view;
    field_ = nullptr;
    emit removed({});
}

void EditHistory::end(const WindowView& view) {
    Q_ASSERT(open_ > 0);
    --open_;
    edited(view);
}

void EditHistory::edited(const WindowView& view) {
    if (open_ > 0)
        return;
    const QString words = editInWords(known_, project_);
    if (words.isEmpty())
        return;
    QWidget* field = isTypedText(known_, project_) ? QApplication::focusWidget() : nullptr;
    const bool goesOn = field && field == field_ && !stack_.canRedo();
    if (!goesOn) {
        before_ = known_;
        ++fieldNumber_;
    }
    field_ = field;
    known_ = project_;
    stack_.push(new Step(*this, words, view, field ? fieldNumber_ : -1));
    view_ = view;
    emit removed(removalInWords(before_, known_));
}

void EditHistory::restore(const WindowView& view) {
    field_ = nullptr;
    emit restored(view);  // which sets the flag of unsaved changes
    known_ = project_;
    view_ = view;
    emit removed({});
}

}  // namespace tessaly
