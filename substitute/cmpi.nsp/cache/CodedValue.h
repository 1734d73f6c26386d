#pragma once

#include "framework/TCIMValue.h"
#include "substitute/cmpi.nsp/cache/ByteReader.h"
#include "substitute/cmpi.nsp/cache/ByteWriter.h"

namespace cmpinsp {

/// Writes a value of a declaration: nulls, numbers, texts and arrays of them. Throws
/// `TVORException` (not supported) for references and embedded instances, which no declaration has.
void writeValue(ByteWriter& to, const NZELVOR20::TCIMValue& value);

/// The value that `writeValue` wrote. Throws `CacheDamage`.
NZELVOR20::TCIMValue readValue(ByteReader& from);

/// The default of a property of `type`, null or not. Throws `CacheDamage` for a value of another.
NZELVOR20::TCIMValue readDefault(ByteReader& from, NZELVOR20::ECIMType type, bool isArray);

/// A type, as one byte.
NZELVOR20::ECIMType readType(ByteReader& from);
/// The type of something declared, which has one. Throws `CacheDamage`.
NZELVOR20::ECIMType readDeclaredType(ByteReader& from);
inline void writeType(ByteWriter& to, NZELVOR20::ECIMType type) {
  to.u8(static_cast<std::uint8_t>(type));
}

}  // namespace cmpinsp
