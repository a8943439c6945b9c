// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <utility>
#include <vector>

// Paths that may have come from another system: compared part by part, from their ends.

namespace tessaly {

/// The names in a path, whichever of the two separators stands between them. Empty ones are none.
QStringList pathParts(const QString& path);

/// A name or path as it is compared: without regard to case, composed (other systems write e and
/// accent apart), with "/" between its parts and none in front.
QString comparedPath(const QString& path);

/// Whether a part of a compared path may be `name`: "?" in it stands for any one character, because
/// a project file puts it in the place of those that it cannot hold.
bool mayBe(QStringView part, QStringView name);

/// Finds those of many paths that end as another one does.
///
/// It is a tree of the paths read from their ends, whose branches grow where a search comes along:
/// a search takes as long as the path has parts, however many paths have the same name. Where a
/// part has a "?", it looks at the branches of the same length with two letters in the same place.
class PathTails {
 public:
    enum class Form {
        Compared,  ///< as comparedPath()
        /// As a project file counts characters for its "?": an accent that is written apart is one,
        /// and what takes two units of UTF-16 is one only.
        OneUnitEach,
    };

    explicit PathTails(const QStringList& paths, Form form = Form::Compared);

    struct Found {
        int parts = 0;     ///< how many names the ends have in common
        QList<int> paths;  ///< which these are, by their places in the list; of those that a "?"
                           ///< brought together no more than MostOfUnknown
    };

    static constexpr qsizetype MostOfUnknown = 2000;

    /// The paths whose ends have most parts in common with the end of `path`; none when already the
    /// last name differs.
    Found longest(const QString& path);

 private:
    // Children whose names have the same number of characters.
    struct SameSize {
        QList<std::pair<QStringView, int>> names;
        QHash<quint64, QList<int>> byLetters;  // which of them have these two at that place
    };

    struct Node {
        QList<int> paths;      // that end so
        qsizetype length = 0;  // of that end, with the separator before it
        bool isOpen = false;
        QHash<QStringView, int> children;  // by the part before that end
        QHash<qsizetype, SameSize> bySize;
    };

    void open(int index);
    QList<int> childrenOf(int index, QStringView part);
    static QList<int> likely(SameSize& all, QStringView part);
    QString formOf(const QString& path) const;

    const Form form_;
    QStringList paths_;
    std::vector<Node> nodes_;
};

}  // namespace tessaly
