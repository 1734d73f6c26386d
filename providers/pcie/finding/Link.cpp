#include "providers/pcie/finding/Link.h"

#include <algorithm>

namespace providers::pcie {

std::optional<unsigned> expectedWidth(const Link& link) {
  const LinkSide& device = link.device.side;
  const LinkSide& port = link.port.side;
  if (!device.mostWidth || !port.mostWidth) return std::nullopt;
  return std::min(*device.mostWidth, *port.mostWidth);
}

std::optional<unsigned> expectedSpeed(const Link& link) {
  const LinkSide& device = link.device.side;
  const LinkSide& port = link.port.side;
  if (!device.mostSpeed || !port.mostSpeed) return std::nullopt;
  const unsigned both = std::min(*device.mostSpeed, *port.mostSpeed);
  return link.allowedSpeed ? std::min(both, *link.allowedSpeed) : both;
}

}  // namespace providers::pcie
