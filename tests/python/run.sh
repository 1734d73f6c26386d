#!/usr/bin/env bash
# run.sh BUILD: the Python package on what that build has made: types, tests, examples, and the wheel.
set -euo pipefail
build=$(realpath "$1")
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
source=$(realpath "$here/../../python")
python=/usr/bin/python3
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# Programs and libraries as they lie beside each other in a package, where nobody else can write.
stage() {
  local prefix=$scratch/prefix/lib/diagsrunner
  mkdir -p "$prefix"
  cp -a "$build/bin/diags-worker" "$build"/lib/lib{diags,diagsrunner,vorcore,kfrxmlparser,cmpi.nsp}.so* "$prefix"
  cp -aL "$build/installation/." "$prefix"
  chmod -R go-w "$prefix"
}

types() {
  local platform
  for platform in linux win32; do
    mypy --strict --platform "$platform" --cache-dir "$scratch/mypy" \
      "$source/diagsrunner" "$source/pytest_diagsrunner.py"
  done
}

# tests PYTHON: those of the package that this Python finds. Ctrl-C, which they try, is ignored where the
# whole runs in the background.
tests() {
  (cd "$here" && DIAGS_BUILD=$build PYTHONDONTWRITEBYTECODE=1 DIAGS_LIBRARY=$build/lib/libdiags.so.1 \
    env --default-signal=INT "$1" -m pytest -q -p no:cacheprovider .)
}

# makeWheel: of a copy, since the tools write into the sources.
makeWheel() {
  cp -r "$source" "$scratch/source"
  (cd "$scratch/source" && "$python" -m pip wheel -q --no-index --no-deps --no-build-isolation -w "$scratch" .)
  wheel=$(echo "$scratch"/diagsrunner-*-py3-none-any.whl)
}

# In an environment of its own, with a runner beside it, as on a machine where all is installed. The
# examples of the documents are run there.
tryWheel() {
  local prefix=$scratch/prefix
  "$python" -m venv --system-site-packages "$prefix"
  "$prefix/bin/pip" install -q --no-index --no-deps "$wheel"
  (cd "$scratch" && env -u DIAGS_LIBRARY -u PYTHONPATH "$prefix/bin/python" -B "$here/examples.py" "$source") &&
    grep -q -- --diags-only <<<"$("$prefix/bin/python" -B -m pytest --help)"
}

types
stage
makeWheel
# A test of the machine is looked at every five seconds: meanwhile others can go on.
tryWheel >"$scratch/wheel.log" 2>&1 &
wheelTrial=$!
PYTHONPATH=$source tests "$python"
wait "$wheelTrial" || { cat "$scratch/wheel.log" >&2; exit 1; }
echo "the wheel works, and so do the examples: $(tail -n 1 "$scratch/wheel.log")"
