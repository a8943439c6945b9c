// SPDX-License-Identifier: GPL-3.0-or-later
// Works through the real window with the projects that full_size.sh makes, as the texts in steps/
// say: every page, every kind of edit, imports, a card. Prints what each step took in milliseconds:
// from the event until the window has processed it, with everything that it set off, and has
// painted itself whole.
#include <malloc.h>

#include <QDialog>
#include <QElapsedTimer>
#include <cstdio>
#include <fstream>
#include <stdexcept>

#include "support/session.h"

namespace {

using namespace tessaly;

constexpr double PromisedMs = 100;
constexpr int HeapRounds = 20;

// How long the program has waited for a processor so far, because others had it. Without the
// kernel's figure: never.
double waitedMs() {
    std::ifstream schedule("/proc/self/schedstat");
    double ran = 0, waited = 0;
    schedule >> ran >> waited;
    return waited / 1e6;
}

// What passed since the start without that.
class Watch {
 public:
    Watch() { timer_.start(); }
    double now() const { return double(timer_.nsecsElapsed()) / 1e6 - (waitedMs() - waited_); }

 private:
    QElapsedTimer timer_;
    double waited_ = waitedMs();
};

// Says OK to every dialog that opens: takes the place of the session, which has no answer for it.
class AlwaysOk : public QObject {
 public:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::Timer)
            return false;
        if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            dialog && !dialog->inherits("QProgressDialog"))
            dialog->accept();
        return true;
    }
};

// The window and its operator, who takes their steps from text files: gestures, of which
//
//   step NAME            begins a block of gestures that are timed, five rounds of it; their median
//                        is judged
//   step-thrice NAME     the same in three rounds
//   silences NAME        a block in which the longest time without an answer is judged
//   heap MB NAME         twenty rounds; how much more memory is in use after them is judged
//   then                 a block that is not timed
//   - GESTURE            prepares a round of the block, and is not timed
//   steps FILE A=X B=Y   plays another file with X for $A and Y for $B
//   expect TEXT          ends the program unless that was said just now
class Operator {
 public:
    explicit Operator(const QString& folder) : folder_(folder), session_(nullptr, &files_) {
        test::WindowBench& bench = session_.bench;
        bench.services.appFolder = QCoreApplication::applicationDirPath();
        bench.drives.volume.totalBytes = bench.drives.volume.freeBytes = qint64(1) << 35;
        session_.prompts.isQuiet = true;
        qApp->removeEventFilter(&session_.clocks);
        session_.installEventFilter(&alwaysOk_);
        addVerbs();
        QDir().mkpath(folder + "/window-card");
        session_.perform("start");
        session_.settleDown = [] {};
        std::printf("%-58s%8s%8s\n", "From the event to the painted window", "median", "worst");
    }
    ~Operator() { std::printf("%d steps kept, %d missed\n", kept_, missed_); }

    /// Throws std::exception when something does not come out as it must.
    void play(const QString& file, const QHash<QString, QString>& words = {});

    /// Slow steps are a report; memory that is too much is a failure.
    int exitCode() const { return isTooHeavy_ ? 1 : 0; }

 private:
    struct Block {
        QString kind, name;
        QStringList preparations, gestures;
    };

    void addVerbs();
    void perform(const QStringList& gestures);
    void time(const Block& block);
    void weigh(const Block& block);
    void judge(const QString& name, double median, double worst, double judged, double promised);

    const QString folder_;
    LocalFileSystem files_;
    test::Session session_;
    AlwaysOk alwaysOk_;
    int renamed_ = 0, kept_ = 0, missed_ = 0;
    bool isTooHeavy_ = false;
};

void Operator::addVerbs() {
    test::WindowBench& bench = session_.bench;
    const auto view = [&](const QString& rest) {
        return bench.find<QAbstractItemView>(rest.section(' ', 0, 0));
    };
    session_.verbs["unselect"] = [view](const QString& list) {
        view(list)->clearSelection();
        view(list)->setCurrentIndex({});
    };
    session_.verbs["bring-into-view"] = [view](const QString& rest) {
        const int row = test::rowOf(view(rest), rest.section(' ', 1));
        view(rest)->scrollTo(view(rest)->model()->index(row, 0));
        QCoreApplication::processEvents();
    };
    session_.verbs["count"] = [this, view](const QString& list) {
        session_.say(QStringLiteral("%1 rows").arg(view(list)->model()->rowCount()));
    };
    session_.verbs["new-name"] = [this](const QString& what) {
        session_.prompts.prepared = {QStringLiteral("%1 %2").arg(what).arg(++renamed_)};
    };
    // prepare-files COUNT FOLDER: so many of its files, chosen together
    session_.verbs["prepare-files"] = [this](const QString& rest) {
        const QDir folder(rest.section(' ', 1));
        QStringList files = folder.entryList(QDir::Files).mid(0, rest.section(' ', 0, 0).toInt());
        for (QString& file : files)
            file = folder.filePath(file);
        session_.prompts.prepared = {files.join(" | ")};
    };
    // command LIST TEXT: of the list's context menu
    session_.verbs["command"] = [this, view](const QString& rest) {
        for (QAction* action : view(rest)->actions())
            if (action->text() == rest.section(' ', 1) && action->isEnabled())
                return action->trigger();
        session_.say("there is no such command");
    };
    // while-label LABEL TEXT: lets the window go on by itself until the label says that no more
    session_.verbs["while-label"] = [&](const QString& rest) {
        while (bench.text(rest.section(' ', 0, 0)).contains(rest.section(' ', 1)))
            QCoreApplication::processEvents();
    };
    session_.verbs["change-title"] = [&](const QString&) {
        QString& title = bench.current.txtCardTitle2;
        title = title == "a" ? "b" : "a";
    };
}

void Operator::perform(const QStringList& gestures) {
    for (const QString& gesture : gestures) {
        const qsizetype before = session_.transcript().size();
        const bool isExpected = gesture.startsWith("expect ");
        if (!isExpected)
            session_.perform(gesture);
        const QString said = session_.transcript().mid(isExpected ? before - 3 : before).join('\n');
        bool isWrong = isExpected && !said.contains(gesture.mid(7));
        for (const char* trouble : {"there is no", "NO SUCH", "disabled", "cannot be seen"})
            isWrong |= said.contains(trouble);
        if (isWrong)
            throw std::runtime_error((gesture + ": " + said).toStdString());
    }
}

void Operator::time(const Block& block) {
    const auto perform = [&](const QStringList& gestures) {
        this->perform(gestures);
        QCoreApplication::processEvents();
        session_.bench.window->repaint();
        QGuiApplication::sync();
        QCoreApplication::processEvents();
    };
    const bool isSilence = block.kind == "silences";
    std::vector<double> took;
    for (int rounds = isSilence                     ? 1
                      : block.kind == "step"        ? 5
                      : block.kind == "step-thrice" ? 3
                                                    : 0;
         rounds > 0; --rounds) {
        perform(block.preparations);
        Watch watch;
        const auto heard = [&] {
            took.push_back(watch.now());
            watch = Watch();
        };
        QTimer heart;
        QObject::connect(&heart, &QTimer::timeout, heard);
        if (isSilence)
            heart.start(1);
        perform(block.gestures);
        heard();
    }
    if (took.empty()) {
        perform(block.gestures);
        return;
    }
    std::sort(took.begin(), took.end());
    const double median = took[took.size() / 2];
    judge(block.name, median, took.back(), isSilence ? took.back() : median, PromisedMs);
}

void Operator::weigh(const Block& block) {
    const auto inUse = [] { return double(mallinfo2().uordblks + mallinfo2().hblkhd) / 1e6; };
    perform(block.preparations);
    const double before = inUse();
    double half = 0;
    for (int round = 0; round < HeapRounds; ++round) {
        perform(block.gestures);
        if (round == HeapRounds / 2 - 1)
            half = inUse() - before;
    }
    const double whole = inUse() - before, promised = block.name.section(' ', 0, 0).toDouble();
    judge(block.name.section(' ', 1), half, whole, whole, promised);
    isTooHeavy_ |= whole > promised;
}

void Operator::judge(const QString& name, double median, double worst, double judged,
                     double promised) {
    ++(judged <= promised ? kept_ : missed_);
    std::printf("%-58s%8.1f%8.1f  %s\n", qPrintable(name), median, worst,
                judged <= promised ? "kept" : "MISSED");
    std::fflush(stdout);
}

void Operator::play(const QString& name, const QHash<QString, QString>& words) {
    QFile file(TESSALY_STEPS "/" + name + ".txt");
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("there are no steps " + name.toStdString());
    Block block;
    const auto finish = [&](const Block& next) {
        const Block done = std::exchange(block, next);
        done.kind == "heap" ? weigh(done) : time(done);
    };
    for (QString line : QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts)) {
        for (auto word = words.begin(); word != words.end(); ++word)
            line.replace('$' + word.key(), word.value());
        line.replace("$folder", folder_);
        const QString verb = line.section(' ', 0, 0), rest = line.section(' ', 1);
        if (verb == "step" || verb == "step-thrice" || verb == "silences" || verb == "heap" ||
            verb == "then") {
            finish({verb, rest, {}, {}});
        } else if (verb == "steps") {
            finish({});
            QHash<QString, QString> inner;
            for (const QString& pair : rest.split(" | ").mid(1))
                inner[pair.section('=', 0, 0)] = pair.section('=', 1);
            play(rest.section(" | ", 0, 0), inner);
        } else if (!verb.startsWith('#')) {
            (verb == "-" ? block.preparations : block.gestures).append(verb == "-" ? rest : line);
        }
    }
    finish({});
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_LOGGING_RULES", "default.warning=false");  // the offscreen platform is talkative
    QApplication app(argc, argv);
    try {
        Operator person(app.arguments().value(1));
        person.play(app.arguments().value(2, "all"));
        return person.exitCode();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tessaly-full-size: %s\n", error.what());
        return 1;
    }
}
