#include "substitute/cmpi.nsp/broker/objects/queries/AccessorObject.h"

#include "substitute/cmpi.nsp/broker/objects/NamedValues.h"
#include "substitute/cmpi.nsp/broker/objects/Status.h"
#include "substitute/cmpi.nsp/broker/objects/Values.h"

namespace cmpinsp::broker {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

bool isGood(const CMPIData& data) { return (data.state & (CMPI_badValue | CMPI_notFound)) == 0; }

TCIMValue valueOf(const CMPIData& data) {
  if ((data.state & CMPI_nullValue) != 0) return TCIMValue();
  // The text of this type lies where the pointer to the value would point.
  if (data.type == CMPI_chars) {
    return readValue(reinterpret_cast<const CMPIValue*>(data.value.chars), CMPI_chars);
  }
  return readValue(&data.value, data.type);
}

}  // namespace

AccessorObject::AccessorObject(Broker& broker, CMPIAccessor* accessor, void* parm)
    : m_broker(broker), m_accessor(accessor), m_parm(parm) {
  if (accessor == nullptr) throw Failure(CMPI_RC_ERR_INVALID_PARAMETER, "the accessor is null");
}

std::optional<TCIMValue> AccessorObject::property(const std::string& name) const {
  const CMPIData data = m_accessor(name.c_str(), m_parm);
  if (!isGood(data)) noSuchValue(name.c_str());
  return valueOf(data);
}

std::string AccessorObject::className() const {
  const CMPIData data = m_accessor(query::kClassProperty, m_parm);
  const TCIMValue value = isGood(data) ? valueOf(data) : TCIMValue();
  const bool isText = !value.IsNull() && !value.IsArray() && value.GetType() == ECIMType::eString;
  return isText ? value.ToText() : std::string();
}

bool AccessorObject::isA(const std::string& className, const std::string& ancestor) const {
  const Broker::Upcalls upcalls(m_broker);
  return upcalls->classes().isA(className, ancestor);
}

}  // namespace cmpinsp::broker
