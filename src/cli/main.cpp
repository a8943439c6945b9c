#include <QCoreApplication>
#include <new>

#include "cli/arguments.h"
#include "cli/console.h"
#include "platform/native_path.h"

int main(int argc, char** argv) {
    using namespace tessaly;
#ifndef Q_OS_WIN
    // File names are UTF-8 and messages English, whatever the terminal is set to.
    qputenv("LC_ALL", "C.UTF-8");
#endif
    const QCoreApplication app(argc, argv);
    std::vector<std::string> arguments;
#ifdef Q_OS_WIN
    for (const QString& argument : app.arguments().mid(1))
        arguments.push_back(argument.toStdString());
#else
    arguments.assign(argv + 1, argv + argc);
#endif
    const std::string folder = toNativePath(QCoreApplication::applicationDirPath()).toStdString();
    const cli::Request request = cli::parseArguments(arguments, folder);
    if (!request.run)
        return request.exitCode;
    try {
        return request.run();
    } catch (const TessalyError& error) {
        cli::printError(cli::errorLine(error));
    } catch (const std::bad_alloc&) {
        cli::printError("There is not enough memory for this.");
    }
    return cli::Failed;
}
