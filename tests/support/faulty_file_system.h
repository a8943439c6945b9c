#pragma once

#include <QFileInfo>
#include <functional>

#include "platform/error.h"
#include "platform/local_file_system.h"

namespace tessaly::test {

/// What the end of a killed process is made of: nothing that the program catches.
struct Killed {};

/// The machine's files, each operation on which can be made to fail. Operations that throw are
/// counted and noted as "create tmp.bin", "read 0001.mp3", ... in the order in which they come.
/// A write that fails has written half of its bytes.
class FaultyFileSystem : public LocalFileSystem {
 public:
    static constexpr int ErrorNumber = 5;

    int failAt = -1;         ///< number of the operation that fails, from 0
    bool isKill = false;     ///< it is Killed that is thrown
    bool toDevice = true;    ///< false: the system's cache will do, for tests that make many cards
    QStringList operations;  ///< what was done so far, the failed one included
    std::function<void()> onOperation = [] {};
    std::function<bool(const QString& operation)> failWhen = [](const QString&) { return false; };
    /// Changes what a file on the card reads as: gets its name and a block.
    std::function<QByteArray(const QString& name, QByteArrayView block)> onRead;

    QList<FolderEntry> entries(const QString& folder) const override {
        const_cast<FaultyFileSystem*>(this)->count("list", folder);
        return LocalFileSystem::entries(folder);
    }
    void removeFile(const QString& path) override {
        count("remove", path);
        LocalFileSystem::removeFile(path);
    }
    void removeFolder(const QString& path) override {
        count("rmdir", path);
        LocalFileSystem::removeFolder(path);
    }
    std::unique_ptr<InputFile> openForReading(const QString& path, ReadMode mode) override {
        count(mode == ReadMode::PastCache ? "reopen" : "open", path);
        return std::make_unique<FaultyInput>(
            *this, path, LocalFileSystem::openForReading(path, toDevice ? mode : ReadMode::Normal),
            mode == ReadMode::PastCache);
    }
    std::unique_ptr<OutputFile> create(const QString& path) override {
        count("create", path);
        return std::make_unique<FaultyOutput>(*this, path, LocalFileSystem::create(path));
    }
    void replaceFile(const QString& path, QByteArrayView bytes) override {
        count("replace", path);
        LocalFileSystem::replaceFile(path, bytes);
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
        const QString operation =
            QString(what) + ' ' + QFileInfo(path.endsWith('/') ? path.chopped(1) : path).fileName();
        operations.append(operation);
        onOperation();
        const bool isDue = operations.size() - 1 == failAt || failWhen(operation);
        if (isDue && isKill)
            throw Killed();
        if (isDue)
            throw TessalyError(ErrorNumber, path + ": failed on purpose");
    }

    class FaultyInput : public InputFile {
     public:
        FaultyInput(FaultyFileSystem& owner, QString path, std::unique_ptr<InputFile> file,
                    bool readBack)
            : owner_(owner), path_(std::move(path)), file_(std::move(file)), readBack_(readBack) {}
        QByteArrayView nextBlock() override {
            owner_.count(readBack_ ? "reread" : "read", path_);
            const QByteArrayView block = file_->nextBlock();
            if (!readBack_ || !owner_.onRead)
                return block;
            changed_ = owner_.onRead(QFileInfo(path_).fileName(), block);
            return changed_;
        }
        bool isPastCache() const override { return file_->isPastCache(); }
        QDateTime modificationTime() const override { return file_->modificationTime(); }

     private:
        FaultyFileSystem& owner_;
        QString path_;
        std::unique_ptr<InputFile> file_;
        bool readBack_;
        QByteArray changed_;
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
