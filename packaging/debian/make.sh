#!/usr/bin/env bash
# make.sh BUILD: the Debian package of that build, the one of the Python package, which is written as a
# wheel, too, and the package of its debug information if there is any. All are written to the build's folder.
#
# With the tools of dpkg alone. debhelper wants to configure and build by itself, in a tree made for it;
# CPack cannot strip into a package that apt takes, counts what links lead to in the installed size, and
# has ldconfig run for libraries that are nobody else's. What is installed where is known to
# packaging/Packaging.cmake, here as for the zip.
set -euo pipefail
umask 022 # whoever makes the package: folders that others can write have no providers loaded
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$(realpath "$1")
work=$build/debian
version=$(dpkg-parsechangelog -l "$here/changelog" -S Version)
architecture=$(dpkg --print-architecture)
# The same tree makes the same package, whenever it does.
SOURCE_DATE_EPOCH=$(dpkg-parsechangelog -l "$here/changelog" -S Timestamp)
export SOURCE_DATE_EPOCH

# What an administrator edits belongs into /etc, where upgrades leave it alone; the installation leads
# there.
moveConfiguration() {
  local file
  mkdir -p "$work/main/etc/diagsrunner"
  for file in "$work"/main/usr/lib/diagsrunner/kfr/data/*; do
    mv "$file" "$work/main/etc/diagsrunner/"
    ln -s "/etc/diagsrunner/${file##*/}" "$file"
  done
}

# binaries: the programs and libraries that are to be packed.
binaries() {
  find "$work/main" -type f \( -path '*/usr/bin/*' -o -name diags-worker -o -name diags-slurm -o -name '*.so*' \) | LC_ALL=C sort
}

# Debuggers find the file by the identifier that the linker gave the binary.
splitOffSymbols() {
  local binary id symbols
  while IFS= read -r binary; do
    id=$(readelf -n "$binary" | sed -n 's/^ *Build ID: *//p')
    if grep -q '\.debug_info' <<<"$(readelf -WS "$binary")"; then
      symbols=$work/dbgsym/usr/lib/debug/.build-id/${id:0:2}/${id:2}.debug
      mkdir -p "$(dirname "$symbols")"
      objcopy --only-keep-debug --compress-debug-sections "$binary" "$symbols"
      chmod 644 "$symbols"
      buildIds+=" $id"
    fi
    strip --strip-unneeded --remove-section=.comment --remove-section=.note "$binary"
  done < <(binaries)
}

# dependencies: the packages whose libraries the binaries need, as dpkg-shlibdeps finds them.
dependencies() {
  mkdir -p "$work/shlibdeps/debian"
  printf 'Source: diagsrunner\n\nPackage: diagsrunner\nArchitecture: any\n' \
    >"$work/shlibdeps/debian/control"
  (
    cd "$work/shlibdeps"
    binaries | xargs -d '\n' dpkg-shlibdeps -O "-l$work/main/usr/lib/diagsrunner"
  ) | sed -n 's/^shlibs:Depends=//p'
}

# packPython: the same files as in the wheel, where Debian's Python looks for them.
packPython() {
  local tree=$work/python packages=$work/python/usr/lib/python3/dist-packages
  mkdir -p "$packages" "$tree/usr/share/doc" "$tree/DEBIAN"
  cp -r "$here/../../python" "$work/python-source" # the tools write into the sources
  find "$work/python-source" -exec touch -h -d "@$SOURCE_DATE_EPOCH" {} +
  (cd "$work/python-source" &&
    /usr/bin/python3 -m pip wheel -q --no-index --no-deps --no-build-isolation -w "$build" .)
  /usr/bin/python3 -m zipfile -e "$build"/diagsrunner-*.whl "$packages"
  find "$tree/usr" -type d -exec chmod 755 {} + -o -type f -exec chmod 644 {} +
  ln -s diagsrunner "$tree/usr/share/doc/python3-diagsrunner"
  install -m 755 "$here/prerm-python" "$tree/DEBIAN/prerm"
  architecture=all close python3-diagsrunner "$tree" "$here/control-python.in"
}

# close NAME TREE TEMPLATE: writes the control files of the tree and makes the package NAME of it.
close() {
  local name=$1 tree=$2 template=$3 size
  size=$(du -k --apparent-size -s --exclude=DEBIAN "$tree" | cut -f 1)
  mkdir -p "$tree/DEBIAN"
  (cd "$tree" && find usr -type f -print0 | LC_ALL=C sort -z | xargs -0 md5sum) >"$tree/DEBIAN/md5sums"
  sed -e "s/@VERSION@/$version/" -e "s/@ARCHITECTURE@/$architecture/" -e "s/@SIZE@/$size/" \
    -e "s/@DEPENDS@/${depends:-}/" -e "s/@BUILD_IDS@/${buildIds# }/" "$template" >"$tree/DEBIAN/control"
  dpkg-deb --root-owner-group -Zxz --build "$tree" "$build/${name}_${version}_$architecture.deb"
}

rm -rf "$work" "$build"/diagsrunner-*.whl "$build"/*diagsrunner_*.deb "$build"/diagsrunner-dbgsym_*.deb
mkdir "$work"
DESTDIR=$work/main cmake --install "$build" --prefix /usr
install -D -m 644 "$here/conffiles" "$work/main/DEBIAN/conffiles"
install -D -m 644 "$here/lintian-overrides" "$work/main/usr/share/lintian/overrides/diagsrunner"
install -m 755 "$here/postrm" "$work/main/DEBIAN/postrm"
moveConfiguration
buildIds=
splitOffSymbols
depends=$(dependencies)
[[ -n $depends ]] || { echo "make.sh: no dependencies were found" >&2; exit 1; }
close diagsrunner "$work/main" "$here/control.in"
if [[ -n $buildIds ]]; then
  documents=$work/dbgsym/usr/share/doc
  mkdir -p "$documents"
  ln -s diagsrunner "$documents/diagsrunner-dbgsym"
  close diagsrunner-dbgsym "$work/dbgsym" "$here/control-dbgsym.in"
fi
packPython
