// SPDX-License-Identifier: GPL-3.0-or-later
#include "card/pack.h"

#include <QDir>
#include <QElapsedTimer>
#include <algorithm>
#include <memory>

#include "card/file_copier.h"
#include "platform/error.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// Blocks from this size on are brought to the device at once: so the progress is true, and neither
// Cancel nor the end waits for what the system has gathered. With thousands of small ones that
// would take longer than all the copying.
constexpr qint64 SettledBytes = qint64(128) * 1024;

// One packing. It knows what it made, so that it takes back that and nothing else.
class PackRun {
 public:
    PackRun(FileSystem& files, const PackPlan& plan, const PackProgress& keepGoing)
        : files_(files), plan_(plan), keepGoing_(keepGoing) {}

    void run() {
        try {
            makeFolders();
            copyFiles();
            writeProject();
        } catch (const TessalyError& error) {
            throw TessalyError(error.number, asSentence(error.description) + takeBack());
        }
    }

 private:
    void makeFolders() {
        timer_.start();
        progress_.phase = RunPhase::Copy;
        progress_.trackFileCount = int(plan_.files.size());
        progress_.bytesTotal = plan_.bytes;
        for (const QString& path : plan_.newFolders) {
            files_.makeFolder(path);
            madeFolders_.append(path);
            advance(0);
        }
        folder_ = files_.openFolder(plan_.folder);
    }

    void copyFiles() {
        for (const PackedFile& file : plan_.files) {
            ++progress_.trackFile;
            progress_.fileName = file.name;
            advance(0);
            const QString path = pathOf(file.name);
            requireNothingAt(path);
            copyFile(files_, file.source, *folder_, file.name, [&](qint64 bytes) {
                if (bytes >= SettledBytes)
                    files_.settle(path);
                advance(bytes);
            });
            madeFiles_.append(file.name);
        }
    }

    void writeProject() {
        progress_.phase = RunPhase::Flush;
        progress_.bytesDone = progress_.bytesTotal = 0;
        advance(0);
        files_.flushVolume(plan_.folder);
        advance(0);
        requireNothingAt(plan_.projectFile);
        files_.replaceFile(plan_.projectFile, plan_.project, FileSystem::Links::Refuse);
    }

    QString pathOf(const QString& name) const {
        return QDir::toNativeSeparators(pathIn(plan_.folder, name));
    }

    // The folders are new or were empty: somebody else is at work in them, or this file system
    // takes two names for one.
    void requireNothingAt(const QString& path) const {
        if (files_.identity(path))
            throw TessalyError(error_number::BadTarget,
                               shownPath(path) + u": a file of this name has come up meanwhile."_s);
    }

    void advance(qint64 bytes) {
        progress_.bytesDone += bytes;
        // A source that grew meanwhile must not lead beyond the end.
        progress_.bytesTotal = std::max(progress_.bytesTotal, progress_.bytesDone);
        progress_.milliseconds = timer_.elapsed();
        if (!keepGoing_(progress_))
            throw TessalyError(error_number::Stopped, u"The copying was cancelled."_s);
    }

    static QString asSentence(const QString& text) {
        return text.endsWith(u'.') ? text : text + u'.';
    }

    // Removes what was made. Returns what to say of it, with a blank in front.
    QString takeBack() {
        bool isAll = true;
        progress_.phase = RunPhase::Erase;
        progress_.bytesDone = progress_.bytesTotal = 0;
        const auto attempt = [&](const auto& remove) {
            keepGoing_(progress_);
            try {
                remove();
            } catch (const TessalyError&) {
                isAll = false;  // the failure that led here is the one to report
            }
        };
        for (const QString& name : madeFiles_)
            attempt([&] { folder_->removeFile(name); });
        folder_.reset();  // a folder that is held open cannot be removed everywhere
        while (!madeFolders_.isEmpty())
            attempt([&] {
                const QString path = madeFolders_.takeLast(), name = lastNameOf(path);
                files_.openFolder(path.chopped(name.size()))->removeFolder(name);
            });
        return isAll ? u" What had been copied was removed again."_s
                     : u" What had been copied could not all be removed from %1."_s.arg(
                           shownPath(plan_.folder));
    }

    FileSystem& files_;
    const PackPlan& plan_;
    const PackProgress& keepGoing_;
    RunProgress progress_;
    QElapsedTimer timer_;
    std::unique_ptr<OpenFolder> folder_;
    QStringList madeFolders_;
    QStringList madeFiles_;
};

}  // namespace

void packProject(FileSystem& files, const PackPlan& plan, const PackProgress& keepGoing) {
    Q_ASSERT(plan.missing.isEmpty());
    PackRun(files, plan, keepGoing).run();
}

}  // namespace tessaly
