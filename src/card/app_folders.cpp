#include "card/app_folders.h"

#include <QDir>

#include "card/card_names.h"
#include "platform/paths.h"

namespace tessaly {

AppFolders appFoldersIn(const QString& appFolder) {
    const QString app = QDir::toNativeSeparators(QDir::cleanPath(QDir(appFolder).absolutePath()));
    return {.appFolder = app,
            .filesFolder = pathIn(app, "files"),
            .firmwareFolder = pathIn(app, "firmware"),
            .chimesFolder = pathIn(app, "Chimes")};
}

QString AppFolders::firmwareFile() const {
    return pathIn(firmwareFolder, card_name::Firmware);
}

QString AppFolders::calibrationFile() const {
    return pathIn(filesFolder, card_name::Calibration);
}

QString AppFolders::fixedConfigurationFile() const {
    return pathIn(filesFolder, card_name::FixedConfiguration);
}

}  // namespace tessaly
