#!/usr/bin/env bash
# test_deb.sh PACKAGE SCRATCH: installs the Debian package and the packages of its debug information and for
# Python, which lie beside it, below the scratch folder; uses the command, its configuration, hosts that are
# built against it, and Python; and removes all again.
set -euo pipefail
package=$(realpath "$1")
symbols=${package/diagsrunner_/diagsrunner-dbgsym_}
python=$(echo "$(dirname "$package")"/python3-diagsrunner_*_all.deb)
scratch=$(realpath -m "$2")
source=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

rm -rf "$scratch"
root=$scratch/root
mkdir -p "$root/var/lib/dpkg/info" "$root/var/lib/dpkg/updates" "$root/var/lib/dpkg/triggers"
touch "$root/var/lib/dpkg/status" "$root/var/lib/dpkg/available"
root=$(realpath "$root")
library=$root/usr/lib/diagsrunner
diags=$root/usr/bin/diags

fail() {
  printf '%s\n' "$@" >&2
  exit 1
}
expect() { grep -q -- "$1" <<<"$2" || fail "expected \"$1\" in:" "$2"; }

# The libraries that the package depends on are this machine's, which that database does not know.
inScratch() {
  dpkg --root="$root" --log="$scratch/dpkg.log" --force-depends --force-script-chrootless \
    --force-not-root "$@" >"$scratch/dpkg.out" 2>&1 || fail "$(cat "$scratch/dpkg.out")"
}

# left: everything below the root but what dpkg remembers.
left() { find "$root" -mindepth 1 -path "$root/var" -prune -o -print; }

testFile() {
  [[ $(stat -c %a "$package") == 644 ]] || fail "others than who made it cannot read $package"
  # A folder that is closed to users, or open to others, would make the installation useless.
  local modes
  modes=$( (dpkg-deb --contents "$package" && dpkg-deb --contents "$python") |
    awk '$1 !~ /^(drwxr-xr-x|-rwxr-xr-x|-rw-r--r--|lrwxrwxrwx)$/ || $2 != "root/root"')
  [[ -z $modes ]] || fail "owners or modes that no package should have:" "$modes"
  lintian --allow-root --fail-on error,warning "$package" "$symbols" "$python" || fail "lintian has complaints"
}

# install: the scratch folder is no root, so that a link to /etc has to be led to the folder's own.
install() {
  inScratch --install "$package" "$symbols" "$python"
  local link target
  while IFS= read -r link; do
    target=$(readlink "$link")
    [[ -e $root$target ]] || fail "$link leads to $target, where nothing is"
    ln -sfn "$root$target" "$link"
  done < <(find "$root/usr" -type l -lname '/*')
}

testCommand() {
  local listing
  listing=$("$diags" list)
  expect 'DIAGS: Memory Self Addressing' "$listing"
  expect 'DIAGS: Processor Stress' "$listing"
  memory=$(grep 'Memory Self Addressing' <<<"$listing" | head -n 1)
  expect 'Pass' "$("$diags" run "$memory")"
  "$diags" check >"$scratch/check.out" 2>&1 || fail "$(cat "$scratch/check.out")"
}

# A link of that name says what the program is to do, and finds the command of the same package.
testSlurm() {
  local state=$scratch/slurm-state
  expect 'HealthCheckProgram' "$("$library/slurm/diags-slurm" --help)"
  "$library/slurm/health" --state "$state" --plan "$source/packaging/consumer/memory.toml" --node n1 \
    2>"$scratch/slurm.out" || fail "$(cat "$scratch/slurm.out")"
  expect 'n1: sound' "$(cat "$scratch/slurm.out")"
  expect '"sound"' "$(cat "$state/health.json")"
}

testDocuments() {
  "$source/tests/build/links.sh" "$root/usr/share/doc/diagsrunner" || fail "documents lead nowhere"
  expect '^.TH DIAGS 1' "$(zcat "$root/usr/share/man/man1/diags.1.gz")"
  local page option
  page=$(zcat "$root/usr/share/man/man8/diags-slurm.8.gz" | sed -e 's/\\-/-/g' -e 's/\\f[BRI]//g')
  expect '^.TH DIAGS-SLURM 8' "$page"
  for option in $("$library/slurm/diags-slurm" health --help | grep -oE -- '--[a-z][a-z-]+' | sort -u); do
    [[ $option == --help ]] || expect "\b${option#--}\b" "$page"
  done
  expect '^complete -F _diags diags' "$(<"$root/usr/share/bash-completion/completions/diags")"
  expect '^#compdef diags' "$(<"$root/usr/share/zsh/vendor-completions/_diags")"
}

# Ansible finds the collection where the package lays it; where there is no Ansible, the files are there.
testIntegrations() {
  local examples=$root/usr/share/doc/diagsrunner/examples/prometheus collections=$root/usr/share/ansible/collections
  local found
  [[ -s $examples/alerts.yml && -s $examples/dashboard.json ]] || fail "examples for Prometheus are missing"
  [[ -s $collections/ansible_collections/diagsrunner/diags/plugins/modules/diags_run.py ]] ||
    fail "the collection is missing"
  command -v ansible-doc >/dev/null || return 0
  found=$(HOME=$scratch ANSIBLE_COLLECTIONS_PATH=$collections PYTHONDONTWRITEBYTECODE=1 \
    ansible-doc -t module diagsrunner.diags.diags_run 2>&1) || fail "$found"
  expect 'fail_on' "$found"
}

# Each binary's debug information lies where a debugger looks for it.
testSymbols() {
  local binary id
  for binary in "$diags" "$library/slurm/diags-slurm" "$library"/*.so.*.* "$library"/providers/*.so; do
    id=$(readelf -n "$binary" | sed -n 's/^ *Build ID: *//p')
    expect '\.debug_line' "$(readelf -WS "$root/usr/lib/debug/.build-id/${id:0:2}/${id:2}.debug" 2>&1)"
  done
}

# An upgrade keeps what an administrator wrote, and the command goes by it.
testConfiguration() {
  local file=$root/etc/diagsrunner/excludetests.xml
  sed -i 's|^</vor>|<test name="DIAGS: Memory Self Addressing"/></vor>|' "$file"
  install
  grep -q 'DIAGS: Memory Self Addressing"/></vor>' "$file" || fail "an upgrade overwrites the configuration"
  ! grep -q 'Memory Self Addressing' <<<"$("$diags" list)" || fail "the configuration has no effect"
  sed -i 's|<test name="DIAGS: Memory Self Addressing"/></vor>|</vor>|' "$file"
}

# consume NAME OPTION...: builds what uses the package's targets, in a folder of that name.
consume() {
  local folder=$scratch/$1
  shift
  cmake -G Ninja -S "$source/packaging/consumer" -B "$folder" "-DCMAKE_PREFIX_PATH=$root/usr" "$@" \
    >"$folder.log" 2>&1 && cmake --build "$folder" >>"$folder.log" || fail "$(cat "$folder.log")"
}

testCMake() {
  local told
  consume consumer
  expect 'DIAGS: Memory Self Addressing' "$("$scratch/consumer/linked_host" "$library")"
  cmake --install "$scratch/consumer" --prefix "$scratch/consumer-installed" >>"$scratch/consumer.log"
  expect 'DIAGS: Memory Self Addressing' "$("$scratch/consumer-installed/bin/linked_host" "$library")"
  consume consumer-without-boost -DWITHOUT_BOOST=ON
  # Who asks for hosts fails there, and who asks for providers has all that is needed.
  told=$(grep -c 'for providers alone' "$scratch/consumer-without-boost.log" || true)
  [[ $told == 1 ]] || fail "told $told times, not once, that there is nothing for hosts without Boost"
}

# told PACKAGE OPTION...: what pkg-config says, as if the scratch folder were the root.
told() {
  local name=$1
  shift
  PKG_CONFIG_PATH=$(dirname "$(find "$root/usr/lib" -name diagsrunner.pc)") \
    pkg-config "--define-variable=prefix=$root/usr" "$@" "$name"
}

testPkgConfig() {
  local consumer=$source/packaging/consumer
  grep -qx 'prefix=/usr' "$(find "$root/usr/lib" -name diagsrunner.pc)" || fail "pkg-config looks elsewhere"
  # shellcheck disable=SC2046 # several words
  g++ -std=c++17 "$consumer/linked_host.cpp" -o "$scratch/pkg-config-host" \
    $(told diagsrunner --cflags --libs)
  expect 'DIAGS: Memory Self Addressing' "$("$scratch/pkg-config-host" "$library")"
  # shellcheck disable=SC2046
  gcc -std=c11 -shared -fPIC "$consumer/provider.c" -o "$scratch/libconsumer.so" \
    $(told diagsrunner-provider --cflags --libs)
  expect 'Consumer_Create_InstanceMI' "$(nm -D --defined-only "$scratch/libconsumer.so")"
}

# The hosts among the examples that are installed.
testExamples() {
  local report example
  for example in host host-c; do
    cmake -G Ninja -S "$root/usr/share/doc/diagsrunner/examples/$example" -B "$scratch/$example" \
      "-DCMAKE_PREFIX_PATH=$root/usr" -DCMAKE_BUILD_TYPE=Release >"$scratch/$example.log"
    cmake --build "$scratch/$example" >>"$scratch/$example.log"
  done
  report=$("$scratch/host/host" "$library" "$memory")
  expect 'verdict: Pass' "$report"
  expect ' 0 errors' "$report"
  # It finds the installation by the library that it is linked with.
  expect '"service": "DIAGS: Memory Self Addressing"' "$("$scratch/host-c/host" '')"
  expect 'passed: 1, failed: 0, others: 0' "$("$scratch/host-c/host" '' "$memory")"
  # shellcheck disable=SC2046 # several words
  gcc -std=c11 "$source/examples/host-c/host.c" -o "$scratch/pkg-config-host-c" $(told diags --cflags --libs)
  expect '"service": "DIAGS: Memory Self Addressing"' "$("$scratch/pkg-config-host-c" '')"
}

# It finds the library beside the folder of Debian's Python, and leaves what it compiled to nobody.
testPython() {
  local packages=$root/usr/lib/python3/dist-packages told
  told=$(cd "$scratch" && PYTHONDONTWRITEBYTECODE='' PYTHONPATH=$packages /usr/bin/python3 - "$memory" <<'END'
import sys
from diagsrunner import Diagnostics
with Diagnostics() as diagnostics, diagnostics.run(sys.argv[1]) as run:
    print(diagnostics.library, [event.kind for event in run][-1], run.wait().passed)
END
  )
  expect "^$library/libdiags.so.1 end 1$" "$told"
  told=$(cd "$scratch" && PYTHONPATH=$packages /usr/bin/python3 -m pytest -p no:cacheprovider --diags-only \
    --collect-only -q 2>&1) || fail "$told"
  expect '^diags::DIAGS: Memory Self Addressing' "$told"
  [[ -d $packages/diagsrunner/__pycache__ ]] || fail "Python has compiled nothing, so that nothing is tried"
}

testRemoval() {
  inScratch --remove python3-diagsrunner diagsrunner-dbgsym diagsrunner
  local files
  files=$(left | grep -Ev "^$root/etc(/diagsrunner(/[a-z_]+\.xml)?)?$" || true)
  [[ -z $files ]] || fail "the removal left:" "$files"
  [[ $(find "$root/etc" -type f | wc -l) == 3 ]] || fail "the removal took the configuration"
  mkdir -p "$root/var/lib/diagsrunner/slurm/history"
  inScratch --purge diagsrunner
  [[ ! -e $root/var/lib/diagsrunner ]] || fail "the purge left what was kept of the checks of a node"
  expect 'XDG_CACHE_HOME' "$(cat "$scratch/dpkg.out")"
  files=$(left)
  [[ -z $files ]] || fail "the purge left:" "$files"
}

testFile
install
testCommand
testSlurm
testDocuments
testIntegrations
testSymbols
testConfiguration
testCMake
testPkgConfig
testExamples
testPython
testRemoval
echo "no complaints of lintian; installed, listed, configured, ran a test from the command, from hosts and from Python, removed"
