// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <functional>

#include "platform/error.h"
#include "platform/local_file_system.h"
#include "platform/paths.h"

namespace tessaly::test {

/// What the end of a killed process is made of: nothing that the program catches.
struct Killed {};

/// The machine's files, each operation on which can be made to fail. Operations that throw are
/// counted and noted as "create tmp.bin", "read 0001.mp3", ... in the order in which they come.
/// A write that fails has written half of its bytes.
class FaultyFileSystem : public LocalFileSystem {
 public:
    static constexpr int ErrorNumber = 5;
    static constexpr int NoSuchFile = 2;

    int failAt = -1;         ///< number of the operation that fails, from 0
    bool isKill = false;     ///< it is Killed that is thrown
    bool toDevice = true;    ///< false: the system's cache will do, for tests that make many cards
    QStringList operations;  ///< what was done so far, the failed one included
    std::function<void()> onOperation = [] {};
    std::function<bool(const QString& operation)> failWhen = [](const QString&) { return false; };
    /// A bad card: gets the path of a file that is read past the cache and its content, and says
    /// what is read instead; nothing for a file that is gone.
    std::function<std::optional<QByteArray>(const QString& path, const QByteArray& content)>
        readsBackAs;
    mutable QHash<QString, int> sizesAsked;  ///< how often, by path

    std::optional<FileStamp> stamp(const QString& path) const override {
        ++sizesAsked[path];
        return LocalFileSystem::stamp(path);
    }
    QList<FolderEntry> entries(const QString& folder) const override {
        const_cast<FaultyFileSystem*>(this)->count("list", folder);
        return LocalFileSystem::entries(folder);
    }
    void makeFolder(const QString& path) override {
        count("mkdir", path);
        LocalFileSystem::makeFolder(path);
    }
    void removeFile(const QString& path) override {
        count("remove", path);
        LocalFileSystem::removeFile(path);
    }
    std::unique_ptr<OpenFolder> openFolder(const QString& path) override {
        count("hold", path);
        return std::make_unique<FaultyFolder>(*this, path, LocalFileSystem::openFolder(path));
    }
    std::unique_ptr<InputFile> openForReading(const QString& path, ReadMode mode) override {
        const bool isReadBack = mode == ReadMode::PastCache;
        count(isReadBack ? "reopen" : "open", path);
        auto input = std::make_unique<FaultyInput>(
            *this, path, LocalFileSystem::openForReading(path, toDevice ? mode : ReadMode::Normal),
            isReadBack);
        if (isReadBack && readsBackAs) {
            LocalFileSystem plain;
            const auto content = readsBackAs(path, readWholeFile(plain, path, 1 << 30));
            if (!content)
                throw systemError(NoSuchFile, path);
            input->replace(*content);
        }
        return input;
    }
    std::unique_ptr<OutputFile> create(const QString& path) override {
        count("create", path);
        return std::make_unique<FaultyOutput>(*this, path, LocalFileSystem::create(path));
    }
    void replaceFile(const QString& path, QByteArrayView bytes, Links links) override {
        count("replace", path);
        LocalFileSystem::replaceFile(path, bytes, links);
    }
    void settle(const QString& path) override {
        count("settle", path);
        if (toDevice)
            LocalFileSystem::settle(path);
    }
    void flushVolume(const QString& path) override {
        count("flush", path);
        if (toDevice)
            LocalFileSystem::flushVolume(path);
    }

 private:
    void count(const char* what, const QString& path) {
        const bool isRoot = path.endsWith('/') || path.endsWith('\\');
        const QString operation = QString(what) + ' ' + lastNameOf(isRoot ? path.chopped(1) : path);
        operations.append(operation);
        onOperation();
        const bool isDue = operations.size() - 1 == failAt || failWhen(operation);
        if (isDue && isKill)
            throw Killed();
        if (isDue)
            throw TessalyError(ErrorNumber, path + ": failed on purpose");
    }

    class FaultyFolder : public OpenFolder {
     public:
        FaultyFolder(FaultyFileSystem& owner, QString path, std::unique_ptr<OpenFolder> folder)
            : owner_(owner), path_(std::move(path)), folder_(std::move(folder)) {}
        FileIdentity identity() const override { return folder_->identity(); }
        QList<FolderEntry> entries(const QString& inside) const override {
            owner_.count("list", inside.isEmpty() ? path_ : inside);
            return folder_->entries(inside);
        }
        void removeFile(const QString& inside) override {
            owner_.count("remove", inside);
            folder_->removeFile(inside);
        }
        void removeFolder(const QString& inside) override {
            owner_.count("rmdir", inside);
            folder_->removeFolder(inside);
        }
        std::unique_ptr<OutputFile> create(const QString& name) override {
            owner_.count("create", name);
            return std::make_unique<FaultyOutput>(owner_, pathIn(path_, name),
                                                  folder_->create(name));
        }

     private:
        FaultyFileSystem& owner_;
        QString path_;
        std::unique_ptr<OpenFolder> folder_;
    };

    class FaultyInput : public InputFile {
     public:
        FaultyInput(FaultyFileSystem& owner, QString path, std::unique_ptr<InputFile> file,
                    bool readBack)
            : owner_(owner), path_(std::move(path)), file_(std::move(file)), readBack_(readBack) {}
        QByteArrayView nextBlock() override {
            owner_.count(readBack_ ? "reread" : "read", path_);
            if (!instead_)
                return file_->nextBlock();
            const qsizetype start =
                std::exchange(at_, std::min<qsizetype>(at_ + BlockBytes, instead_->size()));
            return QByteArrayView(*instead_).sliced(start, at_ - start);
        }
        void replace(const QByteArray& content) { instead_ = content; }
        bool isPastCache() const override { return file_->isPastCache(); }
        QDateTime modificationTime() const override { return file_->modificationTime(); }

     private:
        FaultyFileSystem& owner_;
        QString path_;
        std::unique_ptr<InputFile> file_;
        bool readBack_;
        std::optional<QByteArray> instead_;
        qsizetype at_ = 0;
    };

    class FaultyOutput : public OutputFile {
     public:
        FaultyOutput(FaultyFileSystem& owner, QString path, std::unique_ptr<OutputFile> file)
            : owner_(owner), path_(std::move(path)), file_(std::move(file)) {}
        void write(QByteArrayView bytes) override {
            try {
                owner_.count("write", path_);
            } catch (...) {
                file_->write(bytes.first(bytes.size() / 2));
                throw;
            }
            file_->write(bytes);
        }
        void setModificationTime(const QDateTime& time) override {
            file_->setModificationTime(time);
        }
        void close() override {
            owner_.count("close", path_);
            file_->close();
        }

     private:
        FaultyFileSystem& owner_;
        QString path_;
        std::unique_ptr<OutputFile> file_;
    };
};

}  // namespace tessaly::test
