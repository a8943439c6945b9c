// SPDX-License-Identifier: GPL-3.0-or-later
#include <stdexcept>

#include "full_size_files.h"
#include "platform/local_file_system.h"
#include "step_table.h"
#include "support/session.h"

namespace tessaly::size {

namespace {

// The window and its operator, who takes their steps from text files: gestures, of which
//
//   step NAME            begins a block of gestures that are timed, five rounds of it
//   step-thrice NAME     the same in three rounds
//   silences NAME        a block whose silences are timed
//   - GESTURE            prepares a round of the block, and is not timed
//   steps FILE A=X B=Y   plays another file with X for $A and Y for $B
//   expect TEXT          ends the program unless that was said just now
class Operator {
 public:
    explicit Operator(const QString& folder) : folder_(folder), session_(nullptr, &files_) {
        test::WindowBench& bench = session_.bench;
        bench.services.appFolder = QCoreApplication::applicationDirPath();
        bench.scratch.makeFolder("user");
        bench.drives.volume.totalBytes = bench.drives.volume.freeBytes = qint64(1) << 35;
        session_.prompts.isQuiet = true;
        qApp->removeEventFilter(&session_.clocks);
        addVerbs();
        QDir().mkpath(folder + "/window-card");
        session_.perform("start");
        table_ = std::make_unique<StepTable>(*bench.window);
        session_.settleDown = [] {};
    }

    void play(const QString& file, const QHash<QString, QString>& words);

 private:
    struct Block {
        QString kind, name;
        QStringList preparations, gestures;
    };

    void addVerbs();
    void perform(const QStringList& gestures);
    void time(const Block& block);

    const QString folder_;
    LocalFileSystem files_;
    test::Session session_;
    std::unique_ptr<StepTable> table_;
    int renamed_ = 0;
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
        session_.say(QString("%1 rows").arg(view(list)->model()->rowCount()));
    };
    session_.verbs["new-name"] = [this](const QString& what) {
        session_.prompts.prepared = {QString("%1 %2").arg(what).arg(++renamed_)};
    };
    session_.verbs["change-title"] = [&](const QString&) {
        QString& title = bench.current.txtCardTitle2;
        title = title == "a" ? "b" : "a";
    };
}

void Operator::perform(const QStringList& gestures) {
    for (const QString& gesture : gestures) {
        const qsizetype before = session_.transcript().size();
        if (gesture.startsWith("expect ")) {
            if (!session_.transcript().mid(before - 3).join('\n').contains(gesture.mid(7)))
                throw std::runtime_error("not so: " + gesture.toStdString());
            continue;
        }
        session_.perform(gesture);
        const QString said = session_.transcript().mid(before).join('\n');
        if (said.contains("there is no") || said.contains("NO SUCH") || said.contains("disabled") ||
            said.contains("cannot be seen"))
            throw std::runtime_error((gesture + ": " + said).toStdString());
    }
}

void Operator::time(const Block& block) {
    const auto act = [&] { perform(block.gestures); };
    const auto prepare = [&] { perform(block.preparations); };
    const std::string name = block.name.toStdString();
    if (block.kind == "silences") {
        prepare();
        table_->timeSilence(name, act);
    } else if (block.kind.startsWith("step")) {
        table_->time(name, act, prepare, block.kind == "step" ? 5 : 3);
    } else {
        act();
    }
}

void Operator::play(const QString& name, const QHash<QString, QString>& words) {
    QFile file(TESSALY_STEPS "/" + name + ".txt");
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("there are no steps " + name.toStdString());
    Block block;
    const auto finish = [&](const Block& next) { time(std::exchange(block, next)); };
    for (QString line : QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts)) {
        for (auto word = words.begin(); word != words.end(); ++word)
            line.replace('$' + word.key(), word.value());
        line.replace("$folder", folder_);
        const QString verb = line.section(' ', 0, 0), rest = line.section(' ', 1);
        if (verb == "step" || verb == "step-thrice" || verb == "silences" || verb == "then") {
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

void workInWindow(const QString& folder) {
    Operator(folder).play("all", {});
}

}  // namespace tessaly::size
