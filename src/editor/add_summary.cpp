// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/add_summary.h"

#include <QDir>
#include <numeric>

#include "model/display_text.h"
#include "model/format_limits.h"
#include "model/numbers.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// How a reason is said of one file, and behind a number.
struct Words {
    QStringView inLine;
    QStringView alone;
    QStringView counted;
};

constexpr std::array<Words, LeftOutReasons> ReasonWords = {
    Words{u"is no MP3 file", u"no MP3", u"no MP3"},
    {u"is a stream, no file,", u"a stream, no file", u"no file but a stream"},
    {u"is not there", u"not found", u"not found"},
    {u"cannot be read", u"cannot be read", u"cannot be read"},
    {u"is a second file for one title and language", u"a second file for one title and language",
     u"second for one title and language"},
    {u"would need a 17th language", u"no room for a 17th language", u"no room for a 17th language"},
    {u"is there already", u"there already", u"there already"},
};

}  // namespace

int AddSummary::leftOutInAll() const {
    return std::accumulate(leftOut.begin(), leftOut.end(), 0);
}

QString AddSummary::text() const {
    QStringList parts = {added == 0 ? u"Nothing added"_s : grouped(added) + u" added"_s};
    if (lists > 0)
        parts.last() += u" in "_s + counted(lists, u"new list"_s);
    const auto say = [&](int count, const QString& one, const QString& many = {}) {
        if (count > 0)
            parts.append(counted(count, one, many));
    };
    say(titles, u"new title"_s);
    say(languages, u"new language"_s);
    say(replaced, u"in the place of another file"_s, u"in the place of other files"_s);
    say(cut, u"name cut to 16 characters"_s, u"names cut to 16 characters"_s);
    say(cutLanguages, u"language cut to 8 characters"_s, u"languages cut to 8 characters"_s);
    say(numbered, u"name numbered"_s, u"names numbered"_s);
    say(missing, u"file not found"_s, u"files not found"_s);
    if (const int all = leftOutInAll(); all > 0) {
        QStringList reasons;
        for (size_t i = 0; i < leftOut.size(); ++i)
            if (leftOut[i] == all)
                reasons.append(ReasonWords[i].alone.toString());
            else if (leftOut[i] > 0)
                reasons.append(u"%1 %2"_s.arg(grouped(leftOut[i]), ReasonWords[i].counted));
        parts.append(grouped(all) + u" left out: "_s + reasons.join(u", "_s));
    }
    return parts.join(u", "_s);
}

QString AddSummary::details() const {
    QStringList all = lines;
    if (moreLines > 0)
        all.append(u"... and %1 more."_s.arg(grouped(moreLines)));
    return all.join(u'\n');
}

void AddSummary::note(const QString& line) {
    if (lines.size() < MostLines)
        lines.append(line);
    else
        ++moreLines;
}

void AddSummary::leaveOut(LeftOut why, const QString& path, const QString& detail) {
    ++leftOut[size_t(why)];
    const QStringView reason = ReasonWords[size_t(why)].inLine;
    note(detail.isEmpty() ? u"%1 %2 and was left out."_s.arg(wholePath(path), reason)
                          : detail + u": left out."_s);
}

void AddSummary::noteName(const QString& subject, const QString& whole, const QString& name,
                          int limit) {
    const QString first = firstCharacters(whole, limit);
    // Composing a tag's title of a million accents would take long.
    const bool isCut = whole.size() > 16 * qsizetype(limit) ||
                       first != whole.normalized(QString::NormalizationForm_C);
    const bool isNumbered = name != first;
    (limit == limits::LanguageName ? cutLanguages : cut) += isCut ? 1 : 0;
    numbered += isNumbered ? 1 : 0;
    if (isCut || isNumbered)
        note(u"%1 \"%2\" became \"%3\"."_s.arg(subject, elided(whole), elided(name)));
}

QString wholePath(const QString& path) {
    constexpr qsizetype Longest = 4096;  // no system has longer ones; a playlist may
    return path.size() > Longest ? shownPath(path) : QDir::toNativeSeparators(path);
}

}  // namespace tessaly
