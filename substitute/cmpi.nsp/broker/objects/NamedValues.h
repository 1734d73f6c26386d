#pragma once

#include <string>
#include <utility>
#include <vector>

#include "framework/TCIMValue.h"
#include "substitute/cmpi.nsp/broker/lifetime/Tables.h"

namespace cmpinsp::broker {

/// Key bindings, method arguments, context entries: values by name, in the order they came.
using NamedValues = std::vector<std::pair<std::string, NZELVOR20::TCIMValue>>;

const NZELVOR20::TCIMValue* findNamed(const NamedValues& values, const char* name);
/// Adds or replaces.
void setNamed(NamedValues& values, const char* name, NZELVOR20::TCIMValue value);

/// What an accessor by name or by index answers to the provider: data that belongs to `parent`.
/// Absent: throws `Failure` (no such property).
CMPIData namedData(Handle& parent, const NamedValues& values, const char* name,
                   CMPIValueState state = CMPI_goodValue);
CMPIData namedDataAt(Handle& parent, const NamedValues& values, CMPICount index, CMPIString** name,
                     CMPIValueState state = CMPI_goodValue);

/// Throws `Failure` (no such property).
[[noreturn]] void noSuchValue(const char* name);
[[noreturn]] void noSuchIndex(CMPICount index);

}  // namespace cmpinsp::broker
