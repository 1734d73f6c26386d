#include "substitute/cmpi.nsp/repository/SchemaReader.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/installation/PathForm.h"
#include "substitute/cmpi.nsp/installation/SystemMessage.h"
#include "substitute/cmpi.nsp/repository/ClassBuilder.h"
#include "substitute/cmpi.nsp/repository/MofParser.h"
#include "substitute/cmpi.nsp/repository/MofValues.h"
#include "substitute/cmpi.nsp/repository/SourceText.h"

namespace cmpinsp {

namespace {

namespace fs = std::filesystem;

/// A file found in a folder.
struct Found {
  std::string order;  ///< sorts as the path does, component by component, but much faster
  std::string path;
};

/// True for a file name that ends in ".mof" and does not consist of that alone.
bool isMof(const std::string& path) {
  constexpr std::size_t kEnding = 4;
  if (path.size() <= kEnding) return false;
  const std::size_t ending = path.size() - kEnding;
  const bool isWholeName = path[ending - 1] == '/' || path[ending - 1] == '\\';
  return !isWholeName && vorcore::equalNames(path.substr(ending), ".mof");
}

void addFile(const fs::directory_entry& entry, std::vector<Found>& files,
             std::vector<substitute::Problem>& problems) {
  std::error_code error;
  std::string path = textOf(entry.path());
  if (path.empty() && vorcore::equalNames(textOf(entry.path().extension()), ".mof")) {
    problems.push_back({textOf(entry.path().parent_path()), 0, 0,
                        "the name of a MOF file in it is no text; it is left out"});
  }
  if (!isMof(path) || !entry.is_regular_file(error)) return;
  std::string order = entry.path().generic_u8string();
  std::replace(order.begin(), order.end(), '/', '\0');
  files.push_back({std::move(order), std::move(path)});
}

/// Folders that links lead to are not entered: they may lead back.
bool isFolder(const fs::directory_entry& entry) {
  std::error_code error;
  return entry.is_directory(error) && !entry.is_symlink(error);
}

void collect(const fs::path& folder, bool deep, std::vector<Found>& files,
             std::vector<substitute::Problem>& problems) {
  std::error_code error;
  fs::directory_iterator entry(folder, error);
  for (const fs::directory_iterator end; !error && entry != end; entry.increment(error)) {
    if (deep && isFolder(*entry)) {
      collect(entry->path(), deep, files, problems);
    } else {
      addFile(*entry, files, problems);
    }
  }
  if (!error || error == std::errc::no_such_file_or_directory) return;
  problems.push_back(
      {textOf(folder), 0, 0, "the MOF files in it cannot be found: " + systemMessage(error)});
}

std::string normal(const fs::path& path) { return path.lexically_normal().u8string(); }

/// Where the pragma in `file` leads; empty when that does not start at the file's folder.
std::string targetOf(const std::string& file, const IncludeSyntax& include) {
  const fs::path target = fs::u8path(include.path);
  if (target.has_root_path()) return std::string();
  return normal(fs::u8path(file).parent_path() / target);
}

}  // namespace

/// A file to read, and the pragma that asked for it.
struct SchemaReader::Pending {
  std::string path;
  std::string includedFrom;
  std::string nameSpace;  ///< in force where the pragma stands
  Position at;
};

std::vector<std::string> mofFilesIn(const std::string& folder, bool deep,
                                    std::vector<substitute::Problem>& problems) {
  std::vector<Found> files;
  collect(fs::u8path(folder), deep, files, problems);
  std::sort(files.begin(), files.end(),
            [](const Found& left, const Found& right) { return left.order < right.order; });
  std::vector<std::string> names;
  names.reserve(files.size());
  for (Found& file : files) names.push_back(std::move(file.path));
  return names;
}

void SchemaReader::readFolder(const std::string& folder, bool deep) {
  const std::size_t before = m_problems.size();
  const std::vector<std::string> files = mofFilesIn(folder, deep, m_problems);
  m_readEverything = m_readEverything && m_problems.size() == before;
  const std::set<std::string> included = readAhead(files);
  for (const std::string& file : files) {
    if (included.count(identityOf(normal(fs::u8path(file)))) == 0) readFile(file);
  }
  // What is left includes each other in a circle.
  for (const std::string& file : files) readFile(file);
  m_ahead.clear();
}

/// Reads the files, and answers with the identities of those that others include. What they declare
/// counts from there, where it may use the aliases and the namespace.
std::set<std::string> SchemaReader::readAhead(const std::vector<std::string>& files) {
  std::set<std::string> included;
  for (const std::string& file : files) {
    const std::string path = normal(fs::u8path(file));
    if (m_ahead.size() >= m_mostFiles) break;
    if (m_seen.count(path) != 0) continue;
    const ReadFile& read = m_ahead[path] = parse(path, std::string());
    const std::string own = identityOf(path);
    for (const IncludeSyntax& include : read.unit.includes) {
      const std::string target = identityOf(targetOf(path, include));
      if (target != own) included.insert(target);
    }
  }
  return included;
}

SchemaReader::ReadFile SchemaReader::parse(const std::string& path, const std::string& nameSpace) {
  ReadFile file;
  file.stamp = stampOf(path);
  try {
    file.unit = parseMof(path, readSourceText(path), file.problems, nameSpace);
  } catch (const NZELVOR20::TVORException& error) {
    file.failure = error.what();
  }
  return file;
}

/// The file as it reads where `nameSpace` is in force: that is no matter to classes.
SchemaReader::ReadFile SchemaReader::take(const std::string& path, const std::string& nameSpace) {
  const auto ahead = m_ahead.find(path);
  if (ahead == m_ahead.end()) return parse(path, nameSpace);
  const CompilationUnit& unit = ahead->second.unit;
  const bool usesIt = !unit.instances.empty() || !unit.includes.empty();
  if (usesIt && !nameSpace.empty()) return parse(path, nameSpace);
  ReadFile file = std::move(ahead->second);
  m_ahead.erase(ahead);
  return file;
}

/// What a file includes is read before its own declarations count, as if its text stood there; a
/// file that includes itself, directly or not, is read once like any other.
void SchemaReader::readFile(const std::string& path) {
  ++m_aliasScope;
  std::vector<Pending> open{{path, std::string(), std::string(), Position()}};
  while (!open.empty()) {
    const Pending pending = std::move(open.back());
    open.pop_back();
    readOne(pending, open);
  }
}

void SchemaReader::readOne(const Pending& pending, std::vector<Pending>& open) {
  const std::string path = normal(fs::u8path(pending.path));
  if (m_seen.count(path) != 0 || isFull(path)) return;
  m_seen.insert(path);
  if (!m_files.insert(identityOf(path)).second) {
    m_sources.push_back(stampOf(path));
    return;
  }
  ReadFile file = take(path, pending.nameSpace);
  m_sources.push_back(file.stamp);
  m_problems.insert(m_problems.end(), file.problems.begin(), file.problems.end());
  if (!file.failure.empty()) return report(file, pending);
  m_units.push_back(std::move(file.unit));
  CompilationUnit& unit = m_units.back();
  unit.aliasScope = m_aliasScope;
  for (auto include = unit.includes.rbegin(); include != unit.includes.rend(); ++include) {
    std::string target = targetOf(unit.file, *include);
    if (target.empty()) {
      m_problems.push_back({unit.file, include->at.line, include->at.column,
                            "an include path starts at the including file's folder"});
    } else {
      open.push_back({std::move(target), unit.file, include->nameSpace, include->at});
    }
  }
}

void SchemaReader::report(const ReadFile& unreadable, const Pending& pending) {
  m_readEverything = m_readEverything && !unreadable.stamp.exists;
  if (pending.includedFrom.empty()) {
    m_problems.push_back({unreadable.stamp.path, 0, 0, unreadable.failure});
  } else {
    m_problems.push_back({pending.includedFrom, pending.at.line, pending.at.column,
                          "cannot include: " + unreadable.failure});
  }
}

bool SchemaReader::isFull(const std::string& path) {
  if (m_seen.size() < m_mostFiles) return false;
  if (!m_toldFull) {
    m_problems.push_back({path, 0, 0,
                          "left out with every further one: the schema has more than " +
                              std::to_string(m_mostFiles) + " files"});
  }
  m_toldFull = true;
  return true;
}

void SchemaReader::declareQualifiers(const CompilationUnit& unit, QualifierTable& qualifiers) {
  for (const QualifierTypeSyntax& syntax : unit.qualifierTypes) {
    NZELVOR20::TCIMQualifierDecl declaration;
    declaration.name = syntax.name;
    declaration.type = syntax.type.type;
    declaration.isArray = syntax.type.isArray;
    declaration.overridable = syntax.flavors.overridable != Choice::eNo;
    declaration.toSubclass = syntax.flavors.toSubclass != Choice::eNo;
    declaration.translatable = syntax.flavors.translatable == Choice::eYes;
    declaration.defaultValue = NZELVOR20::TCIMValue::Null(declaration.type, declaration.isArray);
    try {
      if (syntax.initial) {
        declaration.defaultValue = valueOf(*syntax.initial, declaration.type, declaration.isArray);
      }
    } catch (const SyntaxError& error) {
      m_problems.push_back({unit.file, error.at.line, error.at.column, error.message});
    }
    qualifiers.declare(std::move(declaration));
  }
}

void SchemaReader::build(QualifierTable& qualifiers, ClassTable& classes) {
  for (const CompilationUnit& unit : m_units) declareQualifiers(unit, qualifiers);
  buildClasses(m_units, qualifiers, classes, m_problems);
}

}  // namespace cmpinsp
