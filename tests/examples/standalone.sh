#!/usr/bin/env bash
# standalone.sh ROOT EXAMPLE FOLDER OPTION...: an example builds with nothing but the CMPI headers,
# installs its three files, and exports factories alone. The options are for CMake: the generator,
# since the default one's program need not be here, and for another system its toolchain.
set -euo pipefail
root=$1 example=$2 folder=$3
shift 3

rm -rf "$folder"
mkdir -p "$folder/include"
cp -r "$root/cmpi" "$folder/include/"
cp -r "$root/examples/$example" "$folder/source"
cmake -S "$folder/source" -B "$folder/build" -DCMPI_INCLUDE_DIR="$folder/include" "$@" >/dev/null
cmake --build "$folder/build" >/dev/null
cmake --install "$folder/build" --prefix "$folder/installation" >/dev/null

installed=("$folder"/installation/providers/*)
[[ ${#installed[@]} -eq 3 ]] || { printf 'installed: %s\n' "${installed[@]}"; exit 1; }
others=$(nm -D --defined-only "$folder"/installation/providers/*.so |
  awk '$3 !~ /^[A-Za-z_]+_Create_(Instance|Association|Method)MI$/ { print $3 }')
[[ -z $others ]] || { echo "exported: $others"; exit 1; }
