#!/usr/bin/env bash
# links.sh ROOT: every relative link in a document of this tree leads to a file that is there.
set -euo pipefail
cd "$1"

status=0
while IFS= read -r document; do
  while IFS= read -r target; do
    case $target in *://* | mailto:* | '#'* | '') continue ;; esac
    if [[ ! -e $(dirname "$document")/${target%%#*} ]]; then
      echo "$document: no file for the link to $target"
      status=1
    fi
  done < <(grep -oE '\]\([^) ]+\)' "$document" | sed -E 's/^\]\((.*)\)$/\1/')
done < <(find . -name '*.md' -not -path './build*' -not -path './.git/*')
exit $status
