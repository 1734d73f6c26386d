#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "providers/common/Diagnostic.h"

namespace providers {

/// What a run does where nobody asks for anything else. A client may change it, for as long as the
/// library is in use. Safe to use from any thread.
class DefaultSettings {
 public:
  /// The diagnostic outlives the settings.
  explicit DefaultSettings(const Diagnostic& diagnostic);

  /// Every setting that the diagnostic honours; null where it has no value.
  Properties get() const;

  /// The defaults with those of `given` in their place that are not null.
  Properties with(const Properties& given) const;

  /// Takes over the values of `changed`: of all of its properties, or those that `names` has. One
  /// that is equal to what is there, or null where nothing is, changes nothing, whichever it is.
  /// Throws `BadSetting`, and changes nothing then, for a property that the diagnostic does not
  /// honour and a value that makes no sense.
  void change(const Properties& changed, const std::vector<std::string>* names);

  /// As at the beginning.
  void reset();

 private:
  const Diagnostic& m_diagnostic;
  mutable std::mutex m_mutex;
  Properties m_changed;
};

/// How many seconds a run with these settings takes; 0 where nobody knows.
std::uint32_t estimateSeconds(const Diagnostic& diagnostic, const RunSettings& settings);

}  // namespace providers
