// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QLocale>
#include <QString>
#include <QStringList>
#include <optional>

// What the names of speech files and their folders say. Names are compared word by word, composed
// and without regard to case; whatever is no letter and no digit only parts words.

namespace tessaly {

/// The words of a name with a blank between them, by which it is compared; the name itself where it
/// has none. Numbers stand without the zeros in front.
QString nameKey(const QString& name);

/// A name without the number of up to three digits in front of it and what parts them: "01 Quay",
/// "1-Quay", "01_Quay". A number alone stays.
QString withoutNumber(const QString& name);

/// The language that a word names, in English, in itself, or by its ISO code: German, Deutsch, de,
/// deu, ger. AnyLanguage where it names none. `codeLetters` is the most that a code may have: those
/// of three are often a word, too.
QLocale::Language languageCalled(const QString& word, int codeLetters = 3);

/// A name that ends with a language.
struct LanguageEnding {
    QString language;  ///< as in LanguageNames; of languageEnding() its English name
    QString rest;      ///< what stands before it; empty when it is all
    bool isSetOff;     ///< by "_", "-", "." or a bracket
};

/// The language that a name ends with, be it one of no project. A code must be set off by "_", "-",
/// "." or a bracket, as in Quay_de or Quay (de); a name may also stand behind a blank.
std::optional<LanguageEnding> languageEnding(const QString& name);

/// Languages by what people call them.
class LanguageNames {
 public:
    explicit LanguageNames(const QStringList& names = {});
    void add(const QString& name);

    /// The language that is called so: by its own name, by another in the sense of
    /// languageCalled(), or by its first two or three letters. Nothing when that fits none, or two.
    std::optional<QString> called(const QString& word) const;

    /// As languageEnding(), for these languages.
    std::optional<LanguageEnding> endingOf(const QString& name) const;

 private:
    struct Language {
        QString name;
        QString key;
        QLocale::Language language;
    };
    QList<Language> languages_;
};

}  // namespace tessaly
