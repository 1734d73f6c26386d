#!/usr/bin/env bash
# compare_output.sh EXPECTED COMMAND...: fails unless the command prints these lines, in any order.
set -euo pipefail
expected=$1
shift
diff "$expected" <("$@" | LC_ALL=C sort)
