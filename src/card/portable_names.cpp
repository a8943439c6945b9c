// SPDX-License-Identifier: GPL-3.0-or-later
#include "card/portable_names.h"

#include <QRegularExpression>
#include <algorithm>

#include "model/text_codec.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

const QString Unnamed = u"unnamed"_s;

bool isPlain(QChar c) {
    constexpr QStringView Forbidden = u"<>:\"/\\|?*";
    return c.isPrint() && (c == u' ' || !c.isSpace()) && !Forbidden.contains(c) &&
           fitsCodePage(QStringView(&c, 1));
}

// A character that a name cannot have, in plain ones.
QString replacement(char32_t c) {
    if (QChar::isSpace(c))
        return u" "_s;
    const auto category = QChar::category(c);
    if (QChar::isMark(c) || category == QChar::Other_Format)
        return {};
    QString plain = QString::fromUcs4(&c, 1).normalized(QString::NormalizationForm_KD);
    plain.removeIf([](QChar part) { return !isPlain(part); });
    return plain.isEmpty() ? u"_"_s : plain;
}

// A name that is no UTF-8 comes with its bytes marked (fromNativePath()); most such names are
// Windows-1252.
QString withoutByteMarks(QString text) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        const bool isHalf = i > 0 && text[i - 1].isHighSurrogate();
        if (!isHalf && c >= 0xDC80 && c <= 0xDCFF)
            text[i] = fromCodePage(QByteArray(1, char(c & 0xFF)))[0];
    }
    return text;
}

// Windows takes what stands before the first dot for a device, whatever follows.
bool isDevice(const QString& name) {
    static const QStringList Devices = {u"CON"_s,    u"PRN"_s,    u"AUX"_s,    u"NUL"_s,
                                        u"CLOCK$"_s, u"CONIN$"_s, u"CONOUT$"_s};
    const QString stem = name.section(u'.', 0, 0).trimmed().toUpper();
    const bool isPort = stem.size() == 4 && (stem.startsWith(u"COM") || stem.startsWith(u"LPT"));
    return Devices.contains(stem) || (isPort && stem[3].digitValue() >= 0);
}

QString asCompared(const QString& name) {
    return name.toCaseFolded();
}

}  // namespace

QString portableName(const QString& text) {
    QString name;
    const QString composed = withoutByteMarks(text).normalized(QString::NormalizationForm_C);
    for (const char32_t c : composed.toUcs4()) {
        const bool isShort = c <= 0xFFFF;
        const QString part =
            isShort && isPlain(QChar(char16_t(c))) ? QString(QChar(char16_t(c))) : replacement(c);
        if (part != u"_" || !name.endsWith(u'_'))
            name += part;
    }
    const auto isEdge = [](QChar c) { return c == u'.' || c == u' '; };
    name.remove(0, std::find_if_not(name.begin(), name.end(), isEdge) - name.begin());
    name.truncate(PortableNameLength);
    while (!name.isEmpty() && isEdge(name.back()))
        name.chop(1);
    const bool isReadable =
        std::any_of(name.begin(), name.end(), [&](QChar c) { return c != u'_' && !isEdge(c); });
    return isReadable ? name : QString();
}

QString PortableNames::add(const QStringList& texts, const QString& ending) {
    QString stem;
    for (qsizetype i = 0; i < texts.size() && stem.isEmpty(); ++i)
        stem = portableName(texts[i]);
    if (stem.isEmpty())
        stem = Unnamed;
    if (isDevice(stem))
        stem.prepend(u'_');
    int& number = next_[asCompared(stem + ending)];
    QString name = stem + ending;
    for (; taken_.contains(asCompared(name)); ++number)
        name = u"%1 (%2)%3"_s.arg(stem, QString::number(number + 2), ending);
    taken_.insert(asCompared(name));
    return name;
}

QString endingOf(const QString& name) {
    static const QRegularExpression ending(u"[^.](\\.[A-Za-z0-9]{1,5})\\z"_s);
    return ending.match(name).captured(1);
}

}  // namespace tessaly
