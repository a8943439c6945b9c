// SPDX-License-Identifier: GPL-3.0-or-later
#include "sound/sound_words.h"

#include <QStringList>
#include <cmath>

namespace tessaly {

using namespace Qt::StringLiterals;

QString inMinutes(qint64 milliseconds) {
    const qint64 seconds = milliseconds / 1000;
    return u"%1:%2"_s.arg(seconds / 60).arg(seconds % 60, 2, 10, QChar(u'0'));
}

QString inDecibels(double value, bool isSigned) {
    if (value <= WholeLook::Silent)
        return u"-"_s;
    const double shown = std::round(value * 10) / 10 + 0.0;  // not "-0.0"
    const QString number = QString::number(shown, 'f', 1);
    return isSigned && shown >= 0 ? u'+' + number : number;
}

QString formatInWords(const QuickLook& look) {
    if (!look.hasSound())
        return {};
    return u"%1 kHz, %2, %3%4 kbit/s"_s.arg(look.hz / 1000.0)
        .arg(look.channels == 1 ? u"mono"_s : u"stereo"_s,
             look.isVariable ? u"about "_s : QString())
        .arg(look.kbps);
}

QString problemInWords(const QuickLook& look) {
    switch (look.finding) {
        case QuickLook::Finding::Good:
        case QuickLook::Finding::Missing:
            return {};
        case QuickLook::Finding::Empty:
            return u"an empty file"_s;
        case QuickLook::Finding::NoSound:
            return look.looksLike.isEmpty()
                       ? u"no MPEG sound"_s
                       : u"no MPEG sound: this looks like %1"_s.arg(look.looksLike);
        case QuickLook::Finding::OtherLayer:
            return u"MPEG sound of layer %1, not of layer III"_s.arg(QString(look.layer, u'I'));
        case QuickLook::Finding::EndsEarly:
            return u"ends at %1 of %2"_s.arg(inMinutes(look.there), inMinutes(look.milliseconds));
        case QuickLook::Finding::EndsInFrame:
            return u"cut off in the middle of a frame, after %1"_s.arg(
                inMinutes(look.milliseconds));
    }
    return {};
}

QString problemInWords(const WholeLook& look) {
    QStringList problems;
    if (look.breakCount > 0) {
        const QString first = u"broken at "_s + inMinutes(look.breaks.first().at);
        problems.append(look.breakCount == 1
                            ? first
                            : u"%1, and in %2 more places"_s.arg(first).arg(look.breakCount - 1));
    }
    if (look.changeAt >= 0)
        problems.append(u"its sample rate or channels change at "_s + inMinutes(look.changeAt));
    if (look.isSilent())
        problems.append(u"silent from its beginning to its end"_s);
    if (look.truePeak > 0)
        problems.append(u"clipped: its peaks reach +%1 dBTP"_s.arg(look.truePeak, 0, 'f', 1));
    return problems.join(u"; "_s);
}

QString loudnessInWords(double difference) {
    return u"%1 dB %2 than the others"_s.arg(std::lround(std::abs(difference)))
        .arg(difference < 0 ? u"quieter"_s : u"louder"_s);
}

}  // namespace tessaly
