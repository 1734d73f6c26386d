#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace reports {

/// What an OCP stream is held to.
enum class Rule : std::uint8_t {
  kJson,
  kSchema,
  kObject,
  kRepeated,
  kSequence,
  kTime,
  kOrder,
  kPair,
  kUnique,
  kUnknown,
  kSeries,
  kOpen,
  kCut,
  kLong
};

/// "sequence".
const char* nameOf(Rule rule) noexcept;

/// What the rule asks for, in a sentence.
const char* meaningOf(Rule rule) noexcept;

struct Finding {
  std::uint64_t line = 0;  ///< from 1
  Rule rule = Rule::kJson;
  std::string text;  ///< what is wrong; harmless for a terminal, and not long
};

using Tell = std::function<void(const Finding&)>;

}  // namespace reports
