#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace fleet {

/// A part of a machine, as its run tells it.
struct Part {
  std::string id;
  std::string name;
  std::string place;
  std::string kind;
  std::string model;
  std::string serial;
};

/// Which machine a stream is of.
struct Identity {
  std::string name;
  std::string serial;
  std::string model;
  std::string firmware;
  std::vector<Part> parts;
  bool isAllParts = true;  ///< there are no more than are kept
};

/// From the line of a run's start. Of what the format leaves open, this is taken: the serial number
/// and model are those of the part of kind "system", else "chassis", else "board"; the firmware's
/// version is that of the first software of that type. Whatever is missing is empty.
Identity identityFrom(const nlohmann::json& line);

/// The serial number, or nothing where firmware or its maker left a word in its place.
std::string realSerial(const std::string& serial);

}  // namespace fleet
