#pragma once

#include <set>
#include <string>
#include <vector>

#include "substitute/cmpi.nsp/Problem.h"
#include "substitute/cmpi.nsp/repository/ClassTable.h"
#include "substitute/cmpi.nsp/repository/MofSyntax.h"
#include "substitute/cmpi.nsp/repository/QualifierTable.h"

namespace cmpinsp {

/// Reads MOF files with what they include, each file once. Files may come in any order: the classes
/// are made when all have been read.
class SchemaReader {
 public:
  /// Faults in the files are added to `problems`, which outlives the reader.
  explicit SchemaReader(std::vector<substitute::Problem>& problems) : m_problems(problems) {}

  /// Reads every file of the folder whose name ends in ".mof", in name order, those of folders
  /// below it too when `deep`. A folder that is missing is an empty one.
  void readFolder(const std::string& folder, bool deep);

  /// Reads one file and what it includes; paths are UTF-8.
  void readFile(const std::string& path);

  /// Makes the qualifiers and classes of everything read so far.
  void build(QualifierTable& qualifiers, ClassTable& classes);

  /// What was read, in the order of reading; valid as long as the reader.
  const std::vector<CompilationUnit>& units() const noexcept { return m_units; }

 private:
  struct Pending;

  void readOne(const Pending& pending, std::vector<Pending>& open);
  void declareQualifiers(const CompilationUnit& unit, QualifierTable& qualifiers);

  std::vector<substitute::Problem>& m_problems;
  std::vector<CompilationUnit> m_units;
  std::set<std::string> m_seen;
};

}  // namespace cmpinsp
