#include "substitute/cmpi.nsp/registration/InstancePlacement.h"

#include <filesystem>
#include <map>
#include <system_error>

#include "substitute/cmpi.nsp/registration/RegistrationTable.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

namespace {

namespace fs = std::filesystem;

/// By the path of the file, as its unit has it.
using Placements = std::map<std::string, InstancePlacement>;

void report(const InstancePlacement& placement, const std::string& message,
            std::vector<substitute::Problem>& problems) {
  const Place& at = placement.place;
  problems.push_back({at.file, at.line, at.column, message});
}

/// The file's path; empty where none of the folders has it.
std::string pathOf(const std::string& mofFile, const std::vector<std::string>& folders) {
  for (const std::string& folder : folders) {
    const fs::path path = (fs::u8path(folder) / fs::u8path(mofFile)).lexically_normal();
    std::error_code error;
    if (fs::is_regular_file(path, error)) return path.u8string();
  }
  return std::string();
}

Placements byPath(const std::vector<InstancePlacement>& placements,
                  const std::vector<std::string>& folders,
                  std::vector<substitute::Problem>& problems) {
  Placements known;
  for (const InstancePlacement& placement : placements) {
    const std::string path = pathOf(placement.mofFile, folders);
    if (path.empty()) {
      report(placement, "there is no file " + placement.mofFile + " with instances", problems);
      continue;
    }
    const auto [first, isNew] = known.emplace(path, placement);
    if (isNew || vorcore::equalNames(first->second.nameSpace, placement.nameSpace)) continue;
    report(placement,
           "the instances of " + placement.mofFile + " are in namespace " +
               first->second.nameSpace + " by " + first->second.place.toText(),
           problems);
  }
  return known;
}

}  // namespace

void placeInstances(const std::vector<InstancePlacement>& placements,
                    const std::vector<std::string>& folders, std::vector<CompilationUnit>& units,
                    std::vector<substitute::Problem>& problems) {
  const Placements known = byPath(placements, folders, problems);
  for (CompilationUnit& unit : units) {
    auto found = known.find(unit.file);
    if (found == known.end()) found = known.find(unit.askedFor);
    if (found == known.end()) continue;
    for (InstanceSyntax& instance : unit.instances) {
      if (instance.nameSpace.empty()) {
        instance.nameSpace = normalNamespace(found->second.nameSpace);
      }
    }
  }
}

}  // namespace cmpinsp
