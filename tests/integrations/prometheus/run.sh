#!/usr/bin/env bash
# run.sh BUILD: what the command writes as metrics, and what is made of them, held to the rules of
# Prometheus' own tool.
set -euo pipefail
build=$(cd "$1" && pwd)
here=$(cd "$(dirname "$0")" && pwd)
product=$here/../../../integrations/prometheus
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

die() {
  printf 'prometheus: %s\n' "$*" >&2
  exit 1
}

# clean FILE: the tool reads it, and has no complaint about names, units and help texts.
clean() {
  local complaints
  complaints=$(promtool check metrics <"$1" 2>&1) || die "$1: $complaints"
  [[ -z $complaints ]] || die "$1: $complaints"
}

# statusOf COMMAND...: prints how it ended.
statusOf() {
  local status=0
  "$@" >"$folder/out" 2>&1 || status=$?
  printf '%s' "$status"
}

# Each hostile text, and each kind of unit.
mkdir "$folder/samples"
"$build/bin/write_sample_reports" "$folder/samples" metrics
for sample in "$folder"/samples/*; do clean "$sample"; done

# Runs of the command: tests that pass, fail, and have no verdict, and one that a signal ended.
diags=("$build/bin/diags" run --root "$build/tests/host/installations/scripted" --state "$folder/state")
[[ $(statusOf "${diags[@]}" --all --metrics "$folder/run.prom") == 1 ]] || die "$(<"$folder/out")"
clean "$folder/run.prom"
grep -q '^diags_test_outcome{test="Scripted Fail",.*,outcome="failed"} 1$' "$folder/run.prom" ||
  die "the test that failed is not told"
[[ $(statusOf "$build/bin/diags" report --state "$folder/state" --metrics "$folder/kept.prom") == 0 ]] ||
  die "$(<"$folder/out")"
cmp "$folder/run.prom" "$folder/kept.prom" || die "a kept run has other metrics"

# Killed: the file is still that of the run before, and nothing is left that would be collected.
cp "$folder/run.prom" "$folder/before"
hanging=(env SICKNESS=polling:loop "$build/bin/diags" run --root "$build/tests/engine/installations/sick" --no-history
  "SICK Test" --events "$folder/events" --metrics "$folder/run.prom")
"${hanging[@]}" >/dev/null 2>&1 &
killed=$!
disown
for ((i = 0; i < 500; ++i)); do
  grep -qs '"test":' "$folder/events" && break
  sleep 0.02
done
grep -qs '"test":' "$folder/events" || die "the run that is to be killed does not begin"
kill -KILL $killed
while kill -0 $killed 2>/dev/null; do sleep 0.02; done
cmp "$folder/run.prom" "$folder/before" || die "a run that was killed changed the metrics"
[[ $(echo "$folder"/*.prom) == "$folder/kept.prom $folder/run.prom" ]] || die "$(ls "$folder")"

# The examples: rules that the tool accepts, that fire when they are to, and ask for what is written.
cp "$product/alerts.yml" "$here/alerts_test.yml" "$folder"
promtool check rules "$folder/alerts.yml" >"$folder/out" 2>&1 || die "$(<"$folder/out")"
(cd "$folder" && promtool test rules alerts_test.yml) >"$folder/out" 2>&1 || die "$(<"$folder/out")"
python3 -B "$here/check_queries.py" "$product/alerts.yml" "$product/dashboard.json" \
  "$folder"/samples/* "$folder/run.prom"
