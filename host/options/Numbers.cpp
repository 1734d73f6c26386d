#include "host/options/Numbers.h"

#include <charconv>
#include <string>

namespace host {

CLI::Validator wholeNumber(std::uint64_t least, std::uint64_t most) {
  const std::string range = std::to_string(least) + " to " + std::to_string(most);
  return CLI::Validator(
      [least, most, range](std::string& text) {
        std::uint64_t number = 0;
        const char* const end = text.data() + text.size();
        const auto [rest, failure] = std::from_chars(text.data(), end, number);
        if (failure != std::errc() || rest != end || number < least || number > most) {
          return "\"" + text + "\" is no whole number from " + range;
        }
        text = std::to_string(number);  // "010" would be eight
        return std::string();
      },
      "");
}

}  // namespace host
