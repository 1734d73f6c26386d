#!/usr/bin/env bash
# run.sh BUILD: the collection, built, installed and used by Ansible itself, on several hosts that are
# all this machine.
set -euo pipefail
build=$(cd "$1" && pwd)
here=$(cd "$(dirname "$0")" && pwd)
product=$here/../../../integrations/ansible
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
# Nothing of this user's own settings, and nothing left in the user's folders.
export HOME=$folder/home ANSIBLE_CONFIG=$folder/ansible.cfg ANSIBLE_COLLECTIONS_PATH=$folder/collections
export ANSIBLE_CONNECTION_PLUGINS=$here/connection ANSIBLE_FORKS=6 ANSIBLE_NOCOLOR=1
export ANSIBLE_LOCALHOST_WARNING=false ANSIBLE_PIPELINING=true ANSIBLE_REMOTE_TMP=$folder/tmp ANSIBLE_DEPRECATION_WARNINGS=false
export PYTHONDONTWRITEBYTECODE=1 PYTHONPATH=$ANSIBLE_COLLECTIONS_PATH
mkdir "$HOME"
: >"$ANSIBLE_CONFIG"

die() {
  printf 'ansible: %s\n' "$*" >&2
  exit 1
}

# play STATUS ARGUMENT...: a playbook that ends so; what it says is in the file `said`.
play() {
  local wanted=$1 status=0
  shift
  ansible-playbook "$@" >"$folder/said" 2>&1 </dev/null || status=$?
  [[ $status == "$wanted" ]] || die "$* ended with $status instead of $wanted: $(<"$folder/said")"
}

# says TEXT...: each is in what the last playbook said.
says() {
  local text
  for text in "$@"; do
    grep -qF -- "$text" "$folder/said" || die "nobody says '$text': $(<"$folder/said")"
  done
}

ansible-galaxy collection build "$product" --output-path "$folder" >/dev/null
ansible-galaxy collection install --offline "$folder"/diagsrunner-diags-*.tar.gz \
  -p "$ANSIBLE_COLLECTIONS_PATH" >/dev/null 2>&1 || die "the collection cannot be installed"
ansible-doc -t module diagsrunner.diags.diags_run >"$folder/said" 2>&1 || die "$(<"$folder/said")"
says "- fail_on" "- ansible_facts" "EXAMPLES:"
python3 -B -m unittest discover -q -s "$here" -p '*_test.py' 2>"$folder/said" || die "$(<"$folder/said")"

# An installation for each host.
hosts=(well faulty unfinished vanishing missing wrong)
for host in "${hosts[@]}"; do
  mkdir -p "$folder/roots"
  cp -r "$build/tests/host/installations/scripted" "$folder/roots/$host"
done
echo 'tests = [' >"$folder/wrong.toml"
cat >"$folder/inventory" <<INVENTORY
well diags_tests='["Scripted Pass"]'
faulty diags_tests='["Scripted Fail"]'
unfinished diags_tests='["Scripted Incomplete"]'
vanishing diags_tests='["Scripted Pass"]' ansible_connection=vanishing
missing diags_tests='["Scripted Pass"]' diags_command=/nowhere/diags
wrong diags_plan=$folder/wrong.toml

[all:vars]
ansible_connection=local
ansible_python_interpreter=/usr/bin/python3
diags_command=$build/bin/diags
diags_root=$folder/roots/{{ inventory_hostname }}
diags_plan=
diags_state=$folder/state/{{ inventory_hostname }}
diags_streams=$folder/streams
folder=$folder
INVENTORY
run=(diagsrunner.diags.run -i "$folder/inventory" -e "diags_streams=$folder/streams")

play 0 "$here/policies.yml" -i "$folder/inventory"

# Only tried: the plan and the command are looked at; nothing is left.
play 2 "${run[@]}" --check -l 'localhost,well,faulty,wrong'
says "changed: [well]" "changed: [faulty]" "fatal: [wrong]: FAILED!" "$folder/wrong.toml"
[[ ! -e $folder/streams && ! -e $folder/state ]] || die "a dry run leaves something"

# Each host's fate is its own. What an earlier run left of the one that goes does not pass for an answer.
mkdir "$folder/streams"
echo old >"$folder/streams/vanishing.jsonl"
play 4 "${run[@]}"
says "fatal: [faulty]: FAILED!" "hardware is faulty: Scripted Fail,fan0,Front Fan: failed" \
  "fatal: [unfinished]: FAILED!" "tests without a verdict: Scripted Incomplete,fan0,Front Fan: incomplete" \
  "fatal: [vanishing]: UNREACHABLE!" "no route to host" \
  "fatal: [missing]: FAILED!" "/nowhere/diags cannot be run: No such file or directory" \
  "fatal: [wrong]: FAILED!" "$folder/wrong.toml" \
  "no answer from vanishing" "no answer from missing" "no answer from wrong"
! grep -q 'fatal: \[well\]' "$folder/said" || die "a host that is well failed: $(<"$folder/said")"
[[ $(cd "$folder/streams" && echo *) == "faulty.jsonl unfinished.jsonl well.jsonl" ]] ||
  die "the streams are $(ls "$folder/streams")"
"$build/bin/diags" verify "$folder"/streams/*.jsonl >"$folder/said" 2>&1 || die "$(<"$folder/said")"
grep -q '"result":"FAIL"' "$folder/streams/faulty.jsonl" || die "the stream of faulty has no failure"

# An inventory without hosts, and a package that is not there, are named.
: >"$folder/empty"
play 2 diagsrunner.diags.run -i "$folder/empty"
says "$folder/empty" "nothing would be diagnosed"
play 2 "${run[@]}" -l 'localhost,well' -e "diags_package=$folder/none.deb"
says "fatal: [well]: FAILED!" "$folder/none.deb is not there"

# As a Debian package, which apt installs: one with nothing in it but a file. Only root may.
if [[ $EUID -eq 0 ]]; then
  mkdir -p "$folder/deb/DEBIAN" "$folder/deb/usr/share/diags-role-trial"
  chmod -R 755 "$folder/deb"
  printf '%s\n' "Package: diags-role-trial" "Version: $RANDOM" "Architecture: all" \
    "Maintainer: nobody <nobody@localhost>" "Description: what the trial of a role installs" \
    >"$folder/deb/DEBIAN/control"
  echo there >"$folder/deb/usr/share/diags-role-trial/file"
  dpkg-deb --root-owner-group --build "$folder/deb" "$folder/diags-role-trial.deb" >/dev/null
  trap 'dpkg --purge diags-role-trial >/dev/null 2>&1 || true
        rm -rf "$folder" /var/cache/apt/archives/diags-role-trial.deb' EXIT
  deb=("${run[@]}" -l 'localhost,well' -e "diags_package=$folder/diags-role-trial.deb")
  play 0 "${deb[@]}" --check
  [[ ! -e /usr/share/diags-role-trial/file ]] || die "a dry run installs a package"
  play 0 "${deb[@]}"
  [[ -e /usr/share/diags-role-trial/file ]] || die "the package is not installed: $(<"$folder/said")"
  play 0 "${deb[@]}"
  says "ok: [well]"
  grep -A1 'Install the Debian package' "$folder/said" | grep -q '^ok:' ||
    die "what is installed is installed again: $(<"$folder/said")"
fi

# From a package, and by a policy that lets everything pass.
mkdir -p "$folder/package/bin"
printf '#!/bin/sh\nexec "%s" "$@"\n' "$build/bin/diags" >"$folder/package/bin/diags"
chmod +x "$folder/package/bin/diags"
(cd "$folder/package" && zip -q -r ../diags.zip .)
play 0 "${run[@]}" -l 'localhost,well,faulty,unfinished' -e diags_fail_on=never \
  -e "diags_package=$folder/diags.zip" -e "diags_prefix=$folder/prefix" \
  -e "diags_command=$folder/prefix/bin/diags"
! grep -q "no answer from" "$folder/said" || die "somebody gave no answer: $(<"$folder/said")"
