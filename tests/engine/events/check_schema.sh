#!/usr/bin/env bash
# check_schema.sh SCHEMA PROGRAM: each line that the program writes follows the schema, and what is
# wrong in one of them does not.
set -euo pipefail
"$2" | /usr/bin/python3 "$(dirname "$0")/check_schema.py" "$1"
