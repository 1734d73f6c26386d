#include <cstdlib>
#include <fstream>
#include <set>

#include "providers/memory/size/Processors.h"

namespace providers::memory {

namespace {

std::string wordIn(const std::string& path) {
  std::ifstream file(path);
  std::string word;
  file >> word;
  return word;
}

/// "48K", "2M"; 0 for what is none.
std::size_t sizeOf(const std::string& text) {
  char* end = nullptr;
  const unsigned long long number = std::strtoull(text.c_str(), &end, 10);
  const unsigned shift = *end == 'K' ? 10 : *end == 'M' ? 20 : *end == 'G' ? 30 : 0;
  return static_cast<std::size_t>(number) << shift;
}

}  // namespace

std::size_t readCacheBytes(const std::string& root, const std::vector<Processor>& processors) {
  constexpr unsigned kMost = 16;  // of a processor
  std::set<std::string> known;
  std::size_t bytes = 0;
  for (const Processor processor : processors) {
    const std::string number = std::to_string(processor);
    const std::string folder = root + "/sys/devices/system/cpu/cpu" + number + "/cache/index";
    for (unsigned index = 0; index < kMost; ++index) {
      const std::string cache = folder + std::to_string(index);
      const std::string type = wordIn(cache + "/type");
      if (type.empty()) break;
      if (type == "Instruction") continue;
      const std::string sharers = wordIn(cache + "/shared_cpu_list");
      const std::string name =
          wordIn(cache + "/level") + ":" + (sharers.empty() ? number : sharers);
      if (known.insert(name).second) bytes += sizeOf(wordIn(cache + "/size"));
    }
  }
  return bytes;
}

}  // namespace providers::memory
