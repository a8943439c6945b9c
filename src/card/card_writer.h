// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <array>
#include <optional>

#include "card/file_copier.h"
#include "model/project.h"
#include "platform/drives.h"
#include "platform/error.h"
#include "platform/file_system.h"
#include "support/support_folders.h"

namespace tessaly {

/// Where and how a card is to be written.
struct CardJob {
    QString root;                     ///< the card's root folder; a missing last separator is added
    bool settingsOnly = false;        ///< the numbered MP3 files stay on the card as they are
    bool mustBeRemovableRoot = true;  ///< false for a folder that its owner named on purpose
    bool mayEraseOthers = false;      ///< in such a folder, also what is no file of a card
    SupportFolders folders;           ///< of the program
    QString workFolder;               ///< for "tmp.bin", "tmp.hex" and "tmp.crd"
    bool verify = true;               ///< read every file back and compare
    std::optional<quint16> identifier;  ///< of the image; drawn at random without it
    QStringList protectedPaths;         ///< files and folders that the card must not hold
    QString projectFile;                ///< the project's own, likewise; empty: it has none
};

/// The parts of a run that take time.
enum class RunPhase { Prepare, Erase, Copy, Flush, Verify };

/// How far a run is.
struct RunProgress {
    int stepCode = 0;  ///< of step_code
    RunPhase phase = RunPhase::Prepare;
    int trackFileCount = 0;   ///< numbered MP3 files of the project
    int trackFile = 0;        ///< the one that was begun last, from 1; 0: none yet
    QString fileName;         ///< card name of the file that is worked on
    qint64 bytesDone = 0;     ///< of this phase, counted inside long files too
    qint64 bytesTotal = 0;    ///< of this phase; 0 where it is not measured
    qint64 milliseconds = 0;  ///< since this phase began

    /// How many MP3 files are on the card by now, in words.
    QString caption() const;

    /// Bytes a second in this phase so far; 0 while nothing is known.
    qint64 bytesPerSecond() const;

    /// Milliseconds until this phase ends; -1 while nothing is known.
    qint64 millisecondsLeft() const;
};

/// Milliseconds as "0.4 s" or "3:12 min".
QString durationText(qint64 milliseconds);

/// What a run did, and what to tell the operator.
struct CardRunReport {
    enum class Outcome { Declined, Busy, Done, Failed };

    Outcome outcome = Outcome::Declined;
    QList<WrittenFile> files;              ///< in their order
    qint64 bytes = 0;                      ///< of those
    std::array<qint64, 5> milliseconds{};  ///< by RunPhase
    bool isVerified = false;
    bool isVerifiedPastCache = false;  ///< all of them were read from the device itself
    std::optional<TessalyError> error;
    int stepCode = 0;  ///< of the last step

    /// The last message of a run that is done or failed.
    QString message() const;

    /// The error box before it, of a run that failed. The text breaks at a carriage return.
    QString errorTitle() const;
    QString errorText() const;
};

/// Shows a run and answers for the operator. All calls come on the caller's thread.
class CardRunObserver {
 public:
    virtual ~CardRunObserver() = default;

    /// The question before a run. Without a yes there is none.
    virtual bool confirm(const QString& question) = 0;

    /// The run begins.
    virtual void begin() = 0;

    /// Called at every step, file and block of at most 1 MiB; also while the temporary files are
    /// deleted after finished().
    virtual void showProgress(const RunProgress& progress) = 0;

    /// Gives the window its turn. True ends the run with error 538.
    virtual bool checkForStop() = 0;

    /// The run is done or has failed: takes the progress away and tells what came of it.
    virtual void finished(const CardRunReport& report) = 0;
};

/// Writes cards. One writer serves the whole run of the program.
class CardWriter {
 public:
    CardWriter(FileSystem& files, const Drives& drives) : files_(files), drives_(drives) {}

    /// Erases the card and writes everything, or only updates its settings: when the job says so,
    /// and while `updateSettingsOnly` is still set from an update that was declined or failed.
    /// Returns Busy while another run is going on. Never throws a TessalyError: a failure goes to
    /// the observer and into the report.
    CardRunReport createCard(Project& project, const CardJob& job, CardRunObserver& observer);

    /// Lets the next creation be a whole one, whatever became of an update. A run that is going on
    /// stays what it is.
    void endUpdate();

    bool isRunning() const { return running_; }

    bool updateSettingsOnly = false;

 private:
    FileSystem& files_;
    const Drives& drives_;
    bool running_ = false;
};

}  // namespace tessaly
