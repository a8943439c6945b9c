#include "app/start_arguments.h"

#include "platform/paths.h"

namespace tessaly {

StartArguments startArguments(const QStringList& arguments) {
    const QString usage =
        " Tessaly takes one project file (.crd2) and nothing else; tessaly-cli has the commands.";
    for (const QString& argument : arguments)
        if (argument.startsWith('-'))
            return {{}, "There is no option " + argument + "." + usage};
    if (arguments.size() > 1)
        return {{},
                QString("There are %1 files, but only one can be opened.").arg(arguments.size()) +
                    usage};
    const QString file = arguments.value(0);
    return {file.isEmpty() ? QString() : absolutePath(file), {}};
}

}  // namespace tessaly
