#pragma once

#include <QObject>

#include "model/project_session.h"

class QLabel;
class QPushButton;
class QStatusBar;

namespace tessaly {

/// The right end of the status bar: where project and file differ, and the offer to bring back what
/// a cancelled Open closed.
class SessionStatus : public QObject {
    Q_OBJECT

 public:
    SessionStatus(const ProjectSession& session, QStatusBar* bar);

    /// Shows both as they are now: due after everything that may have changed project or file.
    void show();

    /// Says for a while, in place of the summary, why a recovery copy could not be kept.
    void sayCopyFailed(const QString& problem);

 signals:
    /// The operator takes the offer.
    void bringBackChosen();

 private:
    const ProjectSession& session_;
    QStatusBar* bar_;
    QLabel* lblNotSaved_;
    QPushButton* buttBringBack_;
};

}  // namespace tessaly
