#include "runner/TestIdentifier.h"

#include "diagsrunner/DiagsRunner.h"

namespace diagsrunner {

std::string joinTestIdentifier(const std::string& serviceName, const std::string& deviceID,
                               const std::string& elementName) {
  std::string identifier;
  identifier.reserve(serviceName.size() + deviceID.size() + elementName.size() + 2);
  return identifier.append(serviceName)
      .append(",")
      .append(deviceID)
      .append(",")
      .append(elementName);
}

bool splitTestIdentifier(const std::string& identifier, std::string& serviceName,
                         std::string& deviceID, std::string& elementName) {
  const std::size_t first = identifier.find(',');
  if (first == std::string::npos) {
    return false;
  }
  serviceName = identifier.substr(0, first);
  const std::size_t second = identifier.find(',', first + 1);
  if (second == std::string::npos) {
    return false;
  }
  deviceID = identifier.substr(first + 1, second - first - 1);
  elementName = identifier.substr(second + 1);
  return true;
}

}  // namespace diagsrunner

bool DiagsRunner::GetTestName(std::string id, std::string& name, std::string& deviceID,
                              std::string& elementName) {
  return diagsrunner::splitTestIdentifier(id, name, deviceID, elementName);
}
