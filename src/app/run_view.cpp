#include "app/run_view.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include "app/small_widgets.h"
#include "model/numbers.h"
#include "ui_create_card_page.h"

namespace tessaly {

namespace {

QString phaseWords(RunPhase phase) {
    switch (phase) {
        case RunPhase::Copy:
            return QStringLiteral("Copying");
        case RunPhase::Flush:
            return QStringLiteral("Writing to the card");
        case RunPhase::Verify:
            return QStringLiteral("Verifying");
        case RunPhase::Prepare:
        case RunPhase::Erase:
            break;
    }
    return {};
}

}  // namespace

bool RunView::confirm(const QString& question) {
    beforeLook_();
    return prompts_.ask({.text = question, .icon = Message::Icon::Exclamation});
}

void RunView::showProgress(const QString& caption) {
    ui_.fraProgress->show();
    ui_.Bar1->setValue(0);
    ui_.lblCopyProgress->setText(caption);
    ui_.lblTimeLeft->clear();
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    QCoreApplication::processEvents();
}

void RunView::hideProgress() {
    QGuiApplication::restoreOverrideCursor();
    ui_.fraProgress->hide();
}

void RunView::setBarMaximum(int maximum) {
    ui_.Bar1->setMaximum(maximum);
}

void RunView::setBarValue(int value) {
    ui_.Bar1->setValue(value);
}

void RunView::setCaption(const QString& caption) {
    ui_.lblCopyProgress->setText(caption);
}

void RunView::phaseProgress(RunPhase phase, qint64 done, qint64 total) {
    if (done == 0)
        estimate_.start();
    if (total == 0) {
        ui_.lblTimeLeft->clear();
        return;
    }
    QString text =
        QString("%1: %2 of %3").arg(phaseWords(phase), megabytes(done), megabytes(total));
    if (const qint64 left = estimate_.millisecondsLeft(done, total); left > 0)
        text += ", " + durationText(left) + " left";
    ui_.lblTimeLeft->setText(text);
}

bool RunView::keepGoing() {
    beforeLook_();
    QCoreApplication::processEvents();
    return !stopRequested_;
}

void RunView::succeeded(const QString& message) {
    prompts_.tell({.text = message});
}

void RunView::failed(const QString& title, const QString& text, const QString& second) {
    prompts_.tell({.text = text, .icon = Message::Icon::Exclamation, .title = title});
    prompts_.tell({.text = second});
}

}  // namespace tessaly
