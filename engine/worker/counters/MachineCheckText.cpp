#include "engine/worker/counters/MachineCheckText.h"

#include <charconv>
#include <cstdio>
#include <string_view>

namespace engine::counters {
namespace {

constexpr std::uint64_t kUncorrected = 1ULL << 61;
constexpr std::uint64_t kSpoilt = 1ULL << 57;  ///< what the processor was about cannot go on

/// What stands behind `mark`, up to a blank, a colon, a comma or a bracket.
std::string wordBehind(const std::string& message, const char* mark) {
  const std::size_t at = message.find(mark);
  if (at == std::string::npos) return {};
  const std::size_t begin = message.find_first_not_of(' ', at + std::string_view(mark).size());
  if (begin == std::string::npos) return {};
  return message.substr(begin, message.find_first_of(" :,[(_", begin) - begin);
}

std::optional<std::uint64_t> hexIn(std::string_view text) {
  if (text.substr(0, 2) == "0x") text.remove_prefix(2);
  std::uint64_t number = 0;
  const auto end = std::from_chars(text.data(), text.data() + text.size(), number, 16);
  const bool isWhole =
      !text.empty() && end.ec == std::errc() && end.ptr == text.data() + text.size();
  return isWhole ? std::optional<std::uint64_t>(number) : std::nullopt;
}

bool isNumber(const std::string& text) {
  return !text.empty() && text.size() <= 8 &&
         text.find_first_not_of("0123456789") == std::string::npos;
}

std::optional<MachineCheck> checkOf(const std::string& processor, const std::string& bank,
                                    const std::string& status) {
  const auto number = hexIn(status);
  if (!isNumber(processor) || !isNumber(bank) || !number) return std::nullopt;
  return MachineCheck{processor, bank, *number, std::nullopt};
}

/// The last word of the line.
std::string lastWord(const std::string& message) {
  const std::size_t end = message.find_last_not_of(' ');
  if (end == std::string::npos) return {};
  const std::size_t blank = message.rfind(' ', end);
  return message.substr(blank + 1, end - blank);
}

/// Kinds of the lower 16 bits, which the makers of these processors publish; bit 12 is a filter's.
const char* kindOf(std::uint64_t status) {
  const auto code = static_cast<unsigned>(status & 0xEFFFU);
  if ((code & 0xF800U) == 0x0800U) return "the bus or an interconnect";
  if ((code & 0xFF00U) == 0x0100U) return "a cache";
  if ((code & 0xFF80U) == 0x0080U) return "the memory or its controller";
  if ((code & 0xFFF0U) == 0x0010U) return "an address translation buffer";
  return "the processor";
}

std::string hexText(std::uint64_t number) {
  char text[24];
  std::snprintf(text, sizeof text, "0x%llx", static_cast<unsigned long long>(number));
  return text;
}

}  // namespace

std::optional<MachineCheck> machineCheckIn(const std::string& message) {
  if (message.find("Machine Check") != std::string::npos) {
    return checkOf(wordBehind(message, "CPU "), wordBehind(message, " Bank "), lastWord(message));
  }
  if (message.find("_STATUS[") == std::string::npos) return std::nullopt;
  return checkOf(wordBehind(message, "CPU:"), wordBehind(message, " MC"), lastWord(message));
}

std::optional<std::uint64_t> addressIn(const std::string& message) {
  const std::string plain = wordBehind(message, " ADDR ");
  return plain.empty() ? hexIn(wordBehind(message, "Error Addr:")) : hexIn(plain);
}

std::string describe(const MachineCheck& check) {
  const bool isCorrected = (check.status & kUncorrected) == 0;
  std::string text = isCorrected ? "corrected error of " : "uncorrected error of ";
  text += kindOf(check.status);
  if ((check.status & kSpoilt) != 0) text += ", processor context corrupt";
  text += ": machine check on CPU " + check.processor + ", bank " + check.bank + ", status " +
          hexText(check.status);
  return check.address ? text + ", address " + hexText(*check.address) : text + ", no address";
}

}  // namespace engine::counters
