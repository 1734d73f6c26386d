#!/usr/bin/env bash
# headers.sh ROOT SCRATCH COMPILER: every public header compiles alone, without a warning; those of
# the C interface as C, too. SCRATCH is a folder for the one-line sources.
set -euo pipefail
root=$1 scratch=$2 compiler=$3
mkdir -p "$scratch/boost-only"

# A cross compiler must not see this machine's headers: Boost, which is headers alone, by itself.
boost=$(dirname "$(find /usr/include -path '*/boost/shared_ptr.hpp' -print -quit)")
ln -sfn "$boost" "$scratch/boost-only/boost"
flags="-fsyntax-only -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror -I$root \
-I$root/include -isystem $scratch/boost-only"

# one "language source" pair for each header and language
cd "$root"
for header in framework/*.h include/diagsrunner/*.h include/diags/*.h cmpi/*.h \
  substitute/cmpi.nsp/{Bootstrap,Problem,ProviderInfo}.h; do
  name=${header//\//_}
  printf '#include "%s"\n' "${header#include/}" | tee "$scratch/$name.c" >"$scratch/$name.cpp"
  printf 'c++17 %s\n' "$scratch/$name.cpp"
  if [[ $header == cmpi/* || $header == include/diags/* ]]; then printf 'c11 %s\n' "$scratch/$name.c"; fi
done >"$scratch/sources"

xargs -P "$(nproc)" -L 1 sh -c '
  case $1 in c11) language=c;; *) language=c++;; esac
  '"$compiler"' '"$flags"' -x $language -std=$1 "$2" || { echo "$2 fails as $1"; exit 1; }
' sh <"$scratch/sources"
