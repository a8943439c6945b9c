#include <QCoreApplication>
#include <new>

#include "cli/arguments.h"
#include "cli/console.h"
#include "cli/terminal.h"
#include "platform/paths.h"
#include "platform/process.h"

int main(int argc, char** argv) {
    using namespace tessaly;
#ifndef Q_OS_WIN
    // File names are UTF-8 and messages English, whatever the terminal is set to.
    qputenv("LC_ALL", "C.UTF-8");
#endif
    turnWriteSignalsIntoErrors();
    const QCoreApplication app(argc, argv);
    const Utf8Terminal terminal;
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
        const int exitCode = request.run();
        // What was asked for on standard output is missing as much as a file would be.
        const QString problem = cli::outputProblem();
        if (problem.isEmpty())
            return exitCode;
        cli::printError(problem);
    } catch (const TessalyError& error) {
        cli::printError(cli::errorLine(error));
    } catch (const std::bad_alloc&) {
        cli::printError("There is not enough memory for this.");
    }
    return cli::Failed;
}
