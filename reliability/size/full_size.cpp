// Two parts of full_size.sh: making the files of a project at full size, and working with it in
// the real window.
#include <QApplication>
#include <cstdio>
#include <exception>

#include "full_size_files.h"
#include "memory.h"

namespace {

constexpr qint64 WindowBytes = 250'000'000;

int checkMemory() {
    const qint64 peak = tessaly::size::peakMemory();
    const bool kept = peak > 0 && peak <= WindowBytes;
    std::printf("peak memory of the window: %.1f MB, promised %.0f  %s\n", double(peak) / 1e6,
                double(WindowBytes) / 1e6, kept ? "kept" : "MISSED");
    return kept ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    const QByteArray command = argc == 3 ? argv[1] : "";
    try {
        if (command == "make") {
            tessaly::size::makeFiles(QString::fromLocal8Bit(argv[2]));
            return 0;
        }
        if (command == "window") {
            // The offscreen platform is talkative.
            qputenv("QT_LOGGING_RULES", "default.warning=false");
            QApplication app(argc, argv);
            tessaly::size::workInWindow(QString::fromLocal8Bit(argv[2]));
            return checkMemory();
        }
        std::fprintf(stderr, "usage: tessaly-full-size make|window FOLDER\n");
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tessaly-full-size: %s\n", error.what());
        return 1;
    }
}
