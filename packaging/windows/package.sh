#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# package.sh BUILD: makes the installer and the portable zip in the build folder and tries the
# installer under Wine.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
build=$1
"$here/../../tools/install-dependencies.sh" nsis zip
(cd "$build" && cpack --config CPackConfig.cmake)
setup=$(ls "$build"/tessaly-*-setup.exe)
"$here/with-wine.sh" "$here/check-installer.sh" "$setup"
ls -l "$build"/tessaly.exe "$build"/tessaly-cli.exe "$build"/tessaly-*-setup.exe \
  "$build"/tessaly-*-portable.zip
