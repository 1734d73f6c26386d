#!/usr/bin/env bash
# manual_page.sh DIAGS PAGE: the document that the manual page is made from names the commands and options that
# the command's own help names, and no others; the page has what the command says of each besides; and roff
# understands all of it.
set -euo pipefail
diags=$1 page=$2

tree=$(cd "$(dirname "$0")/../.." && pwd)
text=$("$tree/packaging/manpage.sh" diags.1 "$tree/docs/diags.md" 0 today | sed -e 's/\\-/-/g' -e 's/\\f[BRI]//g')
help=$("$diags" --help)
commands=$(awk '/^Subcommands:/ { found = 1; next } found && !NF { exit } found && /^  [a-z]/ { print $1 }' \
  <<<"$help")
[[ -n $commands ]] || { echo "no commands in the help"; exit 1; }

status=0
for command in $commands; do
  grep -q "^diags $command\b" <<<"$text" || { echo "not in the page: diags $command"; status=1; }
  grep -q "^\.SS \"diags $command\b" "$page" || { echo "no section in the page: $command"; status=1; }
  help+=$("$diags" "$command" --help)
done
options() { grep -oE -- '(^|[^-[:alnum:]])--[a-z][a-z-]*' | grep -oE -- '--.*' | sort -u; }
diff <(options <<<"$help") <(options <<<"$text") | sed -n \
  -e 's/^</not in the page:/p' -e 's/^>/in the page alone:/p' | { ! grep . ; } || status=1

if command -v groff >/dev/null; then
  complaints=$(groff -man -ww -Tutf8 -z "$page" 2>&1)
  [[ -z $complaints ]] || { echo "$complaints"; status=1; }
fi
exit $status
