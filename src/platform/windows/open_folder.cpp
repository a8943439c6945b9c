// SPDX-License-Identifier: GPL-3.0-or-later
// A folder that is held open, so that neither it nor a folder on the way into it can be exchanged.
#include <QDir>
#include <algorithm>
#include <vector>

#include "platform/local_file_system.h"
#include "platform/paths.h"
#include "platform/windows/files.h"

namespace tessaly {

namespace {

// A folder that is open without FILE_SHARE_DELETE can be neither renamed nor removed.
HANDLE pinFolder(const std::wstring& name, DWORD flags) {
    return ::CreateFileW(name.c_str(), FILE_LIST_DIRECTORY, FILE_SHARE_READ | FILE_SHARE_WRITE,
                         nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | flags, nullptr);
}

class WindowsOpenFolder : public OpenFolder {
 public:
    explicit WindowsOpenFolder(const QString& path)
        : path_(path), folder_(pinFolder(systemPath(path), 0)) {
        if (!folder_.isOpen())
            throw lastSystemError(path_);
        // The final name has no links in it: whoever changes one later does not redirect us.
        std::wstring name(MaxPathLength, L'\0');
        const DWORD length =
            ::GetFinalPathNameByHandleW(folder_.get(), name.data(), DWORD(name.size()), 0);
        const bool isKnown = length > 0 && length < name.size();
        name_ = withoutLastSeparator(isKnown ? name.substr(0, length) : systemPath(path_));
        if (!isKnown)
            pinWayFromRoot();
    }

    FileIdentity identity() const override {
        const NoDiskPrompt quiet;
        BY_HANDLE_FILE_INFORMATION information{};
        if (!::GetFileInformationByHandle(folder_.get(), &information))
            throw lastSystemError(path_);
        return toIdentity(information);
    }

    QList<FolderEntry> entries(const QString& inside) const override {
        const NoDiskPrompt quiet;
        const auto pinned = pinWayTo(inside);
        return listFolder(nameOf(inside), pathOf(inside));
    }

    void removeFile(const QString& inside) override {
        const NoDiskPrompt quiet;
        const auto pinned = pinWayTo(above(inside));
        removeNamed(nameOf(inside), pathOf(inside));
    }

    void removeFolder(const QString& inside) override {
        const NoDiskPrompt quiet;
        const auto pinned = pinWayTo(above(inside));
        const std::wstring name = nameOf(inside);
        clearAttributes(name, ::GetFileAttributesW(name.c_str()), FILE_ATTRIBUTE_READONLY);
        if (!::RemoveDirectoryW(name.c_str()))
            throw lastSystemError(pathOf(inside));
    }

    std::unique_ptr<OutputFile> create(const QString& name) override {
        return createOutputFile(nameOf(name), pathOf(name));
    }

 private:
    static constexpr size_t MaxPathLength = 32768;

    static QString above(const QString& inside) {
        return inside.left(std::max<qsizetype>(inside.lastIndexOf(u'/'), 0));
    }
    QString pathOf(const QString& inside) const {
        return inside.isEmpty() ? path_ : pathIn(path_, QDir::toNativeSeparators(inside));
    }
    std::wstring nameOf(const QString& inside) const {
        return inside.isEmpty() ? name_
                                : name_ + L'\\' + QDir::toNativeSeparators(inside).toStdWString();
    }

    // Opens every folder on the way to `inside` without FILE_SHARE_DELETE, so that none can be
    // exchanged for a link while it is used.
    std::vector<Handle> pinWayTo(const QString& inside) const {
        std::vector<Handle> pinned;
        QString way;
        for (const QString& name : inside.split(u'/', Qt::SkipEmptyParts)) {
            if (name == u"..")
                throw systemError(ERROR_INVALID_NAME, pathOf(inside));
            way += way.isEmpty() ? name : u'/' + name;
            pinned.push_back(pinNoLink(nameOf(way), pathOf(way)));
        }
        return pinned;
    }

    // Some drivers, as of RAM disks, know no final names. Then every folder of the given path is
    // held open, so that none can be renamed, and must be no link.
    void pinWayFromRoot() {
        const size_t root = systemPath(volumeRoot(path_)).size();
        for (size_t end = root; end < name_.size(); ++end) {
            end = std::min(name_.find(L'\\', end), name_.size());
            way_.push_back(pinNoLink(name_.substr(0, end), path_));
        }
    }

    static Handle pinNoLink(const std::wstring& name, const QString& path) {
        Handle folder(pinFolder(name, FILE_FLAG_OPEN_REPARSE_POINT));
        BY_HANDLE_FILE_INFORMATION information{};
        if (!folder.isOpen() || !::GetFileInformationByHandle(folder.get(), &information))
            throw lastSystemError(path);
        if (information.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT)
            throw linkInTheWay(path);
        return folder;
    }

    QString path_;
    Handle folder_;
    std::wstring name_;
    std::vector<Handle> way_;
};

}  // namespace

std::unique_ptr<OpenFolder> openFolderAt(const QString& path) {
    const NoDiskPrompt quiet;
    return std::make_unique<WindowsOpenFolder>(path);
}

}  // namespace tessaly
