#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace reports {

/// What tells one machine from another, and what stands for it: "serial-1", "host-1", "address-1",
/// numbered as they turn up, so that nothing of a value is left in its replacement. Upper and lower
/// case are the same value.
class Secrets {
 public:
  enum class Kind : std::uint8_t { kSerial, kHost, kAddress };

  /// What stands for that value from now on, everywhere. Nothing stands for what tells nothing,
  /// such as "Not Specified": it is given back. What is a hardware address is one whatever kind it
  /// is said to be of, and is known without anything between its digits too.
  std::string replace(Kind kind, const std::string& value);

  /// The text with all values replaced that are known, where they stand as words, and for a host's
  /// name that is an everyday word, where the text says that it is a host's; with hardware
  /// addresses (of six, eight or twenty bytes, and those that begin with "naa.", "eui." or
  /// "wwn-0x") replaced; and with what a text itself calls a serial number.
  std::string redact(std::string_view text);

 private:
  struct Match {
    std::size_t length = 0;  ///< 0: there is none
    std::string replacement;
  };

  const std::string& nameFor(Kind kind, const std::string& key);
  Match knownAt(std::string_view text, std::size_t position) const;
  Match addressAt(std::string_view text, std::size_t position);
  Match prefixedAddressAt(std::string_view text, std::size_t position);
  std::string learnAddress(const std::string& small);
  void lookFor(const std::string& small);
  void learnLabelled(std::string_view text);

  std::array<std::uint64_t, 3> m_counts{};
  std::unordered_map<std::string, std::string> m_names;  ///< by the value in lower case
  std::unordered_set<std::string>
      m_everyday;  ///< values that stand for a host where a text says so
  std::array<std::vector<std::string>, 256> m_byFirst;  ///< values to look for, the longest first
};

}  // namespace reports
