#pragma once

#include <string>

#include "framework/TCIMValue.h"
#include "substitute/cmpi.nsp/broker/lifetime/Tables.h"

/// Between the values of providers and those of the object manager.
namespace cmpinsp::broker {

/// What a provider passes with `type`: a copy of just the bytes that the type has. For CMPI_chars
/// the pointer is the text. Throws `Failure` (invalid handle, invalid data type).
NZELVOR20::TCIMValue readValue(const CMPIValue* value, CMPIType type);

/// `value` as a provider gets it; objects in it live as long as `parent`.
CMPIData dataOf(Handle& parent, const NZELVOR20::TCIMValue& value,
                CMPIValueState state = CMPI_goodValue);

/// `text` as a string that lives as long as `parent`.
CMPIString* childString(Handle& parent, const std::string& text);

/// The type codes, without the array bit. Throws `Failure` (invalid data type).
NZELVOR20::ECIMType cimTypeOf(CMPIType type);
CMPIType cmpiTypeOf(NZELVOR20::ECIMType type) noexcept;

}  // namespace cmpinsp::broker
