#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace providers::port {

/// A network port, as far as it is known without asking its driver. Texts are printable; unknown
/// ones are empty.
struct Port {
  std::string name;          ///< the system's, as it is: "eth0"
  std::string id;            ///< the same without what an identifier must not have
  std::uint64_t number = 0;  ///< the system's, where it knows its ports by numbers
  bool loopback = false;
  std::string driver;
  std::string model;       ///< of the adapter, where the system tells that instead of the driver
  std::string address;     ///< of the hardware: "52:54:00:12:34:56"
  std::string pciAddress;  ///< "0000:02:00.0"
  std::string slot;        ///< as the board calls it
  bool selfTests = false;  ///< the driver has some
  std::string switchOn;    ///< the command that does it: "ip link set eth0 up"
  std::string switchOff;
};

using FindPorts = std::function<std::vector<Port>()>;

enum class Duplex : std::uint8_t { Unknown, Half, Full };

/// What the system tells of a port at a time. What it does not tell is empty.
struct PortState {
  bool present = false;
  bool on = false;              ///< administratively up
  std::optional<bool> carrier;  ///< there is a link
  std::optional<std::uint64_t> megabits;
  Duplex duplex = Duplex::Unknown;
  bool member = false;  ///< of a bond or a bridge
  /// How often it got a link. Losses do not tell: some drivers count one when they begin.
  std::optional<std::uint64_t> linkGains;
  std::optional<std::uint64_t> linkChanges;
  std::map<std::string, std::uint64_t> errors;  ///< by the system's names: "rx_crc_errors"
  std::vector<std::string> unreadable;          ///< counters that are there and cannot be read
  /// Packets that were dropped though nothing was wrong with them, by the system's names.
  std::map<std::string, std::uint64_t> discards = {};
};

using ReadPort = std::function<PortState(const Port&)>;

/// A way in which two ports can talk.
struct LinkMode {
  std::uint32_t megabits = 0;
  bool full = false;
};

/// What the port and its partner have agreed to be able to; `common` is empty unless both told.
struct LinkModes {
  std::optional<LinkMode> own;     ///< the best that the port has
  std::optional<LinkMode> common;  ///< the best that both offer
};

using ReadModes = std::function<LinkModes(const Port&)>;

/// Name and place, for whoever has to find it: "eth0 (e1000e, 52:54:00:12:34:56, slot 3)".
std::string describe(const Port& port);

/// " (ip link set eth0 up)"; nothing where there is no command.
std::string inBrackets(const std::string& command);

/// The loopback interface last, the others by name: eth2 before eth10.
void sortByName(std::vector<Port>& ports);

/// Whether a shell takes the name for nothing but a name, as it stands.
bool isPlain(const std::string& name);

/// Whether it does so between double quotes.
bool isPlainInQuotes(const std::string& name);

}  // namespace providers::port
