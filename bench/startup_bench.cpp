// SPDX-License-Identifier: GPL-3.0-or-later
// How long the main window is in coming: from the start of a process to the first painting, with
// the splash's two seconds left out. Each start is a new process with an empty user's folder, and
// the program's own pages are dropped from memory before it.
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>
#include <algorithm>

#include "app/program.h"
#include "promises.h"

using namespace tessaly;

namespace {

constexpr int Starts = 10;
constexpr double AllowedMs = 250;

// Says when the window has been painted, and ends the program.
class FirstPaint : public QObject {
 public:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            QTimer::singleShot(0, qApp, [] {
                std::puts("shown");
                std::fflush(stdout);
                QApplication::quit();
            });
        return false;
    }
};

int startOnce(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName("Tessaly");
    FirstPaint firstPaint;
    return runProgram({}, 0, [&](QWidget& window) { window.installEventFilter(&firstPaint); });
}

void dropPages(const QString& file) {
    const int fd = ::open(QFile::encodeName(file).constData(), O_RDONLY | O_CLOEXEC);
    ::posix_fadvise(fd, 0, 0, POSIX_FADV_DONTNEED);
    ::close(fd);
}

// Milliseconds from the start to the word of the child; 0 when it never came.
double measuredStart(const QString& program) {
    const QTemporaryDir home;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_DATA_HOME", home.path());
    environment.insert("QT_LOGGING_RULES", "*=false");
    QProcess child;
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    dropPages(program);
    QElapsedTimer timer;
    timer.start();
    child.start(program, {"--once"});
    const bool came = child.waitForReadyRead(20000);
    const double milliseconds = double(timer.nsecsElapsed()) / 1e6;
    child.waitForFinished();
    return came && child.readAllStandardOutput().startsWith("shown") ? milliseconds : 0;
}

// Processor time of all starts so far, which says something on a busy machine, too.
double processorMilliseconds() {
    rusage used{};
    ::getrusage(RUSAGE_CHILDREN, &used);
    const auto milliseconds = [](const timeval& time) {
        return double(time.tv_sec) * 1e3 + double(time.tv_usec) / 1e3;
    };
    return milliseconds(used.ru_utime) + milliseconds(used.ru_stime);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 1 && QByteArray(argv[1]) == "--once")
        return startOnce(argc, argv);
    const QCoreApplication app(argc, argv);
    std::vector<double> times;
    for (int i = 0; i < Starts; ++i)
        times.push_back(measuredStart(QCoreApplication::applicationFilePath()));
    const double slowest = *std::max_element(times.begin(), times.end());
    const QByteArray screen = qgetenv("QT_QPA_PLATFORM");
    const std::string what = "start to the main window, " + screen.toStdString();
    Promises promises;
    std::printf("\n%d starts, the splash's %d ms left out:\n", Starts, SplashMilliseconds);
    promises.check(what, times, AllowedMs, "ms");
    promises.check("the slowest of them", {slowest}, AllowedMs, "ms");
    std::printf("%-46s %8.3f ms\n", "processor time of one start",
                processorMilliseconds() / Starts);
    return promises.exitCode();
}
