#pragma once

#include <string>
#include <vector>

#include "substitute/cmpi.nsp/trust/ElfFile.h"

namespace cmpinsp {

/// What a library of Windows says that it needs.
struct PeFile {
  LibraryKind kind = LibraryKind::kNone;
  std::string fault;                 ///< of a damaged one
  std::vector<std::string> needed;   ///< before its code runs
  std::vector<std::string> delayed;  ///< at its first call, by whatever way the code takes
};

/// Reads that. Whatever the bytes are, it ends, in memory of 40 MB at most.
PeFile readPe(Bytes& bytes);

}  // namespace cmpinsp
