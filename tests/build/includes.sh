#!/usr/bin/env bash
# Who may include what. Run with the root of the tree; prints each include that breaks a rule.
set -euo pipefail
cd "$1"
broken=0

# Folder; what it may include with quotes; what it may include in angle brackets: both as regular
# expressions. STD is the standard library, OWN the second part of the including file's path.
readonly kRules='
include; (framework|diagsrunner)/; STD|boost/.*|std(def|int)[.]h
framework; framework/; STD|boost/.*
runner; (diagsrunner|framework|platform|runner|exclusion|execution|results)/; STD|boost/.*
exclusion; (diagsrunner|framework|platform|runner|exclusion|execution|results)/; STD|boost/.*
execution; (diagsrunner|framework|platform|runner|exclusion|execution|results)/; STD|boost/.*
results; (diagsrunner|framework|platform|runner|exclusion|execution|results)/; STD|boost/.*
platform; platform/; STD|windows[.]h
cmpi; cmpi/; (assert|stdarg|stddef|stdint|string|time)[.]h
substitute/vorcore; (framework|substitute/vorcore|text)/; .*
substitute/kfrxmlparser; (framework|substitute/kfrxmlparser)/; .*
substitute/cmpi.nsp; (framework|cmpi|substitute/vorcore|substitute/cmpi[.]nsp)/; .*
firmware; firmware/; STD
providers; (cmpi|firmware|providers/common|providers/OWN)/; [^/]*|(sys|linux|net|scsi)/.*|Eigen/(Core|SVD)|openssl/(crypto|evp)[.]h|(arpa|netinet)/[a-z_]+[.]h|sensors/(error|sensors)[.]h
examples/host; diagsrunner/|substitute/cmpi[.]nsp/Bootstrap[.]h; STD
examples/host-c; diags/; [^/]*
examples/provider-c; cmpi/|[a-z_]+[.]h; [^/]*
examples/provider-cpp; cmpi/|[a-z_]+[.]h; [^/]*
engine/events; (engine/events|text)/; STD|nlohmann/json[.]hpp
engine/Offer.h; engine/events/; STD
engine/Engine.h; engine/(events|plan|protocol|supervisor)/|engine/Offer[.]h; STD
engine/Engine.cpp; engine/(Engine[.]h|identity/|supervisor/); STD
engine/system; engine/system/; .*
engine/answers; engine/(answers|plan)/|engine/Engine[.]h|text/; STD|nlohmann/json[.]hpp
engine/installation; engine/(installation|plan)/|engine/Engine[.]h; STD
libdiags; (libdiags|diags|text)/|engine/(events|plan|answers|installation)/|engine/Engine[.]h; STD|dlfcn[.]h|windows[.]h
engine/identity; (engine/(identity|system|events)|firmware)/|engine/Offer[.]h; .*
engine/plan; engine/(plan|events)/|engine/Offer[.]h|text/; STD|toml[+][+]/(toml|impl/[a-z_]+)[.]h
engine/process; engine/process/; .*
engine/protocol; engine/(protocol|events)/|engine/Offer[.]h; STD|nlohmann/json[.]hpp|(fcntl|unistd|sys/(mman|stat))[.]h
engine/supervisor; engine/(supervisor|plan|process|protocol|events)/|engine/Offer[.]h; STD
engine/worker; (diagsrunner|framework|text)/|platform/ProgramPause[.]h|engine/(worker|system|protocol|events)/|engine/Offer[.]h|substitute/cmpi[.]nsp/Bootstrap[.]h; .*
reports; (reports|engine/events|text)/; .*
history; (history|engine/events|text)/; .*
fleet; (fleet|reports|engine/events|text)/; STD|nlohmann/json[.]hpp
text; text/; STD
host; (engine/(events|plan|protocol|answers|installation)|host|text|reports|history|fleet)/|engine/(Engine|Offer)[.]h; .*
integrations; (integrations/OWN|text)/; .*
'

# Folder; its rooms, from the bottom up: a room includes only itself and those before it.
readonly kFloors='
substitute/vorcore; values inmem system
substitute/cmpi.nsp/broker; library lifetime text objects services calls
substitute/cmpi.nsp/manager; providers operations face
reports; common events ocp junit metrics redact verify recover
fleet; reading gather peers groups conclude show page
providers/common; values runs model cmpi
providers/memory; engine size placing services
providers/disk; finding reading health scratch services
providers/pcie; finding load services
providers/port; finding ethtool echo services
providers/sensors; finding chips load services
providers/processor; topology operations kernels coherency blame engine status services
engine/worker; counters wire guard model tasks
'

readonly kCheck='
# The first input is the table, the second "file:line:text" of each include.
FILENAME == "/dev/stdin" {
  if (NF) {
    split($0, column, "; ")
    quoted[column[1]] = column[2]
    angled[column[1]] = column[3]
  }
  next
}
{
  match($0, /:[0-9]+:/)
  file = substr($0, 1, RSTART - 1)
  text = substr($0, RSTART + RLENGTH)
  split(file, part, "/")
  folder = (part[1] in quoted) ? part[1] : part[1] "/" part[2]
  allowed = text ~ /"/ ? "\"(" quoted[folder] ")" : "<(" angled[folder] ")>"
  gsub(/STD/, "[a-z_0-9]+", allowed)
  gsub(/OWN/, part[2], allowed)
  if (!(folder in quoted) || text !~ allowed) {
    print file ": " text ": not for " folder "/"
    broken = 1
  }
}
END { exit broken }
'

folders=()
for folder in include framework runner exclusion execution results platform cmpi substitute \
  firmware providers examples text engine libdiags reports history fleet host integrations; do
  [[ -d $folder ]] && folders+=("$folder")
done
awk "$kCheck" /dev/stdin <(
  grep -rnE --include='*.h' --include='*.c' --include='*.cpp' '^ *# *include' "${folders[@]}"
) <<<"$kRules" || broken=1

while IFS=';' read -r folder rooms; do
  [[ -n $folder ]] || continue
  above=($rooms)
  for room in $rooms; do
    above=("${above[@]:1}")
    [[ -d $folder/$room && ${#above[@]} -gt 0 ]] || continue
    upstairs=$(IFS='|' && echo "${above[*]}")
    if grep -rnE "^ *# *include \"$folder/($upstairs)/" "$folder/$room" |
      sed -E "s|:[0-9]+:|: |; s|\$|: runs back up|"; then broken=1; fi
  done
done <<<"$kFloors"
exit $((broken))
