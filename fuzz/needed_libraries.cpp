#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "substitute/cmpi.nsp/trust/ElfFile.h"
#include "substitute/cmpi.nsp/trust/LoaderCache.h"
#include "substitute/cmpi.nsp/trust/PeFile.h"
#include "substitute/cmpi.nsp/trust/RunPath.h"

namespace {

/// A library of which nothing can be read has said nothing; a run path stands for few folders.
void expectSense(const cmpinsp::ElfFile& file) {
  const bool isUsable = file.kind == cmpinsp::LibraryKind::kUsable;
  const bool isDamaged = file.kind == cmpinsp::LibraryKind::kDamaged;
  if (!isUsable && !(file.needed.empty() && file.auxiliary.empty())) std::abort();
  if (isDamaged == file.fault.empty()) std::abort();
  const cmpinsp::Placeholders placeholders{"/o", {"lib/t", "lib"}, {"p", "q", "r"}};
  for (const auto* runPath : {&file.runPath, &file.runPathOfAll}) {
    if (!*runPath) continue;
    for (const std::string& folder : cmpinsp::foldersIn(**runPath))
      if (cmpinsp::expansionsOf(folder, placeholders).size() > 64) std::abort();
  }
}

}  // namespace

/// Whatever a library holds that says what it needs, for each of the two systems, and whatever a
/// list of the system's libraries does.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string content(reinterpret_cast<const char*>(data), size);
  expectSense(cmpinsp::readElf(*cmpinsp::bytesOf(content)));
  const cmpinsp::PeFile file = cmpinsp::readPe(*cmpinsp::bytesOf(content));
  if ((file.kind == cmpinsp::LibraryKind::kDamaged) == file.fault.empty()) std::abort();
  cmpinsp::cachedFiles(content, "libc.so.6");
  return 0;
}
