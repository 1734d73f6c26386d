#include "substitute/cmpi.nsp/broker/objects/FittedValue.h"

#include "substitute/cmpi.nsp/broker/lifetime/Failure.h"
#include "substitute/cmpi.nsp/broker/text/CimDateTime.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp::broker {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

namespace {

/// An embedded object is declared as a string that is said to hold one; providers set it as an
/// instance or as text, whichever the declaration was made into.
bool isEmbedded(const TCIMValue& value, ECIMType type) {
  const ECIMType given = value.GetType();
  return (type == ECIMType::eString && given == ECIMType::eInstance) ||
         (type == ECIMType::eInstance && given == ECIMType::eString);
}

/// Throws where a text is no date-time: whoever reads the value relies on it.
void checkDateTimes(const TCIMValue& value) {
  if (value.IsNull()) return;
  if (!value.IsArray()) {
    CimDateTime::parse(value.GetText());
    return;
  }
  for (const TCIMValue& element : value.GetElements()) checkDateTimes(element);
}

}  // namespace

TCIMValue fittedTo(TCIMValue value, ECIMType type, bool isArray, const std::string& what) {
  if (!value.IsNull() && value.IsArray() == isArray && isEmbedded(value, type)) return value;
  try {
    TCIMValue converted = vorcore::convertTo(value, type, isArray);
    if (type == ECIMType::eDateTime) checkDateTimes(converted);
    return converted;
  } catch (const std::exception& mismatch) {
    throw Failure(CMPI_RC_ERR_TYPE_MISMATCH, what + ": " + mismatch.what());
  }
}

}  // namespace cmpinsp::broker
