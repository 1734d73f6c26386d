#include "engine/identity/LinuxMachine.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "engine/identity/Firmware.h"
#include "engine/identity/LinuxParts.h"
#include "engine/identity/Smbios.h"
#include "engine/identity/Words.h"
#include "engine/system/SystemFolder.h"

namespace engine {
namespace {

constexpr std::size_t kLargestTable = 1024 * 1024;

void addNamed(std::vector<Part>& parts, Part part) {
  if (!part.name.empty()) parts.push_back(std::move(part));
}

void append(std::vector<Part>& to, std::vector<Part> from) {
  to.insert(to.end(), std::make_move_iterator(from.begin()), std::make_move_iterator(from.end()));
}

/// The table is for the administrator alone; these texts of it are for everybody.
Identity identityOfTexts(const SystemFolder& texts) {
  Identity identity;
  identity.firmware =
      firmwareName(texts.text("bios_vendor"), texts.text("bios_version"), texts.text("bios_date"));
  addNamed(identity.parts, systemPart({texts.text("sys_vendor"), texts.text("product_name"),
                                       texts.text("product_version"),
                                       texts.serial("product_serial"), texts.text("product_sku")}));
  addNamed(identity.parts, boardPart({texts.text("board_vendor"),
                                      texts.text("board_name"),
                                      texts.text("board_version"),
                                      texts.serial("board_serial"),
                                      {}}));
  return identity;
}

/// Of machines whose firmware has another way to describe them.
Identity identityOfTree(const SystemFolder& tree) {
  Identity identity;
  addNamed(identity.parts,
           systemPart({{}, tree.text("model"), {}, tree.serial("serial-number"), {}}));
  return identity;
}

Identity identityOfFirmware(const SystemFolder& root) {
  const SystemFolder sys = root / "sys";
  Identity identity = identityOfSmbios((sys / "firmware/dmi/tables").bytes("DMI", kLargestTable));
  const auto isEmpty = [&] { return identity.firmware.empty() && identity.parts.empty(); };
  if (isEmpty()) identity = identityOfTexts(sys / "class/dmi/id");
  if (isEmpty()) identity = identityOfTree(sys / "firmware/devicetree/base");
  return identity;
}

bool hasProcessor(const Identity& identity) {
  return std::any_of(identity.parts.begin(), identity.parts.end(),
                     [](const Part& part) { return part.kind == "processor"; });
}

}  // namespace

Identity machineUnder(const std::string& path) {
  const SystemFolder root(path);
  Identity identity = identityOfFirmware(root);
  identity.host = (root / "proc/sys/kernel").text("hostname");
  if (!hasProcessor(identity)) append(identity.parts, processorsUnder(root));
  append(identity.parts, disksUnder(root));
  append(identity.parts, portsUnder(root));
  return identity;
}

}  // namespace engine
