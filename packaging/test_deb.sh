#!/usr/bin/env bash
# test_deb.sh PACKAGE SCRATCH: installs the Debian package below the scratch folder, uses the
# command and a host that is built against it, and removes it again.
set -euo pipefail
package=$(realpath "$1")
scratch=$2
source=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

rm -rf "$scratch"
root=$scratch/root
mkdir -p "$root/var/lib/dpkg/info" "$root/var/lib/dpkg/updates" "$root/var/lib/dpkg/triggers"
touch "$root/var/lib/dpkg/status" "$root/var/lib/dpkg/available"
root=$(realpath "$root")

# The libraries that the package depends on are this machine's, which that database does not know.
inScratch() {
  dpkg --root="$root" --log="$scratch/dpkg.log" --force-depends --force-script-chrootless \
    --force-not-root "$@" >"$scratch/dpkg.out" 2>&1 || {
    cat "$scratch/dpkg.out" >&2
    exit 1
  }
}
expect() {
  grep -q -- "$1" <<<"$2" || {
    printf 'expected "%s" in:\n%s\n' "$1" "$2" >&2
    exit 1
  }
}

[[ $(stat -c %a "$package") == 644 ]] || {
  printf 'others than who made it cannot read %s\n' "$package" >&2
  exit 1
}

# A folder that is closed to users, or open to others, would make the installation useless.
modes=$(dpkg-deb --contents "$package" |
  awk '$1 !~ /^(drwxr-xr-x|-rwxr-xr-x|-rw-r--r--)$/ || $2 != "root/root"')
[[ -z $modes ]] || {
  printf 'owners or modes that no package should have:\n%s\n' "$modes" >&2
  exit 1
}

inScratch --install "$package"
listing=$("$root/usr/bin/diags" list)
expect 'DIAGS: Memory Test' "$listing"
expect 'DIAGS: Processor Test' "$listing"
memory=$(grep 'Memory Test' <<<"$listing" | head -n 1)
expect 'Pass' "$("$root/usr/bin/diags" run "$memory")"

cmake -G Ninja -S "$source/examples/host" -B "$scratch/host" "-DCMAKE_PREFIX_PATH=$root/usr" \
  -DCMAKE_BUILD_TYPE=Release >"$scratch/host.log"
cmake --build "$scratch/host" >>"$scratch/host.log"
# consume NAME OPTION...: builds what uses the package's targets, in a folder of that name.
consume() {
  local folder=$scratch/$1
  shift
  cmake -G Ninja -S "$source/packaging/consumer" -B "$folder" "-DCMAKE_PREFIX_PATH=$root/usr" "$@" \
    >"$folder.log" 2>&1 && cmake --build "$folder" >>"$folder.log" || {
    cat "$folder.log" >&2
    exit 1
  }
}
library=$root/usr/lib/diagsrunner
consume consumer
expect 'DIAGS: Memory Test' "$("$scratch/consumer/linked_host" "$library")"
consume consumer-without-boost -DWITHOUT_BOOST=ON
# Who asks for hosts fails there, and who asks for providers has all that is needed.
told=$(grep -c 'for providers alone' "$scratch/consumer-without-boost.log" || true)
[[ $told == 1 ]] || {
  printf 'told %s times, not once, that there is nothing for hosts without Boost\n' "$told" >&2
  exit 1
}

report=$("$scratch/host/host" "$library/libdiagsrunner.so" "$library" "$memory")
expect 'verdict: Pass' "$report"
expect ' 0 errors' "$report"

inScratch --purge diagsrunner
left=$(find "$root" -path "$root/var" -prune -o -type f -print)
[[ -z $left ]] || {
  printf 'the removal left:\n%s\n' "$left" >&2
  exit 1
}
echo "installed, listed, ran a test from the command and from a host, removed"
