#!/usr/bin/env bash
# check_samples.sh PROGRAM FORMAT: what the program writes in that format keeps its rules. Status 77
# where the files that say so are missing.
set -euo pipefail
here=$(dirname "$0")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$1" "$folder" "$2"
case $2 in
  ocp)
    [[ -f $here/ocp/schema/root.json ]] || exit 77
    /usr/bin/python3 -B "$here/ocp/check_streams.py" "$here/ocp/schema" "$folder"/*
    ;;
  junit) /usr/bin/python3 -B "$here/junit/check_documents.py" "$folder"/* ;;
esac
