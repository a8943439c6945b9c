// SPDX-License-Identifier: GPL-3.0-or-later
#include "sound/sound_book.h"

#include <xxhash.h>

#include <QDataStream>
#include <QDir>
#include <QFileInfo>
#include <QMutexLocker>
#include <algorithm>
#include <utility>

#include "platform/error.h"
#include "platform/local_file_system.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

constexpr quint32 Magic = 0x54534233;  // TSB3; another number when the form or a look changes
constexpr qint64 MostBytes = qint64(200) * 1024 * 1024;

QDataStream& operator<<(QDataStream& out, const QuickLook& look) {
    return out << quint8(look.finding) << look.looksLike << look.layer << look.kbps << look.hz
               << look.channels << look.isVariable << look.milliseconds << look.there;
}

QDataStream& operator>>(QDataStream& in, QuickLook& look) {
    quint8 finding = 0;
    in >> finding >> look.looksLike >> look.layer >> look.kbps >> look.hz >> look.channels >>
        look.isVariable >> look.milliseconds >> look.there;
    if (finding > quint8(QuickLook::Finding::EndsInFrame))
        in.setStatus(QDataStream::ReadCorruptData);
    look.finding = QuickLook::Finding(finding);
    return in;
}

QDataStream& operator<<(QDataStream& out, const WholeLook& look) {
    out << look.milliseconds << look.breakCount << look.changeAt << look.silenceAtStart
        << look.silenceAtEnd << look.loudness << look.truePeak << qint32(look.breaks.size());
    for (const WholeLook::Break& one : look.breaks)
        out << one.at << one.bytes;
    return out;
}

QDataStream& operator>>(QDataStream& in, WholeLook& look) {
    qint32 breaks = 0;
    in >> look.milliseconds >> look.breakCount >> look.changeAt >> look.silenceAtStart >>
        look.silenceAtEnd >> look.loudness >> look.truePeak >> breaks;
    if (breaks < 0 || breaks > WholeLook::MostBreaks)
        in.setStatus(QDataStream::ReadCorruptData);
    for (qint32 i = 0; i < breaks && in.status() == QDataStream::Ok; ++i) {
        WholeLook::Break one;
        in >> one.at >> one.bytes;
        look.breaks.append(one);
    }
    return in;
}

}  // namespace

SoundBook::Key::Key(const QString& path) {
    const XXH128_hash_t hash = XXH3_128bits(path.constData(), size_t(path.size()) * sizeof(QChar));
    high = hash.high64;
    low = hash.low64;
}

QString soundBookFile() {
    return pathIn(userCacheFolder(), u"sounds"_s);
}

SoundBook::SoundBook(const QString& file) : file_(file) {
    LocalFileSystem files;
    if (file_.isEmpty() || !files.fileSize(file_))
        return;
    QByteArray bytes;
    try {
        bytes = readWholeFile(files, file_, MostBytes);
    } catch (const TessalyError&) {
        return;
    }
    QDataStream in(bytes);
    quint32 magic = 0, count = 0;
    in >> magic >> count;
    if (magic != Magic || count > MostFiles)
        return;
    for (quint32 i = 0; i < count; ++i) {
        Key path;
        Entry entry;
        bool isWhole = false;
        in >> path.high >> path.low >> entry.stamp.bytes >> entry.stamp.modified >> entry.used >>
            entry.sound.quick >> isWhole;
        if (isWhole) {
            WholeLook whole;
            in >> whole;
            entry.sound.whole = std::make_shared<const WholeLook>(whole);
        }
        if (in.status() != QDataStream::Ok)
            break;
        uses_ = std::max(uses_, entry.used);
        hasDecoded_ |= isWhole;
        entries_.insert(path, entry);
    }
    if (in.status() != QDataStream::Ok)
        entries_.clear();
}

std::optional<KnownSound> SoundBook::known(const QString& path, const FileStamp& stamp) const {
    const QMutexLocker lock(&mutex_);
    const auto entry = entries_.constFind(Key(path));
    if (entry == entries_.constEnd() || entry->stamp != stamp)
        return {};
    entry->used = ++uses_;
    return entry->sound;
}

std::optional<SoundBook::Remembered> SoundBook::remembered(const QString& path) const {
    const QMutexLocker lock(&mutex_);
    const auto entry = entries_.constFind(Key(path));
    return entry == entries_.constEnd() ? std::nullopt
                                        : std::optional(Remembered{entry->stamp, entry->sound});
}

bool SoundBook::hasDecoded() const {
    const QMutexLocker lock(&mutex_);
    return hasDecoded_;
}

QuickLook SoundBook::quick(const QString& path, const FileStamp& stamp) {
    if (const auto sound = known(path, stamp))
        return sound->quick;
    const QuickLook look = quickLook(path);  // without the lock: it takes its time
    put(path, {stamp, {look, {}}});
    return look;
}

void SoundBook::keep(const QString& path, const FileStamp& stamp, const WholeLook& whole) {
    put(path, {stamp, {quick(path, stamp), std::make_shared<const WholeLook>(whole)}});
}

void SoundBook::put(const QString& path, Entry entry) {
    const QMutexLocker lock(&mutex_);
    entry.used = ++uses_;
    hasNews_ = true;
    hasDecoded_ |= entry.sound.whole != nullptr;
    entries_.insert(Key(path), entry);
    if (entries_.size() <= MostFiles)
        return;
    QList<qint64> used;
    used.reserve(entries_.size());
    for (const Entry& one : std::as_const(entries_))
        used.append(one.used);
    const auto middle = used.begin() + used.size() / 2;
    std::nth_element(used.begin(), middle, used.end());
    entries_.removeIf([last = *middle](const auto& one) { return one.value().used < last; });
}

void SoundBook::save() {
    QByteArray bytes;
    {
        const QMutexLocker lock(&mutex_);
        if (file_.isEmpty() || !std::exchange(hasNews_, false))
            return;
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out << Magic << quint32(entries_.size());
        for (auto entry = entries_.constBegin(); entry != entries_.constEnd(); ++entry) {
            const KnownSound& sound = entry->sound;
            out << entry.key().high << entry.key().low << entry->stamp.bytes
                << entry->stamp.modified << entry->used << sound.quick << (sound.whole != nullptr);
            if (sound.whole)
                out << *sound.whole;
        }
    }
    try {
        QDir().mkpath(QFileInfo(file_).path());
        LocalFileSystem().replaceFile(file_, bytes);
    } catch (const TessalyError&) {
        // It is a cache.
    }
}

}  // namespace tessaly
