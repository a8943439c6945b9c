// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/display_text.h"

#include "model/text_codec.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

constexpr QChar Backspace(8);

// Calls `use` with each character of a text, of one unit or two.
template <typename Use>
void eachCharacter(QStringView text, const Use& use) {
    for (qsizetype i = 0; i < text.size();) {
        const bool isPair =
            text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        const QStringView character = text.sliced(i, isPair ? 2 : 1);
        use(character);
        i += character.size();
    }
}

QString cut(const QString& text, qsizetype length) {
    const bool halves = length > 0 && length < text.size() && text[length - 1].isHighSurrogate() &&
                        text[length].isLowSurrogate();
    return text.left(halves ? length - 1 : length);
}

QString withoutControls(const QString& text) {
    QString cleaned = text.normalized(QString::NormalizationForm_C);
    while (cleaned.endsWith(u'\n') || cleaned.endsWith(u'\r'))
        cleaned.chop(1);
    cleaned.replace(u"\r\n"_s, u" "_s);
    for (QChar& c : cleaned)
        if (c.category() == QChar::Other_Control)
            c = u' ';
    return cleaned;
}

}  // namespace

int displayLength(QStringView text) {
    return int(toCodePage(text).size());
}

QString displayLengthText(QStringView text) {
    return u"%1 / %2"_s.arg(displayLength(text)).arg(limits::DisplayText);
}

QList<DisplayCell> displayCells(QStringView text) {
    QList<DisplayCell> cells;
    eachCharacter(text, [&](QStringView character) {
        if (cells.size() < limits::DisplayText)
            cells.append({quint8(toCodePage(character).front()), !fitsCodePage(character)});
    });
    return cells;
}

QStringList charactersDisplayLacks(QStringView text) {
    QStringList lacking;
    int cell = 0;
    eachCharacter(text, [&](QStringView character) {
        if (cell++ < limits::DisplayText && !fitsCodePage(character))
            lacking.append(character.toString());
    });
    lacking.removeDuplicates();
    return lacking;
}

QString firstCharacters(const QString& text, int limit) {
    // Composing takes long for a run of a million accents, which only a damaged file has.
    return cut(cut(text, 16 * qsizetype(limit)).normalized(QString::NormalizationForm_C), limit);
}

bool refusesKey(QStringView text, QChar key, int limit) {
    return key != Backspace && displayLength(text) >= limit;
}

Paste pasteInto(QStringView text, QStringView selected, const QString& pasted, int limit) {
    Q_ASSERT(selected.size() <= text.size());
    const int room = limit - (displayLength(text) - displayLength(selected));
    Paste paste;
    int length = 0;
    eachCharacter(withoutControls(pasted), [&](QStringView character) {
        if (length++ < room)
            paste.text.append(character);
    });
    paste.isCut = length > room;
    return paste;
}

}  // namespace tessaly
