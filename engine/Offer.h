#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "engine/events/Event.h"

/// What an installation offers, as its worker finds it: plain values.
namespace engine {

/// What the services say of themselves (the property Characteristics).
struct Characteristics {
  bool isExclusive = false;    ///< nothing else may run on the machine
  bool isInteractive = false;  ///< it asks the user for something
  bool isDestructive = false;  ///< it may destroy data
  bool isRisky = false;        ///< it may disturb the machine in operation
};

/// A property of the test's settings that a plan or the command line may set.
struct SettingDeclaration {
  std::string name;
  std::string type;         ///< the CIM type: "uint32", "boolean", "string"; arrays end in "[]"
  std::string value;        ///< what the default settings hold; empty for none
  std::string description;  ///< of the class that declares it; may be empty
  /// Of whole numbers: between which the class wants the value, of an array each element.
  std::optional<std::int64_t> minimum = std::nullopt, maximum = std::nullopt;
};

/// One test of the listing.
struct OfferedTest {
  std::string identifier;     ///< names the test in every call
  std::string service;        ///< the service's Name; empty where the identifier cannot be split
  std::string device;         ///< the element's DeviceID
  std::string element;        ///< the element's ElementName
  std::string serviceClass;   ///< the CIM class of the service
  bool isMemoryTest = false;  ///< its class is CIM_MemoryDiagnosticTest or one below
  double estimate = 0;        ///< in seconds; 0 where the service gives none
  Characteristics characteristics;
  std::vector<SettingDeclaration> settings;
};

/// A provider that cannot be used: the tests that it offers are missing.
struct UnusableProvider {
  std::string name;
  std::string state;   ///< in one word
  std::string reason;  ///< may be empty
};

/// Who this machine is, as reports name it.
struct Identity {
  std::string host;
  std::string firmware;
  std::vector<Part> parts;
};

}  // namespace engine
