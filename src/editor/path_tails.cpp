// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/path_tails.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

constexpr QChar Unknown = u'?';

bool isSeparator(QChar c) {
    return c == u'/' || c == u'\\';
}

// Letter by letter, so that a text keeps its length: "?" stands for one letter.
QString withoutCase(QString path) {
    for (QChar& c : path)
        c = c.toCaseFolded();
    return path;
}

quint64 lettersAt(QStringView text, qsizetype at) {
    return quint64(at) << 32 | quint64(text[at].unicode()) << 16 | text[at + 1].unicode();
}

QString inParts(const QString& path) {
    return pathParts(path).join(u'/');
}

// Characters of two units become one that no file name has.
QString inSingleUnits(const QString& path) {
    QString text;
    text.reserve(path.size());
    for (qsizetype i = 0; i < path.size(); ++i) {
        const bool isPair =
            path[i].isHighSurrogate() && i + 1 < path.size() && path[i + 1].isLowSurrogate();
        text += isPair ? QChar(QChar::ReplacementCharacter) : path[i];
        i += isPair;
    }
    return text;
}

}  // namespace

QStringList pathParts(const QString& path) {
    QStringList parts;
    qsizetype start = 0;
    for (qsizetype i = 0; i <= path.size(); ++i) {
        if (i < path.size() && !isSeparator(path[i]))
            continue;
        if (i > start)
            parts.append(path.sliced(start, i - start));
        start = i + 1;
    }
    return parts;
}

QString comparedPath(const QString& path) {
    return withoutCase(inParts(path.normalized(QString::NormalizationForm_C)));
}

bool mayBe(QStringView part, QStringView name) {
    if (part.size() != name.size())
        return false;
    for (qsizetype i = part.size() - 1; i >= 0; --i)  // the last letters differ most often
        if (part[i] != name[i] && part[i] != Unknown)
            return false;
    return true;
}

PathTails::PathTails(const QStringList& paths, Form form) : form_(form), nodes_(1) {
    paths_.reserve(paths.size());
    for (const QString& path : paths)
        paths_.append(formOf(path));
    nodes_[0].paths.resize(paths.size());
    std::iota(nodes_[0].paths.begin(), nodes_[0].paths.end(), 0);
}

QString PathTails::formOf(const QString& path) const {
    return form_ == Form::Compared ? comparedPath(path) : withoutCase(inSingleUnits(inParts(path)));
}

void PathTails::open(int index) {
    if (std::exchange(nodes_[size_t(index)].isOpen, true))
        return;
    const QList<int> paths = nodes_[size_t(index)].paths;
    const qsizetype length = nodes_[size_t(index)].length;
    for (const int path : paths) {
        const QStringView rest = QStringView(paths_.at(path)).chopped(length);
        if (rest.isEmpty())
            continue;
        const QStringView part = rest.sliced(rest.lastIndexOf(u'/') + 1);
        Node& node = nodes_[size_t(index)];
        int child = node.children.value(part, -1);
        if (child < 0) {
            child = int(nodes_.size());
            node.children.insert(part, child);
            node.bySize[part.size()].names.append({part, child});
            const qsizetype more = std::min(part.size() + 1, rest.size());  // with its separator
            nodes_.emplace_back().length = length + more;
        }
        nodes_[size_t(child)].paths.append(path);
    }
}

// Which of some names may be `part`, before they are looked at letter by letter: those that have
// two known letters of it, at the place where these are rarest.
QList<int> PathTails::likely(SameSize& all, QStringView part) {
    if (all.byLetters.isEmpty())
        for (int i = 0; i < int(all.names.size()); ++i)
            for (qsizetype at = 0; at + 1 < part.size(); ++at)
                all.byLetters[lettersAt(all.names[i].first, at)].append(i);
    QList<int> found;
    bool isAny = true;
    for (qsizetype at = 0; at + 1 < part.size(); ++at) {
        if (part[at] == Unknown || part[at + 1] == Unknown)
            continue;
        const QList<int> here = all.byLetters.value(lettersAt(part, at));
        if (isAny || here.size() < found.size())
            found = here;
        isAny = false;
    }
    if (isAny) {
        found.resize(all.names.size());
        std::iota(found.begin(), found.end(), 0);
    }
    return found;
}

// A name that has this very "?" comes before those for which it may stand.
QList<int> PathTails::childrenOf(int index, QStringView part) {
    open(index);
    Node& node = nodes_[size_t(index)];
    if (const auto child = node.children.constFind(part); child != node.children.constEnd())
        return {*child};
    QList<int> found;
    const auto all = node.bySize.find(part.size());
    if (all == node.bySize.end() || !part.contains(Unknown))
        return found;
    for (const int i : likely(*all, part))
        if (const auto& [name, child] = all->names.at(i); mayBe(part, name))
            found.append(child);
    return found;
}

PathTails::Found PathTails::longest(const QString& path) {
    const QStringList parts = formOf(path).split(u'/', Qt::SkipEmptyParts);
    QList<int> ends{0};
    Found found;
    for (auto part = parts.crbegin(); part != parts.crend(); ++part) {
        QList<int> longer;
        for (const int end : std::as_const(ends))
            longer += childrenOf(end, *part);
        if (longer.isEmpty())
            break;
        ends = longer;
        ++found.parts;
    }
    if (found.parts > 0)
        found.paths = nodes_[size_t(ends.first())].paths;  // shared, not copied
    for (qsizetype i = 1; i < ends.size() && found.paths.size() < MostOfUnknown; ++i)
        found.paths += nodes_[size_t(ends[i])].paths;
    return found;
}

}  // namespace tessaly
