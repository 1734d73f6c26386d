#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "substitute/cmpi.nsp/Problem.h"
#include "substitute/cmpi.nsp/cache/SourceStamp.h"
#include "substitute/cmpi.nsp/repository/ClassBuilder.h"
#include "substitute/cmpi.nsp/repository/ClassTable.h"
#include "substitute/cmpi.nsp/repository/MofSyntax.h"
#include "substitute/cmpi.nsp/repository/QualifierTable.h"

namespace cmpinsp {

/// The MOF files of a folder, in name order, those of folders below it too when `deep`. A folder
/// that is missing is an empty one; one that cannot be listed is added to `problems`. Paths are
/// UTF-8.
std::vector<std::string> mofFilesIn(const std::string& folder, bool deep,
                                    std::vector<substitute::Problem>& problems);

/// Reads MOF files with what they include, each file once. Files may come in any order: the classes
/// are made when all have been read.
class SchemaReader {
 public:
  /// Faults in the files are added to `problems`, which outlives the reader. Include pragmas may
  /// lead to other folders, so that there is a limit; no installation has more files than this.
  explicit SchemaReader(std::vector<substitute::Problem>& problems, std::size_t mostFiles = 20000)
      : m_problems(problems), m_mostFiles(mostFiles) {}

  /// The folder whose files, and those below it, make up the schema (see `Layer`); UTF-8. To be
  /// called first.
  void setSchemaFolder(const std::string& folder);

  /// Reads the files that `mofFilesIn` names, those that others of them include with these. What
  /// lies outside of this folder and the schema's, by its path or by a link, is refused.
  void readFolder(const std::string& folder, bool deep);

  /// Reads one file and what it includes from its folder; paths are UTF-8.
  void readFile(const std::string& path);

  /// Makes the qualifiers and classes of everything read so far. Answers with the superclasses that
  /// nobody declares.
  std::vector<MissingClass> build(QualifierTable& qualifiers, ClassTable& classes);

  /// What was read, in the order of reading; to be taken when everything is built.
  std::vector<CompilationUnit> takeUnits() noexcept { return std::move(m_units); }

  /// Every file that was to be read, as it was just before.
  const std::vector<SourceStamp>& sources() const noexcept { return m_sources; }

  /// False when a file that is there could not be read, or a folder not be listed.
  bool readEverything() const noexcept { return m_readEverything; }

 private:
  struct Pending;
  /// A file that was read, but does not count yet.
  struct ReadFile {
    SourceStamp stamp;
    CompilationUnit unit;
    std::vector<substitute::Problem> problems;
    std::string failure;     ///< why it could not be read; empty when it could
    bool isRefused = false;  ///< it was not tried
  };

  ReadFile parse(const std::string& path, const std::string& nameSpace);
  const std::filesystem::path& realFolder(const std::filesystem::path& folder);
  std::string whyOutside(const std::string& path);
  bool isInside(const std::string& path) const;
  Layer layerOf(const std::string& path) const;
  void readAsked(const std::string& path);
  void addInclude(const IncludeSyntax& include, const CompilationUnit& unit,
                  std::vector<Pending>& open);
  std::set<std::string> readAhead(const std::vector<std::string>& files);
  ReadFile take(const std::string& path, const std::string& nameSpace);
  void report(const ReadFile& unreadable, const Pending& pending);
  void readOne(const Pending& pending, std::vector<Pending>& open);
  bool isFull(const std::string& path);
  void declareQualifiers(const CompilationUnit& unit, QualifierTable& qualifiers);

  std::vector<substitute::Problem>& m_problems;
  std::size_t m_mostFiles;
  std::string m_schemaFolder;
  std::string m_folder;  ///< of the files that are being read
  std::string m_askedFor;
  std::map<std::string, std::filesystem::path> m_realFolders;
  bool m_toldFull = false;
  std::vector<CompilationUnit> m_units;
  std::vector<SourceStamp> m_sources;
  bool m_readEverything = true;
  std::map<std::string, ReadFile> m_ahead;  ///< by path: those of a folder, read on their own
  std::set<std::string> m_seen;    ///< paths; each counts for the cache, whatever it leads to
  std::set<std::string> m_files;   ///< the identities of what they lead to
  std::uint32_t m_aliasScope = 0;  ///< the number of files that were asked for
};

}  // namespace cmpinsp
