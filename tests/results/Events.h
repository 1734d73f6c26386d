#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "tests/support/Text.h"

/// Pieces of the journal that occur again and again, as the events that they are made of.
namespace support {

using Events = std::vector<std::string>;

inline Events joined(std::initializer_list<Events> pieces) {
  Events events;
  for (const Events& piece : pieces) {
    events.insert(events.end(), piece.begin(), piece.end());
  }
  return events;
}

/// The events as the journal's text.
inline std::string text(const Events& events) {
  std::string all;
  for (const std::string& event : events) {
    all += event + "\n";
  }
  return all;
}

/// Reading a property's value.
inline Events valueRead(const std::string& label, const std::string& name) {
  return {"inst " + label + ".GetProperty(\"" + name + "\", {})",
          "prop " + label + "." + name + ".GetValue({})"};
}

/// Reading a property's rendering.
inline Events renderingRead(const std::string& label, const std::string& name) {
  return {"inst " + label + ".GetProperty(\"" + name + "\", {})",
          "prop " + label + "." + name + ".ToString()"};
}

/// Asking a record whether it belongs to a run, when it does.
inline Events selectionRead(const std::string& label) {
  return joined({valueRead(label, "ManagedElementName"), valueRead(label, "ServiceName"),
                 valueRead(label, "ServiceName"), valueRead(label, "InstanceID")});
}

inline std::string recordClassCall(const std::string& ns, const std::string& options) {
  return "ns " + ns + ".GetClass(\"CIM_DiagnosticCompletionRecord\", " + options + ")";
}

inline std::string recordEnumeration(const std::string& options) {
  return "class CIM_DiagnosticCompletionRecord.EnumerateInstances(deep=true, " + options + ")";
}

}  // namespace support
