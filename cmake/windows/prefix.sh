#!/usr/bin/env bash
# prefix.sh PREFIX: puts everything that the Windows build needs from outside the tree into the
# folder PREFIX: Expat, libuv and SQLite, built from Debian's source packages; GoogleTest, built from the
# sources that Debian installs; and the header libraries that are installed on this machine, apart from
# the headers of this machine's own system. Once it is all there, this does nothing.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
prefix=$1
stamp=$prefix/complete
[[ -e $stamp && ! $here/prefix.sh -nt $stamp ]] && exit
rm -rf "$prefix"
mkdir -p "$prefix"/{include,lib/cmake,work/apt/{lists,archives}/partial}
prefix=$(cd "$prefix" && pwd)
keyring=/usr/share/keyrings/debian-archive-keyring.gpg
# What becomes part of a DLL or a program is protected as the rest of it.
protection="-fstack-protector-strong -D_FORTIFY_SOURCE=2"

# headers NAME...: the header folders of these names, without what lies beside them.
headers() {
  local name
  for name in "$@"; do ln -s "/usr/include/$name" "$prefix/include/$name"; done
}

# package NAME DEFINITIONS TARGET...: lets CMake find header libraries of the prefix by these names.
package() {
  local name=$1 definitions=$2 target
  shift 2
  mkdir -p "$prefix/lib/cmake/$name"
  for target in "$@"; do
    printf 'if(NOT TARGET %s)\n  add_library(%s INTERFACE IMPORTED)\n' "$target" "$target"
    printf '  set_target_properties(%s PROPERTIES INTERFACE_INCLUDE_DIRECTORIES "%s/include"\n' \
      "$target" "$prefix"
    printf '    INTERFACE_COMPILE_DEFINITIONS "%s")\nendif()\n' "$definitions"
  done >"$prefix/lib/cmake/$name/${name}Config.cmake"
  find /usr/lib /usr/share -path "*/cmake/$name/${name}ConfigVersion.cmake" \
    -exec ln -s {} "$prefix/lib/cmake/$name/" \; -quit
}

# An apt of our own: the machine's package sources may name no source packages, and stay as they are.
privateApt() {
  apt-get -q -o "Dir::Etc::SourceList=$prefix/work/apt/sources.list" -o Dir::Etc::SourceParts=- \
    -o "Dir::State::Lists=$prefix/work/apt/lists" -o "Dir::Cache=$prefix/work/apt" \
    -o APT::Sandbox::User=root "$@"
}

# sources NAME...: unpacks Debian's source packages of these names into the work folder.
sources() {
  local release suite name
  release=$(. /etc/os-release && echo "$VERSION_CODENAME")
  for suite in "$release" "$release-updates"; do
    echo "deb-src [signed-by=$keyring] http://deb.debian.org/debian $suite main"
  done >"$prefix/work/apt/sources.list"
  echo "deb-src [signed-by=$keyring] http://deb.debian.org/debian-security $release-security main" \
    >>"$prefix/work/apt/sources.list"
  privateApt update
  cd "$prefix/work"
  for name in "$@"; do
    # A mirror may know of a security update without having it: then the release's own version.
    privateApt source "$name" || privateApt source "$name/$release"
    mv "$name"-*/ "$name"
  done
  cd - >/dev/null
}

# build SOURCE OPTION...: builds a CMake project in a folder of the same name with "build-" before it.
build() {
  local source=$1 folder
  folder=$prefix/work/build-$(basename "$source")
  shift
  cmake -G Ninja -S "$source" -B "$folder" -Wno-dev -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_TOOLCHAIN_FILE="$here/toolchain.cmake" -DDIAGS_WINDOWS_PREFIX="$prefix" \
    -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_INSTALL_LIBDIR=lib -DBUILD_SHARED_LIBS=OFF "$@"
  cmake --build "$folder" -j "$(nproc)" ${buildTarget:+--target "$buildTarget"}
}

# install SOURCE OPTION...: and installs it in the prefix.
install() {
  build "$@"
  cmake --install "$prefix/work/build-$(basename "$1")"
}

# The archive alone: its own installation brings the DLL, too, and a linker would take that one.
installLibuv() {
  buildTarget=uv_a build "$prefix/work/libuv1" -DBUILD_TESTING=OFF "-DCMAKE_C_FLAGS=$protection"
  cp "$prefix/work/build-libuv1/libuv_a.a" "$prefix/lib/"
  cp -r "$prefix/work/libuv1/include/." "$prefix/include/"
}

# Its sources are put together into a single one by its own programs, which run here.
installSqlite() {
  mkdir "$prefix/work/build-sqlite3"
  cd "$prefix/work/build-sqlite3"
  ../sqlite3/configure --quiet --disable-shared
  make -j "$(nproc)" sqlite3.c
  x86_64-w64-mingw32-gcc-posix -O2 $protection -DSQLITE_THREADSAFE=1 -DSQLITE_DQS=0 \
    -DSQLITE_OMIT_LOAD_EXTENSION -DSQLITE_OMIT_DEPRECATED -c sqlite3.c -o sqlite3.o
  x86_64-w64-mingw32-ar rcs "$prefix/lib/libsqlite3.a" sqlite3.o
  cp sqlite3.h "$prefix/include/"
  cd - >/dev/null
}

headers boost spdlog fmt CLI nlohmann toml++ eigen3
package spdlog "SPDLOG_FMT_EXTERNAL;FMT_HEADER_ONLY" spdlog::spdlog spdlog::spdlog_header_only
package CLI11 "" CLI11::CLI11
package nlohmann_json "" nlohmann_json::nlohmann_json
sources expat libuv1 sqlite3
# Debian's patches ask for the value of XML_DTD, which Expat's own CMake files define without one.
install "$prefix/work/expat/expat" -DEXPAT_DTD=OFF "-DCMAKE_C_FLAGS=-DXML_DTD=1 $protection" \
  -DEXPAT_BUILD_TOOLS=OFF -DEXPAT_BUILD_EXAMPLES=OFF -DEXPAT_BUILD_TESTS=OFF \
  -DEXPAT_BUILD_DOCS=OFF -DEXPAT_SHARED_LIBS=OFF
installLibuv
installSqlite
install /usr/src/googletest -Dgtest_disable_pthreads=OFF
rm -rf "$prefix/work"
touch "$stamp"
