#include "fleet/reading/Identity.h"

#include <algorithm>
#include <array>

#include "fleet/reading/Names.h"

namespace fleet {
namespace {

using Json = nlohmann::json;

constexpr std::size_t kMostParts = 10'000;

const Json& memberOf(const Json& object, const char* name) {
  static const Json kNothing;
  if (!object.is_object()) return kNothing;
  const auto found = object.find(name);
  return found == object.end() ? kNothing : *found;
}

std::string textOf(const Json& object, const char* name) {
  const Json& member = memberOf(object, name);
  return member.is_string() ? shortened(member.get_ref<const std::string&>()) : std::string();
}

std::string modelOf(const Json& hardware) {
  std::string model = textOf(hardware, "manufacturerPartNumber");
  if (model.empty()) model = textOf(hardware, "partNumber");
  return model;
}

Part partFrom(const Json& hardware) {
  return {textOf(hardware, "hardwareInfoId"),
          textOf(hardware, "name"),
          textOf(hardware, "location"),
          lowered(textOf(hardware, "partType")),
          modelOf(hardware),
          realSerial(textOf(hardware, "serialNumber"))};
}

/// The machine itself is among its parts.
const Part* wholeOf(const std::vector<Part>& parts) {
  for (const char* kind : {"system", "chassis", "board", "baseboard"}) {
    for (const Part& part : parts) {
      if (part.kind == kind) return &part;
    }
  }
  return nullptr;
}

std::string firmwareOf(const Json& device) {
  const Json& software = memberOf(device, "softwareInfos");
  if (!software.is_array()) return {};
  for (const Json& one : software) {
    if (textOf(one, "softwareType") == "FIRMWARE") return textOf(one, "version");
  }
  return {};
}

void readParts(const Json& device, Identity& identity) {
  const Json& hardware = memberOf(device, "hardwareInfos");
  if (!hardware.is_array()) return;
  identity.isAllParts = hardware.size() <= kMostParts;
  const std::size_t count = std::min(hardware.size(), kMostParts);
  for (std::size_t i = 0; i < count; ++i) identity.parts.push_back(partFrom(hardware[i]));
}

}  // namespace

std::string realSerial(const std::string& serial) {
  constexpr std::array kWords = {"not specified", "none",      "unknown", "default string",
                                 "not available", "n/a",       "empty",   "to be filled by o.e.m.",
                                 "no dimm",       "undefined", "invalid", "system serial number"};
  const std::string low = lowered(serial);
  const bool isWord = std::find(kWords.begin(), kWords.end(), low) != kWords.end();
  const bool isZeros = low.find_first_not_of("0-. ") == std::string::npos;
  return isWord || isZeros ? std::string() : serial;
}

Identity identityFrom(const Json& line) {
  const Json& device =
      memberOf(memberOf(memberOf(line, "testRunArtifact"), "testRunStart"), "dutInfo");
  Identity identity;
  identity.name = textOf(device, "name");
  identity.firmware = firmwareOf(device);
  readParts(device, identity);
  if (const Part* whole = wholeOf(identity.parts)) {
    identity.serial = whole->serial;
    identity.model = whole->model.empty() ? whole->name : whole->model;
  }
  const Json& platforms = memberOf(device, "platformInfos");
  if (identity.model.empty() && platforms.is_array() && !platforms.empty()) {
    identity.model = textOf(platforms[0], "info");
  }
  return identity;
}

}  // namespace fleet
