// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <functional>

#include "card/card_writer.h"
#include "platform/error.h"
#include "support/faulty_file_system.h"
#include "support/projects.h"
#include "support/scratch_folder.h"

// A whole surrounding for card runs: a card folder that a fake drive calls removable, support
// folders, sources, and an observer that notes everything it is told.

namespace tessaly::test {

class FakeDrives : public Drives {
 public:
    DriveType driveType = DriveType::Removable;
    bool isReady = true;
    QString inserted = "card A";
    QStringList mounted;
    QList<Volume> list;
    VolumeGeometry volume{.clusterBytes = 4096, .totalBytes = 64000000, .freeBytes = 64000000};

    DriveType type(const QString&) const override {
        requireReady();
        return driveType;
    }
    qint64 totalBytes(const QString&) const override {
        requireReady();
        return volume.totalBytes;
    }
    QList<Volume> volumes() const override { return list; }
    VolumeGeometry geometry(const QString&) const override { return volume; }
    QString medium(const QString&) const override { return inserted; }
    QStringList mountsInside(const QString&) const override { return mounted; }

 private:
    void requireReady() const {
        if (!isReady)
            throw TessalyError(error_number::DriveNotReady, "the drive is not ready");
    }
};

class NotingObserver : public CardRunObserver {
 public:
    std::function<void()> onQuestion = [] {};
    std::function<bool()> keepGoingNow = [] { return true; };
    std::function<void()> onSuccess = [] {};
    QStringList questions, captions, messages;
    QString title, text;
    QList<int> files;  ///< numbers of the MP3 files that were begun
    bool isShown = false;
    RunProgress progress;  ///< as it was shown last

    bool confirm(const QString& question) override {
        questions.append(question);
        onQuestion();
        return true;
    }
    void begin() override { isShown = true; }
    void showProgress(const RunProgress& now) override {
        EXPECT_TRUE(now.bytesTotal == 0 || now.bytesDone <= now.bytesTotal);
        if (captions.isEmpty() || captions.last() != now.caption())
            captions.append(now.caption());
        if (files.isEmpty() || files.last() != now.trackFile)
            files.append(now.trackFile);
        progress = now;
    }
    bool checkForStop() override { return !keepGoingNow(); }
    void finished(const CardRunReport& report) override {
        isShown = false;
        messages.append(report.message());
        if (!report.error) {
            onSuccess();
            return;
        }
        title = report.errorTitle();
        text = report.errorText();
    }
};

/// One card and one project of three files: list L with tracks one and two, title Hello.
struct CardBench {
    ScratchFolder scratch;
    FaultyFileSystem files;
    FakeDrives drives;
    NotingObserver observer;
    CardWriter writer{files, drives};
    Project project;
    CardJob job;

    CardBench() {
        addTrack(project, "L", "one", scratch.write("src/first.mp3", QByteArray(5000, '1')));
        addTrack(project, "L", "two", scratch.write("src/second.MP3", QByteArray(3, '2')));
        addSpeech(project, "Hello", "English", scratch.write("src/hello.mp3", "hello"));
        scratch.write("app/files/9998.mp3", "calibration");
        scratch.write("app/files/0007.cfg", "configuration");
        scratch.write("app/firmware/0000.hex", ":0401100001020304E1\r\n:00000001FF\r\n");
        scratch.write("chime.mp3", "ding");
        scratch.makeFolder("card");
        job.root = scratch.path("card");
        job.folders = supportFoldersIn(scratch.path("app"));
        job.workFolder = scratch.makeFolder("work");
        job.identifier = 0x3A07;
    }

    void useChime() {
        setChimeOption(project, &Project::buttPlayIntChime, true);
        project.txtChimeFileName = scratch.path("chime.mp3");
    }
    CardRunReport run(bool settingsOnly) {
        job.settingsOnly = settingsOnly;
        return writer.createCard(project, job, observer);
    }
    CardRunReport create() { return run(false); }
    CardRunReport update() { return run(true); }
    QMap<QString, QByteArray> card() const { return scratch.content("card"); }
};

}  // namespace tessaly::test
