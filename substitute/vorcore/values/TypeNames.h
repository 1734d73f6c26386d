#pragma once

#include "framework/ECIMType.h"
#include "framework/Export.h"

namespace vorcore {

/// The name of `type` as MOF writes it ("uint16"); for messages.
VORCORE_API const char* typeName(NZELVOR20::ECIMType type) noexcept;

inline bool isUnsignedType(NZELVOR20::ECIMType type) noexcept {
  return type >= NZELVOR20::ECIMType::eUint8 && type <= NZELVOR20::ECIMType::eUint64;
}

inline bool isSignedType(NZELVOR20::ECIMType type) noexcept {
  return type >= NZELVOR20::ECIMType::eSint8 && type <= NZELVOR20::ECIMType::eSint64;
}

inline bool isRealType(NZELVOR20::ECIMType type) noexcept {
  return type == NZELVOR20::ECIMType::eReal32 || type == NZELVOR20::ECIMType::eReal64;
}

inline bool isTextType(NZELVOR20::ECIMType type) noexcept {
  return type == NZELVOR20::ECIMType::eString || type == NZELVOR20::ECIMType::eDateTime;
}

}  // namespace vorcore
