#include "engine/identity/Firmware.h"

#include <utility>

#include "engine/identity/Words.h"

namespace engine {
namespace {

Part partOf(const std::string& kind, Make make) {
  Part part;
  const bool isUnknown = make.manufacturer.empty() && make.product.empty() && make.serial.empty();
  if (isUnknown) return part;
  part.kind = kind;
  part.name = !make.product.empty() ? make.product : kind;
  part.manufacturer = std::move(make.manufacturer);
  part.model = std::move(make.model);
  part.version = std::move(make.version);
  part.serial = std::move(make.serial);
  return part;
}

}  // namespace

Part systemPart(Make make) { return partOf("system", std::move(make)); }

Part boardPart(Make make) { return partOf("board", std::move(make)); }

std::string firmwareName(const std::string& vendor, const std::string& version,
                         const std::string& date) {
  return joined({vendor, version, date.empty() ? date : "(" + date + ")"}, " ");
}

}  // namespace engine
