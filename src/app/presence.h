// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QStringList>
#include <functional>
#include <memory>

namespace tessaly {

/// Finds out whether files and folders are there. A network that does not answer holds up whoever
/// asks it, for minutes: so each path is asked for on a thread of its own.
class Presence : public QObject {
    Q_OBJECT

 public:
    /// What asks for one path, and may take as long as it will.
    using Question = std::function<bool(const QString& path)>;

    explicit Presence(Question question = isOnDisk);
    ~Presence() override;

    /// Asks for all these paths anew, and waits up to so many milliseconds for their answers. A
    /// path that still owes an earlier one is not asked again, nor waited for.
    void ask(const QStringList& paths, int milliseconds);

    /// Whether a path was there when it was asked for last; false as long as it owes the answer.
    bool isThere(const QString& path) const;

 signals:
    /// An answer came, in time or later.
    void answered();

 private:
    static bool isOnDisk(const QString& path);

    struct Answers;
    const Question question_;
    const std::shared_ptr<Answers> answers_;  // which late threads write to when this is gone
};

}  // namespace tessaly
