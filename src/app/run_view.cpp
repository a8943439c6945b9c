// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/create_card_page.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include "app/small_widgets.h"
#include "model/numbers.h"
#include "ui_create_card_page.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// What is going on in a phase; empty in those that take no time.
QString phaseWords(RunPhase phase) {
    const QString words[] = {{}, {}, u"Copying"_s, u"Writing to the card"_s, u"Verifying"_s};
    return words[size_t(phase)];
}

QString timeLeft(const RunProgress& progress) {
    if (progress.bytesTotal == 0)
        return {};
    QString text = u"%1: %2 of %3"_s.arg(phaseWords(progress.phase), megabytes(progress.bytesDone),
                                         megabytes(progress.bytesTotal));
    if (const qint64 left = progress.millisecondsLeft(); left > 0)
        text += u", %1 left"_s.arg(durationText(left));
    return text;
}

}  // namespace

bool RunView::confirm(const QString& question) {
    beforeLook_();
    return prompts_.ask({.text = question, .icon = Message::Icon::Exclamation});
}

void RunView::begin() {
    showProgress({});
    ui_.fraProgress->show();
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    QCoreApplication::processEvents();
}

void RunView::showProgress(const RunProgress& progress) {
    ui_.Bar1->setMaximum(progress.trackFileCount + 1);
    ui_.Bar1->setValue(progress.trackFile);
    ui_.lblCopyProgress->setText(progress.caption());
    ui_.lblTimeLeft->setText(timeLeft(progress));
}

bool RunView::checkForStop() {
    beforeLook_();
    QCoreApplication::processEvents();
    return stopRequested_;
}

void RunView::finished(const CardRunReport& report) {
    QGuiApplication::restoreOverrideCursor();
    ui_.fraProgress->hide();
    if (report.error)
        prompts_.tell({.text = report.errorText(),
                       .icon = Message::Icon::Exclamation,
                       .title = report.errorTitle()});
    prompts_.tell({.text = report.message()});
}

}  // namespace tessaly
