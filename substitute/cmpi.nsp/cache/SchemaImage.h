#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "framework/TCIMQualifierDecl.h"
#include "substitute/cmpi.nsp/Problem.h"
#include "substitute/cmpi.nsp/cache/SourceStamp.h"
#include "substitute/cmpi.nsp/repository/ClassTable.h"
#include "substitute/cmpi.nsp/repository/MofSyntax.h"
#include "substitute/cmpi.nsp/repository/QualifierTable.h"

namespace cmpinsp {

/// What a compiled schema was made of.
struct SchemaSources {
  std::vector<std::string> listing;  ///< the files that the installation's folders held
  std::vector<SourceStamp> stamps;   ///< every file that was read, with those that were included

  bool operator==(const SchemaSources& other) const {
    return listing == other.listing && stamps == other.stamps;
  }
};

/// The bytes of a compiled schema: everything that the installation needs of its MOF files. Throws
/// `TVORException` (not supported) for a schema that cannot be written.
std::string encodeSchema(const SchemaSources& sources,
                         const std::vector<substitute::Problem>& problems,
                         const std::vector<substitute::Problem>& notes,
                         const QualifierTable& qualifiers,
                         const std::vector<CompilationUnit>& units, const ClassTable& classes);

/// Where a class is in a compiled schema.
struct IndexedClass {
  std::string name;
  std::string superclass;
  bool isOpen = false;  ///< the superclass need not be among the classes
  std::uint32_t place = 0;
};

/// What is read of a compiled schema at start; its classes are built when they are asked for.
struct SchemaImage {
  SchemaSources sources;
  std::vector<substitute::Problem> problems;
  std::vector<substitute::Problem> notes;
  std::vector<NZELVOR20::TCIMQualifierDecl> qualifiers;
  std::vector<CompilationUnit> units;  ///< their instances alone
  std::vector<IndexedClass> classes;   ///< each behind its superclass
  std::string_view records;            ///< of the classes, for `readClassRecord`
};

/// How the start of a file judges the rest of it.
enum class ImageState { eWhole, eDamaged, eOtherVersion };

/// Compares the length and the checksum of `bytes` with those that they begin with. One that was
/// written by another version or build of the product is not looked at any further.
ImageState stateOf(std::string_view bytes);

/// Its two parts: all but the checksum, and that of bytes whose start is whole.
ImageState stateOfStart(std::string_view bytes);
bool hasItsChecksum(std::string_view bytes);

/// Reads `bytes`, which may hold anything behind a start that is whole and outlive the image.
/// Throws `CacheDamage`.
SchemaImage decodeSchema(std::string_view bytes);

/// Whether the schema in `bytes` was made of files of which `isThere` knows none; it is asked up to
/// the first one that it knows. False where the bytes, which may hold anything, are damaged or of
/// another format. A schema of another build tells its files too.
bool isOfNone(std::string_view bytes, const std::function<bool(const std::string&)>& isThere);

/// Writes the start of `bytes` anew, so that they are whole whatever they hold. At least
/// `kImageStart` bytes.
void sealImage(std::string& bytes);
constexpr std::size_t kImageStart = 40;

}  // namespace cmpinsp
