// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <exception>

namespace tessaly {

/// Every error number of the program's own, in one table. Numbers of the operating system (a full
/// disk, a missing file) stand beside them in messages; the description tells them apart.
namespace error_number {

enum : int {
    DriveNotReady = 71,  ///< the drive holds no medium

    SourceMissing = 513,
    FirmwareMissing = 514,
    CalibrationMissing = 515,

    // Limits of the formats (model/format_limits.h)
    ImageTooLarge = 516,
    TooManyLanguages = 517,
    TooManyLists = 518,
    TooManyFiles = 519,
    ReferenceTooHigh = 520,
    TextTooLong = 521,
    SourceTooLarge = 522,

    // Guards of the card
    NotRemovable = 530,
    SystemFolder = 531,
    HoldsSource = 532,
    WriteProtected = 533,
    DoesNotFit = 534,
    TooManyRootEntries = 535,
    CardDiffers = 536,  ///< settings alone would point at other music
    Stopped = 538,
    VerifyFailed = 539,
    NoFirmwareData = 540,

    // Files that cannot be used
    WriteFailed = 550,
    FileTooLarge = 551,
    BadHexFile = 552,
    BadImage = 553,
    BadProject = 554,
    BadImport = 555,
    BadTarget = 556,
    NotAFile = 557,  ///< a device, a pipe
};

}  // namespace error_number

/// The one failure that the core throws: what the operator will read, in three parts.
///
/// `number` is the program's own error number (error_number) or, for a failure that
/// the operating system reported, the system's own code; `source` names the program that reported
/// it; `description` is one sentence that names the file it is about.
class TessalyError : public std::exception {
 public:
    TessalyError(int errorNumber, QString sentence)
        : number(errorNumber), description(std::move(sentence)), text_(description.toUtf8()) {}

    const char* what() const noexcept override { return text_.constData(); }

    static constexpr QLatin1String source{"Tessaly"};
    int number;
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

/// The steps of a card run, for the title of its error box: names, not an order.
namespace step_code {

enum : int {
    ListCard = 10,
    CopyTracks = 11,
    DeleteOldProject = 12,  ///< and its settings
    DeleteOldFirmware = 13,
    DeleteOldCalibration = 14,
    WriteSettings = 15,
    CopyFirmware = 16,
    CopyCalibration = 17,
    CopyChime = 18,
    CreateProjectCopy = 19,  ///< "tmp.crd" in the work folder, with the next two
    WriteProjectCopy = 20,
    CloseProjectCopy = 21,
    WriteProject = 22,
    DeleteTemporaryImage = 23,
    DeleteTemporaryHex = 24,
    DeleteProjectCopy = 25,
    CopyFixedConfiguration = 69,
    DeleteFiles = 100,
    DeleteFolders = 101,

    FindSources = 200,
    FindFirmware = 201,
    FindCalibration = 202,

    // Stages of the image's builder
    BeginImage = 203,
    BuildLanguageMask = 204,
    BuildCardTitle = 205,
    BuildPowerUpItem = 206,
    BuildChimeOptions = 207,
    BuildLanguages = 208,
    BuildTitlesAndLists = 209,
    BuildTracks = 210,
    BuildSpeech = 211,
    BuildDisplayTexts = 212,
    BuildTriggers = 213,

    // Limits of the formats
    LimitImage = 300,
    LimitLanguages = 301,
    LimitLists = 302,
    LimitFiles = 303,
    LimitReferences = 304,
    LimitSourceBytes = 305,

    // Guards of the card
    GuardTarget = 310,
    GuardFolders = 311,
    GuardSources = 312,
    GuardWritable = 313,
    GuardSpace = 314,
    GuardRootEntries = 315,
    GuardTracks = 316,

    Settle = 320,
    Compare = 321,
};

}  // namespace step_code

}  // namespace tessaly
