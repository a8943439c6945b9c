#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Builds the Windows programs on a Debian machine, into build-windows/.
#   build.sh             the programs and their tests
#   build.sh --test      and runs those of the core and of the command line under Wine, and writes a
#                        card from the window there
#   build.sh --package   and makes the installer and the portable zip, and tries the installer
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
build=$root/build-windows

"$root/tools/install-dependencies.sh" dpkg-dev xz-utils perl g++-mingw-w64-x86-64-posix \
  libutfcpp-dev googletest librsvg2-bin icoutils
source "$here/libraries.sh"
for library in taglib googletest headers qt; do
  build_once "$library"
done
build_once mpg123 "$mpg123_version"
build_once ebur128 "$ebur128_version"

# Also when the build configures itself anew: never this machine's own libraries.
export PKG_CONFIG_LIBDIR=$prefix/lib/pkgconfig
[ -f "$build/build.ninja" ] ||
  cmake -S "$root" -B "$build" -G Ninja \
    -DCMAKE_TOOLCHAIN_FILE="$prefix/lib/cmake/Qt6/qt.toolchain.cmake" \
    -DQT_CHAINLOAD_TOOLCHAIN_FILE="$here/mingw-w64.cmake" \
    -DQT_HOST_PATH=/usr -DQT_HOST_PATH_CMAKE_DIR="$host_cmake" \
    -DCMAKE_BUILD_TYPE=Release -DTESSALY_BENCH=OFF
cmake --build "$build" -j "$jobs"

case ${1:-} in
  --test)
    "$root/tools/install-dependencies.sh" xdotool imagemagick
    "$here/with-wine.sh" \
      ctest --test-dir "$build" -R "tessaly_(core|cli)_tests" --output-on-failure
    "$here/with-wine.sh" "$here/try-window.sh" "$build" "$build/pictures"
    ;;
  --package) "$here/package.sh" "$build" ;;
esac
