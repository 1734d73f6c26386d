#include "reports/ocp/OcpDevice.h"

namespace reports {
namespace {

void describeSoftware(JsonText& json, const engine::RunStarted& run) {
  json.list("softwareInfos").object();
  json.add("softwareInfoId", "software-1").add("name", "diags");
  json.addIfAny("version", run.version).add("softwareType", "APPLICATION").endObject();
  if (!run.firmware.empty()) {
    json.object().add("softwareInfoId", "software-2").add("name", "firmware");
    json.add("version", run.firmware).add("softwareType", "FIRMWARE").endObject();
  }
  json.endList();
}

void describePlatforms(JsonText& json, const engine::RunStarted& run) {
  json.list("platformInfos");
  for (const engine::Part& part : run.parts) {
    if (part.kind == "system") json.object().add("info", part.name).endObject();
  }
  json.endList();
}

}  // namespace

void OcpDevice::describePart(JsonText& json, const engine::Part& part, const std::string& id) {
  json.object().add("hardwareInfoId", id).add("name", part.name);
  json.addIfAny("partType", part.kind).addIfAny("location", part.location);
  json.addIfAny("manufacturer", part.manufacturer);
  json.addIfAny("manufacturerPartNumber", part.model).addIfAny("version", part.version);
  json.addIfAny("serialNumber", part.serial).endObject();
  const bool isNew = m_ids.emplace(part.name, id).second;
  if (!isNew) m_ids[part.name].clear();
}

void OcpDevice::describe(JsonText& json, const engine::RunStarted& run) {
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

void OcpDevice::refer(JsonText& json, const std::string& part) const {
  if (part.empty()) return;
  const auto found = m_ids.find(part);
  if (found != m_ids.end() && !found->second.empty()) {
    json.add("hardwareInfoId", found->second);
  } else {
    json.object("subcomponent").add("name", part).endObject();
  }
}

}  // namespace reports
