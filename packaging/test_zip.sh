#!/usr/bin/env bash
# test_zip.sh PACKAGE SCRATCH TOOLCHAIN PREFIX: unpacks the Windows package into the scratch folder,
# runs a test from there, from the command and from a host that is built against it. Needs Wine.
set -euo pipefail
package=$(realpath "$1")
scratch=$2 toolchain=$(realpath "$3") prefix=$(realpath "$4")
source=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

expect() {
  grep -q -- "$1" <<<"$2" || {
    printf 'expected "%s" in:\n%s\n' "$1" "$2" >&2
    exit 1
  }
}

rm -rf "$scratch"
# Any folder will do, so this is one that programs like to stumble over.
folder="$scratch/Prüf stand 日本"
mkdir -p "$folder"
(cd "$folder" && cmake -E tar x "$package")
root=$(realpath "$folder/$(basename "$package" .zip)")

# Without the quotes PowerShell would take the brackets for its own.
expect '/grant "\*S-1-5-18:(OI)(CI)F" ' "$(cat "$root/README.txt")"

listing=$(wine "$root/diags.exe" list | tr -d '\r')
expect 'DIAGS: Memory Self Addressing' "$listing"
expect 'DIAGS: Processor Stress' "$listing"
expect 'DIAGS: Port Ping' "$listing"
memory=$(grep 'Memory Self Addressing' <<<"$listing" | head -n 1)
expect 'Pass' "$(wine "$root/diags.exe" run "$memory")"

# build NAME SOURCE: builds a project that uses the package, in a folder of that name.
build() {
  local folder=$scratch/$1
  cmake -G Ninja -S "$source/$2" -B "$folder" "-DCMAKE_TOOLCHAIN_FILE=$toolchain" \
    "-DDIAGS_WINDOWS_PREFIX=$prefix" "-Ddiagsrunner_DIR=$root/lib/cmake/diagsrunner" \
    -DCMAKE_BUILD_TYPE=Release >"$folder.log" 2>&1 && cmake --build "$folder" >>"$folder.log" || {
    cat "$folder.log" >&2
    exit 1
  }
}
build consumer packaging/consumer
build host examples/host
build host-c examples/host-c
# A program finds the DLLs that lie beside it.
cp "$scratch/host/host.exe" "$root"
cp "$scratch/host-c/host.exe" "$root/host-c.exe"
report=$(cd "$scratch" && wine "$root/host.exe" "$root" "$memory")
expect 'verdict: Pass' "$report"
expect ' 0 errors' "$report"
expect 'passed: 1, failed: 0, others: 0' "$(cd "$scratch" && wine "$root/host-c.exe" '' "$memory" | tr -d '\r')"
echo "unpacked, listed, ran a test from the command and from a host"
