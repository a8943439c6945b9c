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
    bool answer = true;
    std::function<bool()> keepGoingNow = [] { return true; };
    std::function<void()> onSuccess = [] {};
    QStringList questions, captions, messages;
    QString title, text;
    QList<int> bar;
    int barMaximum = 0;
    bool isShown = false;
    QList<qint64> copied;

    bool confirm(const QString& question) override {
        questions.append(question);
        return answer;
    }
    void showProgress(const QString& caption) override {
        isShown = true;
        captions.append(caption);
    }
    void hideProgress() override { isShown = false; }
    void setBarMaximum(int maximum) override { barMaximum = maximum; }
    void setBarValue(int value) override { bar.append(value); }
    void setCaption(const QString& caption) override { captions.append(caption); }
    void phaseProgress(RunPhase phase, qint64 done, qint64 total) override {
        EXPECT_TRUE(total == 0 || done <= total);
        if (phase == RunPhase::Copy)
            copied.append(done);
    }
    bool keepGoing() override { return keepGoingNow(); }
    void succeeded(const QString& message) override {
        messages.append(message);
        onSuccess();
    }
    void failed(const QString& errorTitle, const QString& errorText,
                const QString& second) override {
        title = errorTitle;
        text = errorText;
        messages.append(second);
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
    CardRunReport create() { return writer.createCard(project, job, observer); }
    CardRunReport update() { return writer.updateSettings(project, job, observer); }
    QMap<QString, QByteArray> card() const { return scratch.content("card"); }
};

}  // namespace tessaly::test
