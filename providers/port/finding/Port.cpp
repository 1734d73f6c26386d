#include "providers/port/finding/Port.h"

#include <algorithm>
#include <tuple>

namespace providers::port {

namespace {

/// Names of one stem by their length, then by their digits.
bool namedBefore(const Port& left, const Port& right) {
  const auto key = [](const Port& port) {
    const std::size_t digits = port.name.find_last_not_of("0123456789") + 1;
    return std::make_tuple(port.loopback, port.name.substr(0, digits), port.name.size(), port.name,
                           port.number);
  };
  return key(left) < key(right);
}

}  // namespace

std::string describe(const Port& port) {
  std::string details;
  const auto add = [&details](const std::string& text) {
    if (!text.empty()) details += (details.empty() ? "" : ", ") + text;
  };
  add(port.driver);
  add(port.model);
  add(port.address);
  add(port.pciAddress.empty() ? "" : "PCI " + port.pciAddress);
  add(port.slot.empty() ? "" : "slot " + port.slot);
  return port.id + (details.empty() ? "" : " (" + details + ")");
}

std::string inBrackets(const std::string& command) {
  return command.empty() ? "" : " (" + command + ")";
}

void sortByName(std::vector<Port>& ports) { std::sort(ports.begin(), ports.end(), namedBefore); }

bool isPlain(const std::string& name) {
  return isPlainInQuotes(name) && name.find_first_of(" ()#*") == std::string::npos;
}

bool isPlainInQuotes(const std::string& name) {
  return !name.empty() && name.front() != '-' &&
         name.find_first_not_of(
             "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789 -_.()#*") ==
             std::string::npos;
}

}  // namespace providers::port
