#pragma once

#include <QString>
#include <exception>

namespace tessaly {

/// The one failure that the core throws: what the operator will read, in three parts.
///
/// `number` is the program's own error number (see error_numbers.h) or, for a failure that
/// the operating system reported, the system's own code; `source` names who reported it, always
/// "Tessaly" here; `description` is one sentence that names the file it is about.
class TessalyError : public std::exception {
 public:
    TessalyError(int errorNumber, QString sentence)
        : number(errorNumber), description(std::move(sentence)), text_(description.toUtf8()) {}

    const char* what() const noexcept override { return text_.constData(); }

    int number;
    QString source = QStringLiteral("Tessaly");
    QString description;

 private:
    QByteArray text_;
};

/// A failure reported by the operating system: its own code, and its message behind the native
/// form of `path`.
TessalyError systemError(int code, const QString& path);

/// As above for the calling thread's last error (errno, or GetLastError on Windows). Call it
/// straight after the call that failed.
TessalyError lastSystemError(const QString& path);

}  // namespace tessaly
