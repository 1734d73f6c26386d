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
case ${installed[*]} in
*.dll*) exported=$(x86_64-w64-mingw32-objdump -p "$folder"/installation/providers/*.dll |
  awk '/^\[Ordinal\/Name Pointer\]/ { table = 1; next } !NF { table = 0 } table { print $NF }') ;;
*) exported=$(nm -D --defined-only "$folder"/installation/providers/*.so | awk '{ print $3 }') ;;
esac
[[ -n $exported ]] || { echo "nothing is exported"; exit 1; }
others=$(grep -Ev '^[A-Za-z_]+_Create_(Instance|Association|Method)MI$' <<<"$exported" || true)
[[ -z $others ]] || { echo "exported: $others"; exit 1; }
