// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>
#include <QString>
#include <QStringList>
#include <memory>

#include "app/prompts.h"

class QSettings;

namespace tessaly {

/// What the window remembers from one start to the next, in an INI file. Nothing hangs on it: a
/// file that is missing or damaged is made anew without a word, and where none can be, nothing is
/// remembered. It is written soon after a change, and only then.
class Remembered {
 public:
    explicit Remembered(const QString& file);
    ~Remembered();

    /// Where the window stood, and its page in front.
    struct Window {
        QRect place;  ///< without its frame, as it is while not maximized; null: not known
        bool isMaximized = false;
        int page = 0;
    };
    Window window() const;
    void keepWindow(const Window& window);

    /// The folder in which the last dialog of that kind ended; empty: none is known.
    QString folder(FileKind kind) const;
    void keepFolder(FileKind kind, const QString& folder);

    static constexpr int RecentProjects = 10;
    /// The project files that were opened or saved last, newest first, so many at most.
    QStringList recentProjects() const;
    void addRecentProject(const QString& file);
    void clearRecentProjects();

 private:
    void keep(const QString& key, const QVariant& value);

    std::unique_ptr<QSettings> settings_;  // null: nothing can be remembered
};

/// `place` on one of the screens, whose `available` parts are told: on that which shows most of it,
/// else on the first, moved and made smaller as far as it must be.
QRect placeOnScreen(const QRect& place, const QList<QRect>& available);

/// The boxes of other Prompts, but that each file dialog starts where the last one of its kind
/// ended, if that is still there.
class RememberingPrompts : public Prompts {
 public:
    RememberingPrompts(Prompts& prompts, Remembered& remembered)
        : prompts_(prompts), remembered_(remembered) {}

    void tell(const Message& message) override { prompts_.tell(message); }
    bool ask(const Message& question, bool defaultsToNo) override {
        return prompts_.ask(question, defaultsToNo);
    }
    bool offer(const Message& message, const QString& action) override {
        return prompts_.offer(message, action);
    }
    QString openFile(const FileRequest& request) override;
    QStringList openFiles(const FileRequest& request) override;
    QString saveFile(const FileRequest& request) override;
    QString pickFolder(const QString& caption, const QString& start, FileKind kind) override;
    /// Under the name of the card's drive may be somebody's disk next time: that is not remembered.
    QString pickDrive(const Drives& drives, const QString& current) override {
        return prompts_.pickDrive(drives, current);
    }
    int pickLine(const QString& caption, const QStringList& lines) override {
        return prompts_.pickLine(caption, lines);
    }
    QString inputText(const QString& prompt, const QString& initial, int limit) override {
        return prompts_.inputText(prompt, initial, limit);
    }
    bool openDocument(const QString& file) override { return prompts_.openDocument(file); }
    void beep() override { prompts_.beep(); }

 private:
    FileRequest begun(FileRequest request) const;
    QString startOf(FileKind kind, const QString& otherwise) const;
    void endedAt(FileKind kind, const QString& file);

    Prompts& prompts_;
    Remembered& remembered_;
};

}  // namespace tessaly
