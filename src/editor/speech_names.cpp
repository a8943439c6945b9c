// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/speech_names.h"

#include <QStringView>
#include <algorithm>

#include "model/format_limits.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

struct Word {
    qsizetype start, end;
};

bool isWordCharacter(QChar c) {
    return c.isLetterOrNumber() || c.isMark() || c.isSurrogate();
}

QList<Word> wordsOf(const QString& name) {
    QList<Word> words;
    for (qsizetype i = 0; i < name.size(); ++i) {
        if (!isWordCharacter(name[i]))
            continue;
        const qsizetype start = i;
        while (i < name.size() && isWordCharacter(name[i]))
            ++i;
        words.append({start, i});
    }
    return words;
}

using LanguagesByKey = QHash<QString, QLocale::Language>;

// All languages by their names in English and in themselves, also cut as a project has them. Made
// once: it takes some milliseconds.
const LanguagesByKey& languagesByName() {
    static const LanguagesByKey languages = [] {
        LanguagesByKey found, cut;
        const auto insert = [&](const QString& name, QLocale::Language language) {
            const QString key = nameKey(name);
            if (key.isEmpty() || found.contains(key))
                return;
            found.insert(key, language);
            // Within its first word only: what is left of "Central Kurdish" is no language.
            const QString start = key.left(limits::LanguageName);
            if (start != key && !key.left(start.size() + 1).contains(u' '))
                cut.insert(start, language);
        };
        insert(u"Norwegian"_s, QLocale::NorwegianBokmal);
        insert(u"Norsk"_s, QLocale::NorwegianBokmal);
        for (int number = QLocale::C + 1; number <= QLocale::LastLanguage; ++number) {
            const auto language = QLocale::Language(number);
            insert(QLocale::languageToString(language), language);
        }
        for (const QLocale& locale : QLocale::matchingLocales(
                 QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory))
            insert(locale.nativeLanguageName(), locale.language());
        for (auto it = cut.cbegin(); it != cut.cend(); ++it)
            if (!found.contains(it.key()))
                found.insert(it.key(), it.value());
        return found;
    }();
    return languages;
}

// Tries the last words of a name as a language: three, two, one. `find` says which it is.
template <typename Find>
std::optional<LanguageEnding> endingFoundBy(const QString& name, const Find& find) {
    constexpr qsizetype MostWords = 3, CodeLetters = 3;
    const QList<Word> words = wordsOf(name);
    for (qsizetype count = std::min(MostWords, words.size()); count > 0; --count) {
        const Word& first = words[words.size() - count];
        const QString ending = name.sliced(first.start, words.last().end - first.start);
        const qsizetype before = count < words.size() ? words[words.size() - count - 1].end : 0;
        const QStringView gap = QStringView(name).sliced(before, first.start - before);
        const bool isSetOff =
            std::any_of(gap.begin(), gap.end(), [](QChar c) { return u"_-.(["_s.contains(c); });
        if (ending.size() <= CodeLetters && !isSetOff && count < words.size())
            continue;
        if (const std::optional<QString> language = find(ending))
            return LanguageEnding{*language, name.first(before), isSetOff};
    }
    return std::nullopt;
}

}  // namespace

QString nameKey(const QString& name) {
    // Names of files are short. Composing takes long for what a damaged project file may hold.
    constexpr qsizetype Most = 1000;
    const QString composed = name.first(std::min(name.size(), Most))
                                 .normalized(QString::NormalizationForm_C)
                                 .toCaseFolded();
    QStringList words;
    for (const auto& [start, end] : wordsOf(composed)) {
        qsizetype from = start;
        while (from + 1 < end && composed[from] == u'0' && composed[from + 1].isDigit())
            ++from;
        words.append(composed.sliced(from, end - from));
    }
    return words.isEmpty() ? composed : words.join(u' ');
}

QString withoutNumber(const QString& name) {
    constexpr qsizetype MostDigits = 3;  // "1848 Revolution" is a year
    const QList<Word> words = wordsOf(name);
    const auto isNumber = [&](const Word& word) {
        return std::all_of(name.begin() + word.start, name.begin() + word.end,
                           [](QChar c) { return c.isDigit(); });
    };
    if (words.size() < 2 || words[0].end - words[0].start > MostDigits || !isNumber(words[0]))
        return name;
    const bool goesOn = words[1].start == words[0].end + 1 && name[words[1].start].isDigit() &&
                        u".,:"_s.contains(name[words[0].end]);  // 20,000 or 10.30
    if (goesOn)
        return name;
    // A bracket in front of the rest belongs to it: 3 (Quay).
    qsizetype start = words[0].end;
    while (name[start] != u'(' && name[start] != u'[' && !isWordCharacter(name[start]))
        ++start;
    return name.sliced(start);
}

QLocale::Language languageCalled(const QString& word, int codeLetters) {
    const QString key = nameKey(word);
    if (key.isEmpty())
        return QLocale::AnyLanguage;
    if (key.size() == 2 || (key.size() == 3 && codeLetters == 3))
        if (const auto language = QLocale::codeToLanguage(key); language != QLocale::AnyLanguage)
            return language;
    const bool isCode = key.size() <= 3 && key.front().unicode() < 128;  // or short, in Chinese
    return isCode ? QLocale::AnyLanguage : languagesByName().value(key, QLocale::AnyLanguage);
}

std::optional<LanguageEnding> languageEnding(const QString& name) {
    return endingFoundBy(name, [](const QString& word) -> std::optional<QString> {
        const auto language = languageCalled(word, 2);
        return language == QLocale::AnyLanguage
                   ? std::nullopt
                   : std::optional(QLocale::languageToString(language));
    });
}

LanguageNames::LanguageNames(const QStringList& names) {
    for (const QString& name : names)
        add(name);
}

void LanguageNames::add(const QString& name) {
    languages_.append({name, nameKey(name), languageCalled(name)});
}

std::optional<QString> LanguageNames::called(const QString& word) const {
    const QString key = nameKey(word);
    const auto only = [&](const auto& fits) -> std::optional<QString> {
        const auto found = std::find_if(languages_.begin(), languages_.end(), fits);
        const bool isOne =
            found != languages_.end() && std::none_of(std::next(found), languages_.end(), fits);
        return isOne ? std::optional(found->name) : std::nullopt;
    };
    for (const Language& each : languages_)
        if (each.key == key)
            return each.name;
    if (const auto language = languageCalled(word); language != QLocale::AnyLanguage)
        if (const auto name = only([&](const auto& each) { return each.language == language; }))
            return name;
    if (key.size() == 2 || key.size() == 3)
        return only([&](const auto& each) { return each.key.startsWith(key); });
    return std::nullopt;
}

std::optional<LanguageEnding> LanguageNames::endingOf(const QString& name) const {
    return endingFoundBy(name, [&](const QString& word) { return called(word); });
}

}  // namespace tessaly
