#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "providers/port/finding/InterfacesWindows.h"

namespace providers::port {
namespace {

MIB_IF_ROW2 ethernetRow() {
  MIB_IF_ROW2 row{};
  row.InterfaceLuid.Value = 77;
  row.InterfaceIndex = 12;
  row.Type = IF_TYPE_ETHERNET_CSMACD;
  row.InterfaceAndOperStatusFlags.HardwareInterface = 1;
  row.PhysicalMediumType = NdisPhysicalMedium802_3;
  row.OperStatus = IfOperStatusUp;
  row.AdminStatus = NET_IF_ADMIN_STATUS_UP;
  row.MediaConnectState = MediaConnectStateConnected;
  row.PhysicalAddressLength = 3;
  std::copy_n("\x06\x00\x01", 3, row.PhysicalAddress);
  std::copy_n("\x02\xfc\x10", 3, row.PermanentPhysicalAddress);
  std::copy_n(L"Ethernet", 8, row.Alias);
  std::copy_n(L"Adapter \u00e9", 9, row.Description);
  row.TransmitLinkSpeed = 1000;
  row.ReceiveLinkSpeed = 2000;
  row.InErrors = 1;
  row.OutErrors = 2;
  row.InDiscards = 3;
  row.OutDiscards = 4;
  return row;
}

TEST(InterfaceRow, SaysWhatTheSystemTells) {
  const Interface one = interfaceOf(ethernetRow());
  EXPECT_EQ(one.luid, 77U);
  EXPECT_EQ(one.index, 12U);
  EXPECT_EQ(one.kind, InterfaceKind::Ethernet);
  EXPECT_EQ(one.alias, "Ethernet");
  EXPECT_EQ(one.description, "Adapter \xc3\xa9");
  EXPECT_EQ(one.address, "02:fc:10");
  EXPECT_TRUE(one.hardware && one.plugged && one.on);
  EXPECT_EQ(one.connected, true);
  EXPECT_EQ(one.sendBits, 1000U);
  EXPECT_EQ(one.receiveBits, 2000U);
  EXPECT_EQ(one.inErrors, 1U);
  EXPECT_EQ(one.outErrors, 2U);
  EXPECT_EQ(one.inDiscards, 3U);
  EXPECT_EQ(one.outDiscards, 4U);
}

TEST(InterfaceRow, FieldsThatAreFullToTheirLastLetterAreReadNoFurther) {
  MIB_IF_ROW2 row = ethernetRow();
  std::fill(std::begin(row.Alias), std::end(row.Alias), L'x');
  row.PhysicalAddressLength = 0xFFFFFFFF;
  EXPECT_EQ(interfaceOf(row).alias, std::string(IF_MAX_STRING_SIZE + 1, 'x'));
  EXPECT_EQ(interfaceOf(row).address.size(), 3U * IF_MAX_PHYS_ADDRESS_LENGTH - 1);
}

TEST(InterfaceRow, WithoutABurntInAddressTheOneInUseIsTold) {
  MIB_IF_ROW2 row = ethernetRow();
  std::fill(std::begin(row.PermanentPhysicalAddress), std::end(row.PermanentPhysicalAddress), 0);
  EXPECT_EQ(interfaceOf(row).address, "06:00:01");
  std::fill(std::begin(row.PhysicalAddress), std::end(row.PhysicalAddress), 0);
  EXPECT_EQ(interfaceOf(row).address, "");
}

struct KindRow {
  const char* name;
  void (*change)(MIB_IF_ROW2&);
  InterfaceKind kind;
};

TEST(InterfaceRow, RadiosFiltersAndTunnelsAreNoPorts) {
  for (const KindRow& row :
       {KindRow{"loopback", [](MIB_IF_ROW2& one) { one.Type = IF_TYPE_SOFTWARE_LOOPBACK; },
                InterfaceKind::Loopback},
        KindRow{"tunnel", [](MIB_IF_ROW2& one) { one.Type = IF_TYPE_TUNNEL; },
                InterfaceKind::Other},
        KindRow{"filter",
                [](MIB_IF_ROW2& one) { one.InterfaceAndOperStatusFlags.FilterInterface = 1; },
                InterfaceKind::Other},
        KindRow{"radio", [](MIB_IF_ROW2& one) { one.Type = IF_TYPE_IEEE80211; },
                InterfaceKind::Other},
        KindRow{"radio of an older driver",
                [](MIB_IF_ROW2& one) { one.PhysicalMediumType = NdisPhysicalMediumNative802_11; },
                InterfaceKind::Other}}) {
    MIB_IF_ROW2 changed = ethernetRow();
    row.change(changed);
    EXPECT_EQ(interfaceOf(changed).kind, row.kind) << row.name;
  }
}

TEST(InterfaceRow, TellsLinkPlugAndSwitchApart) {
  MIB_IF_ROW2 row = ethernetRow();
  row.MediaConnectState = MediaConnectStateDisconnected;
  EXPECT_EQ(interfaceOf(row).connected, false);
  row.MediaConnectState = MediaConnectStateUnknown;
  EXPECT_EQ(interfaceOf(row).connected, std::nullopt);
  row.AdminStatus = NET_IF_ADMIN_STATUS_DOWN;
  row.OperStatus = IfOperStatusNotPresent;
  EXPECT_FALSE(interfaceOf(row).on);
  EXPECT_FALSE(interfaceOf(row).plugged);
}

TEST(MachineInterfaces, EachThatIsListedCanBeRead) {
  for (const Interface& one : listInterfaces()) {
    const auto again = readInterface(one.luid);
    ASSERT_TRUE(again) << one.alias;
    EXPECT_EQ(again->index, one.index);
    EXPECT_EQ(again->alias, one.alias);
  }
  const auto all = listInterfaces();
  EXPECT_TRUE(std::any_of(all.begin(), all.end(), [](const Interface& one) {
    return one.kind == InterfaceKind::Loopback;
  })) << "every machine has one";
}

TEST(MachineInterfaces, OneThatIsNotThereIsNotRead) {
  EXPECT_FALSE(readInterface(0xFFFFFFFFFFFFFFFF));
}

}  // namespace
}  // namespace providers::port
