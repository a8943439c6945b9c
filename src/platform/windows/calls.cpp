#include "platform/windows/calls.h"

#include <QDir>
#include <algorithm>

namespace tessaly {

namespace {

const QString Unlimited = QStringLiteral(R"(\\?\)");
const QString UnlimitedShare = QStringLiteral(R"(\\?\UNC\)");

QString absoluteNative(const QString& path) {
    const QString full = QDir::toNativeSeparators(QDir::cleanPath(QDir().absoluteFilePath(path)));
    // A bare "E:" would mean the current folder of that drive, not its root.
    return full.endsWith(':') ? full + '\\' : full;
}

}  // namespace

std::wstring systemPath(const QString& path) {
    if (path.isEmpty())
        return {};
    const QString full = absoluteNative(path);
    if (full.startsWith(Unlimited) || full.startsWith(R"(\\.\)"))
        return full.toStdWString();
    if (full.startsWith(R"(\\)"))
        return (UnlimitedShare + full.mid(2)).toStdWString();
    return (Unlimited + full).toStdWString();
}

QString volumeRoot(const QString& path) {
    const std::wstring full = systemPath(path);
    std::wstring buffer(std::max<size_t>(full.size() + 2, MAX_PATH + 1), L'\0');
    if (!::GetVolumePathNameW(full.c_str(), buffer.data(), DWORD(buffer.size())))
        return {};
    const QString root = QString::fromWCharArray(buffer.c_str());
    if (root.startsWith(UnlimitedShare))
        return R"(\\)" + root.mid(UnlimitedShare.size());
    return root.startsWith(Unlimited) ? root.mid(Unlimited.size()) : root;
}

}  // namespace tessaly
