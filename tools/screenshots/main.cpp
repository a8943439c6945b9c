// SPDX-License-Identifier: GPL-3.0-or-later
// Takes the pictures of the documents: plays pictures.txt in the real windows with the sample tour.
// Arguments: the support folders' parent, the folder for the pictures, and another script, if any.
#include <QApplication>
#include <QLabel>
#include <cstdio>

#include "app/program.h"
#include "support/session.h"

using namespace tessaly;

namespace {

// Shows the files as if they lay in folders of the person at the desk.
void hideOwnFolders(QWidget& window, const test::Session& session, const QString& support) {
    const auto shown = [&](QString text) {
        return text.replace(session.inFull("{samples}/tour"), "/home/ann/Harbour Tour")
            .replace(session.inFull("~"), "/home/ann")
            .replace(support, "/usr/share/tessaly");
    };
    for (auto* edit : window.findChildren<QLineEdit*>()) {
        const QSignalBlocker noEdit(edit);
        edit->setText(shown(edit->text()));
    }
    for (auto* label : window.findChildren<QLabel*>())
        if (const QString text = shown(label->text()); text != label->text())
            label->setText(text);
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName("Tessaly");
    QApplication::setQuitOnLastWindowClosed(false);
    QFile script(argc > 3 ? argv[3] : TESSALY_PICTURES);
    if (argc < 3 || !script.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "usage: tessaly-screenshots SUPPORT PICTURES [SCRIPT]\n");
        return 2;
    }
    const QString support = QFileInfo(argv[1]).absoluteFilePath(), pictures = argv[2];
    int missing = 0;
    test::Session session;
    session.bench.services.appFolder = support;
    const auto shoot = [&](QWidget& window, const QString& name) {
        hideOwnFolders(window, session, support);
        window.grab();  // lists ask for the lengths of the files they show
        QTest::qWait(100);
        if (!window.grab().save(pathIn(pictures, name + ".png"))) {
            std::fprintf(stderr, "%s was not written\n", qPrintable(name));
            ++missing;
        }
    };
    session.verbs["picture"] = [&](const QString& name) {
        shoot(test::frontBox() ? *test::frontBox() : *session.bench.window, name);
    };
    session.verbs["picture-of"] = [&](const QString& rest) {
        auto* window = session.bench.window->findChild<QWidget*>(rest.section(' ', 0, 0));
        shoot(*window, rest.section(' ', 1));
    };
    session.verbs["splash"] = [&](const QString& name) {
        SplashWindow splash([] { return false; }, [] {});
        splash.show();
        shoot(splash, name);
    };
    session.verbs["size"] = [&](const QString& size) {
        session.bench.window->resize(size.section(' ', 0, 0).toInt(), size.section(' ', 1).toInt());
    };
    const QString played = session.play(QString::fromUtf8(script.readAll()));
    if (played.contains("there is no") || played.contains("NO SUCH") || missing > 0) {
        std::fprintf(stderr, "%s\n", qPrintable(played));
        return 1;
    }
    return 0;
}
