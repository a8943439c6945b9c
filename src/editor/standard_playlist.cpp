// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/standard_playlist.h"

#include <QDir>
#include <QHash>
#include <algorithm>
#include <cctype>
#include <optional>

#include "editor/playlist_parser.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

bool beginsWith(QStringView text, QStringView start) {
    return text.startsWith(start, Qt::CaseInsensitive);
}

bool hasDrive(QStringView path) {
    return path.size() > 1 && path[1] == u':' && path[0].isLetter();
}

bool isShare(QStringView path) {
    return path.startsWith(u"//") || path.startsWith(uR"(\\)");
}

// What stands before "://"; of one letter it is a drive.
bool hasScheme(QStringView text) {
    const qsizetype end = text.indexOf(u"://");
    const auto belongs = [](QChar c) {
        return (c.unicode() < 128 && c.isLetterOrNumber()) || u"+-."_s.contains(c);
    };
    return end > 1 && std::all_of(text.begin(), text.begin() + end, belongs);
}

// Where file:<rest> leads.
QString fileOfUrl(QStringView rest) {
    QString path = withoutEscapes(rest.toString());
    if (path.startsWith(u"//")) {
        const qsizetype host = 2, slash = std::max<qsizetype>(path.indexOf(u'/', host), host);
        const QString name = path.sliced(host, slash - host);
        if (!name.isEmpty() && name.compare(u"localhost", Qt::CaseInsensitive) != 0)
            return path.replace(u'/', u'\\');
        path.remove(0, slash);
    }
    return path.startsWith(u'/') && hasDrive(QStringView(path).sliced(1)) ? path.sliced(1) : path;
}

// The whole path that stands in a playlist of `folder`.
QString wholePathOf(QStringView text, const QString& folder) {
    const bool isUrl = beginsWith(text, u"file:/");
    QString path = isUrl ? fileOfUrl(text.sliced(5)) : text.toString();
    if (hasDrive(path) || isShare(path))
        return path;
    // Playlists travel on sticks: their backslashes part folders here, too.
    if (!isUrl && QDir::separator() == u'/')
        path.replace(u'\\', u'/');
    const bool isRooted = path.startsWith(u'/') || path.startsWith(u'\\');
    if (isRooted)
        return hasDrive(folder) ? folder.first(2) + path : path;
    return QDir::cleanPath(folder + path);
}

StandardEntry entryOf(QStringView location, QStringView title, const QString& folder) {
    // Many entries of a .pls may share one number, and so one title.
    constexpr qsizetype MostTitle = 1000;
    const QString name = title.first(std::min(title.size(), MostTitle)).trimmed().toString();
    if (hasScheme(location) && !beginsWith(location, u"file:"))
        return {.title = name, .location = location.toString(), .isStream = true};
    return {.title = name, .location = QDir::toNativeSeparators(wholePathOf(location, folder))};
}

QList<StandardEntry> entriesOfM3u(QStringView text, const QString& folder, qsizetype most) {
    QList<StandardEntry> entries;
    QStringView title;
    while (!text.isEmpty() && entries.size() < most) {
        const QStringView line = takeLine(text).trimmed();
        if (beginsWith(line, u"#EXTINF:")) {
            const qsizetype comma = line.indexOf(u',');
            title = comma < 0 ? QStringView() : line.sliced(comma + 1).trimmed();
        } else if (!line.isEmpty() && !line.startsWith(u'#')) {
            entries.append(entryOf(line, title, folder));
            title = {};
        }
    }
    return entries;
}

QList<StandardEntry> entriesOfPls(QStringView text, const QString& folder, qsizetype most) {
    struct Numbered {
        qulonglong number;
        QStringView location;
    };
    QList<Numbered> found;
    QHash<qulonglong, QStringView> titles;
    while (!text.isEmpty() && found.size() < most) {
        const QStringView line = takeLine(text);
        const qsizetype equals = line.indexOf(u'=');
        if (equals < 0)
            continue;
        const QStringView key = line.first(equals).trimmed();
        const QStringView value = line.sliced(equals + 1).trimmed();
        const auto numberBehind = [&](QStringView word) -> std::optional<qulonglong> {
            bool ok = false;
            const auto number =
                beginsWith(key, word) ? key.sliced(word.size()).toULongLong(&ok) : 0;
            return ok ? std::optional(number) : std::nullopt;
        };
        if (const auto file = numberBehind(u"File"); file && !value.isEmpty())
            found.append({*file, value});
        else if (const auto title = numberBehind(u"Title"); title && titles.size() < most)
            titles.insert(*title, value);
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const Numbered& a, const Numbered& b) { return a.number < b.number; });
    QList<StandardEntry> entries;
    for (const auto& [number, location] : found)
        entries.append(entryOf(location, titles.value(number), folder));
    return entries;
}

}  // namespace

bool isStandardPlaylist(const QString& path) {
    return std::any_of(std::begin(PlaylistEndings), std::end(PlaylistEndings),
                       [&](auto ending) { return path.endsWith(ending, Qt::CaseInsensitive); });
}

QString nameOfPlaylist(const QString& path) {
    const QString file = lastNameOf(path);
    return file.left(file.lastIndexOf(u'.'));
}

QString withoutEscapes(const QString& text) {
    const QByteArray escaped = toNativePath(text);
    const auto isHex = [&](qsizetype i) {
        return i < escaped.size() && std::isxdigit(static_cast<unsigned char>(escaped[i]));
    };
    QByteArray bytes;
    for (qsizetype i = 0; i < escaped.size(); ++i) {
        const bool isEscape = escaped[i] == '%' && isHex(i + 1) && isHex(i + 2);
        bytes += isEscape ? char(escaped.mid(i + 1, 2).toUInt(nullptr, 16)) : escaped[i];
        i += isEscape ? 2 : 0;
    }
    return fromNativePath(bytes);
}

QList<StandardEntry> parseStandardPlaylist(QByteArrayView bytes, const QString& path,
                                           qsizetype most) {
    const QString text = decodePlaylist(bytes);
    const QString folder = path.chopped(lastNameOf(path).size());
    return path.endsWith(u".pls", Qt::CaseInsensitive) ? entriesOfPls(text, folder, most)
                                                       : entriesOfM3u(text, folder, most);
}

}  // namespace tessaly
