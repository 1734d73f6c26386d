#pragma once

#include <string>
#include <unordered_map>

#include "engine/events/Event.h"
#include "text/JsonText.h"

namespace reports {

/// The machine under test in an OCP stream.
class OcpDevice {
 public:
  /// Adds the `dutInfo` of the run, and keeps which identifier each part has there.
  void describe(text::JsonText& json, const engine::RunStarted& run);

  /// Adds what an artifact is about: a part of the machine by its identifier, where its name, or
  /// else its place, is that of one part alone; anything else as a subcomponent of that name;
  /// nothing where it is empty. Two modules of one kind have one name, and a place of their own.
  void refer(text::JsonText& json, const std::string& part) const;

 private:
  void describePart(text::JsonText& json, const engine::Part& part, const std::string& id);

  /// Empty for one of several parts.
  using Ids = std::unordered_map<std::string, std::string>;
  static void keep(Ids& ids, const std::string& key, const std::string& id);
  static std::string idIn(const Ids& ids, const std::string& key);

  Ids m_byName;
  Ids m_byPlace;
};

}  // namespace reports
