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
cache=${TESSALY_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/tessaly}/windows-$qt_version-$tag_version
sources=$cache/sources
prefix=$cache/prefix
host_cmake=/usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)/cmake
mkdir -p "$sources" "$prefix"

# Fetches a source package where this machine gets its packages from. The lists lie in the cache
# folder; apt's own settings stay as they are.
fetch() {
  local package=$1 version=$2 apt=$cache/apt file
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
    { apt-get "${options[@]}" --download-only source "$package=$version" ||
      { echo "The source of $package $version is not where its package came from." >&2; exit 1; }; } &&
    dpkg-source --no-check -x ./*.dsc "$package")
  mv "$sources/$package.part/$package" "$sources/$package"
  rm -rf "$sources/$package.part" "$apt"
}

launcher=()
if command -v ccache >/dev/null; then
  launcher=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi
library_options=(-G Ninja -DCMAKE_TOOLCHAIN_FILE="$here/mingw-w64.cmake" -DCMAKE_BUILD_TYPE=Release
  "-DCMAKE_C_FLAGS_RELEASE=-O2 -DNDEBUG" "-DCMAKE_CXX_FLAGS_RELEASE=-O2 -DNDEBUG"
  -DBUILD_SHARED_LIBS=OFF -DCMAKE_INSTALL_PREFIX="$prefix" "${launcher[@]}")

# Each of these leaves a mark when it is done, which says how; the sources and the build folder
# then go.
build_once() {
  local name=$1 how
  how=$(declare -f "build_$name" | sha256sum)
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
