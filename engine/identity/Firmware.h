#pragma once

#include <string>

#include "engine/events/Event.h"

/// The machine, its board and its firmware, as they are named wherever the facts came from.
namespace engine {

struct Make {
  std::string manufacturer;
  std::string product;
  std::string version;
  std::string serial;
  std::string model;  ///< the number to order it by
};

/// Without a name where nothing is known of it.
Part systemPart(Make make);
Part boardPart(Make make);

/// "Maker 2.17 (03/12/2026)"
std::string firmwareName(const std::string& vendor, const std::string& version,
                         const std::string& date);

}  // namespace engine
