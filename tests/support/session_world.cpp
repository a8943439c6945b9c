// SPDX-License-Identifier: GPL-3.0-or-later
// What sessions do to the world around the window: files, drives, other programs.
#include <QProcess>
#include <QRegularExpression>
#include <QThread>

#include "support/session.h"

namespace tessaly::test {

void Session::run(const QString& program, const QStringList& arguments, bool isSilent) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_DATA_HOME", bench.scratch.path());
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(bench.scratch.path());
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForFinished(60000))
        say("it does not end");
    for (const QString& line : QString::fromUtf8(process.readAll()).trimmed().split('\n'))
        if (!isSilent && !line.startsWith("QStandardPaths"))
            say(line.trimmed());
    if (process.exitCode() != 0)
        say(QString("exit code %1").arg(process.exitCode()));
}

void Session::addWorld() {
    ScratchFolder& scratch = bench.scratch;
    const auto words = [](const QString& rest) { return rest.split(" | "); };
    verbs["file"] = [&](const QString& rest) {  // NAME | CONTENT
        scratch.write(rest.section(" | ", 0, 0),
                      rest.section(" | ", 1).replace("\\n", "\n").toUtf8());
    };
    verbs["grow"] = [&, words](const QString& rest) {  // NAME | BYTES
        QFile::resize(scratch.path(words(rest)[0]), words(rest)[1].toLongLong());
    };
    verbs["folder"] = [&](const QString& name) { scratch.makeFolder(name); };
    verbs["remove"] = [&](const QString& name) {  // a file, or a folder with all in it
        const QString path = scratch.path(name);
        QFileInfo(path).isDir() ? QDir(path).removeRecursively() : QFile::remove(path);
    };
    verbs["copy"] = [&, words](const QString& rest) {  // FROM | TO | bytes less
        const QStringList names = words(rest);
        scratch.write(names[1], scratch.read(names[0]).chopped(names.value(2).toInt()));
    };
    verbs["files"] = [&](const QString& folder) {
        const auto content = scratch.content(folder);
        for (auto file = content.begin(); file != content.end(); ++file)
            say(file.key() + (file.key().endsWith(".crd2")  // which is as long as its paths
                                  ? QString()
                                  : QString(" %1 bytes").arg(file->size())));
        if (content.isEmpty())
            say("empty");
    };
    verbs["compare"] = [&, words](const QString& rest) {  // FOLDER | FOLDER
        const auto first = scratch.content(words(rest)[0]),
                   second = scratch.content(words(rest)[1]);
        QStringList names = first.keys() + second.keys();
        names.removeDuplicates();
        for (const QString& name : names)
            if (first.value(name) != second.value(name))
                say("they differ in " + name);
    };
    verbs["copies"] = [this](const QString&) {
        say(QString("%1 recovery copies").arg(bench.recoveryCopies()));
    };
    verbs["killed"] = [&](const QString&) {
        text_.reset();
        bench.window.reset();
        QFile mark(scratch.write("user/recovery/running", {}));
        if (mark.open(QIODevice::ReadWrite))
            mark.setFileTime(QDateTime::fromSecsSinceEpoch(1000000000),
                             QFileDevice::FileModificationTime);
    };
    verbs["fails"] = [this](const QString& what) {
        bench.files.failWhen = [what](const QString& operation) {
            return operation.startsWith(what);
        };
    };
    verbs["works"] = [this](const QString&) {
        bench.files.failWhen = [](const QString&) { return false; };
    };
    // Lets the window look after itself in file operations, too, whichever thread does them.
    verbs["slow-files"] = [this](const QString&) {
        bench.files.onOperation = [this, before = bench.files.onOperation] {
            const bool isOwn = QThread::currentThread() == thread();
            QMetaObject::invokeMethod(
                this,
                [&] {
                    before();
                    QCoreApplication::processEvents();
                },
                isOwn ? Qt::DirectConnection : Qt::BlockingQueuedConnection);
        };
    };
    verbs["operations"] = [this](const QString& what) {  // those that begin so, since the last time
        say(std::exchange(bench.files.operations, {})
                .filter(QRegularExpression('^' + what))
                .join(", "));
    };
    verbs["drive"] = [this](const QString& type) {
        for (const DriveType one : {DriveType::Removable, DriveType::Fixed, DriveType::Network,
                                    DriveType::CdRom, DriveType::RamDisk, DriveType::Unknown})
            if (driveTypeName(one) == type)
                bench.drives.driveType = one;
    };
    verbs["card"] = [this](const QString& what) {
        bench.drives.isReady = what != "out";
        if (what.startsWith("of "))
            bench.drives.volume.totalBytes = what.mid(3).toLongLong();
        else if (what != "out" && what != "in")
            bench.drives.inserted = what;
    };
    verbs["volume"] = [&, words](const QString& rest) {  // ROOT | NAME | TYPE | BYTES | FREE
        const QStringList fields = words(rest);
        const DriveType before = bench.drives.driveType;
        verbs["drive"](fields[2]);
        bench.drives.list.append(
            {fields[0], fields[1], std::exchange(bench.drives.driveType, before),
             fields[3].toLongLong(), fields[4].toLongLong(), fields[3] != "0"});
    };
    // What no hands at this window make, but files hold.
    verbs["odd-project"] = [this](const QString& name) {
        Project odd = bench.project;
        odd.buttChimeAlways = odd.buttChimeOnce = false;
        odd.txtCardTitle2 = "a title of more than sixteen characters";
        odd.TriggerTable[1].itemName = "x";
        odd.TriggerTable[1].groupName = "Gone";
        odd.TriggerTable[1].sourcePath = "music";
        odd.PowerUpRecord = makeRecord("music", "x", "Gone", {});
        LocalFileSystem files;
        saveProject(files, bench.scratch.path(name), odd);
    };
    verbs["sound"] = [this, words](const QString& rest) {  // WHAT | FILE | SECONDS | LENGTH | WHY
        using What = SoundReport::What;
        const QStringList fields = words(rest);
        const QStringList whats = {"plays", "fails", "has-no-device", "ends"};
        bench.player.report({.what = What(whats.indexOf(fields[0])),
                             .file = fields.value(1).toInt(),
                             .seconds = fields.value(2).toInt(),
                             .length = fields.value(3).toInt(),
                             .why = fields.value(4)});
    };
    verbs["second-instance"] = [this](const QString&) { bench.instance.isFirst = false; };
#ifdef TESSALY_CLI
    verbs["cli"] = [this, words](const QString& rest) {
        run(TESSALY_CLI, QStringList{"--app-folder", bench.scratch.path("app")} + words(rest));
    };
    verbs["silent-cli"] = [this, words](const QString& rest) {  // prints times of its own
        run(TESSALY_CLI, QStringList{"--app-folder", bench.scratch.path("app")} + words(rest),
            true);
    };
    verbs["program"] = [this, words](const QString& rest) { run(TESSALY_PROGRAM, words(rest)); };
#endif
}

}  // namespace tessaly::test
