#include "substitute/cmpi.nsp/broker/calls/MethodTypes.h"

#include <boost/make_shared.hpp>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/Log.h"
#include "substitute/cmpi.nsp/broker/calls/Receivers.h"
#include "substitute/cmpi.nsp/broker/objects/EmbeddedInstance.h"
#include "substitute/cmpi.nsp/broker/objects/FittedValue.h"
#include "substitute/cmpi.nsp/broker/objects/Status.h"
#include "substitute/cmpi.nsp/model/PathReference.h"

namespace cmpinsp::broker {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

namespace {

/// The output that diagnostic methods name the started job with, in whatever class they are.
constexpr const char* kJobParameter = "Job";

[[noreturn]] void notAnInstance(const std::string& text) {
  throw NZELVOR20::TVORException(NZELVOR20::TVORStatusCode(
      NZELVOR20::eVORTypeMismatch, "\"" + text + "\" is the path of no instance"));
}

bool isText(const TCIMValue& value) {
  return !value.IsNull() && !value.IsArray() && value.GetType() == ECIMType::eString;
}

}  // namespace

TCIMValue fittedFor(const std::string& where, const TCIMValue& value, ECIMType type, bool isArray,
                    const std::string& what) {
  try {
    return fittedTo(value, type, isArray, what);
  } catch (const Failure& mismatch) {
    throw NZELVOR20::TVORException(
        NZELVOR20::TVORStatusCode(NZELVOR20::eVORTypeMismatch, where + ": " + mismatch.what()));
  }
}

MethodTypes::MethodTypes(Broker& broker, const ObjectPath& target, const std::string& method)
    : m_broker(broker),
      m_nameSpace(target.nameSpace),
      m_where("provider " + broker.providerName() + ", invokeMethod " + target.className + "." +
              method),
      m_shape(broker.shapeOf(target.className)) {
  if (m_shape) m_method = m_shape->declaration()->findMethod(method);
}

const vorcore::ParameterDeclaration* MethodTypes::find(const std::string& parameter) const {
  if (m_method == nullptr) return nullptr;
  for (const vorcore::ParameterDeclaration& declared : m_method->parameters) {
    if (vorcore::equalNames(declared.name, parameter)) return &declared;
  }
  return nullptr;
}

NamedValues MethodTypes::fitted(const NamedValues& arguments) const {
  NamedValues result = arguments;
  for (auto& argument : result) {
    const vorcore::ParameterDeclaration* parameter = find(argument.first);
    if (parameter == nullptr) continue;
    argument.second =
        fittedFor(m_where, argument.second, parameter->type, parameter->isArray, parameter->name);
  }
  return result;
}

NamedValues MethodTypes::fittedOutputs(const NamedValues& outputs) const {
  NamedValues result = outputs;
  for (auto& output : result) {
    const vorcore::ParameterDeclaration* parameter = find(output.first);
    if (parameter != nullptr) {
      output.second =
          fittedAnswer(output.second, parameter->type, parameter->isArray, parameter->name);
    } else if (vorcore::equalNames(output.first, kJobParameter) && isText(output.second)) {
      output.second = fittedAnswer(output.second, ECIMType::eReference, false, kJobParameter);
    }
  }
  return result;
}

TCIMValue MethodTypes::fittedReturn(const TCIMValue& value) const {
  if (m_method == nullptr) return value;
  return fittedAnswer(value, m_method->returnType, false, "the return value");
}

TCIMValue MethodTypes::fittedAnswer(const TCIMValue& value, ECIMType type, bool isArray,
                                    const std::string& what) const {
  try {
    if (type == ECIMType::eReference && !isArray && isText(value))
      return referenceIn(value.GetText());
    return fittedFor(m_where, value, type, isArray, what);
  } catch (const NZELVOR20::TVORException& mismatch) {
    logLine(kWarningLevel, std::string(mismatch.what()) + "; it is taken as it came");
    return value;
  }
}

TCIMValue MethodTypes::referenceIn(const std::string& text) const {
  try {
    ObjectPath path = ObjectPath::parse(text);
    if (path.keys.empty()) notAnInstance(text);
    if (path.nameSpace.empty()) path.nameSpace = m_nameSpace;
    return TCIMValue(referenceTo(std::move(path), m_broker.namespaceHandle()));
  } catch (const NZELVOR20::TVORException& fault) {
    throw NZELVOR20::TVORException(
        NZELVOR20::TVORStatusCode(NZELVOR20::eVORTypeMismatch, m_where + ": " + fault.what()));
  }
}

bool OneValue::takeInstance(const InstanceDataPtr& instance) {
  taken = TCIMValue::Instance(makeInstance(instance, m_broker.namespaceHandle()));
  return isTaken = true;
}

}  // namespace cmpinsp::broker
