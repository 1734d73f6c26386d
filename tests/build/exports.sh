#!/usr/bin/env bash
# exports.sh [--write] LISTS LIBRARY...: compares what each library exports with its list in the
# folder LISTS, or writes the list.
#
# A line holds the name as the linker knows it and as a programmer reads it. Of a shared object the
# list holds the strong symbols: functions, data, and the type information of classes that are
# compiled in one place. Weak ones come and go with a compiler's inlining.
set -euo pipefail
write=false
if [[ $1 == --write ]]; then
  write=true
  shift
fi
lists=$1
shift

symbols() {
  case $1 in
  *.dll)
    x86_64-w64-mingw32-objdump -p "$1" |
      awk '/^\[Ordinal\/Name Pointer\]/ { table = 1; next }
           /^$/ { table = 0 }
           table { print $NF }'
    ;;
  *) nm -D --defined-only "$1" | awk '$2 ~ /^[TDBR]$/ { print $3 }' ;;
  esac
}

exported() {
  symbols "$1" | LC_ALL=C sort -u | while IFS= read -r symbol; do
    printf '%s  %s\n' "$symbol" "$(c++filt "$symbol")"
  done
}

status=0
for library in "$@"; do
  name=$(basename "$library")
  name=${name#lib}
  name=${name%.dll}
  name=${name%.so*}
  if $write; then
    mkdir -p "$lists"
    exported "$library" >"$lists/$name.txt"
  elif ! diff -u --label "expected of $name" --label "exported by $name" \
    "$lists/$name.txt" <(exported "$library"); then
    status=1
  fi
done
if [[ $status -ne 0 ]]; then echo "If this is meant: ./dev exports" >&2; fi
exit $status
