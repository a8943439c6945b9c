// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <fstream>

namespace tessaly {

/// A file that is read here and there. It never throws: what cannot be read is not there.
class SeekableFile {
 public:
    /// Opens the regular file at `path`, links followed. Of a pipe nothing, as opening it would
    /// wait for its other end.
    explicit SeekableFile(const QString& path);

    /// Whether there is such a file and it may be read; an empty one, too.
    bool isOpen() const { return size_ >= 0; }

    /// In bytes, when it was opened; -1 when it is not open.
    qint64 size() const { return size_; }

    /// The bytes from there on, fewer where the file ends or fails.
    QByteArray read(qint64 from, qint64 bytes);

    /// The same into `to`; returns how many were read.
    qint64 readInto(char* to, qint64 from, qint64 bytes);

 private:
    std::ifstream file_;
    qint64 size_ = -1;
    qint64 place_ = 0;
};

}  // namespace tessaly
