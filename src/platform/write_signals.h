#pragma once

namespace tessaly {

/// Makes a write to a file that may not grow, or to a pipe that nobody reads, an error of that
/// write, as every other failure is, and not the end of the program. Every main() calls it first.
void turnWriteSignalsIntoErrors();

}  // namespace tessaly
