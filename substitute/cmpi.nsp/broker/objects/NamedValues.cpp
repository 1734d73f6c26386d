#include "substitute/cmpi.nsp/broker/objects/NamedValues.h"

#include <cstring>

#include "substitute/cmpi.nsp/broker/lifetime/Objects.h"
#include "substitute/cmpi.nsp/broker/objects/Status.h"
#include "substitute/cmpi.nsp/broker/objects/Values.h"
#include "substitute/cmpi.nsp/broker/text/Text.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp::broker {

using NZELVOR20::TCIMValue;

const TCIMValue* findNamed(const NamedValues& values, const char* name) {
  const std::string wanted = repaired(name);
  for (const auto& value : values) {
    if (vorcore::equalNames(value.first, wanted)) return &value.second;
  }
  return nullptr;
}

void setNamed(NamedValues& values, const char* name, TCIMValue value) {
  if (const TCIMValue* known = findNamed(values, name)) {
    const_cast<TCIMValue&>(*known) = std::move(value);
  } else {
    values.emplace_back(repaired(name), std::move(value));
  }
}

CMPIData namedData(Handle& parent, const NamedValues& values, const char* name,
                   CMPIValueState state) {
  const TCIMValue* value = findNamed(values, required(name, "the name"));
  if (value == nullptr) noSuchValue(name);
  return dataOf(parent, *value, state);
}

CMPIData namedDataAt(Handle& parent, const NamedValues& values, CMPICount index, CMPIString** name,
                     CMPIValueState state) {
  if (index >= values.size()) noSuchIndex(index);
  const auto& entry = values[index];
  const CMPIData data = dataOf(parent, entry.second, state);
  if (name != nullptr) *name = childString(parent, entry.first);
  return data;
}

void noSuchValue(const char* name) {
  throw Failure(CMPI_RC_ERR_NO_SUCH_PROPERTY, std::string("there is no ") + name);
}

void noSuchIndex(CMPICount index) {
  throw Failure(CMPI_RC_ERR_NO_SUCH_PROPERTY, "there is nothing at " + std::to_string(index));
}

}  // namespace cmpinsp::broker
