#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace providers::port {

/// A packet of an echo (ICMP): what comes back has the same.
struct EchoPacket {
  std::uint16_t sequence = 0;
  std::string content;
};

/// The way to the machine's own address.
class EchoDoor {
 public:
  virtual ~EchoDoor() = default;
  /// Returns what kept the packet from being sent; empty when nothing did.
  virtual std::string send(const EchoPacket& packet) = 0;
  /// The next answer; nothing when there is none for so long.
  virtual std::optional<EchoPacket> receive(int milliseconds) = 0;
};

struct OpenedEcho {
  std::unique_ptr<EchoDoor> door;  ///< null when there is a problem
  std::string problem;
};

using OpenEcho = std::function<OpenedEcho()>;

/// To 127.0.0.1, by whatever way the system leaves to the user.
OpenedEcho openLoopbackEcho();

/// Where to look when none of the packets comes back.
std::string adviceWithoutEcho();

}  // namespace providers::port
