#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "framework/ECIMType.h"

/// CIM values as they are written in texts.
namespace engine::worker {

/// The type's name: "uint32"; empty for none, and for embedded instances.
const char* typeName(NZELVOR20::ECIMType type);

/// The type of that name, in any case; none for an unknown one. "ref" is a reference.
std::optional<NZELVOR20::ECIMType> typeNamed(std::string_view name);

bool isUnsigned(NZELVOR20::ECIMType type);
bool isSigned(NZELVOR20::ECIMType type);
bool isReal(NZELVOR20::ECIMType type);
inline bool isNumber(NZELVOR20::ECIMType type) {
  return isUnsigned(type) || isSigned(type) || isReal(type);
}

/// The number, where the text is one of that type: decimal, with blanks around it. None for
/// anything else, an infinite real included.
std::optional<std::uint64_t> readUnsigned(std::string_view text, NZELVOR20::ECIMType type);
std::optional<std::int64_t> readSigned(std::string_view text, NZELVOR20::ECIMType type);
std::optional<double> readReal(std::string_view text);

/// "true" or "false", in any case.
std::optional<bool> readBoolean(std::string_view text);

/// ASCII case makes no difference.
bool sameName(std::string_view left, std::string_view right);
std::string lowered(std::string_view text);

/// For messages: the first 60 bytes or so of a longer text, cut between two characters.
std::string shortened(std::string_view text);

}  // namespace engine::worker
