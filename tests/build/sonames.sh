#!/usr/bin/env bash
# sonames.sh MAJOR LIBRARY...: each shared library is linked by its name with the major version, and can
# be found by that name and by the plain one beside it.
set -euo pipefail
major=$1
shift

status=0
for library in "$@"; do
  plain=${library%.so*}.so
  wanted=$(basename "$plain").$major
  name=$(readelf -Wd "$library" | sed -nE 's/.*\(SONAME\).*\[(.*)\]$/\1/p')
  [[ $name == "$wanted" ]] || { echo "$library: linked as \"$name\" instead of \"$wanted\""; status=1; }
  for link in "$plain" "$plain.$major"; do
    [[ $link -ef $library ]] || { echo "$link does not lead to $library"; status=1; }
  done
done
exit $status
