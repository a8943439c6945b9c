#pragma once

#include <QWidget>

namespace tessaly {

/// One page of the main window.
class Page : public QWidget {
    Q_OBJECT

 public:
    using QWidget::QWidget;

    /// Shows the project as it is now: called whenever the page comes to the front and after the
    /// project was replaced.
    virtual void showProject() = 0;

    /// Called when the project is about to be replaced: nothing on the page may be written back.
    virtual void projectReplaced() {}

 signals:
    /// The page changed the project, or its flag of unsaved changes.
    void projectChanged();
};

}  // namespace tessaly
