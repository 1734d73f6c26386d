#include "substitute/cmpi.nsp/repository/SchemaReader.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <new>
#include <string_view>
#include <system_error>
#include <utility>

#include "substitute/cmpi.nsp/installation/FolderListing.h"
#include "substitute/cmpi.nsp/installation/SystemMessage.h"
#include "substitute/cmpi.nsp/repository/ClassBuilder.h"
#include "substitute/cmpi.nsp/repository/MofParser.h"
#include "substitute/cmpi.nsp/repository/MofValues.h"
#include "substitute/cmpi.nsp/repository/SourceText.h"

namespace cmpinsp {

namespace {

namespace fs = std::filesystem;

/// Why what is neither a file nor a folder by itself is no MOF file; empty where it leads to one,
/// or to a folder. A FIFO or a device would be read for ever.
std::string whyNoFile(const fs::directory_entry& entry) {
  std::error_code error;
  const fs::file_status status = entry.status(error);
  if (error == std::errc::not_enough_memory) throw std::bad_alloc();
  if (fs::is_regular_file(status) || fs::is_directory(status)) return std::string();
  const bool leadsNowhere = status.type() == fs::file_type::not_found;
  if (leadsNowhere) return "a link that leads nowhere; it is left out";
  return error ? systemMessage(error) : "not a regular file; it is left out";
}

/// Whether the entry, which is no file and no folder by itself, is one behind a link.
bool leadsToFile(const std::string& path, std::vector<substitute::Problem>& problems) {
  std::error_code error;
  const fs::directory_entry entry(fs::u8path(path), error);
  const std::string fault = whyNoFile(entry);
  if (!fault.empty()) problems.push_back({path, 0, 0, fault});
  return entry.is_regular_file(error);
}

void addFile(const std::string& folder, const FolderEntry& entry, std::vector<std::string>& files,
             std::vector<substitute::Problem>& problems) {
  constexpr std::string_view kEnding = ".mof";
  if (hasEnding("a" + std::string(entry.ending), kEnding)) {
    problems.push_back({folder, 0, 0, "the name of a MOF file in it is no text; it is left out"});
  }
  if (entry.kind == FolderEntry::Kind::eFolder || !hasEnding(entry.name, kEnding)) return;
  std::string path = pathIn(folder, entry.name);
  // Of nearly all the folder's listing has told, and nobody needs to be asked.
  const bool isFile = entry.kind == FolderEntry::Kind::eFile || leadsToFile(path, problems);
  if (isFile) files.push_back(std::move(path));
}

/// Folders that links lead to are not entered: they may lead back.
void collect(const std::string& folder, bool deep, std::vector<std::string>& files,
             std::vector<substitute::Problem>& problems) {
  const FolderListing listing = listFolder(folder);
  for (const FolderEntry& entry : listing.entries()) {
    if (deep && entry.kind == FolderEntry::Kind::eFolder) {
      collect(pathIn(folder, entry.name), deep, files, problems);
    } else {
      addFile(folder, entry, files, problems);
    }
  }
  const std::error_code& error = listing.error();
  if (!error || error == std::errc::no_such_file_or_directory) return;
  if (error == std::errc::not_enough_memory) throw std::bad_alloc();
  problems.push_back(
      {folder, 0, 0, "the MOF files in it cannot be found: " + systemMessage(error)});
}

std::string normal(const fs::path& path) { return path.lexically_normal().u8string(); }

/// Where the pragma in `file` leads; empty when that does not start at the file's folder.
std::string targetOf(const std::string& file, const IncludeSyntax& include) {
  const fs::path target = fs::u8path(include.path);
  if (target.has_root_path()) return std::string();
  return normal(fs::u8path(file).parent_path() / target);
}

/// `path` without anything at its end that only says that it is a folder.
fs::path folderOf(const std::string& path) {
  const fs::path folder = fs::u8path(path).lexically_normal();
  return folder.has_filename() ? folder : folder.parent_path();
}

/// How many components `path` has below `folder`; 0 where it is not in it. Both are normal; no
/// folder is the current one.
std::size_t depthIn(const fs::path& folder, const fs::path& path) {
  if (folder.empty() && (path.is_absolute() || *path.begin() == "..")) return 0;
  const auto [rest, at] = std::mismatch(folder.begin(), folder.end(), path.begin(), path.end());
  if (rest != folder.end()) return 0;
  return static_cast<std::size_t>(std::distance(at, path.end()));
}

/// Where `path` is when every link on the way is followed, as far as that can be found out.
fs::path behindLinks(const fs::path& path) {
  std::error_code error;
  const fs::path found = fs::weakly_canonical(path.empty() ? fs::path(".") : path, error);
  if (error == std::errc::not_enough_memory) throw std::bad_alloc();
  return error ? path : found;
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
  std::vector<std::string> files;
  collect(folder, deep, files, problems);
  return files;
}

void SchemaReader::setSchemaFolder(const std::string& folder) {
  m_schemaFolder = folderOf(folder).u8string();
}

void SchemaReader::readFolder(const std::string& folder, bool deep) {
  m_folder = folderOf(folder).u8string();
  const std::size_t before = m_problems.size();
  const std::vector<std::string> files = mofFilesIn(folder, deep, m_problems);
  m_readEverything = m_readEverything && m_problems.size() == before;
  const std::set<std::string> included = readAhead(files);
  for (const std::string& file : files) {
    if (included.count(identityOf(normal(fs::u8path(file)))) == 0) readAsked(file);
  }
  // What is left includes each other in a circle.
  for (const std::string& file : files) readAsked(file);
  m_ahead.clear();
}

bool SchemaReader::isInside(const std::string& path) const {
  const fs::path file = fs::u8path(path);
  return depthIn(fs::u8path(m_folder), file) > 0 ||
         (!m_schemaFolder.empty() && depthIn(fs::u8path(m_schemaFolder), file) > 0);
}

/// The folder behind its links; it is asked for once for each file in it.
const fs::path& SchemaReader::realFolder(const fs::path& folder) {
  const auto [known, isNew] = m_realFolders.emplace(folder.u8string(), fs::path());
  if (isNew) known->second = behindLinks(folder);
  return known->second;
}

/// Why the file at `path`, which is one of the folders' by its name, is none by the links in it;
/// empty where it is.
std::string SchemaReader::whyOutside(const std::string& path) {
  std::error_code error;
  const fs::path file = fs::u8path(path);
  const fs::path real = fs::is_symlink(file, error)
                            ? behindLinks(file)
                            : realFolder(file.parent_path()) / file.filename();
  const bool isOurs =
      depthIn(realFolder(fs::u8path(m_folder)), real) > 0 ||
      (!m_schemaFolder.empty() && depthIn(realFolder(fs::u8path(m_schemaFolder)), real) > 0);
  return isOurs ? std::string() : "a link leads out of the folder";
}

Layer SchemaReader::layerOf(const std::string& path) const {
  if (m_schemaFolder.empty()) return Layer::ePackage;
  const std::size_t depth = depthIn(fs::u8path(m_schemaFolder), fs::u8path(path));
  return depth == 0 ? Layer::ePackage : depth == 1 ? Layer::eSchema : Layer::eOwnFolder;
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
      const std::string aimed = targetOf(path, include);
      if (aimed.empty() || !isInside(aimed)) continue;
      const std::string target = identityOf(aimed);
      if (target != own) included.insert(target);
    }
  }
  return included;
}

SchemaReader::ReadFile SchemaReader::parse(const std::string& path, const std::string& nameSpace) {
  ReadFile file;
  file.stamp = stampOf(path);
  file.failure = whyOutside(path);
  file.isRefused = !file.failure.empty();
  if (file.isRefused) return file;
  try {
    file.unit = parseMof(path, readSourceText(path), file.problems, nameSpace);
  } catch (const SourceError& error) {
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

void SchemaReader::readFile(const std::string& path) {
  m_folder = fs::u8path(path).lexically_normal().parent_path().u8string();
  readAsked(path);
}

/// What a file includes is read before its own declarations count, as if its text stood there; a
/// file that includes itself, directly or not, is read once like any other.
void SchemaReader::readAsked(const std::string& path) {
  ++m_aliasScope;
  m_askedFor = normal(fs::u8path(path));
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
  unit.layer = layerOf(path);
  unit.askedFor = m_askedFor;
  for (auto include = unit.includes.rbegin(); include != unit.includes.rend(); ++include) {
    addInclude(*include, unit, open);
  }
}

void SchemaReader::addInclude(const IncludeSyntax& include, const CompilationUnit& unit,
                              std::vector<Pending>& open) {
  std::string target = targetOf(unit.file, include);
  if (!target.empty() && isInside(target)) {
    open.push_back({std::move(target), unit.file, include.nameSpace, include.at});
    return;
  }
  m_problems.push_back({unit.file, include.at.line, include.at.column,
                        target.empty() ? "an include path starts at the including file's folder"
                                       : "an include path does not lead out of the folder"});
}

void SchemaReader::report(const ReadFile& unreadable, const Pending& pending) {
  const bool mayChange = unreadable.stamp.exists && !unreadable.isRefused;
  m_readEverything = m_readEverything && !mayChange;
  if (pending.includedFrom.empty()) {
    m_problems.push_back({unreadable.stamp.path, 0, 0, unreadable.failure});
  } else {
    m_problems.push_back({pending.includedFrom, pending.at.line, pending.at.column,
                          "cannot include: " + unreadable.stamp.path + ": " + unreadable.failure});
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

/// Of two declarations of a qualifier the later one counts; that of a schema in a folder of its own
/// is the last one, whatever the names of the folders.
std::vector<MissingClass> SchemaReader::build(QualifierTable& qualifiers, ClassTable& classes) {
  for (const bool isOwn : {false, true}) {
    for (const CompilationUnit& unit : m_units) {
      if ((unit.layer == Layer::eOwnFolder) == isOwn) declareQualifiers(unit, qualifiers);
    }
  }
  return buildClasses(m_units, qualifiers, classes, m_problems);
}

}  // namespace cmpinsp
