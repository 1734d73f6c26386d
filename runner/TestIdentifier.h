#pragma once

#include <string>

namespace diagsrunner {

/// The text that names a test in every call.
std::string joinTestIdentifier(const std::string& serviceName, const std::string& deviceID,
                               const std::string& elementName);

/// Splits an identifier at its first two commas; the element name keeps any further ones. False
/// when there are fewer: without a comma nothing is set, with one only `serviceName` is.
bool splitTestIdentifier(const std::string& identifier, std::string& serviceName,
                         std::string& deviceID, std::string& elementName);

}  // namespace diagsrunner
