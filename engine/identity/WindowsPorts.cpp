// Each of these needs what the one before it declares.
// clang-format off
#include <winsock2.h>
#include <ws2tcpip.h>
#include <iphlpapi.h>
#include <netioapi.h>
// clang-format on

#include <algorithm>
#include <memory>
#include <string>

#include "engine/identity/WindowsParts.h"
#include "engine/identity/Words.h"

namespace engine {
namespace {

constexpr std::size_t kMostPorts = 256;

struct FreeTable {
  void operator()(MIB_IF_TABLE2* table) const { FreeMibTable(table); }
};

/// A port of the machine's own: no filter on top of one, no tunnel and no loop.
bool isPort(const MIB_IF_ROW2& row) {
  const auto& flags = row.InterfaceAndOperStatusFlags;
  return flags.HardwareInterface != 0 && flags.FilterInterface == 0 &&
         row.Type != IF_TYPE_SOFTWARE_LOOPBACK && row.Type != IF_TYPE_TUNNEL;
}

/// "02:1f:..." of the address that was burnt in; empty where there is none.
std::string addressOf(const MIB_IF_ROW2& row) {
  const char* const digits = "0123456789abcdef";
  const std::size_t length =
      std::min<std::size_t>(row.PhysicalAddressLength, IF_MAX_PHYS_ADDRESS_LENGTH);
  std::string text;
  bool tells = false;
  for (std::size_t at = 0; at < length; ++at) {
    const unsigned byte = row.PermanentPhysicalAddress[at];
    tells = tells || byte != 0;
    if (at != 0) text += ':';
    text += {digits[byte >> 4U], digits[byte & 0xFU]};
  }
  return tells ? text : std::string();
}

/// The text of a field that need not end with a zero.
template <std::size_t kSize>
std::string textOf(const WCHAR (&field)[kSize]) {
  return telling(utf8Of(std::wstring(field, std::find(field, field + kSize, L'\0'))));
}

Part portOf(const MIB_IF_ROW2& row) {
  Part part;
  part.kind = "port";
  part.location = "interface " + std::to_string(row.InterfaceIndex);
  part.name = textOf(row.Alias);
  if (part.name.empty()) part.name = part.location;
  part.model = textOf(row.Description);
  part.serial = addressOf(row);
  return part;
}

}  // namespace

std::vector<Part> windowsPorts() {
  MIB_IF_TABLE2* rows = nullptr;
  if (GetIfTable2(&rows) != NO_ERROR) return {};
  const std::unique_ptr<MIB_IF_TABLE2, FreeTable> table(rows);
  std::vector<Part> parts;
  for (ULONG row = 0; row < table->NumEntries && parts.size() < kMostPorts; ++row) {
    if (isPort(table->Table[row])) parts.push_back(portOf(table->Table[row]));
  }
  return parts;
}

}  // namespace engine
