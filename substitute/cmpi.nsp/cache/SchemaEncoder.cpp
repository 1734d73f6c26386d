#include <limits>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/cache/ByteWriter.h"
#include "substitute/cmpi.nsp/cache/Checksum.h"
#include "substitute/cmpi.nsp/cache/ClassRecords.h"
#include "substitute/cmpi.nsp/cache/CodedSyntax.h"
#include "substitute/cmpi.nsp/cache/CodedValue.h"
#include "substitute/cmpi.nsp/cache/SchemaImage.h"
#include "substitute/cmpi.nsp/cache/SchemaImageFormat.h"

namespace cmpinsp {

namespace {

void writeSources(ByteWriter& to, const SchemaSources& sources) {
  to.count(sources.listing.size());
  for (const std::string& file : sources.listing) to.text(file);
  to.count(sources.stamps.size());
  for (const SourceStamp& stamp : sources.stamps) {
    to.text(stamp.path);
    to.flags({stamp.exists});
    to.u64(stamp.size);
    to.u64(stamp.modified);
    to.u64(stamp.changed);
  }
}

void writeProblems(ByteWriter& to, const std::vector<substitute::Problem>& problems) {
  to.count(problems.size());
  for (const substitute::Problem& problem : problems) {
    to.text(problem.file);
    to.u64(problem.line);
    to.u64(problem.column);
    to.text(problem.message);
  }
}

void writeQualifiers(ByteWriter& to, const QualifierTable& qualifiers) {
  const auto declarations = qualifiers.all();
  to.count(declarations.size());
  for (const NZELVOR20::TCIMQualifierDecl* declaration : declarations) {
    to.text(declaration->name);
    writeType(to, declaration->type);
    to.flags({declaration->isArray, declaration->overridable, declaration->toSubclass,
              declaration->translatable});
    writeValue(to, declaration->defaultValue);
  }
}

/// Every class behind its superclass.
std::vector<std::string> classesInOrder(const ClassTable& classes) {
  std::vector<std::string> names = classes.rootClasses();
  for (std::size_t at = 0; at < names.size(); ++at) {
    const std::vector<std::string> below = classes.subclasses(names[at], false);
    names.insert(names.end(), below.begin(), below.end());
  }
  return names;
}

void writeClasses(ByteWriter& to, ClassRecordWriter& records, const ClassTable& classes) {
  const std::vector<std::string> names = classesInOrder(classes);
  to.count(names.size());
  for (const std::string& name : names) {
    const vorcore::ClassDeclarationPtr declaration = classes.find(name);
    to.text(declaration->name);
    to.text(declaration->superclass);
    to.flags({declaration->isOpen});
    to.u32(records.write(*declaration));
  }
}

void put(std::string& bytes, std::size_t at, std::string_view what) {
  bytes.replace(at, what.size(), what);
}

}  // namespace

void sealImage(std::string& bytes) {
  ByteWriter version;
  version.u32(kImageVersion);
  ByteWriter build;
  build.u64(kBuildNumber);
  build.u64(bytes.size());
  ByteWriter checksum;
  put(bytes, 0, kImageMagic);
  put(bytes, kVersionAt, version.bytes());
  put(bytes, kBuildAt, build.bytes());
  checksum.u64(checksumOf(std::string_view(bytes).substr(kVersionAt)));
  put(bytes, kChecksumAt, checksum.bytes());
}

std::string encodeSchema(const SchemaSources& sources,
                         const std::vector<substitute::Problem>& problems,
                         const std::vector<substitute::Problem>& notes,
                         const QualifierTable& qualifiers,
                         const std::vector<CompilationUnit>& units, const ClassTable& classes) {
  ByteWriter head;
  ClassRecordWriter records;
  writeSources(head, sources);
  writeProblems(head, problems);
  writeProblems(head, notes);
  writeQualifiers(head, qualifiers);
  writeInstances(head, units);
  writeClasses(head, records, classes);
  if (head.bytes().size() > std::numeric_limits<std::uint32_t>::max()) {
    throw NZELVOR20::TVORException(
        NZELVOR20::TVORStatusCode(NZELVOR20::eVORNotSupported, "too large a schema"));
  }
  ByteWriter headLength;
  headLength.count(head.bytes().size());
  std::string bytes(kImageStart, '\0');
  bytes.reserve(kImageStart + head.bytes().size() + records.bytes().size());
  put(bytes, kHeadLengthAt, headLength.bytes());
  bytes += head.bytes();
  bytes += records.bytes();
  sealImage(bytes);
  return bytes;
}

}  // namespace cmpinsp
