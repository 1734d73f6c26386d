#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "substitute/cmpi.nsp/cache/ByteReader.h"
#include "substitute/cmpi.nsp/cache/ClassRecords.h"
#include "substitute/cmpi.nsp/cache/SchemaImage.h"
#include "substitute/cmpi.nsp/manager/operations/StaticInstances.h"

namespace {

/// How many classes of an input are built: one may take as long as the largest real ones.
constexpr std::size_t kMostClasses = 4;

void readAll(const cmpinsp::SchemaImage& image) {
  cmpinsp::ClassTable classes;
  std::size_t built = 0;
  for (const cmpinsp::IndexedClass& indexed : image.classes) {
    if (built++ == kMostClasses) break;
    classes.add(cmpinsp::readClassRecord(image.records, indexed.place));
  }
  std::vector<substitute::Problem> problems;
  cmpinsp::buildStaticInstances(image.units, classes, {}, problems, problems);
}

}  // namespace

/// Whatever a compiled schema holds: it is read to its end or refused. Its checksum is made to fit,
/// so that what lies behind it is reached.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string bytes(reinterpret_cast<const char*>(data), size);
  bytes.resize(std::max(bytes.size(), cmpinsp::kImageStart));
  cmpinsp::sealImage(bytes);
  if (cmpinsp::stateOf(bytes) != cmpinsp::ImageState::eWhole) std::abort();
  cmpinsp::isOfNone(bytes, [](const std::string&) { return false; });
  try {
    readAll(cmpinsp::decodeSchema(bytes));
  } catch (const cmpinsp::CacheDamage& damage) {
    if (damage.what.empty()) std::abort();
  }
  return 0;
}
