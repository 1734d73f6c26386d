#pragma once

#include <boost/shared_ptr.hpp>
#include <string>
#include <vector>

#include "substitute/cmpi.nsp/Problem.h"
#include "substitute/cmpi.nsp/repository/ClassTable.h"
#include "substitute/cmpi.nsp/repository/MofSyntax.h"
#include "substitute/cmpi.nsp/repository/QualifierTable.h"

namespace cmpinsp {

/// What the MOF files of an installation say.
struct InstalledSchema {
  QualifierTable qualifiers;
  boost::shared_ptr<ClassTable> classes;
  std::vector<CompilationUnit> units;         ///< for their instances
  std::vector<std::string> files;             ///< all that were read, included ones among them
  std::vector<substitute::Problem> problems;  ///< the faults in the files
  std::vector<substitute::Problem> notes;     ///< what is worth knowing of them, and no fault
};

/// Where an installation's MOF files are.
struct SchemaFolders {
  std::string schema;     ///< read with the folders below it
  std::string providers;  ///< read alone
};

/// Reads the MOF files of `folders`.
///
/// With a `cacheFile`, what was compiled is taken from there as long as it was compiled from the
/// files as they are now; else they are read, and the file is written anew. Both give the same
/// answers; the classes of the cache are built when they are first asked for. A file that is
/// damaged, or that others can change, is not used, which the log tells. Without a `cacheFile` the
/// files are read. With one, what earlier starts left beside it is tidied up (`tidyCaches`).
InstalledSchema readInstalledSchema(const SchemaFolders& folders, const std::string& cacheFile);

/// The cache file for the installation at `root`: in `folder`, or where that is empty, in the cache
/// folder of the user. Empty when there is none.
std::string cacheFileFor(const std::string& root, const std::string& folder);

}  // namespace cmpinsp
