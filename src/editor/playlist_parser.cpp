// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/playlist_parser.h"

#include <QStringDecoder>
#include <algorithm>
#include <optional>

#include "model/display_text.h"
#include "model/format_limits.h"
#include "model/text_codec.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

struct Mark {
    QByteArrayView bytes;
    QStringDecoder::Encoding encoding;
};

constexpr Mark Marks[] = {{"\xEF\xBB\xBF", QStringDecoder::Utf8},
                          {"\xFF\xFE", QStringDecoder::Utf16LE},
                          {"\xFE\xFF", QStringDecoder::Utf16BE}};

constexpr int TabbedNameColumn = 6;
constexpr int TabbedLocationSkip = 8;

QString nameFrom(QStringView text) {
    return firstCharacters(text.toString(), limits::DisplayText);
}

// The text behind the first `columns` columns; nothing when there are not so many tabs.
std::optional<QStringView> behindColumns(QStringView line, int columns) {
    for (; columns > 0; --columns) {
        const qsizetype tab = line.indexOf(u'\t');
        if (tab < 0)
            return std::nullopt;
        line = line.sliced(tab + 1);
    }
    return line;
}

QStringView firstColumn(QStringView line) {
    const qsizetype tab = line.indexOf(u'\t');
    return tab < 0 ? line : line.first(tab);
}

PlaylistEntry columnEntry(const PlaylistHeader& header, QStringView line) {
    const auto name = behindColumns(line, header.nameColumn - 1);
    if (header.locationColumnSkip < 0)
        return {.name = name ? nameFrom(firstColumn(*name)) : QString(), .location = {}};
    const auto location = behindColumns(line, header.locationColumnSkip);
    if (!name || !location)
        return {};
    return {.name = nameFrom(firstColumn(*name)),
            .location = (header.locationIsLast ? *location : firstColumn(*location)).toString()};
}

bool hasDrive(const QString& path) {
    return path.indexOf(u':') == 1 && path[0].isLetter();
}

// Where a path of a playlist in `folder` leads. Absolute is, wherever the playlist came from, what
// begins with a drive or a separator or is an address.
QString located(const QString& path, const QString& folder) {
    const bool isRooted = path.startsWith(u'/') || path.startsWith(u'\\');
    if (!isRooted)
        return hasDrive(path) || path.contains(u"://") ? path : folder + path;
    // A root without a drive is that of the playlist's own drive, unless it names a share.
    const bool isShare = path.startsWith(uR"(\\)"_s);
    return isShare || !hasDrive(folder) ? path : folder.left(2) + path;
}

PlaylistEntry extendedEntry(QStringView information, std::optional<QStringView> path,
                            const QString& folder) {
    PlaylistEntry entry;
    const qsizetype comma = information.indexOf(u',');
    if (comma >= 0)
        entry.name = nameFrom(information.sliced(comma + 1));
    if (path)
        entry.location = located(path->toString(), folder);
    return entry;
}

}  // namespace

QString decodePlaylist(QByteArrayView bytes) {
    // Only the first byte order mark is one; another behind it is text.
    constexpr auto Flags =
        QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom;
    for (const Mark& mark : Marks)
        if (bytes.startsWith(mark.bytes))
            return QStringDecoder(mark.encoding, Flags)(bytes.sliced(mark.bytes.size()));
    QStringDecoder utf8(QStringDecoder::Utf8, Flags);
    const QString text = utf8(bytes);
    return utf8.hasError() ? fromCodePage(bytes) : text;
}

QStringView takeLine(QStringView& text) {
    qsizetype end = 0;
    while (end < text.size() && text[end] != u'\r' && text[end] != u'\n')
        ++end;
    const QStringView line = text.first(end);
    const bool isPair = text.sliced(end).startsWith(u"\r\n");
    text = text.sliced(std::min(text.size(), end + (isPair ? 2 : 1)));
    return line;
}

QList<QStringView> linesOf(QStringView text, qsizetype most) {
    QList<QStringView> lines;
    while (!text.isEmpty() && lines.size() < most)
        lines.append(takeLine(text));
    return lines;
}

PlaylistHeader parsePlaylistHeader(QStringView line) {
    if (!line.contains(u'\t'))
        return {.playlistFormat =
                    line.contains(u".mp3") ? PlaylistFormat::m3u : PlaylistFormat::invalid};
    const QStringView first = firstColumn(line);
    if (first.contains(u"Album"))
        return {.playlistFormat = PlaylistFormat::tabbed,
                .nameColumn = TabbedNameColumn,
                .locationColumnSkip = TabbedLocationSkip};
    const qsizetype name = line.indexOf(u"Name"), location = line.indexOf(u"Location");
    // The path may stand in the first column, before the name.
    if (first.contains(u"Name") || (first.contains(u"Location") && name >= 0)) {
        PlaylistHeader header{.playlistFormat = PlaylistFormat::itunes,
                              .nameColumn = int(line.first(name).count(u'\t')) + 1};
        if (location >= 0)
            header.locationColumnSkip = int(line.first(location).count(u'\t'));
        header.locationIsLast = header.locationColumnSkip >= header.nameColumn - 1;
        return header;
    }
    if (first.contains(u"#EXT"))
        return {.playlistFormat = PlaylistFormat::extm3u};
    return {};
}

qsizetype playlistEntries(PlaylistFormat format, qsizetype lines) {
    switch (format) {
        case PlaylistFormat::tabbed:
        case PlaylistFormat::itunes:
        case PlaylistFormat::m3u:
            return lines - 1;
        case PlaylistFormat::extm3u:
            return lines / 2;
        case PlaylistFormat::invalid:
            break;
    }
    return 0;
}

PlaylistEntry parsePlaylistEntry(const PlaylistHeader& header, const QList<QStringView>& lines,
                                 qsizetype index, const QString& folder) {
    Q_ASSERT(index >= 0 && index < playlistEntries(header.playlistFormat, lines.size()));
    switch (header.playlistFormat) {
        case PlaylistFormat::tabbed:
        case PlaylistFormat::itunes:
            return columnEntry(header, lines[index + 1]);
        case PlaylistFormat::extm3u: {
            const qsizetype line = 1 + 2 * index;
            std::optional<QStringView> path;
            if (line + 1 < lines.size())
                path = lines[line + 1];
            return extendedEntry(lines[line], path, folder);
        }
        case PlaylistFormat::m3u:
            return {.name = {}, .location = lines[index].toString()};
        case PlaylistFormat::invalid:
            break;
    }
    return {};
}

}  // namespace tessaly
