#!/usr/bin/env bash
# compile.sh COMPILER SCRATCH: makes a library that has no protection at all, and lets hardening.sh look.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
mkdir -p "$2"
"$1" -O2 -w -fPIC -shared -fno-stack-protector -U_FORTIFY_SOURCE -fcf-protection=none \
  -Wl,-z,lazy,-z,norelro,-z,execstack,-rpath,/tmp "$here/unprotected.c" -o "$2/libunprotected.so"
"$here/../hardening.sh" "$2/libunprotected.so"
