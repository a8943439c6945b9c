#include "platform/command_line.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <filesystem>

#include "platform/native_path.h"
#include "platform/paths.h"

namespace tessaly {

#ifdef Q_OS_WIN

QStringList commandLineArguments(int, char**) {
    return QCoreApplication::arguments().mid(1);  // argv has lost what the code page lacks
}

QString absolutePath(const QString& path) {
    return QFileInfo(path).absoluteFilePath();
}

#else

QStringList commandLineArguments(int argc, char** argv) {
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(fromNativePath(argv[i]));
    return arguments;
}

QString absolutePath(const QString& path) {
    if (path.startsWith('/'))
        return path;
    std::error_code failed;  // then the relative path is as good as any
    const std::filesystem::path folder = std::filesystem::current_path(failed);
    return failed ? path : pathIn(fromNativePath(QByteArray::fromStdString(folder.native())), path);
}

#endif

}  // namespace tessaly
