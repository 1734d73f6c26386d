#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <utility>

#include "engine/protocol/PlaceRecord.h"

namespace engine {
namespace {

/// Both names, each with the zero byte behind it.
constexpr std::size_t kSize = 1024;
constexpr int kSeals = F_SEAL_GROW | F_SEAL_SHRINK | F_SEAL_SEAL;
/// Whoever reads while it is written reads again.
constexpr int kMostReadings = 8;

/// As no file is that anybody else has opened.
bool isSealed(int descriptor) { return fcntl(descriptor, F_GET_SEALS) == kSeals; }

bool readAll(int descriptor, char* bytes) {
  return pread(descriptor, bytes, kSize, 0) == static_cast<ssize_t>(kSize);
}

/// Two readings that are alike.
bool readWhole(int descriptor, char* bytes) {
  char again[kSize];
  if (!readAll(descriptor, bytes)) return false;
  for (int i = 0; i < kMostReadings; ++i) {
    if (!readAll(descriptor, again)) return false;
    if (std::memcmp(bytes, again, kSize) == 0) break;
    std::memcpy(bytes, again, kSize);
  }
  return true;
}

}  // namespace

PlaceRecord PlaceRecord::make() noexcept {
  const int descriptor = memfd_create("diags-place", MFD_CLOEXEC | MFD_ALLOW_SEALING);
  if (descriptor < 0) return PlaceRecord();
  PlaceRecord record(descriptor);
  if (ftruncate(descriptor, kSize) != 0 || fcntl(descriptor, F_ADD_SEALS, kSeals) != 0)
    return PlaceRecord();
  return record;
}

bool PlaceRecord::isRecord(int descriptor) noexcept {
  struct stat facts = {};
  return isSealed(descriptor) && fstat(descriptor, &facts) == 0 &&
         facts.st_size == static_cast<off_t>(kSize);
}

PlaceRecord::PlaceRecord(PlaceRecord&& other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1)) {}

PlaceRecord& PlaceRecord::operator=(PlaceRecord&& other) noexcept {
  std::swap(m_descriptor, other.m_descriptor);
  return *this;
}

PlaceRecord::~PlaceRecord() {
  if (m_descriptor >= 0) close(m_descriptor);
}

bool PlaceRecord::write(int descriptor, const char* provider, const char* operation) noexcept {
  const std::size_t first = std::strlen(provider) + 1;
  const std::size_t second = std::strlen(operation) + 1;
  if (!isSealed(descriptor)) return false;
  const bool fits = first + second <= kSize;
  char bytes[kSize] = "";
  if (fits) {
    std::memcpy(bytes, provider, first);
    std::memcpy(bytes + first, operation, second);
  }
  const std::size_t size = fits ? first + second : 1;
  return pwrite(descriptor, bytes, size, 0) == static_cast<ssize_t>(size) && fits;
}

std::optional<Entered> PlaceRecord::read() const {
  char bytes[kSize + 2];
  bytes[kSize] = bytes[kSize + 1] = '\0';  // whoever wrote it may have left them out
  if (m_descriptor < 0 || !readWhole(m_descriptor, bytes) || bytes[0] == '\0') return std::nullopt;
  return Entered{bytes, bytes + std::strlen(bytes) + 1};
}

}  // namespace engine
