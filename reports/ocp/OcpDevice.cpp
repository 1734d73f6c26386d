#include "reports/ocp/OcpDevice.h"

namespace reports {
namespace {

void describeSoftware(text::JsonText& json, const engine::RunStarted& run) {
  json.list("softwareInfos").object();
  json.add("softwareInfoId", "software-1").add("name", "diags");
  json.addIfAny("version", run.version).add("softwareType", "APPLICATION").endObject();
  if (!run.firmware.empty()) {
    json.object().add("softwareInfoId", "software-2").add("name", "firmware");
    json.add("version", run.firmware).add("softwareType", "FIRMWARE").endObject();
  }
  json.endList();
}

void describePlatforms(text::JsonText& json, const engine::RunStarted& run) {
  json.list("platformInfos");
  for (const engine::Part& part : run.parts) {
    if (part.kind == "system") json.object().add("info", part.name).endObject();
  }
  json.endList();
}

}  // namespace

void OcpDevice::describePart(text::JsonText& json, const engine::Part& part,
                             const std::string& id) {
  json.object().add("hardwareInfoId", id).add("name", part.name);
  json.addIfAny("partType", part.kind).addIfAny("location", part.location);
  json.addIfAny("manufacturer", part.manufacturer);
  json.addIfAny("manufacturerPartNumber", part.model).addIfAny("version", part.version);
  json.addIfAny("serialNumber", part.serial).endObject();
  keep(m_byName, part.name, id);
  keep(m_byPlace, part.location, id);
}

void OcpDevice::keep(Ids& ids, const std::string& key, const std::string& id) {
  const bool isNew = ids.emplace(key, id).second;
  if (!isNew) ids[key].clear();
}

std::string OcpDevice::idIn(const Ids& ids, const std::string& key) {
  const auto found = ids.find(key);
  return found == ids.end() ? std::string() : found->second;
}

void OcpDevice::describe(text::JsonText& json, const engine::RunStarted& run) {
  json.object("dutInfo").add("dutInfoId", "dut-1").addIfAny("name", run.host);
  describePlatforms(json, run);
  describeSoftware(json, run);
  json.list("hardwareInfos");
  std::size_t count = 0;
  for (const engine::Part& part : run.parts) {
    describePart(json, part, "hardware-" + std::to_string(++count));
  }
  json.endList().endObject();
}

void OcpDevice::refer(text::JsonText& json, const std::string& part) const {
  if (part.empty()) return;
  std::string id = idIn(m_byName, part);
  if (id.empty()) id = idIn(m_byPlace, part);
  if (!id.empty()) {
    json.add("hardwareInfoId", id);
  } else {
    json.object("subcomponent").add("name", part).endObject();
  }
}

}  // namespace reports
