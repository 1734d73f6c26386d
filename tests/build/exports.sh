#!/usr/bin/env bash
# exports.sh [--write] FOLDER: compares what our shared libraries in that folder export with the
# lists beside this script, or writes the lists.
#
# A list holds the strong symbols: functions, data, and the type information of classes that are
# compiled in one place. Weak ones come and go with a compiler's inlining.
set -euo pipefail
lists=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/exports
write=false
if [[ $1 == --write ]]; then
  write=true
  shift
fi
folder=$1

exported() {
  nm -D --defined-only "$1" | awk '$2 ~ /^[TDBR]$/ { print $3 }' | c++filt | LC_ALL=C sort -u
}

status=0
for library in diagsrunner vorcore cmpi.nsp kfrxmlparser; do
  if $write; then
    exported "$folder/lib$library.so" >"$lists/$library.txt"
  elif ! diff -u --label "expected of $library" --label "exported by $library" \
    "$lists/$library.txt" <(exported "$folder/lib$library.so"); then
    status=1
  fi
done
if [[ $status -ne 0 ]]; then echo "If this is meant: ./dev exports" >&2; fi
exit $status
