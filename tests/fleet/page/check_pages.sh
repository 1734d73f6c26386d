#!/usr/bin/env bash
# check_pages.sh PROGRAM FOLDER [--write]: the program writes pages of sample answers into the folder,
# and a headless Chromium looks at them; with --write, the layout that it finds becomes the expected one.
set -euo pipefail
command -v chromium >/dev/null || {
  echo "chromium is not installed; ./dev test installs it" >&2
  exit 1
}
"$1" "$2"
exec /usr/bin/python3 -B "$(dirname "$0")/check_pages.py" "$2" "$(dirname "$0")" "${@:3}"
