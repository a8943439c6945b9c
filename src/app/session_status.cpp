#include "app/session_status.h"

#include <QDir>
#include <QFileInfo>
#include <QFontMetrics>
#include <QLabel>
#include <QPushButton>
#include <QStatusBar>

namespace tessaly {

namespace {

constexpr int ProblemShownMs = 30 * 1000;
constexpr int NameCharacters = 20;  // more would take the summary's room

// The file's name alone, as long as the bar has room for.
QString briefName(const QString& file, const QWidget* widget) {
    const QFontMetrics metrics = widget->fontMetrics();
    return metrics.elidedText(QFileInfo(file).fileName(), Qt::ElideMiddle,
                              metrics.averageCharWidth() * NameCharacters);
}

}  // namespace

SessionStatus::SessionStatus(const ProjectSession& session, QStatusBar* bar)
    : QObject(bar),
      session_(session),
      bar_(bar),
      lblNotSaved_(new QLabel),
      buttBringBack_(new QPushButton) {
    lblNotSaved_->setObjectName("lblNotSaved");
    lblNotSaved_->setTextFormat(Qt::PlainText);
    buttBringBack_->setObjectName("buttBringBack");
    buttBringBack_->setAutoDefault(true);  // Enter presses it, too
    for (QWidget* widget : std::initializer_list<QWidget*>{buttBringBack_, lblNotSaved_}) {
        bar->addPermanentWidget(widget);
        widget->hide();
    }
    connect(buttBringBack_, &QPushButton::clicked, this, &SessionStatus::bringBackChosen);
}

void SessionStatus::show() {
    const QString& file = session_.fileName();
    lblNotSaved_->setText(file.isEmpty() ? QString("not saved")
                                         : "not saved in " + briefName(file, lblNotSaved_));
    lblNotSaved_->setToolTip(QDir::toNativeSeparators(file));
    lblNotSaved_->setVisible(session_.differs());

    const QString closed = session_.closedFile();
    QString name = closed.isEmpty() ? QString("the project") : briefName(closed, buttBringBack_);
    buttBringBack_->setText("Bring back " + name.replace('&', "&&"));
    buttBringBack_->setToolTip(
        ("Open... has closed it " + QDir::toNativeSeparators(closed)).trimmed());
    buttBringBack_->setVisible(session_.canBringBack());
}

void SessionStatus::sayCopyFailed(const QString& problem) {
    const QString text = "The unsaved project could not be kept for recovery: ";
    // The reason stands behind a long path: it must not be what is cut.
    const QFontMetrics metrics = bar_->fontMetrics();
    const int room = bar_->width() - metrics.horizontalAdvance(text) -
                     lblNotSaved_->sizeHint().width() - metrics.averageCharWidth() * 6;
    bar_->showMessage(text + metrics.elidedText(problem, Qt::ElideMiddle, room), ProblemShownMs);
}

}  // namespace tessaly
