#pragma once

#include <functional>
#include <memory>
#include <string>

namespace providers::port {

/// The way to a port's driver: one request of the ethtool interface (`linux/ethtool.h`) at a time.
class EthtoolDoor {
 public:
  virtual ~EthtoolDoor() = default;
  /// Hands on the request, a structure that begins with its command and has room for the answer.
  /// Returns 0 or an `errno`.
  virtual int ask(const std::string& port, void* request) = 0;
};

using OpenEthtool = std::function<std::unique_ptr<EthtoolDoor>()>;

/// This machine's; every request fails where there is none.
std::unique_ptr<EthtoolDoor> openEthtool();

}  // namespace providers::port
