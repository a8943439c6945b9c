// SPDX-License-Identifier: GPL-3.0-or-later
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonObject>
#include <cmath>
#include <cstdio>

#include "card/card_files.h"
#include "card/sound_checks.h"
#include "cli/commands.h"
#include "cli/console.h"
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
        if (!outputIsTerminal())
            return;
        std::fprintf(stderr, "\r\033[K%s", qPrintable(decodingInWords(done, timer_.elapsed())));
        std::fflush(stderr);
        isShown_ = true;
    }

 private:
    QElapsedTimer timer_;
    bool isShown_ = false;
};

// To a hundredth: no ear hears more.
QJsonValue toJson(double value) {
    return value <= WholeLook::Silent ? QJsonValue() : QJsonValue(std::round(value * 100) / 100);
}

QJsonObject toJson(const ItemSound& item) {
    QJsonObject object{{u"item"_s, item.item()},
                       {u"group"_s, item.group()},
                       {u"kind"_s, item.record ? item.record->kind.text() : u"chime"_s},
                       {u"path"_s, item.path},
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
        object[u"difference"_s] = toJson(item.difference);
        object[u"silenceAtStart"_s] = whole->silenceAtStart;
        object[u"silenceAtEnd"_s] = whole->silenceAtEnd;
        object[u"breaks"_s] = whole->breakCount;
    }
    return object;
}

QStringList row(const ItemSound& item) {
    QStringList cells = {item.item(), item.group()};
    if (item.sound && item.sound->whole) {
        const WholeLook& whole = *item.sound->whole;
        cells << inMinutes(whole.milliseconds) << inDecibels(whole.loudness)
              << inDecibels(item.difference, true) << inDecibels(whole.truePeak, true);
    } else {
        cells << u"-"_s << u"-"_s << u"-"_s << u"-"_s;
    }
    return cells << item.finding();
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
    for (const ItemSound& item : sounds)
        rows.append(row(item));
    printTable(rows, {2, 3, 4, 5});
    print();
    print(inWords(sounds) + u'.');
    return Done;
}

}  // namespace tessaly::cli
