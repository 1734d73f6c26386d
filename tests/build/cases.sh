#!/usr/bin/env bash
# cases.sh EXCLUSIONS FIRST FIRST-FOLDER OTHER OTHER-FOLDER: compares the test cases of two builds,
# whose platforms are FIRST and OTHER ("linux", "windows"): those of the test programs, and the checks
# that are commands of their own. A case that only one of them has is to be
# in EXCLUSIONS, and what is excluded there has to exist on the other. What starts a program is in
# the variable RUN_FIRST or RUN_OTHER.
set -euo pipefail
exclusions=$1

# cases FOLDER [COMMAND...]: "program Suite.Case" of all test programs of that build, "check Name" of
# its checks. Which wide vectors there are to be tested is the processor's affair, not the platform's.
cases() {
  local folder=$1
  shift
  {
    casesOfPrograms "$folder" "$@"
    sed 's/^/check /' "$folder/test-checks.txt"
  } | LC_ALL=C sort
}

casesOfPrograms() {
  local folder=$1 program
  shift
  while IFS= read -r program; do
    "$@" "$program" --gtest_list_tests | tr -d '\r' | awk -v program="$(basename "$program" .exe)" '
      { sub(/ *#.*/, "") }
      /^Running main/ { next }
      /^[^ ]/ { suite = $1; next }
      $1 ~ /\/(AVX(2|512)|.*AMX)/ { next }
      NF { print program, suite $1 }'
  done <"$folder/test-programs.txt"
}

excluded() { awk -v platform="$1" '$1 == platform { print $2 }' "$exclusions"; }

# without PLATFORM: those of the cases on standard input that run on it.
without() {
  awk 'FILENAME != "-" { excluded[$1]; next } !($2 in excluded)' <(excluded "$1") -
}

# stale PLATFORM CASES: what is excluded on the platform without being a case of the other one.
stale() {
  excluded "$1" | awk -v platform="$1" '
    FILENAME != "-" { known[$2]; next }
    !($1 in known) { print "excluded on " platform ", but no case: " $1; found = 1 }
    END { exit !found }' <(printf '%s\n' "$2") -
}

first=$(cases "$3" ${RUN_FIRST:-})
other=$(cases "$5" ${RUN_OTHER:-})
status=0
stale "$2" "$other" && status=1
stale "$4" "$first" && status=1
firstRun=$(without "$2" <<<"$first")
otherRun=$(without "$4" <<<"$other")
diff -u --label "cases on $2" --label "cases on $4" \
  <(without "$4" <<<"$firstRun") <(without "$2" <<<"$otherRun") || status=1
printf '%d cases run on %s, %d on %s; %d excluded on %s, %d on %s\n' \
  "$(wc -l <<<"$firstRun")" "$2" "$(wc -l <<<"$otherRun")" "$4" \
  "$(excluded "$2" | wc -l)" "$2" "$(excluded "$4" | wc -l)" "$4"
exit $status
