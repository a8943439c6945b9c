// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QList>
#include <QString>
#include <functional>
#include <memory>

struct mpg123_handle_struct;

namespace tessaly {

class InputFile;

/// How samples are laid out, in the words of libmpg123 and libout123.
struct SampleFormat {
    long rate = 0;     ///< a second and channel
    int channels = 0;  ///< 1 or 2
    int encoding = 0;  ///< one of MPG123_ENC_..., or several where there is a choice

    bool operator==(const SampleFormat&) const = default;
};

/// Decodes one MP3 file from its beginning to its end. Files may hold anything; memory stays
/// bounded, and so does the way that is looked through for the next sound.
class Mp3Decoder {
 public:
    /// The file's samples come in one of `formats`; what lies between is converted. `goesOn` is
    /// asked at every read: when it is false, the file ends there. Throws TessalyError where there
    /// is no file that can be read.
    Mp3Decoder(const QString& path, const QList<SampleFormat>& formats,
               std::function<bool()> goesOn);
    ~Mp3Decoder();

    /// The samples of the next frame, empty at the end; valid until the next call. `format()` may
    /// be another one afterwards.
    QByteArrayView next();

    SampleFormat format() const { return format_; }

    /// Seconds that were decoded, and those of the whole file as far as it tells, 0 if it does not.
    double seconds() const;
    double length() const;

    /// Why the file ended, to follow a colon; empty when all is well, or when it was told to end.
    QString problem() const { return problem_; }

 private:
    struct Close {
        void operator()(mpg123_handle_struct* handle) const;
    };
    qint64 read(char* to, qint64 count);
    void end(bool isBroken);

    const std::function<bool()> goesOn_;
    std::unique_ptr<InputFile> file_;
    QByteArrayView block_;  // what was read of the file and not yet decoded
    QString problem_;
    SampleFormat format_;
    bool hasSound_ = false;
    std::unique_ptr<mpg123_handle_struct, Close> handle_;
};

}  // namespace tessaly
