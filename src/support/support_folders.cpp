// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/support_folders.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

const QString Files = u"files"_s;
const QString Firmware = u"firmware"_s;
const QString Chimes = u"Chimes"_s;

QString native(const QString& folder) {
    return QDir::toNativeSeparators(QDir::cleanPath(QDir(folder).absolutePath()));
}

SupportFolders foldersOf(const QString& program, const QString& support, const QString& own) {
    return {.appFolder = native(program),
            .filesFolder = pathIn(native(support), Files),
            .firmwareFolder = pathIn(native(support), Firmware),
            .chimesFolder = pathIn(native(support), Chimes),
            .manualFile = pathIn(pathIn(native(support), u"manual"_s), u"manual.html"_s),
            .ownFolder = own.isEmpty() ? QString() : native(own)};
}

// The user's own file if there is one, else the program's, which need not be there.
QString ownOr(const QString& ownFolder, const QString& subfolder, const QString& programs) {
    if (ownFolder.isEmpty())
        return programs;
    const QString own = pathIn(pathIn(ownFolder, subfolder), lastNameOf(programs));
    return QFileInfo(own).isFile() ? own : programs;
}

}  // namespace

SupportFolders supportFoldersIn(const QString& appFolder, const QString& ownFolder) {
    return foldersOf(appFolder, appFolder, ownFolder);
}

SupportFolders foldersOfProgram(const QString& programFolder, const QString& ownFolder) {
    const QString shared = pathIn(programFolder, u"../share/tessaly"_s);
    return foldersOf(programFolder, QFileInfo(shared).isDir() ? shared : programFolder, ownFolder);
}

QString SupportFolders::firmwareFile() const {
    return ownOr(ownFolder, Firmware, pathIn(firmwareFolder, maker_file::Firmware));
}

QString SupportFolders::calibrationFile() const {
    return ownOr(ownFolder, Files, pathIn(filesFolder, maker_file::Calibration));
}

QString SupportFolders::fixedConfigurationFile() const {
    return ownOr(ownFolder, Files, pathIn(filesFolder, maker_file::FixedConfiguration));
}

QStringList SupportFolders::makersFiles() const {
    return {u"Firmware: "_s + firmwareFile(), u"Calibration sound: "_s + calibrationFile(),
            u"Configuration: "_s + fixedConfigurationFile()};
}

QString SupportFolders::chimesStart() const {
    const QString own = ownFolder.isEmpty() ? QString() : pathIn(ownFolder, Chimes);
    return !own.isEmpty() && QFileInfo(own).isDir() ? own : chimesFolder;
}

QString SupportFolders::projectsStart(const FileSystem& files) const {
    return files.isWritableFolder(appFolder)
               ? appFolder
               : QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

QStringList SupportFolders::protectedFolders() const {
    QStringList folders = {appFolder, filesFolder, firmwareFolder, chimesFolder};
    if (ownFolder.isEmpty())
        return folders;
    folders.append(ownFolder);
    for (const QString& name : {Files, Firmware, Chimes})
        folders.append(pathIn(ownFolder, name));
    return folders;
}

}  // namespace tessaly
