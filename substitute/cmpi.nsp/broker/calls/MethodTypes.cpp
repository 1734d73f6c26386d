#include "substitute/cmpi.nsp/broker/calls/MethodTypes.h"

#include <boost/make_shared.hpp>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/broker/calls/Receivers.h"
#include "substitute/cmpi.nsp/broker/objects/EmbeddedInstance.h"
#include "substitute/cmpi.nsp/broker/objects/FittedValue.h"
#include "substitute/cmpi.nsp/broker/objects/Status.h"

namespace cmpinsp::broker {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

TCIMValue fittedFor(const std::string& where, const TCIMValue& value, ECIMType type, bool isArray,
                    const std::string& what) {
  try {
    return fittedTo(value, type, isArray, what);
  } catch (const Failure& mismatch) {
    throw NZELVOR20::TVORException(
        NZELVOR20::TVORStatusCode(NZELVOR20::eVORTypeMismatch, where + ": " + mismatch.what()));
  }
}

MethodTypes::MethodTypes(Broker& broker, const std::string& className, const std::string& method)
    : m_where("provider " + broker.providerName() + ", invokeMethod " + className + "." + method),
      m_shape(broker.shapeOf(className)) {
  if (m_shape) m_method = m_shape->declaration()->findMethod(method);
}

NamedValues MethodTypes::fitted(const NamedValues& arguments) const {
  NamedValues result = arguments;
  if (m_method == nullptr) return result;
  for (auto& argument : result) {
    for (const vorcore::ParameterDeclaration& parameter : m_method->parameters) {
      if (!vorcore::equalNames(parameter.name, argument.first)) continue;
      argument.second =
          fittedFor(m_where, argument.second, parameter.type, parameter.isArray, parameter.name);
    }
  }
  return result;
}

TCIMValue MethodTypes::fittedReturn(const TCIMValue& value) const {
  if (m_method == nullptr) return value;
  return fittedFor(m_where, value, m_method->returnType, false, "the return value");
}

bool OneValue::takeInstance(const InstanceDataPtr& instance) {
  taken = TCIMValue::Instance(makeInstance(instance, m_broker.namespaceHandle()));
  return isTaken = true;
}

}  // namespace cmpinsp::broker
