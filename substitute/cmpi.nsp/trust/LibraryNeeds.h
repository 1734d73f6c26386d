#pragma once

#include <memory>
#include <string>

#include "substitute/cmpi.nsp/installation/PathRights.h"

namespace cmpinsp {

/// Holds what a library needs, directly or not, to the rule of `PathRights`, before the system's
/// loader takes it unasked. Each file is read once. For one thread at a time.
class LibraryNeeds {
 public:
  /// `rights` outlives it.
  explicit LibraryNeeds(PathRights& rights);
  LibraryNeeds(const LibraryNeeds&) = delete;
  LibraryNeeds& operator=(const LibraryNeeds&) = delete;
  ~LibraryNeeds();

  /// Why others could change what the loader takes for the library at `library` (absolute, symbolic
  /// links resolved), or bring it to take something else; or what it needs and is not to be found.
  /// Empty when neither is so. What no loader takes for a library needs nothing.
  std::string refusalOf(const std::string& library);

 private:
  class Impl;
  std::unique_ptr<Impl> m_impl;
};

}  // namespace cmpinsp
