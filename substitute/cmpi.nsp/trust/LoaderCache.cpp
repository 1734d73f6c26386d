#include "substitute/cmpi.nsp/trust/LoaderCache.h"

#include <algorithm>

namespace cmpinsp {

namespace {

// Names and numbers of the format.
const char* const kMagic = "glibc-ld.so.cache1.1";
const char* const kOldMagic = "ld.so-1.7.0";
constexpr std::size_t kHeaderSize = 48;
constexpr std::size_t kEntrySize = 24;
constexpr std::size_t kOldHeaderSize = 16;
constexpr std::size_t kOldEntrySize = 12;
constexpr std::size_t kAlignment = 8;

bool beginsWith(const std::string& content, std::size_t at, const char* magic) {
  return content.compare(std::min(at, content.size()), std::char_traits<char>::length(magic),
                         magic) == 0;
}

/// Where the list in today's form begins: at once, or behind one in the form of old.
std::size_t beginOfList(const std::string& content) {
  if (!beginsWith(content, 0, kOldMagic) || content.size() < kOldHeaderSize) return 0;
  const std::size_t count = numberIn(content, 12, 4);
  const std::size_t end = kOldHeaderSize + count * kOldEntrySize;
  return (end + kAlignment - 1) / kAlignment * kAlignment;
}

/// The text at an offset, if it ends.
const char* textAt(const std::string& content, std::size_t offset) {
  const bool ends = offset < content.size() && content.find('\0', offset) != std::string::npos;
  return ends ? content.c_str() + offset : "";
}

}  // namespace

std::vector<std::string> cachedFiles(const std::string& content, const std::string& name) {
  std::vector<std::string> files;
  const std::size_t begin = beginOfList(content);
  if (!beginsWith(content, begin, kMagic) || content.size() - begin < kHeaderSize) return files;
  const std::size_t most = (content.size() - begin - kHeaderSize) / kEntrySize;
  const std::size_t count = std::min<std::size_t>(numberIn(content, begin + 20, 4), most);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t entry = begin + kHeaderSize + i * kEntrySize;
    if (name != textAt(content, begin + numberIn(content, entry + 4, 4))) continue;
    const std::string file = textAt(content, begin + numberIn(content, entry + 8, 4));
    if (!file.empty()) files.push_back(file);
  }
  return files;
}

}  // namespace cmpinsp
