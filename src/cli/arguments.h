#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tessaly::cli {

/// What the command line asks for.
struct Request {
    std::function<int()> run;  ///< carries out the command and returns an exit code
    int exitCode = 0;  ///< when there is nothing to run: help or version was printed (0), or
                       ///< the arguments make no sense and a line says so (2)
};

/// Reads the arguments behind the program's name, as UTF-8 or the system's own file name bytes.
/// `programFolder` is where the support folders stand unless --app-folder says otherwise.
Request parseArguments(const std::vector<std::string>& arguments, const std::string& programFolder);

}  // namespace tessaly::cli
