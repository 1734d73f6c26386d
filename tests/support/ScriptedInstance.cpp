#include "tests/support/ScriptedInstance.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "framework/TVORException.h"
#include "tests/support/Script.h"
#include "tests/support/ScriptedClass.h"
#include "tests/support/ScriptedProperty.h"
#include "tests/support/Text.h"

namespace support {

using NZELVOR20::TCIMReference;
using NZELVOR20::TCIMValue;
using NZELVOR20::TOptionsMap;
using NZELVOR20::TVORException;
using NZELVOR20::TVORStatusCode;

namespace {

/// The framework's face of a scripted instance.
template <typename Base>
class InstanceFace : public Base, public ScriptedInstance {
 public:
  using ScriptedInstance::ScriptedInstance;

  boost::shared_ptr<NZELVOR20::ICIMInstance> handle() override {
    return boost::shared_ptr<NZELVOR20::ICIMInstance>(shared_from_this(), this);
  }

  TCIMReference GetObjectPath(TOptionsMap options) override { return getObjectPath(options); }
  boost::shared_ptr<NZELVOR20::ICIMProperty> GetProperty(std::string name,
                                                         TOptionsMap options) override {
    return getProperty(name, options);
  }
  void SetProperty(std::string name, TCIMValue value, TOptionsMap options) override {
    setProperty(name, value, options);
  }
  std::string GetPegasusNSPStr() override { return getPegasusText(); }
  boost::shared_ptr<NZELVOR20::ICIMClass> GetClass(TOptionsMap options) override {
    return getClass(options);
  }
  void EnumerateProperties(NZELVOR20::TPropertyCallback callback, TOptionsMap options) override {
    enumerateProperties(callback, options);
  }
};

class CmpiInstanceFace final : public InstanceFace<NZELVOR20::TCMPIInstance> {
 public:
  using InstanceFace::InstanceFace;

  TCIMValue InvokeMethod(std::string name, NZELVOR20::TParameterMap& parameters,
                         TOptionsMap options) override {
    return invokeMethod(name, parameters, options);
  }
};

}  // namespace

InstancePtr ScriptedInstance::makeCmpi(const std::string& label, Path path) {
  return InstancePtr(new CmpiInstanceFace(label, std::move(path)));
}

InstancePtr ScriptedInstance::makePlain(const std::string& label, Path path) {
  return InstancePtr(new InstanceFace<NZELVOR20::ICIMInstance>(label, std::move(path)));
}

ScriptedInstance::ScriptedInstance(std::string label, Path path)
    : m_label(std::move(label)), m_path(std::move(path)) {}

TCIMReference ScriptedInstance::reference() const {
  return TCIMReference(
      boost::shared_ptr<const NZELVOR20::ICIMReferenceBody>(new ScriptedReferenceBody(m_path)));
}

void ScriptedInstance::set(const std::string& name, const TCIMValue& value) {
  findOrAdd(name).readings = {readingOf(value)};
}

void ScriptedInstance::set(const std::string& name, const TCIMValue& value,
                           const std::string& rendered) {
  findOrAdd(name).readings = {Reading{value, rendered}};
}

void ScriptedInstance::setInTurn(const std::string& name, const std::vector<TCIMValue>& values) {
  std::deque<Reading> readings;
  for (const TCIMValue& value : values) {
    readings.push_back(readingOf(value));
  }
  findOrAdd(name).readings = readings;
}

void ScriptedInstance::setEmpty(const std::string& name) {
  findOrAdd(name).readings = {Reading{TCIMValue(), std::string(), true}};
}

void ScriptedInstance::remove(const std::string& name) {
  m_properties.erase(
      std::remove_if(m_properties.begin(), m_properties.end(),
                     [&](const Property& property) { return property.name == name; }),
      m_properties.end());
}

void ScriptedInstance::setMethod(const std::string& method, MethodBody body) {
  m_methods[method] = std::move(body);
}

void ScriptedInstance::setMethodOutput(const std::string& method,
                                       const NZELVOR20::TParameterMap& output) {
  setMethod(method, [output](NZELVOR20::TParameterMap& parameters) {
    parameters = output;
    return TCIMValue::Uint32(0);
  });
}

TCIMValue ScriptedInstance::value(const std::string& name) const {
  for (const Property& property : m_properties) {
    if (property.name == name) {
      return property.readings.front().value;
    }
  }
  throw std::out_of_range("no property " + name + " in " + m_label);
}

InstancePtr ScriptedInstance::copyAs(const std::string& label) const {
  const bool isCmpi = dynamic_cast<const NZELVOR20::TCMPIInstance*>(this) != nullptr;
  InstancePtr copy = isCmpi ? makeCmpi(label, m_path) : makePlain(label, m_path);
  copy->m_properties = m_properties;
  copy->m_methods = m_methods;
  copy->m_pegasusText = m_pegasusText;
  return copy;
}

TCIMReference ScriptedInstance::getObjectPath(const TOptionsMap& options) {
  Script::current().enter(call("GetObjectPath", describe(options)));
  return reference();
}

boost::shared_ptr<NZELVOR20::ICIMProperty> ScriptedInstance::getProperty(
    const std::string& name, const TOptionsMap& options) {
  if (Script::current().enter(call("GetProperty", quoted(name) + ", " + describe(options)),
                              Returns::handle)) {
    return {};
  }
  Property* property = find(name);
  if (property == nullptr) {
    throw TVORException(TVORStatusCode(NZELVOR20::eVORNoSuchProperty, name));
  }
  return fetch(*property);
}

void ScriptedInstance::setProperty(const std::string& name, const TCIMValue& value,
                                   const TOptionsMap& options) {
  Script::current().enter(
      call("SetProperty", quoted(name) + ", " + describe(value) + ", " + describe(options)));
  set(name, value);
}

std::string ScriptedInstance::getPegasusText() {
  Script::current().enter(call("GetPegasusNSPStr", ""));
  return m_pegasusText;
}

boost::shared_ptr<NZELVOR20::ICIMClass> ScriptedInstance::getClass(const TOptionsMap& options) {
  if (Script::current().enter(call("GetClass", describe(options)), Returns::handle)) {
    return {};
  }
  return m_path.theClass.lock();
}

void ScriptedInstance::enumerateProperties(const NZELVOR20::TPropertyCallback& callback,
                                           const TOptionsMap& options) {
  Script::current().enter(call("EnumerateProperties", describe(options)));
  for (Property& property : m_properties) {
    if (!callback(fetch(property))) {
      return;
    }
  }
}

TCIMValue ScriptedInstance::invokeMethod(const std::string& method,
                                         NZELVOR20::TParameterMap& parameters,
                                         const TOptionsMap& options) {
  Script::current().enter(call(
      "InvokeMethod", quoted(method) + ", " + describe(parameters) + ", " + describe(options)));
  const auto found = m_methods.find(method);
  if (found == m_methods.end()) {
    throw TVORException(TVORStatusCode(NZELVOR20::eVORMethodNotFound, method));
  }
  return found->second(parameters);
}

ScriptedInstance::Reading ScriptedInstance::readingOf(const TCIMValue& value) {
  const bool isReference =
      !value.IsNull() && !value.IsArray() && value.GetType() == NZELVOR20::ECIMType::eReference;
  return Reading{value, isReference ? describe(value) : value.ToString(10)};
}

ScriptedInstance::Property& ScriptedInstance::findOrAdd(const std::string& name) {
  Property* found = find(name);
  if (found != nullptr) {
    return *found;
  }
  m_properties.push_back({name, {}});
  return m_properties.back();
}

ScriptedInstance::Property* ScriptedInstance::find(const std::string& name) {
  for (Property& property : m_properties) {
    if (property.name == name) {
      return &property;
    }
  }
  return nullptr;
}

boost::shared_ptr<NZELVOR20::ICIMProperty> ScriptedInstance::fetch(Property& property) {
  const Reading reading = property.readings.front();
  if (property.readings.size() > 1) {
    property.readings.pop_front();
  }
  if (reading.isEmpty) {
    return {};
  }
  return boost::shared_ptr<NZELVOR20::ICIMProperty>(
      new ScriptedProperty(m_label, property.name, reading.value, reading.rendered));
}

std::string ScriptedInstance::call(const std::string& operation,
                                   const std::string& arguments) const {
  return "inst " + m_label + "." + operation + "(" + arguments + ")";
}

}  // namespace support
