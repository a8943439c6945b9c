// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QApplication>
#include <QTemporaryDir>
#include <cstdio>

namespace {

// The offscreen platform says what it cannot do with every window.
void withoutNoise(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (!message.startsWith("This plugin does not support"))
        std::fprintf(stderr, "Qt message %d: %s\n", int(type), qPrintable(message));
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(withoutNoise);
    const QTemporaryDir settings;  // file dialogs remember things
    qputenv("XDG_CONFIG_HOME", settings.path().toUtf8());
    const QApplication app(argc, argv);
    QApplication::setApplicationName("Tessaly");
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
