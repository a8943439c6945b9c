// SPDX-License-Identifier: GPL-3.0-or-later
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonObject>
#include <cstdio>

#include "card/card_files.h"
#include "card/card_writer.h"
#include "card/sound_checks.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "model/numbers.h"
#include "platform/local_file_system.h"
#include "sound/sound_words.h"

namespace tessaly::cli {

using namespace Qt::StringLiterals;

namespace {

// A line that moves on a terminal, nothing elsewhere.
class DecodingDisplay {
 public:
    DecodingDisplay() { timer_.start(); }
    ~DecodingDisplay() {
        if (isShown_)
            std::fputs("\r\033[K", stderr);
    }

    void show(double done) {
        constexpr double TooEarlyToTell = 0.02;
        if (!outputIsTerminal())
            return;
        const auto left = qint64(double(timer_.elapsed()) * (1 - done) / std::max(done, 1e-6));
        std::fprintf(
            stderr, "\r\033[KDecoding: %3d %%%s", int(done * 100),
            done < TooEarlyToTell ? "" : qPrintable(u", "_s + durationText(left) + u" left"_s));
        std::fflush(stderr);
        isShown_ = true;
    }

 private:
    QElapsedTimer timer_;
    bool isShown_ = false;
};

QString decibels(double value, bool isSigned = false) {
    if (value <= WholeLook::Silent)
        return u"-"_s;
    const QString number = QString::number(value, 'f', 1);
    return isSigned && value >= 0 ? u'+' + number : number;
}

QJsonValue toJson(double value) {
    return value <= WholeLook::Silent ? QJsonValue() : QJsonValue(value);
}

QJsonObject toJson(const ItemSound& item) {
    QJsonObject object{{u"item"_s, item.record->itemName.text()},
                       {u"group"_s, item.record->groupName.text()},
                       {u"kind"_s, item.record->kind.text()},
                       {u"path"_s, item.record->sourcePath.text()},
                       {u"missing"_s, item.isMissing},
                       {u"problem"_s, item.problem()}};
    if (!item.sound)
        return object;
    const QuickLook& quick = item.sound->quick;
    object[u"milliseconds"_s] = quick.milliseconds;
    object[u"hz"_s] = quick.hz;
    object[u"channels"_s] = quick.channels;
    object[u"kbps"_s] = quick.kbps;
    if (const auto& whole = item.sound->whole) {
        object[u"milliseconds"_s] = whole->milliseconds;
        object[u"loudness"_s] = toJson(whole->loudness);
        object[u"truePeak"_s] = toJson(whole->truePeak);
        object[u"difference"_s] = item.difference;
        object[u"silenceAtStart"_s] = whole->silenceAtStart;
        object[u"silenceAtEnd"_s] = whole->silenceAtEnd;
        object[u"breaks"_s] = whole->breakCount;
    }
    return object;
}

QStringList row(const ItemSound& item) {
    const TrackRecord& record = *item.record;
    QStringList cells = {record.itemName.text(), record.groupName.text()};
    if (item.sound && item.sound->whole) {
        const WholeLook& whole = *item.sound->whole;
        cells << inMinutes(whole.milliseconds) << decibels(whole.loudness)
              << decibels(item.difference, true) << decibels(whole.truePeak, true);
    } else {
        cells << u"-"_s << u"-"_s << u"-"_s << u"-"_s;
    }
    return cells << (item.isMissing ? u"file not found"_s : item.problem());
}

}  // namespace

int soundCommand(const SoundOptions& options) {
    LocalFileSystem files;
    const Project project = openProject(files, options.project);
    const SourceFiles sources = measureSources(project, files);
    SoundBook book(soundBookFile());
    lookAtAll(sources, book);
    {
        DecodingDisplay display;
        decodeAll(sources, book, [&display](double done) {
            display.show(done);
            return true;
        });
    }
    book.save();
    const QList<ItemSound> sounds = soundsOf(project, sources, book);
    if (options.json) {
        QJsonArray items;
        for (const ItemSound& item : sounds)
            items.append(toJson(item));
        printJson({{u"sounds"_s, items}});
        return Done;
    }
    QList<QStringList> rows = {
        {u"item"_s, u"group"_s, u"length"_s, u"LUFS"_s, u"LU"_s, u"dBTP"_s, QString()}};
    qsizetype problems = 0;
    for (const ItemSound& item : sounds) {
        rows.append(row(item));
        problems += item.isMissing || !item.problem().isEmpty();
    }
    printTable(rows, {2, 3, 4, 5});
    print();
    print(u"%1, %2 with something to look at."_s.arg(counted(sounds.size(), u"file"_s))
              .arg(problems));
    return Done;
}

}  // namespace tessaly::cli
