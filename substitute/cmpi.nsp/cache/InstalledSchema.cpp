#include "substitute/cmpi.nsp/cache/InstalledSchema.h"

#include <boost/make_shared.hpp>
#include <filesystem>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <sstream>
#include <system_error>
#include <utility>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/Log.h"
#include "substitute/cmpi.nsp/cache/ByteReader.h"
#include "substitute/cmpi.nsp/cache/CacheFile.h"
#include "substitute/cmpi.nsp/cache/CacheTidy.h"
#include "substitute/cmpi.nsp/cache/Checksum.h"
#include "substitute/cmpi.nsp/cache/ClassRecords.h"
#include "substitute/cmpi.nsp/cache/MappedFile.h"
#include "substitute/cmpi.nsp/cache/SchemaImage.h"
#include "substitute/cmpi.nsp/repository/SchemaReader.h"

namespace cmpinsp {

namespace {

namespace fs = std::filesystem;

std::vector<std::string> listingOf(const SchemaFolders& folders,
                                   std::vector<substitute::Problem>& problems) {
  std::vector<std::string> files = mofFilesIn(folders.schema, true, problems);
  const std::vector<std::string> more = mofFilesIn(folders.providers, false, problems);
  files.insert(files.end(), more.begin(), more.end());
  return files;
}

std::vector<std::string> pathsOf(std::vector<SourceStamp> stamps) {
  std::vector<std::string> paths;
  paths.reserve(stamps.size());
  for (SourceStamp& stamp : stamps) paths.push_back(std::move(stamp.path));
  return paths;
}

/// A schema from its MOF files, and what it was made of.
struct Compiled {
  InstalledSchema schema;
  SchemaSources sources;
  bool isComplete = true;  ///< every file and folder that is there could be read
};

substitute::Problem noteOf(const MissingClass& missing, const std::string& schemaFolder) {
  const std::size_t others = missing.classes - 1;
  std::string classes = "class " + missing.subclass;
  if (others > 0) classes += " and " + std::to_string(others) + " more";
  return {missing.file, missing.at.line, missing.at.column,
          "note: superclass " + missing.name + " of " + classes +
              " is not declared, so that what a provider sets is taken as it comes; the DMTF's "
              "schema, which may have it, can be put into a folder of its own in " +
              schemaFolder};
}

Compiled compile(const SchemaFolders& folders) {
  Compiled compiled;
  InstalledSchema& schema = compiled.schema;
  schema.classes = boost::make_shared<ClassTable>();
  std::vector<substitute::Problem> toldByTheReader;
  compiled.sources.listing = listingOf(folders, toldByTheReader);
  SchemaReader reader(schema.problems);
  reader.setSchemaFolder(folders.schema);
  reader.readFolder(folders.schema, true);
  reader.readFolder(folders.providers, false);
  for (const MissingClass& missing : reader.build(schema.qualifiers, *schema.classes)) {
    schema.notes.push_back(noteOf(missing, folders.schema));
  }
  compiled.sources.stamps = reader.sources();
  compiled.isComplete = reader.readEverything();
  schema.units = reader.takeUnits();
  schema.files = pathsOf(compiled.sources.stamps);
  return compiled;
}

void reportDamage(const std::string& file, const std::string& what) {
  logLine(kErrorLevel, "Schema cache: " + file + " is damaged and thrown away: " + what);
  std::error_code error;
  fs::remove(fs::u8path(file), error);
}

/// Builds classes from a cache file, or from the MOF files should a class turn out to be damaged.
class CachedClasses final : public ClassSource {
 public:
  CachedClasses(std::shared_ptr<const MappedFile> bytes, std::string_view records, std::string file,
                SchemaFolders folders)
      : m_bytes(std::move(bytes)),
        m_reader(records),
        m_file(std::move(file)),
        m_folders(std::move(folders)) {}

  vorcore::ClassDeclarationPtr load(const std::string& name, std::uint32_t place) const override {
    if (m_compiled) return m_compiled->find(name);
    try {
      vorcore::ClassDeclarationPtr declaration = m_reader.read(place);
      if (declaration->name != name) throw CacheDamage{"a class has another name"};
      return declaration;
    } catch (const CacheDamage& damage) {
      m_compiled = compile(m_folders).schema.classes;
      m_bytes.reset();  // on Windows a file that is mapped cannot be removed
      reportDamage(m_file, damage.what);
    }
    return m_compiled->find(name);
  }

 private:
  // The table calls `load` one at a time. Of the bytes and the classes one is there.
  mutable std::shared_ptr<const MappedFile> m_bytes;
  mutable boost::shared_ptr<ClassTable> m_compiled;
  mutable ClassRecordReader m_reader;
  std::string m_file;
  SchemaFolders m_folders;
};

bool isCurrent(const SchemaSources& sources, const SchemaFolders& folders) {
  std::vector<substitute::Problem> problems;
  if (sources.listing != listingOf(folders, problems) || !problems.empty()) return false;
  for (const SourceStamp& stamp : sources.stamps) {
    if (!(stampOf(stamp.path) == stamp)) return false;
  }
  return true;
}

InstalledSchema schemaOf(SchemaImage image) {
  InstalledSchema schema;
  for (auto& declaration : image.qualifiers) schema.qualifiers.declare(std::move(declaration));
  schema.classes = boost::make_shared<ClassTable>();
  schema.classes->reserve(image.classes.size());
  for (const IndexedClass& indexed : image.classes) {
    if (!schema.classes->addLater(indexed.name, indexed.superclass, indexed.place,
                                  indexed.isOpen)) {
      throw CacheDamage{"its classes do not fit together"};
    }
  }
  schema.units = std::move(image.units);
  schema.files = pathsOf(std::move(image.sources.stamps));
  schema.problems = std::move(image.problems);
  schema.notes = std::move(image.notes);
  return schema;
}

/// Whether the bytes have their checksum, which is taken on a thread meanwhile where it takes as
/// long as the work does. What the work throws counts where they have.
bool whileSummed(std::string_view bytes, const std::function<void()>& work) {
  constexpr std::size_t kLarge = std::size_t{1} << 20U;
  const auto sum = [bytes] { return hasItsChecksum(bytes); };
  std::future<bool> isIntact = std::async(std::launch::deferred, sum);
  try {
    if (bytes.size() >= kLarge) isIntact = std::async(std::launch::async, sum);
  } catch (const std::system_error&) {
    // Without a thread it is taken here.
  }
  try {
    work();
  } catch (const CacheDamage&) {
    if (isIntact.get()) throw;
    return false;
  }
  return isIntact.get();
}

/// The schema in the cache file, unless that is missing, of another build or too old. Throws
/// `CacheDamage`, when the file is no longer mapped.
std::optional<InstalledSchema> fromFile(const std::string& file, const SchemaFolders& folders) {
  const auto mapped = std::make_shared<const MappedFile>(file);
  std::error_code error;
  if (mapped->isForeign()) {
    logLine(kErrorLevel, "Schema cache: " + file + " is not used: others can change it");
    return std::nullopt;
  }
  if (mapped->bytes().empty() && !fs::exists(fs::u8path(file), error)) return std::nullopt;
  const ImageState state = stateOfStart(mapped->bytes());
  if (state == ImageState::eOtherVersion) {
    logLine(kTraceLevel, "Schema cache: " + file + " is of another version");
    return std::nullopt;
  }
  const bool isStarted = state == ImageState::eWhole;
  SchemaImage image;
  bool isOld = false;
  const bool isIntact = isStarted && whileSummed(mapped->bytes(), [&] {
                          image = decodeSchema(mapped->bytes());
                          isOld = !isCurrent(image.sources, folders);
                        });
  if (!isIntact) throw CacheDamage{"its length or its checksum is wrong"};
  if (isOld) {
    logLine(kTraceLevel, "Schema cache: " + file + " is older than the schema");
    return std::nullopt;
  }
  auto source = boost::make_shared<CachedClasses>(mapped, image.records, file, folders);
  InstalledSchema schema = schemaOf(std::move(image));
  schema.classes->setSource(std::move(source));
  return schema;
}

std::optional<InstalledSchema> fromCache(const std::string& cacheFile,
                                         const SchemaFolders& folders) {
  const std::string file = withoutLinks(cacheFile);
  const std::string refusal = whyNotTrusted(file);
  if (!refusal.empty()) {
    logLine(kErrorLevel, "Schema cache: " + file + " is not used: " + refusal);
    return std::nullopt;
  }
  try {
    return fromFile(file, folders);
  } catch (const CacheDamage& damage) {
    reportDamage(file, damage.what);
    return std::nullopt;
  }
}

void writeCache(const std::string& file, const Compiled& compiled) {
  std::string failure = "a file of the schema cannot be read";
  if (compiled.isComplete) {
    try {
      const InstalledSchema& schema = compiled.schema;
      failure =
          replaceCacheFile(file, encodeSchema(compiled.sources, schema.problems, schema.notes,
                                              schema.qualifiers, schema.units, *schema.classes));
    } catch (const NZELVOR20::TVORException& error) {
      failure = error.what();
    }
  }
  logLine(kTraceLevel, "Schema cache: " + file +
                           (failure.empty() ? " is written" : " is not written: " + failure));
}

}  // namespace

InstalledSchema readInstalledSchema(const SchemaFolders& folders, const std::string& cacheFile) {
  if (!cacheFile.empty()) {
    tidyCaches(cacheFile, kPassingBy);
    std::optional<InstalledSchema> cached = fromCache(cacheFile, folders);
    if (cached) return std::move(*cached);
    tidyCaches(cacheFile);
  }
  Compiled compiled = compile(folders);
  if (!cacheFile.empty()) writeCache(cacheFile, compiled);
  return std::move(compiled.schema);
}

std::string cacheFileFor(const std::string& root, const std::string& folder) {
  const std::string parent = folder.empty() ? userCacheFolder() : folder;
  if (parent.empty()) return std::string();
  std::ostringstream name;
  name << "schema-" << std::hex << checksumOf(root) << ".cache";
  return (fs::u8path(parent) / name.str()).u8string();
}

}  // namespace cmpinsp
