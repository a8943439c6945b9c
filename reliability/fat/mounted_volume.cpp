#include "mounted_volume.h"

#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "fat_volume.h"
#include "platform/error.h"

namespace tessaly::fat {

namespace {

constexpr int PatienceMs = 600000;

[[noreturn]] void fail(const QString& text) {
    throw TessalyError(error_number::BadTarget, text);
}

// A mounted folder is on another device than the one above it.
bool isMounted(const QString& folder) {
    struct stat own {};
    struct stat above {};
    ::stat(folder.toUtf8().constData(), &own);
    ::stat(QFileInfo(folder).path().toUtf8().constData(), &above);
    return own.st_dev != above.st_dev;
}

class FuseVolume : public MountedVolume {
 public:
    using MountedVolume::MountedVolume;
    ~FuseVolume() override {
        try {
            FuseVolume::unmount();
        } catch (const TessalyError&) {
            process_.kill();
            process_.waitForFinished();
        }
    }

    void mount() override {
        // In the foreground: when it ends, the last byte is in the image.
        process_.setStandardOutputFile(QProcess::nullDevice());
        process_.setStandardErrorFile(QProcess::nullDevice());
        process_.start("fusefat", {"-f", "-o", "rw+", image(), folder()});
        if (!process_.waitForStarted())
            fail("fusefat: " + process_.errorString());
        for (int waited = 0; !isMounted(folder()); waited += 10)
            if (process_.waitForFinished(10) || waited > PatienceMs)
                fail(image() + ": fusefat does not mount it");
    }

    void unmount() override {
        if (process_.state() == QProcess::NotRunning)
            return;
        runTool("fusermount", {"-u", folder()});
        if (!process_.waitForFinished(PatienceMs))
            fail("fusefat does not end");
        restoreFatMark(image());
    }

    VolumeGeometry geometry() const override { return geometryOf(image(), FatNames::UpperCase); }
    bool canTruncate() const override { return false; }

 private:
    QProcess process_;
};

class KernelVolume : public MountedVolume {
 public:
    KernelVolume(const QString& device, const QString& folder, QString options)
        : MountedVolume(device, folder), options_(std::move(options)) {}
    ~KernelVolume() override {
        if (isMounted(folder()))
            ::umount2(folder().toUtf8().constData(), MNT_DETACH);
    }

    void mount() override {
        recordDevice();
        if (::mount(image().toUtf8().constData(), folder().toUtf8().constData(), "vfat", 0,
                    options_.toUtf8().constData()) != 0)
            throw lastSystemError(image());
    }

    void unmount() override {
        if (isMounted(folder()) && ::umount(folder().toUtf8().constData()) != 0)
            throw lastSystemError(folder());
    }

    VolumeGeometry geometry() const override {
        const VolumeGeometry found = LocalDrives().geometry(folder());
        const VolumeGeometry real = geometryOf(image(), found.fatNames);
        if (!found.isFat || found.clusterBytes != real.clusterBytes ||
            found.freeBytes != real.freeBytes || found.rootEntries != real.rootEntries ||
            (!real.rootEntries && found.folderBytes != real.folderBytes))
            fail(QString("the program takes the volume for another one: clusters of %1 and not %2, "
                         "%3 and not %4 free, %5 and not %6 root entries, a root folder of %7 and "
                         "not %8 bytes")
                     .arg(found.clusterBytes)
                     .arg(real.clusterBytes)
                     .arg(found.freeBytes)
                     .arg(real.freeBytes)
                     .arg(found.rootEntries.value_or(-1))
                     .arg(real.rootEntries.value_or(-1))
                     .arg(found.folderBytes)
                     .arg(real.folderBytes));
        return found;
    }
    bool canTruncate() const override { return true; }

 private:
    void recordDevice() const {
        struct stat device {};
        ::stat(image().toUtf8().constData(), &device);
        const QString folder = "/run/udev/data";
        QDir().mkpath(folder);
        QFile record(
            QString("%1/b%2:%3").arg(folder).arg(major(device.st_rdev)).arg(minor(device.st_rdev)));
        if (!record.open(QFile::WriteOnly))
            fail(record.fileName() + ": " + record.errorString());
        record.write(QString("E:ID_FS_VERSION=FAT%1\n").arg(readFacts(image()).bits).toUtf8());
    }

    QString options_;
};

}  // namespace

std::unique_ptr<MountedVolume> fuseVolume(const QString& image, const QString& folder) {
    return std::make_unique<FuseVolume>(image, folder);
}

std::unique_ptr<MountedVolume> kernelVolume(const QString& device, const QString& folder,
                                            const QString& options) {
    return std::make_unique<KernelVolume>(device, folder, options);
}

}  // namespace tessaly::fat
