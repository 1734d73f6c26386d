#!/usr/bin/env bash
# hardening.sh FILE...: each program and library that is shipped has what makes a mistake in it hard to
# turn into an attack. Reads it off the files: what the compiler was told is not what a linker did.
set -euo pipefail

status=0
missing() {
  printf '%s: %s\n' "$(basename "$file")" "$1"
  status=1
}

# functions: those that other files can call, and main(): name and address.
functions() {
  readelf -WsD "$file" | awk '$4 == "FUNC" && $5 != "LOCAL" && $7 != "UND" { print "0x" $2 }'
  readelf -Ws "$file" | awk '$8 == "main" && $4 == "FUNC" { print "0x" $2 }'
}

# landingMarks: fails unless each of these functions begins with the mark for indirect jumps.
landingMarks() {
  local marks
  marks=$(objdump -d --no-show-raw-insn "$file" | awk '$2 == "endbr64" { print "0x" $1 }' | tr -d :)
  awk 'NR == FNR { marked[strtonum_hex($1)] = 1; next }
       !(strtonum_hex($1) in marked) { exit 1 }
       function strtonum_hex(text) { sub(/^0x0*/, "", text); return text }' \
    <(printf '%s\n' "$marks") <(functions | sort -u)
}

# paths: where the file looks for libraries, one folder a line.
paths() {
  readelf -Wd "$file" | sed -nE 's/.*\((RPATH|RUNPATH)\).*\[(.*)\]$/\2/p' | tr : '\n'
}

examineElf() {
  local header segments dynamic needed
  header=$(readelf -Wh "$file")
  segments=$(readelf -Wl "$file")
  dynamic=$(readelf -Wd "$file")
  needed=$(nm -D --undefined-only "$file")
  grep -q 'Type: *DYN' <<<"$header" || missing "lies at a fixed address"
  grep -q 'GNU_RELRO' <<<"$segments" || missing "tables of the linker can be written"
  grep -qE '\(FLAGS\).*BIND_NOW|\(FLAGS_1\).*NOW|\(BIND_NOW\)' <<<"$dynamic" || missing "binds symbols late"
  ! grep -qE 'GNU_STACK.* RWE ' <<<"$segments" || missing "has an executable stack"
  grep -q '__stack_chk_fail' <<<"$needed" || missing "no stack protector"
  if grep -qE ' v?(s|sn|f)?printf@' <<<"$needed" && ! grep -qE 'printf_chk@' <<<"$needed"; then
    missing "formats texts into unchecked buffers"
  fi
  [[ $(paths | grep -cvE '^\$ORIGIN(/|$)') == 0 ]] || missing "looks for libraries in $(paths | paste -sd ' ')"
  if grep -q 'X86-64' <<<"$header"; then landingMarks || missing "no landing marks for jumps"; fi
}

examinePe() {
  local header symbols mark
  header=$(x86_64-w64-mingw32-objdump -p "$file")
  symbols=$(x86_64-w64-mingw32-nm "$file")
  for mark in HIGH_ENTROPY_VA DYNAMIC_BASE NX_COMPAT; do
    grep -q "$mark" <<<"$header" || missing "no $mark"
  done
  grep -qE '^ImageBase\s+0{0,7}[1-9a-f][0-9a-f]{8}' <<<"$header" || missing "wants the lowest 4 GB"
  grep -q 'reloc' < <(x86_64-w64-mingw32-objdump -h "$file") || missing "lies at a fixed address"
  grep -q '__stack_chk_fail' <<<"$symbols" || missing "no stack protector"
  ! grep -qi 'DLL Name: libssp' <<<"$header" || missing "needs a DLL for its stack protector"
}

for file in "$@"; do
  case $file in
  *.dll | *.exe) examinePe ;;
  *) examineElf ;;
  esac
done
exit $status
