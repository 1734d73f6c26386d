#include "providers/memory/placing/PageMap.h"

#include <fstream>

#include "providers/memory/engine/MemoryReport.h"

namespace providers::memory {

PhysicalPlace readPhysicalPlace(const std::string& file, std::uint64_t address) {
  constexpr std::uint64_t kPresent = std::uint64_t{1} << 63;
  constexpr std::uint64_t kFrame = (std::uint64_t{1} << 55) - 1;
  // The system refuses to read a part of an entry, which a stream's buffer would ask for at its
  // end.
  std::filebuf table;
  table.pubsetbuf(nullptr, 0);
  if (!table.open(file, std::ios::in | std::ios::binary)) return {{}, file + " cannot be opened"};
  table.pubseekoff(static_cast<std::streamoff>(address / kPageBytes * sizeof(std::uint64_t)),
                   std::ios::beg);
  char bytes[sizeof(std::uint64_t)] = {};
  if (table.sgetn(bytes, sizeof bytes) != sizeof bytes) return {{}, file + " has no such page"};
  std::uint64_t entry = 0;
  for (unsigned byte = 0; byte < sizeof bytes; ++byte)
    entry |= static_cast<std::uint64_t>(static_cast<unsigned char>(bytes[byte])) << 8 * byte;
  if (!(entry & kPresent)) return {{}, "the page is not in memory"};
  // Who may not know it is shown page 0.
  if ((entry & kFrame) == 0) return {{}, "only the administrator may know it (CAP_SYS_ADMIN)"};
  return {(entry & kFrame) * kPageBytes + address % kPageBytes, {}};
}

PhysicalPlace physicalPlace(const void* address) {
#ifdef _WIN32
  static_cast<void>(address);
  return {{}, "Windows does not tell it"};
#else
  return readPhysicalPlace("/proc/self/pagemap",
                           static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(address)));
#endif
}

}  // namespace providers::memory
