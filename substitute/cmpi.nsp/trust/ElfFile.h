#pragma once

#include <optional>
#include <string>
#include <vector>

#include "substitute/cmpi.nsp/trust/Bytes.h"

namespace cmpinsp {

enum class LibraryKind {
  kUsable,   ///< a library of this machine
  kForeign,  ///< one of another machine: the loader passes it over where it searches
  kNone,     ///< no library: the loader refuses it, and says why
  kDamaged   ///< what it needs cannot be read
};

/// What an ELF file says of itself to the loader.
struct ElfFile {
  LibraryKind kind = LibraryKind::kNone;
  std::string fault;                ///< of a damaged one
  std::string name;                 ///< its own, by which the loader knows it again; may be empty
  std::vector<std::string> needed;  ///< in the order in which they are looked for
  std::vector<std::string> auxiliary;       ///< those that may be missing
  std::optional<std::string> runPathOfAll;  ///< DT_RPATH: for what it needs, directly or not
  std::optional<std::string> runPath;       ///< DT_RUNPATH: for what it needs itself
  bool withoutDefaultFolders = false;
};

/// Reads that, as the loader will. Whatever the bytes are, it ends, in memory of 40 MB at most.
ElfFile readElf(Bytes& bytes);

}  // namespace cmpinsp
