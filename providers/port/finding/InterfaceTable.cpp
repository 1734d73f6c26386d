#include "providers/port/finding/InterfaceTable.h"

#include <algorithm>

#include "providers/common/SysfsFiles.h"

namespace providers::port {

namespace {

constexpr std::size_t kLongestName = 48;  // of those that can be part of an identifier
constexpr std::size_t kLongestModel = 80;
const char* const kNumbered = "interface ";

/// What was pulled out of the machine stays in the table, and so does what was switched off.
bool isPort(const Interface& one) {
  if (one.kind == InterfaceKind::Loopback) return true;
  return one.kind == InterfaceKind::Ethernet && one.hardware && (one.plugged || !one.on);
}

/// Whether the alias can name its port: no other one's becomes the same, and a shell takes it for
/// nothing else.
bool isName(const std::string& alias) {
  return alias.size() <= kLongestName && isPlainInQuotes(alias) && alias == printable(alias) &&
         alias.rfind(kNumbered, 0) != 0;
}

void setName(Port& port, const Interface& one) {
  const bool named = isName(one.alias);
  port.id = named ? one.alias : kNumbered + std::to_string(one.index);
  port.name = port.id;
  if (!named) return;
  const std::string command = "netsh interface set interface \"" + one.alias + "\" admin=";
  port.switchOn = command + "enabled";
  port.switchOff = command + "disabled";
}

Port portOf(const Interface& one) {
  Port port;
  port.number = one.luid;
  port.loopback = one.kind == InterfaceKind::Loopback;
  setName(port, one);
  if (port.loopback) return port;
  port.model = printable(one.description).substr(0, kLongestModel);
  port.address = printable(one.address);
  return port;
}

std::optional<std::uint64_t> megabitsOf(const Interface& one) {
  constexpr std::uint64_t kMega = 1000000, kUntold = ~std::uint64_t{0};
  const std::uint64_t bits = std::min(one.sendBits, one.receiveBits);
  if (bits < kMega || std::max(one.sendBits, one.receiveBits) == kUntold) return std::nullopt;
  return bits / kMega;
}

}  // namespace

std::vector<Port> portsAmong(const std::vector<Interface>& interfaces) {
  std::vector<Port> ports;
  for (const Interface& one : interfaces)
    if (isPort(one)) ports.push_back(portOf(one));
  sortByName(ports);
  return ports;
}

PortState readTablePort(const ReadInterface& readInterface, const Port& port) {
  PortState state;
  const std::optional<Interface> row = readInterface(port.number);
  if (!row || !isPort(*row)) return state;
  state.present = true;
  state.on = row->on;
  state.carrier = row->connected;
  if (row->connected.value_or(true)) state.megabits = megabitsOf(*row);
  state.errors = {{"InErrors", row->inErrors}, {"OutErrors", row->outErrors}};
  state.discards = {{"InDiscards", row->inDiscards}, {"OutDiscards", row->outDiscards}};
  return state;
}

}  // namespace providers::port
