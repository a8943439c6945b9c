# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# Sourced by build.sh: the libraries of the Windows programs, built once from Debian's sources into
# a cache folder outside the tree. An interrupted build goes on where it was. Sets `prefix`.

jobs=${JOBS:-$(nproc)}

# The libraries have the versions of the packages installed here: Qt's own build needs tools of
# the very same version, which this machine has.
source_version() { dpkg-query -W -f='${source:Version}' "$1"; }
qt_version=$(source_version qt6-base-dev)
tag_version=$(source_version libtag1-dev)
mpg123_version=$(source_version libmpg123-dev)
ebur128_version=$(source_version libebur128-dev)
cache=${TESSALY_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/tessaly}/windows-$qt_version-$tag_version
sources=$cache/sources
prefix=$cache/prefix
host_cmake=/usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)/cmake
mkdir -p "$sources" "$prefix"

# fetch PACKAGE VERSION [upstream]: fetches a source package where this machine gets its packages
# from. The lists lie in the cache folder; apt's own settings stay as they are. A place that keeps no
# signatures of upstream is good enough, and with `upstream` one without Debian's part: that is for
# packages that Debian changes nothing of.
fetch() {
  local package=$1 version=$2 enough=${3:-} apt=$cache/apt file
  [ ! -d "$sources/$package" ] || return 0
  rm -rf "$apt" "$sources/$package.part"
  mkdir -p "$apt/parts" "$apt/lists/partial" "$apt/cache/archives/partial" "$sources/$package.part"
  for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    [ ! -f "$file" ] ||
      sed -n 's/^deb\s/deb-src /p' "$file" > "$apt/parts/$(basename "$file" .list).list"
  done
  for file in /etc/apt/sources.list.d/*.sources; do
    [ ! -f "$file" ] || sed 's/^Types:.*/Types: deb-src/' "$file" > "$apt/parts/$(basename "$file")"
  done
  local options=(-q -o "Dir::Etc::sourcelist=/dev/null" -o "Dir::Etc::sourceparts=$apt/parts"
    -o "Dir::State::lists=$apt/lists" -o "Dir::Cache=$apt/cache" -o "APT::Sandbox::User=root")
  apt-get "${options[@]}" update
  (cd "$sources/$package.part" &&
    { apt-get "${options[@]}" --download-only source "$package=$version" || true; } &&
    { unpack "$package" "$enough" ||
      { echo "The source of $package $version is not where its package came from." >&2; exit 1; }; })
  mv "$sources/$package.part/$package" "$sources/$package"
  rm -rf "$sources/$package.part" "$apt"
}

# Unpacks the source package of the current folder into a folder of its name. apt has checked the
# .dsc against the signed lists; the .dsc says what the other files have to be.
unpack() {
  local package=$1 enough=$2
  sed -n 's/^ \([0-9a-f]\{64\}\) [0-9]* /\1  /p' ./*.dsc |
    sha256sum --check --strict --ignore-missing || return
  if [ "$enough" = upstream ] && ! compgen -G '*.debian.tar.*' >/dev/null; then
    mkdir "$package"
    tar -C "$package" --strip-components=1 -xf ./*.orig.tar.?z*
  else
    dpkg-source --no-check -x ./*.dsc "$package"
  fi
}

launcher=()
if command -v ccache >/dev/null; then
  launcher=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi
library_options=(-G Ninja -DCMAKE_TOOLCHAIN_FILE="$here/mingw-w64.cmake" -DCMAKE_BUILD_TYPE=Release
  "-DCMAKE_C_FLAGS_RELEASE=-O2 -DNDEBUG" "-DCMAKE_CXX_FLAGS_RELEASE=-O2 -DNDEBUG"
  -DBUILD_SHARED_LIBS=OFF -DCMAKE_INSTALL_PREFIX="$prefix" "${launcher[@]}")

# build_once NAME [VERSION]: each leaves a mark when it is done, which says how and of which version;
# the sources and the build folder then go. (Qt's and TagLib's versions are in the cache's name.)
build_once() {
  local name=$1 version=${2:-} how
  how=$({ declare -f "build_$name"; printf %s "$version"; } | sha256sum)
  [ "$(cat "$prefix/$name.done" 2>/dev/null)" != "$how" ] || return 0
  echo "Building $name for Windows"
  "build_$name"
  echo "$how" > "$prefix/$name.done"
  rm -rf "$cache/$name-build"
}

build_taglib() {
  fetch taglib "$tag_version"
  cmake -S "$sources/taglib" -B "$cache/taglib-build" "${library_options[@]}" \
    -DWITH_ZLIB=OFF -DBUILD_TESTING=OFF "-DCMAKE_CXX_FLAGS=-isystem /usr/include/utf8cpp"
  cmake --build "$cache/taglib-build" -j "$jobs" --target tag
  cmake --install "$cache/taglib-build/taglib" > "$cache/taglib-install.log"
  # The headers have to know that there is no DLL.
  mkdir -p "$prefix/lib/pkgconfig"
  cat > "$prefix/lib/pkgconfig/taglib.pc" <<END
Name: TagLib
Description: MP3 tags
Version: ${tag_version%%-*}
Cflags: -DTAGLIB_STATIC -I$prefix/include/taglib
Libs: -L$prefix/lib -ltag
END
  rm -rf "$sources/taglib"
}

# Frames and decoding, and its output library with the one way out that Windows always has, which is
# in the library and not in a DLL beside it. Offsets have 64 bits, as on Linux.
build_mpg123() {
  local part
  fetch mpg123 "$mpg123_version"
  cmake -S "$sources/mpg123/ports/cmake" -B "$cache/mpg123-build" "${library_options[@]}" \
    -DDEFAULT_OUTPUT_MODULE=win32 -DNO_MESSAGES=ON
  cmake --build "$cache/mpg123-build" -j "$jobs" --target libmpg123 libout123
  for part in libmpg123 libout123; do
    cmake --install "$cache/mpg123-build/src/$part"
  done > "$cache/mpg123-install.log"
  cp "$cache/mpg123-build/src/libout123/modules/libdefaultmodule.a" "$prefix/lib/libout123_win32.a"
  mkdir -p "$prefix/lib/pkgconfig"
  cat > "$prefix/lib/pkgconfig/libmpg123.pc" <<END
Name: libmpg123
Description: frames of MP3 files, and what they sound like
Version: ${mpg123_version%%-*}
Cflags: -D_FILE_OFFSET_BITS=64 -I$prefix/include
Libs: -L$prefix/lib -lmpg123 -lshlwapi
END
  cat > "$prefix/lib/pkgconfig/libout123.pc" <<END
Name: libout123
Description: sound output
Version: ${mpg123_version%%-*}
Cflags: -I$prefix/include
Libs: -L$prefix/lib -lout123 -lout123_win32 -lshlwapi -lwinmm
END
  rm -rf "$sources/mpg123"
}

# Its own pkg-config file says all that a static link needs.
build_ebur128() {
  fetch libebur128 "$ebur128_version" upstream
  cmake -S "$sources/libebur128" -B "$cache/ebur128-build" "${library_options[@]}"
  cmake --build "$cache/ebur128-build" -j "$jobs" --target ebur128
  cmake --install "$cache/ebur128-build/ebur128" > "$cache/ebur128-install.log"
  rm -rf "$sources/libebur128"
}

build_googletest() {
  cmake -S /usr/src/googletest -B "$cache/googletest-build" "${library_options[@]}"
  cmake --build "$cache/googletest-build" -j "$jobs"
  cmake --install "$cache/googletest-build" > "$cache/googletest-install.log"
}

# Headers alone. They come from this machine's packages, one by one: its whole /usr/include would
# bring Linux' own headers along.
build_headers() {
  mkdir -p "$prefix/include" "$prefix/lib/pkgconfig" "$prefix/share/cmake"
  cp -r /usr/include/CLI "$prefix/include/"
  cp -r /usr/share/cmake/CLI11 "$prefix/share/cmake/"
  cp /usr/include/xxhash.h /usr/include/xxh3.h "$prefix/include/"
  cat > "$prefix/lib/pkgconfig/libxxhash.pc" <<END
Name: xxhash
Description: XXH3 hashes, as functions of its header
Version: $(dpkg-query -W -f='${source:Upstream-Version}' libxxhash-dev)
Cflags: -DXXH_INLINE_ALL -I$prefix/include
END
}

build_qt() {
  fetch qt6-base "$qt_version"
  local feature features=()
  # What the programs do not use, libraries that Windows lacks, and what Debian's source or the
  # static platform plugin does not build with (tabletevent, direct2d, directwrite3).
  for feature in opengl sql dbus network printsupport concurrent xml icu \
    system_zlib system_png system_jpeg system_pcre2 system_freetype system_harfbuzz \
    tabletevent direct2d direct2d1_1 directwrite3 vulkan \
    pdf graphicsview wizard mdiarea dial lcdnumber calendarwidget fontcombobox \
    syntaxhighlighter colordialog fontdialog zstd glib gif textodfwriter; do
    features+=("-DFEATURE_$feature=OFF")
  done
  # A configured folder is only built on.
  [ -f "$cache/qt-build/build.ninja" ] ||
    cmake -S "$sources/qt6-base" -B "$cache/qt-build" "${library_options[@]}" \
      -DQT_HOST_PATH=/usr -DQT_HOST_PATH_CMAKE_DIR="$host_cmake" -DINPUT_opengl=no \
      -DBUILD_WITH_PCH=ON -DQT_BUILD_EXAMPLES=OFF -DQT_BUILD_TESTS=OFF -DQT_BUILD_DOCS=OFF \
      "${features[@]}"
  cmake --build "$cache/qt-build" -j "$jobs"
  cmake --install "$cache/qt-build" > "$cache/qt-install.log"
  rm -rf "$sources/qt6-base"
}
