#include "providers/disk/scratch/ScratchFile.h"

namespace providers::disk {

bool systemHasScratchFiles() { return false; }

OpenedScratch openScratch(const Disk&, const std::string&, std::uint64_t) {
  return {nullptr, "there are no scratch files on this system", {}};
}

}  // namespace providers::disk
