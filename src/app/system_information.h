#pragma once

#include <QString>

namespace tessaly {

/// Starts the operating system's own tool that shows what machine this is: on Windows the one that
/// the registry names, elsewhere one of the usual ones if it is installed. False when there is
/// none.
bool showSystemInformation();

}  // namespace tessaly
