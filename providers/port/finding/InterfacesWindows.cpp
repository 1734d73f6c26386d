#include "providers/port/finding/InterfacesWindows.h"

#include <algorithm>
#include <iterator>
#include <memory>

#include "providers/common/WindowsText.h"

namespace providers::port {

namespace {

struct FreeTable {
  void operator()(MIB_IF_TABLE2* table) const { FreeMibTable(table); }
};
using Table = std::unique_ptr<MIB_IF_TABLE2, FreeTable>;

Table openTable() {
  MIB_IF_TABLE2* rows = nullptr;
  return Table(GetIfTable2(&rows) == NO_ERROR ? rows : nullptr);
}

/// Whose drivers call it an Ethernet port, as older ones did.
bool isRadio(NDIS_PHYSICAL_MEDIUM medium) {
  switch (medium) {
    case NdisPhysicalMediumWirelessLan:
    case NdisPhysicalMediumWirelessWan:
    case NdisPhysicalMediumNative802_11:
    case NdisPhysicalMediumBluetooth:
    case NdisPhysicalMediumWiMax:
    case NdisPhysicalMediumUWB:
    case NdisPhysicalMediumIrda:
      return true;
    default:
      return false;
  }
}

InterfaceKind kindOf(const MIB_IF_ROW2& row) {
  if (row.Type == IF_TYPE_SOFTWARE_LOOPBACK) return InterfaceKind::Loopback;
  const bool port = row.Type == IF_TYPE_ETHERNET_CSMACD &&
                    row.InterfaceAndOperStatusFlags.FilterInterface == 0 &&
                    !isRadio(row.PhysicalMediumType);
  return port ? InterfaceKind::Ethernet : InterfaceKind::Other;
}

/// "02:1f:..." of the address that was burnt in, or of the one in use where the driver tells no
/// other; empty without any.
std::string addressOf(const MIB_IF_ROW2& row) {
  const char* const digits = "0123456789abcdef";
  constexpr unsigned kHalf = 4, kLow = 0xF;
  const auto length = std::min<std::size_t>(row.PhysicalAddressLength, IF_MAX_PHYS_ADDRESS_LENGTH);
  const auto tells = [length](const UCHAR* bytes) {
    return std::any_of(bytes, bytes + length, [](UCHAR byte) { return byte != 0; });
  };
  const UCHAR* const bytes =
      tells(row.PermanentPhysicalAddress) ? row.PermanentPhysicalAddress : row.PhysicalAddress;
  if (!tells(bytes)) return {};
  std::string text;
  for (std::size_t at = 0; at < length; ++at) {
    const unsigned byte = bytes[at];
    if (at != 0) text += ':';
    text += {digits[byte >> kHalf], digits[byte & kLow]};
  }
  return text;
}

/// The text of a field that need not end with a zero.
template <std::size_t kSize>
std::string textOf(const WCHAR (&field)[kSize]) {
  return toUtf8(std::wstring(std::begin(field), std::find(std::begin(field), std::end(field), 0)));
}

std::optional<bool> connectedOf(const MIB_IF_ROW2& row) {
  if (row.MediaConnectState == MediaConnectStateConnected) return true;
  if (row.MediaConnectState == MediaConnectStateDisconnected) return false;
  return std::nullopt;
}

}  // namespace

Interface interfaceOf(const MIB_IF_ROW2& row) {
  Interface one;
  one.luid = row.InterfaceLuid.Value;
  one.index = row.InterfaceIndex;
  one.kind = kindOf(row);
  one.alias = textOf(row.Alias);
  one.description = textOf(row.Description);
  one.address = addressOf(row);
  one.hardware = row.InterfaceAndOperStatusFlags.HardwareInterface != 0;
  one.plugged = row.OperStatus != IfOperStatusNotPresent;
  one.on = row.AdminStatus != NET_IF_ADMIN_STATUS_DOWN;
  one.connected = connectedOf(row);
  one.sendBits = row.TransmitLinkSpeed;
  one.receiveBits = row.ReceiveLinkSpeed;
  one.inErrors = row.InErrors;
  one.outErrors = row.OutErrors;
  one.inDiscards = row.InDiscards;
  one.outDiscards = row.OutDiscards;
  return one;
}

std::vector<Interface> listInterfaces() {
  std::vector<Interface> all;
  const Table table = openTable();
  if (table)
    std::transform(table->Table, table->Table + table->NumEntries, std::back_inserter(all),
                   interfaceOf);
  return all;
}

std::optional<Interface> readInterface(std::uint64_t luid) {
  MIB_IF_ROW2 row{};
  row.InterfaceLuid.Value = luid;
  if (GetIfEntry2(&row) != NO_ERROR) return std::nullopt;
  return interfaceOf(row);
}

}  // namespace providers::port
