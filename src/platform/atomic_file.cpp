#include "platform/atomic_file.h"

#include <QFileInfo>
#include <QRandomGenerator>

namespace tessaly {

namespace {

// Nobody names a file like that by hand: it may be removed once nobody writes it.
constexpr QStringView Ending = u".tessaly-new";
constexpr qsizetype RandomLetters = 6;
constexpr QStringView Letters = u"abcdefghijklmnopqrstuvwxyz0123456789";

}  // namespace

QString replacedFile(const QString& path, FileSystem::Links links) {
    const QFileInfo file(path);
    if (links == FileSystem::Links::Refuse || !file.isSymLink())
        return path;
    return file.exists() ? file.canonicalFilePath() : file.symLinkTarget();
}

QString temporaryPath(const QString& target) {
    QString path = target + '.';
    for (qsizetype i = 0; i < RandomLetters; ++i)
        path += Letters[QRandomGenerator::global()->bounded(int(Letters.size()))];
    return path.append(Ending);
}

bool isTemporaryName(const QString& name) {
    const qsizetype dot = name.size() - Ending.size() - RandomLetters - 1;
    if (!name.endsWith(Ending) || dot < 1 || name[dot] != '.')
        return false;
    for (qsizetype i = 1; i <= RandomLetters; ++i)
        if (!Letters.contains(name[dot + i]))
            return false;
    return true;
}

}  // namespace tessaly
