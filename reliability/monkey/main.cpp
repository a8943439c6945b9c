// SPDX-License-Identifier: GPL-3.0-or-later
// tessaly-monkey: a random operator before the real window, without a screen.
//
//   tessaly-monkey [--seed N] [--seeds COUNT] [--events M] [--twice]
//
// Does M events with each of COUNT seeds from N on. Whatever goes wrong, the sanitizers included,
// ends it with the last events by name and the command that repeats them; a smaller M stops
// earlier, at exactly the same state. --twice does each seed twice and compares the outcomes.
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include <unistd.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>

#include "monkey.h"
#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/common_interface_defs.h>
#endif

namespace {

using tessaly::monkey::Monkey;

constexpr unsigned HangSeconds = 900;  // of one event; a busy machine may stall for minutes

quint64 seed = 1;
const Monkey* running = nullptr;

// How to see again what happened. Called where the program is lost anyway.
void sayHowToRepeat() {
    if (!running)
        return;
    const Monkey* monkey = std::exchange(running, nullptr);
    std::fprintf(stderr, "\nThe last events (those with > came inside another):\n");
    for (const QString& name : monkey->lastEvents())
        std::fprintf(stderr, "  %s\n", qPrintable(name));
    std::fprintf(stderr, "Repeat it with: %s --seed %llu --events %lld\n",
                 qPrintable(QCoreApplication::applicationFilePath()), seed, monkey->events());
    std::fprintf(stderr, "Its files are in %s\n", qPrintable(monkey->folder()));
}

void lost(int signal) {
    std::fprintf(stderr, "%s\n", signal == SIGALRM ? "The event does not end." : "It crashed.");
    sayHowToRepeat();
    std::_Exit(3);
}

void onMessage(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (message.startsWith("This plugin does not support"))
        return;
    std::fprintf(stderr, "Qt message %d: %s\n", int(type), qPrintable(message));
    if (type == QtFatalMsg)
        lost(SIGABRT);
}

// The outcome of a seed; ends the program when something is wrong.
QByteArray play(qint64 events) {
    QElapsedTimer time;
    time.start();
    Monkey monkey(seed);
    running = &monkey;
    while (monkey.events() < events && monkey.wrong().isEmpty()) {
        alarm(HangSeconds);
        monkey.run(monkey.events() + 1);
    }
    monkey.end();
    alarm(0);
    if (!monkey.wrong().isEmpty()) {
        std::fprintf(stderr, "WRONG: %s\n", qPrintable(monkey.wrong().join("\nWRONG: ")));
        sayHowToRepeat();
        std::_Exit(1);
    }
    running = nullptr;
    std::printf("seed %llu: %lld events, outcome %s, %.0f events a second, %.1f MB in use\n", seed,
                monkey.events(), monkey.outcome().constData(),
                double(monkey.events()) * 1000 / double(qMax<qint64>(1, time.elapsed())),
                double(tessaly::monkey::Ledger::heapBytes()) / 1e6);
    std::fflush(stdout);
    return monkey.outcome();
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("PATH", "/nonexistent");  // About starts no tool of this machine
    if (qEnvironmentVariableIsEmpty("TMPDIR") && access("/dev/shm", W_OK) == 0)
        qputenv("TMPDIR", "/dev/shm");  // where flushing a card takes no time
    qInstallMessageHandler(onMessage);
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({{"seed", "The first seed.", "N", "1"},
                       {"seeds", "How many seeds.", "COUNT", "1"},
                       {"events", "Events for each seed.", "M", "100000"},
                       {"twice", "Does each seed twice; both must end alike."}});
    parser.process(app);
#if defined(__SANITIZE_ADDRESS__)
    __sanitizer_set_death_callback(sayHowToRepeat);
#else
    std::signal(SIGSEGV, lost);
#endif
    std::signal(SIGALRM, lost);
    std::set_terminate([] { lost(SIGABRT); });

    const quint64 first = parser.value("seed").toULongLong();
    const qint64 events = parser.value("events").toLongLong();
    for (seed = first; seed < first + parser.value("seeds").toULongLong(); ++seed) {
        const QByteArray outcome = play(events);
        if (parser.isSet("twice") && play(events) != outcome) {
            std::fprintf(stderr, "WRONG: seed %llu ends differently when repeated\n", seed);
            return 1;
        }
    }
    return 0;
}
