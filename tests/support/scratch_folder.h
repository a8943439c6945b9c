// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>

#include <QByteArray>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QRandomGenerator>
#include <QString>
#include <filesystem>
#include <ostream>

#include "platform/paths.h"

// GoogleTest prints what it compares.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QByteArray& bytes, std::ostream* out) {
    *out << bytes.left(400).toHex(' ').toStdString();
}
inline void PrintTo(const QStringList& list, std::ostream* out) {
    *out << '[' << list.join(" | ").toStdString() << ']';
}

namespace tessaly::test {

/// A folder of the test's own, gone with it. Its name holds a blank and an umlaut, as people's do.
class ScratchFolder {
 public:
    // Digits are equally wide: so a click on a path falls on the same letter in every run.
    ScratchFolder() {
        do
            folder_ = QDir::tempPath() +
                      QString("/tessaly tést %1")
                          .arg(QRandomGenerator::global()->bounded(1'000'000), 6, 10, QChar('0'));
        while (!QDir().mkdir(folder_) && QFileInfo::exists(folder_));
        EXPECT_TRUE(QFileInfo(folder_).isDir()) << folder_.toStdString();
    }
    ~ScratchFolder() { QDir(folder_).removeRecursively(); }
    Q_DISABLE_COPY(ScratchFolder)

    /// With the platform's separators, as the program says it.
    QString path(const QString& name = {}) const {
        return QDir::toNativeSeparators(name.isEmpty() ? folder_ : folder_ + '/' + name);
    }

    /// Makes a file, and the folders above it, and returns its path.
    QString write(const QString& name, const QByteArray& bytes) const {
        const QString file = path(name);
        QDir().mkpath(QFileInfo(file).path());
        QFile out(file);
        EXPECT_TRUE(out.open(QIODevice::WriteOnly)) << file.toStdString();
        out.write(bytes);
        return file;
    }

    /// Makes a link; false where the system has none to make.
    bool link(const QString& target, const QString& name) const {
        const auto from = QFileInfo(target).filesystemFilePath();
        const auto to = QFileInfo(path(name)).filesystemFilePath();
        std::error_code failed;
        if (QFileInfo(target).isDir())
            std::filesystem::create_directory_symlink(from, to, failed);
        else
            std::filesystem::create_symlink(from, to, failed);
        return !failed;
    }

    QString makeFolder(const QString& name) const {
        QDir().mkpath(path(name));
        return path(name);
    }

    QByteArray read(const QString& name) const {
        QFile in(path(name));
        EXPECT_TRUE(in.open(QIODevice::ReadOnly)) << path(name).toStdString();
        return in.readAll();
    }

    /// Everything below a folder: path inside it -> content (links: what they point at).
    QMap<QString, QByteArray> content(const QString& name) const {
        QMap<QString, QByteArray> found;
        const QString root = path(name);
        QDirIterator it(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                        QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QFileInfo info(it.next());
            QByteArray bytes = "folder";
            if (info.isSymLink())
                bytes = info.symLinkTarget().toUtf8();
            else if (info.isFile()) {
                QFile in(info.filePath());
                EXPECT_TRUE(in.open(QIODevice::ReadOnly));
                bytes = in.readAll();
            }
            found.insert(info.filePath().mid(root.size() + 1), bytes);
        }
        return found;
    }

 private:
    QString folder_;
};

}  // namespace tessaly::test
