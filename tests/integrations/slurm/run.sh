#!/usr/bin/env bash
# run.sh BUILD: Slurm's own daemons, four nodes on this machine, and what diags-slurm does there. They
# use ports, a key and folders of their own, and are gone at the end, however that comes.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
source=$(cd "$here/../../.." && pwd)
build=$(cd "$1" && pwd)

# slurmd starts jobs as any user, and munged is the only one to read its key.
if [[ $EUID -ne 0 ]]; then
  command -v sudo >/dev/null || {
    echo "run.sh: Slurm's daemons need root; run as root or install sudo" >&2
    exit 1
  }
  exec sudo "${BASH_SOURCE[0]}" "$build"
fi
umask 022
for program in munged slurmctld slurmd srun scontrol sinfo; do
  PATH=$PATH:/usr/sbin command -v "$program" >/dev/null || {
    echo "run.sh: $program is missing; on Debian: slurmctld slurmd slurm-client munge" >&2
    exit 1
  }
done
export PATH=$PATH:/usr/sbin

work=$(mktemp -d /tmp/diags-slurm.XXXXXX)
started=()
nodes=(n1 n2 n3 n4)

finish() {
  local status=$?
  trap - EXIT
  if [[ $status -ne 0 ]]; then
    for log in "$work"/log/*; do
      printf '%s\n' "---- ${log##*/}" >&2
      tail -n 20 "$log" >&2
    done
  fi
  # They have nothing to keep.
  [[ ${#started[@]} -eq 0 ]] || kill -KILL "${started[@]}" 2>/dev/null || true
  # The steps of jobs are children of nobody else.
  local step
  for step in $(stepsHere); do kill -KILL "$step" 2>/dev/null || true; done
  rm -rf "$work"
  exit "$status"
}
trap finish EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

fail() {
  printf 'run.sh: %s\n' "$*" >&2
  exit 1
}
passed() { printf 'ok: %s (%d s)\n' "$*" "$SECONDS"; }

# stepsHere: the steps that a slurmd of this folder has started, and nobody else's.
stepsHere() {
  local one
  for one in /proc/[0-9]*; do
    [[ $(cat "$one/comm" 2>/dev/null) == slurmstepd ]] || continue
    { tr '\0' '\n' <"$one/environ"; } 2>/dev/null | grep -q "=$work/" && printf '%s\n' "${one#/proc/}"
  done
  return 0
}

# until SECONDS COMMAND...: waits for it to succeed.
until_() {
  local end=$((SECONDS + $1))
  shift
  until "$@" >/dev/null 2>&1; do
    [[ $SECONDS -lt $end ]] || return 1
    sleep 0.1
  done
}

# freePorts COUNT: as many in a row that nobody listens on.
freePorts() {
  python3 -B - "$1" <<'PYTHON'
import random
import socket
import sys


def is_free(port: int) -> bool:
    with socket.socket() as one:
        try:
            one.bind(("", port))
        except OSError:
            return False
    return True


count = int(sys.argv[1])
while True:
    first = random.randrange(20000, 32000)
    if all(is_free(first + i) for i in range(count)):
        print(first)
        break
PYTHON
}

# What runs as root must be root's alone: a copy of the command and of each node's installation.
install_() {
  local node conduct
  mkdir -p "$work/bin" "$work/log" "$work/run" "$work/streams"
  DESTDIR=$work/root cmake --install "$build" --prefix /usr >"$work/log/install"
  chown -R 0:0 "$work/root"
  diags=$work/root/usr/bin/diags
  program=$work/root/usr/lib/diagsrunner/slurm
  for node in "${nodes[@]}"; do
    conduct=sound
    [[ $node == n3 ]] && conduct=faulty
    cp -r "$build/tests/integrations/slurm/installations/$conduct" "$work/run/$node"
    mkdir "$work/run/$node-state"
  done
  cp -r "$build/tests/integrations/slurm/installations/slow" "$work/run/slow"
  chown -R 0:0 "$work/run"
  chmod -R go-w "$work/run"
}

# configure NODE LINE...: what diags-slurm of that node goes by.
configure() {
  local node=$1
  shift
  {
    printf 'root = "%s"\n' "$work/run/$node"
    printf 'state = "%s"\n' "$work/run/$node-state/slurm"
    printf 'slurm-conf = "%s"\n' "$work/slurm.conf"
    printf 'during-jobs = true\n' # jobs of the other nodes are on this machine, too
    printf '%s\n' "$@"
  } >"$work/run/$node.toml"
}

# A cluster of machines has a file in /etc on each; here one script leads each node to its own.
writeScripts() {
  local verb
  for verb in health prolog epilog; do
    printf '#!/bin/sh\n[ -e %s/run/$SLURMD_NODENAME.%s ] || exit 0\n' "$work" "$verb"
    printf 'exec %s/%s --config %s/run/$SLURMD_NODENAME.toml\n' "$program" "$verb" "$work"
  done | split -l 3 - "$work/bin/part-"
  mv "$work/bin/part-aa" "$work/bin/health"
  mv "$work/bin/part-ab" "$work/bin/prolog"
  mv "$work/bin/part-ac" "$work/bin/epilog"
  # Where the diagnostics of a node lie, for the tasks there.
  printf '#!/bin/sh\necho export DIAGS_ROOT=%s/run/$SLURMD_NODENAME\n' "$work" >"$work/bin/task"
  chmod 755 "$work"/bin/*
}

writeCluster() {
  local host ports
  host=$(hostname -s)
  ports=$(freePorts 5)
  cat >"$work/slurm.conf" <<CONF
ClusterName=diags
SlurmctldHost=$host(127.0.0.1)
SlurmUser=root
SlurmdUser=root
AuthType=auth/munge
CredType=cred/munge
AuthInfo=socket=$work/munge/socket
SlurmctldPort=$ports
ProctrackType=proctrack/pgid
TaskPlugin=task/none
JobAcctGatherType=jobacct_gather/none
SelectType=select/linear
SwitchType=switch/none
MpiDefault=none
ReturnToService=2
SlurmdTimeout=300
StateSaveLocation=$work/controller
SlurmdSpoolDir=$work/spool-%n
SlurmctldPidFile=$work/slurmctld.pid
SlurmdPidFile=$work/slurmd-%n.pid
SlurmctldLogFile=$work/log/slurmctld
SlurmdLogFile=$work/log/slurmd-%n
HealthCheckProgram=$work/bin/health
HealthCheckInterval=2
PrologEpilogTimeout=60
Prolog=$work/bin/prolog
Epilog=$work/bin/epilog
TaskProlog=$work/bin/task
NodeName=n[1-4] NodeHostname=$host NodeAddr=127.0.0.1 Port=[$((ports + 1))-$((ports + 4))] CPUs=2 RealMemory=100
PartitionName=all Nodes=ALL Default=YES State=UP
CONF
  export SLURM_CONF=$work/slurm.conf
}

startMunge() {
  mkdir "$work/munge" "$work/controller"
  head -c 128 /dev/urandom >"$work/munge/key"
  chown -R munge:munge "$work/munge"
  chmod 700 "$work/munge/key"
  chmod 400 "$work/munge/key"
  chmod 755 "$work" "$work/munge"
  # munged wants its folder's parents to be root's and the folder its own.
  setpriv --reuid munge --regid munge --clear-groups munged --foreground --force \
    --key-file="$work/munge/key" --socket="$work/munge/socket" --pid-file="$work/munge/pid" \
    --log-file="$work/munge/log" --seed-file="$work/munge/seed" >"$work/log/munged" 2>&1 &
  started+=($!)
  disown
  until_ 10 test -S "$work/munge/socket" || fail "munged does not start"
}

# startNode NODE: its daemon, in a session of its own.
declare -A daemon
startNode() {
  setsid slurmd -D -N "$1" -f "$work/slurm.conf" >"$work/log/slurmd-$1-start" 2>&1 &
  daemon[$1]=$!
  started+=($!)
  disown
}

isIdle() { [[ $(sinfo -h -N -n "$1" -o %T) == idle ]]; }

startCluster() {
  local node
  startMunge
  setsid slurmctld -D -c -f "$work/slurm.conf" >"$work/log/slurmctld-start" 2>&1 &
  started+=($!)
  disown
  for node in "${nodes[@]}"; do startNode "$node"; done
  for node in "${nodes[@]}"; do until_ 30 isIdle "$node" || fail "$node does not come up"; done
}

reasonOf() { scontrol --oneliner show node "$1" | sed -n 's/.* Reason=\(.*\) \[.*/\1/p'; }
isDrained() { sinfo -h -N -n "$1" -o %T | grep -q '^dr'; }

# resume NODE: as an administrator does who has mended it.
resume() {
  scontrol update "NodeName=$1" State=RESUME
  until_ 10 isIdle "$1" || fail "$1 does not come back"
}

# Slurm's own health check finds the faulty part, on its node and on no other.
testHealth() {
  local node
  for node in "${nodes[@]}"; do
    configure "$node" 'every = "1h"'
    touch "$work/run/$node.health"
  done
  until_ 30 isDrained n3 || fail "the node with a faulty part is not drained"
  for node in "${nodes[@]}"; do
    until_ 20 test -s "$work/run/$node-state/slurm/health.json" || fail "$node has no health check"
  done
  for node in n1 n2 n4; do
    grep -q '"sound"' "$work/run/$node-state/slurm/health.json" || fail "$node is not sound"
    ! isDrained "$node" || fail "$node is drained: $(reasonOf "$node")"
  done
  [[ $(reasonOf n3) == "DIMM_A2: 3 memory errors, stuck bit 17" ]] ||
    fail "n3 is drained for \"$(reasonOf n3)\""
  rm -f "$work"/run/*.health
  sinfo -R -h | grep -q 'DIMM_A2.* n3$' || fail "sinfo -R does not tell: $(sinfo -R -h)"
  resume n3
  passed "the node with a faulty part is drained for it, and it alone"
}

# once NODE OPTION...: a health check by hand.
once() {
  local node=$1
  shift
  "$program/diags-slurm" health --config "$work/run/$node.toml" --node "$node" --every 0s "$@" \
    2>>"$work/log/by-hand"
}

# replay NODE OF: from now on a run of that node says what one of the other node said, at once.
replay() {
  local status=0
  [[ $2 == n3 ]] && status=1
  printf '#!/bin/sh\ncat %s/streams/%s.events\nexit %s\n' "$work" "$2" "$status" >"$work/bin/replay-$1"
  chmod 755 "$work/bin/replay-$1"
  configure "$1" "diags = \"$work/bin/replay-$1\"" 'every = "0s"' "${@:3}"
}

testManners() {
  replay n3 n3
  scontrol update NodeName=n3 State=DRAIN Reason="Bob looks at its fans"
  ! once n3 || fail "a faulty node has no faults any more"
  [[ $(reasonOf n3) == "Bob looks at its fans" ]] || fail "somebody's reason is gone: $(reasonOf n3)"
  passed "somebody's reason stays"
  resume n3
  ! once n3 --drain=false || fail "a faulty node has no faults where it is not to be drained"
  isIdle n3 || fail "n3 was drained, though it was not to be"
  ! once n3 || fail "n3 is not faulty"
  isDrained n3 || fail "n3 is not drained anew"
  replay n3 n1
  once n3 || fail "n3 is whole and has faults"
  isDrained n3 || fail "a node that is whole again was resumed"
  passed "nothing is resumed"
  resume n3
}

# A job that gets a faulty node does not run there, and the node is drained for the part.
testProlog() {
  replay n3 n3
  touch "$work/run/n3.prolog"
  timeout 20 srun -w n3 -N1 --immediate=5 true >"$work/log/srun-prolog" 2>&1 && fail "a job ran on a faulty node"
  scancel --user=root
  until_ 10 isDrained n3 || fail "a prolog does not drain"
  [[ $(reasonOf n3) == "DIMM_A2: 3 memory errors, stuck bit 17" ]] ||
    fail "a prolog drains n3 for \"$(reasonOf n3)\""
  rm "$work/run/n3.prolog"
  resume n3
  passed "a prolog keeps a job off a faulty node"
}

# Tests that would take minutes keep a job for as long as was told, and no longer.
testBudget() {
  local start
  configure n1 'every = "0s"' 'budget = "4s"'
  sed -i "1s|.*|root = \"$work/run/slow\"|" "$work/run/n1.toml"
  touch "$work/run/n1.prolog"
  start=${EPOCHREALTIME/./}
  timeout 30 srun -w n1 -N1 true || fail "a job does not run behind a slow test"
  local took=$(((${EPOCHREALTIME/./} - start) / 1000))
  rm "$work/run/n1.prolog"
  configure n1
  [[ $took -ge 1000 ]] || fail "the prolog did not run: $took ms"
  [[ $took -lt 6000 ]] || fail "a prolog of 4 s kept a job for $took ms"
  ! isDrained n1 || fail "a node without a fault is drained for want of time: $(reasonOf n1)"
  passed "a job waited $took ms for a prolog of 4 s whose test would have taken minutes"
}

# Slurm itself ends a prolog that was given more time than Slurm has: nothing outlives it, and the node is
# Slurm's to drain.
testTimeOfSlurm() {
  local start job
  configure n1 'every = "0s"' 'budget = "300s"'
  sed -i "1s|.*|root = \"$work/run/slow\"|" "$work/run/n1.toml"
  sed -i 's/^PrologEpilogTimeout=.*/PrologEpilogTimeout=8/' "$work/slurm.conf"
  scontrol reconfigure
  touch "$work/run/n1.prolog"
  srun -w n1 -N1 true >"$work/log/srun-timeout" 2>&1 &
  job=$!
  until_ 20 isTesting || fail "the prolog starts no test"
  start=$SECONDS
  until_ 20 noDiags || fail "diags outlives a prolog that Slurm ended"
  [[ $((SECONDS - start)) -lt 25 ]] || fail "diags went $((SECONDS - start)) s behind its test's begin"
  ! pgrep -f "^$program/(diags-slurm|prolog)" >/dev/null || fail "the prolog outlives its time"
  [[ $(reasonOf n1) != *memory* ]] || fail "a run that was cut off found \"$(reasonOf n1)\""
  rm "$work/run/n1.prolog"
  scancel --user=root
  kill "$job" 2>/dev/null || true
  wait "$job" 2>/dev/null || true
  sed -i 's/^PrologEpilogTimeout=.*/PrologEpilogTimeout=60/' "$work/slurm.conf"
  scontrol reconfigure
  configure n1
  ! isDrained n1 || resume n1
  until_ 20 isIdle n1 || fail "n1 does not come back"
  passed "nothing outlives a prolog that Slurm ended"
}

testEpilog() {
  replay n3 n3
  touch "$work/run/n3.epilog"
  timeout 20 srun -w n3 -N1 true || fail "a job does not run"
  until_ 15 isDrained n3 || fail "an epilog does not drain"
  [[ $(reasonOf n3) == "DIMM_A2: 3 memory errors, stuck bit 17" ]] ||
    fail "an epilog drains n3 for \"$(reasonOf n3)\""
  rm "$work/run/n3.epilog"
  resume n3
  passed "an epilog drains a faulty node"
}

# Every node at once, each with its own installation, as there would be one on each machine.
testAllAtOnce() {
  local node status=0
  timeout 60 srun -N4 "$diags" run --all --jsonl "$work/streams/%N.jsonl" --no-history \
    --events "$work/streams/%N.events" >"$work/log/srun" 2>&1 || status=$?
  [[ $status -eq 1 ]] || fail "srun ended with $status, and a node is faulty: $(cat "$work/log/srun")"
  for node in "${nodes[@]}"; do
    "$diags" verify "$work/streams/$node.jsonl" || fail "the stream of $node is broken"
    [[ $(grep -c '"testRunEnd"' "$work/streams/$node.jsonl") -eq 1 ]] || fail "$node's stream has no end"
  done
  python3 -B "$here/streams.py" "$work/streams" "${nodes[@]}" || fail "events are missing"
  passed "four nodes at once, four whole streams"
}

# A node that vanishes half-way leaves a stream that can be closed.
testVanished() {
  local job stream=$work/streams/vanished.jsonl
  rm -f "$work"/streams/*
  srun -w n4 -N1 "$diags" run --root "$work/run/slow" --all --no-history --jsonl "$stream" >"$work/log/srun-vanished" 2>&1 &
  job=$!
  until_ 20 grep -q 'testStepStart\|testRunStart' "$stream" || fail "no test begins"
  kill -KILL "${daemon[n4]}"
  local step
  for step in $(stepsHere); do
    pkill -KILL -P "$step" || true
    kill -KILL "$step" || true
  done
  kill -KILL "$job" 2>/dev/null || true
  wait "$job" 2>/dev/null || true
  until_ 10 noDiags || fail "diags outlives its node"
  ! "$diags" verify "$stream" >/dev/null 2>&1 || fail "a stream that was cut off passes for a whole one"
  "$diags" recover "$stream" || fail "the stream of a vanished node cannot be recovered"
  "$diags" verify "$stream" || fail "a recovered stream is broken"
  passed "the stream of a node that vanished is closed"
}

isTesting() { pgrep -f "^$work/root/usr/lib/diagsrunner/diags-worker" >/dev/null; }
noDiags() { ! pgrep -f "^$work/root/usr/(bin/diags|lib/diagsrunner/diags-worker)" >/dev/null; }

install_
writeScripts
writeCluster
startCluster
passed "four nodes are up"
testHealth
testAllAtOnce
testManners
testProlog
testEpilog
testBudget
testTimeOfSlurm
testVanished
