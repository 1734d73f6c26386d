#!/usr/bin/env bash
# prefix.sh PREFIX: puts everything that the Windows build needs from outside the tree into the
# folder PREFIX: Expat, built from Debian's source package; GoogleTest, built from the sources that
# Debian installs; and the header libraries that are installed on this machine, apart from the headers
# of this machine's own system. Once it is all there, this does nothing.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
prefix=$1
stamp=$prefix/complete
[[ -e $stamp && ! $here/prefix.sh -nt $stamp ]] && exit
rm -rf "$prefix"
mkdir -p "$prefix"/{include,lib/cmake,work/apt/{lists,archives}/partial}
prefix=$(cd "$prefix" && pwd)
keyring=/usr/share/keyrings/debian-archive-keyring.gpg

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

fetchExpat() {
  local release suite
  release=$(. /etc/os-release && echo "$VERSION_CODENAME")
  for suite in "$release" "$release-updates"; do
    echo "deb-src [signed-by=$keyring] http://deb.debian.org/debian $suite main"
  done >"$prefix/work/apt/sources.list"
  echo "deb-src [signed-by=$keyring] http://deb.debian.org/debian-security $release-security main" \
    >>"$prefix/work/apt/sources.list"
  privateApt update
  cd "$prefix/work"
  # A mirror may know of a security update without having it: then the release's own version.
  privateApt source expat || privateApt source "expat/$release"
  mv expat-*/ expat
  cd - >/dev/null
}

# install SOURCE OPTION...: builds a CMake project and installs it in the prefix.
install() {
  local source=$1 folder
  folder=$prefix/work/build-$(basename "$source")
  shift
  cmake -G Ninja -S "$source" -B "$folder" -Wno-dev -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_TOOLCHAIN_FILE="$here/toolchain.cmake" -DDIAGS_WINDOWS_PREFIX="$prefix" \
    -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_INSTALL_LIBDIR=lib -DBUILD_SHARED_LIBS=OFF "$@"
  cmake --build "$folder" -j "$(nproc)"
  cmake --install "$folder"
}

headers boost spdlog fmt CLI nlohmann
package spdlog "SPDLOG_FMT_EXTERNAL;FMT_HEADER_ONLY" spdlog::spdlog spdlog::spdlog_header_only
package CLI11 "" CLI11::CLI11
package nlohmann_json "" nlohmann_json::nlohmann_json
fetchExpat
# Debian's patches ask for the value of XML_DTD, which Expat's own CMake files define without one. It
# becomes part of a DLL, and is protected as the rest of it.
install "$prefix/work/expat/expat" -DEXPAT_DTD=OFF \
  "-DCMAKE_C_FLAGS=-DXML_DTD=1 -fstack-protector-strong -D_FORTIFY_SOURCE=2" \
  -DEXPAT_BUILD_TOOLS=OFF -DEXPAT_BUILD_EXAMPLES=OFF -DEXPAT_BUILD_TESTS=OFF \
  -DEXPAT_BUILD_DOCS=OFF -DEXPAT_SHARED_LIBS=OFF
install /usr/src/googletest -Dgtest_disable_pthreads=OFF
rm -rf "$prefix/work"
touch "$stamp"
