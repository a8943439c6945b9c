// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/windows/files.h"

#include <QDir>
#include <algorithm>

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

const QString Unlimited = uR"(\\?\)"_s;
const QString UnlimitedShare = uR"(\\?\UNC\)"_s;

QString absoluteNative(const QString& path) {
    const QString full = QDir::toNativeSeparators(QDir::cleanPath(QDir().absoluteFilePath(path)));
    // A bare "E:" would mean the current folder of that drive, not its root.
    return full.endsWith(u':') ? full + u'\\' : full;
}

struct CloseSearch {
    void operator()(HANDLE search) const { ::FindClose(search); }
};

bool isDots(const wchar_t* name) {
    const std::wstring_view text(name);
    return text == L"." || text == L"..";
}

FolderEntry toEntry(const WIN32_FIND_DATAW& data) {
    // The tag stands in dwReserved0.
    const bool isLink = (data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) &&
                        (data.dwReserved0 == IO_REPARSE_TAG_SYMLINK ||
                         data.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT);
    const bool isFolder = !isLink && (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY);
    return {.name = QString::fromWCharArray(data.cFileName),
            .isFolder = isFolder,
            .isLink = isLink,
            .size = isLink || isFolder ? 0 : joined(data.nFileSizeHigh, data.nFileSizeLow)};
}

}  // namespace

std::wstring systemPath(const QString& path) {
    if (path.isEmpty())
        return {};
    const QString full = absoluteNative(path);
    if (full.startsWith(Unlimited) || full.startsWith(uR"(\\.\)"_s))
        return full.toStdWString();
    if (full.startsWith(uR"(\\)"_s))
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
        return uR"(\\)"_s + root.mid(UnlimitedShare.size());
    return root.startsWith(Unlimited) ? root.mid(Unlimited.size()) : root;
}

HANDLE openExisting(const QString& path, DWORD access, DWORD flags) {
    return ::CreateFileW(systemPath(path).c_str(), access, ShareAll, nullptr, OPEN_EXISTING, flags,
                         nullptr);
}

FileIdentity toIdentity(const BY_HANDLE_FILE_INFORMATION& information) {
    return {.volume = information.dwVolumeSerialNumber,
            .high = information.nFileIndexHigh,
            .low = information.nFileIndexLow};
}

std::wstring withoutLastSeparator(std::wstring path) {
    while (path.ends_with(L'\\'))
        path.pop_back();
    return path;
}

QList<FolderEntry> listFolder(const std::wstring& folder, const QString& path) {
    WIN32_FIND_DATAW data{};
    const HANDLE first =
        ::FindFirstFileExW((folder + LR"(\*)").c_str(), FindExInfoBasic, &data,
                           FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH);
    if (first == INVALID_HANDLE_VALUE) {
        // Only a root can be without even "." and "..".
        if (::GetLastError() == ERROR_FILE_NOT_FOUND)
            return {};
        throw lastSystemError(path);
    }
    const std::unique_ptr<void, CloseSearch> search(first);
    QList<FolderEntry> found;
    do {
        if (!isDots(data.cFileName))
            found.append(toEntry(data));
    } while (::FindNextFileW(search.get(), &data));
    if (::GetLastError() != ERROR_NO_MORE_FILES)
        throw lastSystemError(path);
    return found;
}

void clearAttributes(const std::wstring& name, DWORD attributes, DWORD unwanted) {
    if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & unwanted))
        return;
    const DWORD kept = attributes & ~unwanted;
    // Whether it worked shows in the call that it is for.
    ::SetFileAttributesW(name.c_str(), kept ? kept : FILE_ATTRIBUTE_NORMAL);
}

void removeNamed(const std::wstring& name, const QString& path) {
    const DWORD attributes = ::GetFileAttributesW(name.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        throw lastSystemError(path);
    clearAttributes(name, attributes, FILE_ATTRIBUTE_READONLY);
    // A link to a folder is a folder of its own kind; removing it leaves the target alone.
    constexpr DWORD FolderLink = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    const bool isFolderLink = (attributes & FolderLink) == FolderLink;
    if (!(isFolderLink ? ::RemoveDirectoryW(name.c_str()) : ::DeleteFileW(name.c_str())))
        throw lastSystemError(path);
}

}  // namespace tessaly
