#pragma once

#include <string>
#include <unordered_map>

#include "engine/events/Event.h"
#include "reports/common/JsonText.h"

namespace reports {

/// The machine under test in an OCP stream.
class OcpDevice {
 public:
  /// Adds the `dutInfo` of the run, and keeps which identifier each part has there.
  void describe(JsonText& json, const engine::RunStarted& run);

  /// Adds what an artifact is about: a part of the machine by its identifier where its name is that
  /// of one part alone; anything else as a subcomponent of that name; nothing where it is empty.
  void refer(JsonText& json, const std::string& part) const;

 private:
  void describePart(JsonText& json, const engine::Part& part, const std::string& id);

  std::unordered_map<std::string, std::string> m_ids;  ///< empty for a name of several parts
};

}  // namespace reports
