#pragma once

#include <set>
#include <string>

#include "substitute/cmpi.nsp/Bootstrap.h"

namespace host {

/// Tells which providers cannot be used, or not as they are registered: the tests that they offer
/// are missing without a word otherwise.
class ProviderWatch {
 public:
  /// `framework` outlives the watch.
  explicit ProviderWatch(const substitute::Framework& framework) : m_framework(framework) {}

  /// Writes an error line that names those that are known by now and were not named before. None is
  /// loaded to find out: of a library that nobody has asked for it is known only whether it is
  /// there and may be loaded. Throws `std::bad_alloc` where one could not be loaded for want of
  /// memory.
  void report();

  /// Whether any was named.
  bool hasUnusable() const { return !m_named.empty(); }

 private:
  const substitute::Framework& m_framework;
  std::set<std::string> m_named;
};

/// The word for a state, as `diags providers` prints it.
const char* wordFor(substitute::ProviderState state);

}  // namespace host
