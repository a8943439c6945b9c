#pragma once

// Every error number of the program's own, in one table. Numbers of the operating system (a full
// disk, a missing file) stand beside them in messages; the description tells them apart.

namespace tessaly::error_number {

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

}  // namespace tessaly::error_number
