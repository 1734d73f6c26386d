#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>

#include "providers/common/Diagnostic.h"

namespace providers {

/// A setting that is a number of its own kind: how long, or how often.
struct NumberSetting {
  const char* name = "";
  std::uint32_t standard = 1;  ///< unless somebody sets it
  std::uint32_t most = 1;      ///< the least is 1

  /// What the run is made with: of a quick one a fifth.
  std::uint32_t of(const RunSettings& settings) const;
  /// Why the value cannot be honoured; empty when it can.
  std::string refuse(const RunSettings& settings) const;
  Property property() const { return {name, standard, false}; }
};

/// The first of these settings that has a value, though the test knows nothing of it; else empty.
std::string refuseUnknown(const RunSettings& settings, std::initializer_list<const char*> names);

}  // namespace providers
