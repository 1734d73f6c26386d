#!/usr/bin/env bash
# compare.sh VERIFY WRITE: of lines that were made wrong, VERIFY finds those that a validator of the
# published schema finds. WRITE makes sample streams. Status 77 where the schema is missing.
set -euo pipefail
here=$(dirname "$0")
[[ -f $here/../ocp/schema/root.json ]] || exit 77
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$2" "$folder" ocp
PYTHONPATH=$here/../ocp /usr/bin/python3 -B "$here/compare.py" "$here/../ocp/schema" "$1" \
  "$here/every_kind.jsonl" "$folder/Run"
