// SPDX-License-Identifier: GPL-3.0-or-later
#include <QApplication>
#include <cstdio>

#include "app/program.h"
#include "app/qt_prompts.h"
#include "platform/process.h"

using namespace tessaly;
using namespace Qt::StringLiterals;

namespace {

constexpr int Usage = 2;

int refuse(const QString& problem) {
    std::fprintf(stderr, "tessaly: %s\n", qPrintable(problem));
#ifdef Q_OS_WIN
    QtPrompts().tell({.text = problem, .icon = Message::Icon::Critical});  // there is no console
#endif
    return Usage;
}

}  // namespace

int main(int argc, char** argv) {
    turnWriteSignalsIntoErrors();
    QApplication app(argc, argv);
    QApplication::setApplicationName(u"Tessaly"_s);
    QApplication::setApplicationVersion(QStringLiteral(TESSALY_VERSION));
    QGuiApplication::setDesktopFileName(u"tessaly"_s);  // by which a desktop finds the icon
    const StartArguments start = startArguments(commandLineArguments(argc, argv));
    return start.problem.isEmpty() ? runProgram(start.projectFile) : refuse(start.problem);
}
