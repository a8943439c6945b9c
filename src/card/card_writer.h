#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

#include "model/project.h"
#include "platform/drives.h"
#include "platform/error.h"
#include "platform/file_system.h"
#include "support/support_folders.h"

namespace tessaly {

/// Where and how a card is to be written.
struct CardJob {
    QString root;                     ///< the card's root folder; a missing last separator is added
    bool mustBeRemovableRoot = true;  ///< false for a folder that its owner named on purpose
    bool mayEraseOthers = false;      ///< in such a folder, also what is no file of a card
    SupportFolders folders;           ///< of the program
    QString workFolder;               ///< for "tmp.bin", "tmp.hex" and "tmp.crd"
    bool verify = true;               ///< read every file back and compare
    std::optional<quint16> identifier;  ///< of the image; drawn at random without it
    QStringList kept;                   ///< files and folders that the card must not hold
    QString projectFile;                ///< the project's own, likewise; empty: it has none
};

/// The parts of a run that take time.
enum class RunPhase { Prepare, Erase, Copy, Flush, Verify };

/// Shows a run and answers for the operator. All calls come on the caller's thread.
class CardRunObserver {
 public:
    virtual ~CardRunObserver() = default;

    virtual bool confirm(const QString& question) = 0;
    virtual void showProgress(const QString& caption) = 0;  ///< bar at 0, hourglass
    virtual void hideProgress() = 0;
    virtual void setBarMaximum(int maximum) = 0;
    virtual void setBarValue(int value) = 0;
    virtual void setCaption(const QString& caption) = 0;

    /// Bytes of a phase that are done, of those that it has in all; called inside long files too.
    virtual void phaseProgress(RunPhase phase, qint64 done, qint64 total) = 0;

    /// Lets the window checkForStop. False ends the run as an error of its own.
    virtual bool keepGoing() = 0;

    virtual void succeeded(const QString& message) = 0;

    /// The error box, then the second message. `text` holds a carriage return where it breaks.
    virtual void failed(const QString& title, const QString& text, const QString& second) = 0;
};

/// What a run did, for people who want to know.
struct CardRunReport {
    enum class Outcome { Declined, Busy, Done, Failed };

    struct File {
        QString name;
        qint64 size = 0;
    };

    Outcome outcome = Outcome::Declined;
    QList<File> files;                     ///< written, in their order
    qint64 bytes = 0;                      ///< of those
    std::array<qint64, 5> milliseconds{};  ///< by RunPhase
    bool isVerified = false;
    bool isVerifiedPastCache = false;  ///< all of them were read from the device itself
    std::optional<TessalyError> error;
    int stepCode = 0;
};

/// Writes cards. One writer serves the whole run of the program.
class CardWriter {
 public:
    CardWriter(FileSystem& files, const Drives& drives) : files_(files), drives_(drives) {}

    /// Erases the card and writes everything, or only updates its settings while
    /// `updateSettingsOnly` is still set from an update that was declined or failed. Never throws
    /// a TessalyError: a failure goes to the observer and into the report.
    CardRunReport createCard(Project& project, const CardJob& job, CardRunObserver& observer);

    /// Sets `updateSettingsOnly` and does the same: the numbered MP3 files stay on the card.
    CardRunReport updateSettings(Project& project, const CardJob& job, CardRunObserver& observer);

    /// Lets the next creation be a whole one, whatever became of an update. A run that is going on
    /// stays what it is.
    void endUpdate();

    bool isRunning() const { return running_; }

    bool updateSettingsOnly = false;
    int stepCode = 0;        ///< of the step now running
    int trackFileCount = 0;  ///< numbered MP3 files of the last run

 private:
    FileSystem& files_;
    const Drives& drives_;
    bool running_ = false;
};

}  // namespace tessaly
