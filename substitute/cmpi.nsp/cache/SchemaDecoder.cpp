#include <utility>

#include "substitute/cmpi.nsp/cache/ByteReader.h"
#include "substitute/cmpi.nsp/cache/Checksum.h"
#include "substitute/cmpi.nsp/cache/CodedSyntax.h"
#include "substitute/cmpi.nsp/cache/CodedValue.h"
#include "substitute/cmpi.nsp/cache/SchemaImage.h"
#include "substitute/cmpi.nsp/cache/SchemaImageFormat.h"

namespace cmpinsp {

namespace {

// The smallest number of bytes that each of these takes.
constexpr std::size_t kSmallestText = 4;
constexpr std::size_t kSmallestStamp = 29;
constexpr std::size_t kSmallestProblem = 24;
constexpr std::size_t kSmallestQualifier = 8;
constexpr std::size_t kSmallestClass = 13;

struct ImageStart {
  std::uint64_t checksum = 0;
  std::uint32_t version = 0;
  std::uint32_t headLength = 0;
  std::uint64_t build = 0;
  std::uint64_t length = 0;
};

/// Of bytes that are long enough.
ImageStart startOf(std::string_view bytes) {
  ByteReader from(bytes.substr(kChecksumAt));
  ImageStart start;
  start.checksum = from.u64();
  start.version = from.u32();
  start.headLength = from.u32();
  start.build = from.u64();
  start.length = from.u64();
  return start;
}

SourceStamp readStamp(ByteReader& from) {
  SourceStamp stamp;
  stamp.path = from.text();
  stamp.exists = from.flags(1) != 0;
  stamp.size = from.u64();
  stamp.modified = from.u64();
  stamp.changed = from.u64();
  return stamp;
}

SchemaSources readSources(ByteReader& from) {
  SchemaSources sources;
  const std::size_t files = from.count(kSmallestText);
  sources.listing.reserve(files);
  for (std::size_t i = 0; i < files; ++i) sources.listing.emplace_back(from.text());
  const std::size_t count = from.count(kSmallestStamp);
  sources.stamps.reserve(count);
  for (std::size_t i = 0; i < count; ++i) sources.stamps.push_back(readStamp(from));
  return sources;
}

std::vector<substitute::Problem> readProblems(ByteReader& from) {
  std::vector<substitute::Problem> problems;
  const std::size_t count = from.count(kSmallestProblem);
  for (std::size_t i = 0; i < count; ++i) {
    substitute::Problem problem;
    problem.file = from.text();
    problem.line = static_cast<unsigned long>(from.u64());
    problem.column = static_cast<unsigned long>(from.u64());
    problem.message = from.text();
    problems.push_back(std::move(problem));
  }
  return problems;
}

std::vector<NZELVOR20::TCIMQualifierDecl> readQualifiers(ByteReader& from) {
  std::vector<NZELVOR20::TCIMQualifierDecl> declarations;
  const std::size_t count = from.count(kSmallestQualifier);
  for (std::size_t i = 0; i < count; ++i) {
    NZELVOR20::TCIMQualifierDecl declaration;
    declaration.name = from.text();
    declaration.type = readDeclaredType(from);
    const unsigned flags = from.flags(4);
    declaration.isArray = (flags & 1U) != 0;
    declaration.overridable = (flags & 2U) != 0;
    declaration.toSubclass = (flags & 4U) != 0;
    declaration.translatable = (flags & 8U) != 0;
    declaration.defaultValue = readValue(from);
    declarations.push_back(std::move(declaration));
  }
  return declarations;
}

std::vector<IndexedClass> readIndex(ByteReader& from) {
  std::vector<IndexedClass> classes;
  const std::size_t count = from.count(kSmallestClass);
  classes.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    IndexedClass indexed;
    indexed.name = from.text();
    indexed.superclass = from.text();
    indexed.isOpen = from.flags(1) != 0;
    indexed.place = from.u32();
    classes.push_back(std::move(indexed));
  }
  return classes;
}

}  // namespace

ImageState stateOfStart(std::string_view bytes) {
  if (bytes.size() < kImageStart || bytes.substr(0, kImageMagic.size()) != kImageMagic) {
    return ImageState::eDamaged;
  }
  const ImageStart start = startOf(bytes);
  if (start.version != kImageVersion || start.build != kBuildNumber) {
    return ImageState::eOtherVersion;
  }
  return start.length == bytes.size() ? ImageState::eWhole : ImageState::eDamaged;
}

bool hasItsChecksum(std::string_view bytes) {
  return startOf(bytes).checksum == checksumOf(bytes.substr(kVersionAt));
}

ImageState stateOf(std::string_view bytes) {
  const ImageState state = stateOfStart(bytes);
  if (state != ImageState::eWhole || hasItsChecksum(bytes)) return state;
  return ImageState::eDamaged;
}

bool isOfNone(std::string_view bytes, const std::function<bool(const std::string&)>& isThere) {
  const bool isImage =
      bytes.size() >= kImageStart && bytes.substr(0, kImageMagic.size()) == kImageMagic;
  if (!isImage || startOf(bytes).version != kImageVersion) return false;
  try {
    ByteReader head(bytes.substr(kImageStart));
    const std::size_t listed = head.count(kSmallestText);
    for (std::size_t i = 0; i < listed; ++i) {
      if (isThere(std::string(head.text()))) return false;
    }
    const std::size_t read = head.count(kSmallestStamp);
    for (std::size_t i = 0; i < read; ++i) {
      if (isThere(readStamp(head).path)) return false;
    }
    return listed + read > 0;
  } catch (const CacheDamage&) {
    return false;
  }
}

SchemaImage decodeSchema(std::string_view bytes) {
  const std::string_view rest = bytes.substr(kImageStart);
  const std::size_t headLength = startOf(bytes).headLength;
  if (headLength > rest.size()) throw CacheDamage{"it ends too early"};
  ByteReader head(rest.substr(0, headLength));
  SchemaImage image;
  image.sources = readSources(head);
  image.problems = readProblems(head);
  image.notes = readProblems(head);
  image.qualifiers = readQualifiers(head);
  image.units = readInstances(head);
  image.classes = readIndex(head);
  if (head.left() != 0) throw CacheDamage{"more follows than belongs to it"};
  image.records = rest.substr(headLength);
  return image;
}

}  // namespace cmpinsp
