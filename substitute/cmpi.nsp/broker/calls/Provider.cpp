#include "substitute/cmpi.nsp/broker/calls/Provider.h"

#include <utility>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/Log.h"
#include "substitute/cmpi.nsp/broker/calls/Interfaces.h"
#include "substitute/cmpi.nsp/broker/calls/MethodTypes.h"
#include "substitute/cmpi.nsp/broker/calls/NamePointers.h"
#include "substitute/cmpi.nsp/broker/calls/ProviderCall.h"
#include "substitute/cmpi.nsp/broker/calls/Receivers.h"
#include "substitute/cmpi.nsp/broker/lifetime/PinCount.h"
#include "substitute/cmpi.nsp/broker/lifetime/Scope.h"
#include "substitute/cmpi.nsp/broker/lifetime/ThreadState.h"

namespace cmpinsp {

using namespace broker;
using NZELVOR20::TCIMValue;
using NZELVOR20::TVORException;
using NZELVOR20::TVORStatusCode;

namespace {

/// A restriction as providers get it: null where there is none.
const char* orNull(const std::string& text) { return text.empty() ? nullptr : text.c_str(); }

/// What `fit` makes of an answer. One of the wrong type is the provider's mistake, which is logged.
template <typename Fit>
TCIMValue answered(Fit fit) {
  try {
    return fit();
  } catch (const TVORException& mismatch) {
    logLine(0, mismatch.what());
    throw;
  }
}

/// The table of the property interface has `setPropertyWithOrigin` from this edition on: headers of
/// 2.0 differ about it.
constexpr int kEditionWithOrigin = 210;

/// `value` in the type that the property is declared with, as far as it is declared.
TCIMValue fittedToProperty(Broker& broker, const std::string& className, const std::string& name,
                           const TCIMValue& value, const char* operation) {
  const auto shape = broker.shapeOf(className);
  if (!shape) return value;
  const vorcore::ClassDeclaration& declaration = *shape->declaration();
  const std::size_t position = declaration.findProperty(name);
  if (position >= declaration.properties.size()) return value;
  const vorcore::PropertyDeclaration& property = declaration.properties[position];
  return fittedFor("provider " + broker.providerName() + ", " + operation, value, property.type,
                   property.isArray, className + "." + property.name);
}

}  // namespace

class Provider::Impl {
 public:
  Impl(std::string aName, std::string aPath, IUpcalls& upcalls, std::string nameSpace)
      : name(std::move(aName)),
        path(std::move(aPath)),
        broker(Broker::make(name, path, upcalls)),
        interfaces(name, path, std::move(nameSpace), broker) {}

  ~Impl() {
    if (neverReturns()) {
      pins.close();
      broker.abandon();
      return;
    }
    pins.closeAndWait();
    interfaces.cleanUp();
    broker.retire();
  }

  const std::string name;
  const std::string path;
  Broker& broker;
  Interfaces interfaces;
  PinCount pins;

 private:
  /// Whether a call into it was left by `exit`, which destroys what is static before or after it
  /// ends the thread: nobody can wait for that call, nor clean up behind it.
  bool neverReturns() const { return hasExitedInCall() || isInCall(threadState(), &broker); }
};

namespace {

/// Keeps the provider from being cleaned up while a call is in it.
class CallPin {
 public:
  CallPin(PinCount& pins, const std::string& name) : m_pin(pins) {
    if (m_pin) return;
    throw TVORException(
        TVORStatusCode(NZELVOR20::eVORProviderFailed, "provider " + name + " is being cleaned up"));
  }

 private:
  Pin m_pin;
};

}  // namespace

Provider::Provider(std::string providerName, std::string libraryPath, IUpcalls& upcalls,
                   std::string nameSpace)
    : m_impl(std::make_unique<Impl>(std::move(providerName), std::move(libraryPath), upcalls,
                                    std::move(nameSpace))) {}

Provider::~Provider() = default;

const std::string& Provider::name() const noexcept { return m_impl->name; }

const std::string& Provider::libraryPath() const noexcept { return m_impl->path; }

void Provider::load() {
  const CallPin pin(m_impl->pins, m_impl->name);
  m_impl->interfaces.load();
}

bool Provider::wasTried() const {
  const std::exception_ptr failure = m_impl->interfaces.firstFailure();
  if (failure) std::rethrow_exception(failure);
  return m_impl->interfaces.wasTried();
}

std::vector<OfferedInterface> Provider::offered() const { return m_impl->interfaces.offered(); }

void Provider::enumerateInstances(const ObjectPath& classPath, PropertyNames properties,
                                  const InstanceSink& sink) {
  const CallPin pin(m_impl->pins, m_impl->name);
  CMPIInstanceMI& mi = m_impl->interfaces.use(m_impl->interfaces.instance);
  ClassGate gate(m_impl->broker, classPath.className);
  InstanceReceiver receiver(sink, properties, &gate);
  NamePointers names(properties);
  ProviderCall call(m_impl->broker, "enumerateInstances", classPath, receiver);
  call.allowNotFound();
  call(mi.ft->enumerateInstances, &mi, call.context(), call.result(), call.path(), names.get());
}

void Provider::enumerateInstanceNames(const ObjectPath& classPath, const PathSink& sink) {
  const CallPin pin(m_impl->pins, m_impl->name);
  CMPIInstanceMI& mi = m_impl->interfaces.use(m_impl->interfaces.instance);
  ClassGate gate(m_impl->broker, classPath.className);
  PathReceiver receiver(sink, m_impl->broker, &gate);
  ProviderCall call(m_impl->broker, "enumerateInstanceNames", classPath, receiver);
  call.allowNotFound();
  call(mi.ft->enumerateInstanceNames, &mi, call.context(), call.result(), call.path());
}

InstanceDataPtr Provider::getInstance(const ObjectPath& path, PropertyNames properties) {
  const CallPin pin(m_impl->pins, m_impl->name);
  CMPIInstanceMI& mi = m_impl->interfaces.use(m_impl->interfaces.instance);
  OneInstance receiver;
  NamePointers names(properties);
  ProviderCall call(m_impl->broker, "getInstance", path, receiver);
  call(mi.ft->getInstance, &mi, call.context(), call.result(), call.path(), names.get());
  if (!receiver.taken) {
    throw TVORException(
        TVORStatusCode(NZELVOR20::eVORNotFound, "provider " + m_impl->name +
                                                    ", getInstance: no instance was returned for " +
                                                    path.toText()));
  }
  return filtered(receiver.taken, properties);
}

ObjectPath Provider::createInstance(const ObjectPath& path, const InstanceDataPtr& instance) {
  const CallPin pin(m_impl->pins, m_impl->name);
  CMPIInstanceMI& mi = m_impl->interfaces.use(m_impl->interfaces.instance);
  OnePath receiver;
  ProviderCall call(m_impl->broker, "createInstance", path, receiver);
  call(mi.ft->createInstance, &mi, call.context(), call.result(), call.path(),
       call.borrow(instance));
  // A provider that names no path has taken the one it was given.
  return receiver.taken.className.empty() ? instance->path : receiver.taken;
}

void Provider::modifyInstance(const ObjectPath& path, const InstanceDataPtr& instance,
                              PropertyNames properties) {
  const CallPin pin(m_impl->pins, m_impl->name);
  CMPIInstanceMI& mi = m_impl->interfaces.use(m_impl->interfaces.instance);
  NoAnswer receiver;
  NamePointers names(properties);
  ProviderCall call(m_impl->broker, "modifyInstance", path, receiver);
  call(mi.ft->modifyInstance, &mi, call.context(), call.result(), call.path(),
       call.borrow(instance), names.get());
}

void Provider::deleteInstance(const ObjectPath& path) {
  const CallPin pin(m_impl->pins, m_impl->name);
  CMPIInstanceMI& mi = m_impl->interfaces.use(m_impl->interfaces.instance);
  NoAnswer receiver;
  ProviderCall call(m_impl->broker, "deleteInstance", path, receiver);
  call(mi.ft->deleteInstance, &mi, call.context(), call.result(), call.path());
}

void Provider::executeQuery(const ObjectPath& classPath, const std::string& query,
                            const std::string& language, const InstanceSink& sink) {
  const CallPin pin(m_impl->pins, m_impl->name);
  CMPIInstanceMI& mi = m_impl->interfaces.use(m_impl->interfaces.instance);
  InstanceReceiver receiver(sink, nullptr, nullptr);
  ProviderCall call(m_impl->broker, "execQuery", classPath, receiver);
  call.allowNotFound();
  call(mi.ft->execQuery, &mi, call.context(), call.result(), call.path(), query.c_str(),
       language.c_str());
}

void Provider::associators(const ObjectPath& path, const AssociationFilter& filter,
                           PropertyNames properties, const InstanceSink& sink) {
  const CallPin pin(m_impl->pins, m_impl->name);
  CMPIAssociationMI& mi = m_impl->interfaces.use(m_impl->interfaces.association);
  InstanceReceiver receiver(sink, properties, nullptr);
  NamePointers names(properties);
  ProviderCall call(m_impl->broker, "associators", path, receiver);
  call.allowNotFound();
  call(mi.ft->associators, &mi, call.context(), call.result(), call.path(),
       orNull(filter.associationClass), orNull(filter.resultClass), orNull(filter.role),
       orNull(filter.resultRole), names.get());
}

void Provider::associatorNames(const ObjectPath& path, const AssociationFilter& filter,
                               const PathSink& sink) {
  const CallPin pin(m_impl->pins, m_impl->name);
  CMPIAssociationMI& mi = m_impl->interfaces.use(m_impl->interfaces.association);
  PathReceiver receiver(sink, m_impl->broker, nullptr);
  ProviderCall call(m_impl->broker, "associatorNames", path, receiver);
  call.allowNotFound();
  call(mi.ft->associatorNames, &mi, call.context(), call.result(), call.path(),
       orNull(filter.associationClass), orNull(filter.resultClass), orNull(filter.role),
       orNull(filter.resultRole));
}

void Provider::references(const ObjectPath& path, const AssociationFilter& filter,
                          PropertyNames properties, const InstanceSink& sink) {
  const CallPin pin(m_impl->pins, m_impl->name);
  CMPIAssociationMI& mi = m_impl->interfaces.use(m_impl->interfaces.association);
  InstanceReceiver receiver(sink, properties, nullptr);
  NamePointers names(properties);
  ProviderCall call(m_impl->broker, "references", path, receiver);
  call.allowNotFound();
  call(mi.ft->references, &mi, call.context(), call.result(), call.path(),
       orNull(filter.resultClass), orNull(filter.role), names.get());
}

void Provider::referenceNames(const ObjectPath& path, const AssociationFilter& filter,
                              const PathSink& sink) {
  const CallPin pin(m_impl->pins, m_impl->name);
  CMPIAssociationMI& mi = m_impl->interfaces.use(m_impl->interfaces.association);
  PathReceiver receiver(sink, m_impl->broker, nullptr);
  ProviderCall call(m_impl->broker, "referenceNames", path, receiver);
  call.allowNotFound();
  call(mi.ft->referenceNames, &mi, call.context(), call.result(), call.path(),
       orNull(filter.resultClass), orNull(filter.role));
}

TCIMValue Provider::invokeMethod(const ObjectPath& path, const std::string& method,
                                 const Arguments& in, Arguments& out) {
  const CallPin pin(m_impl->pins, m_impl->name);
  CMPIMethodMI& mi = m_impl->interfaces.use(m_impl->interfaces.method);
  const MethodTypes types(m_impl->broker, path, method);
  OneValue receiver(m_impl->broker);
  ProviderCall call(m_impl->broker, "invokeMethod", path, receiver);
  const CMPIArgs* input = call.borrow(types.fitted(in));
  CMPIArgs* output = call.borrow(NamedValues());
  call(mi.ft->invokeMethod, &mi, call.context(), call.result(), call.path(), method.c_str(), input,
       output);
  out = types.fittedOutputs(bodyOf<ArgsBody>(output).values);
  return types.fittedReturn(receiver.taken);
}

void Provider::setProperty(const ObjectPath& path, const std::string& name,
                           const TCIMValue& value) {
  const CallPin pin(m_impl->pins, m_impl->name);
  CMPIPropertyMI& mi = m_impl->interfaces.use(m_impl->interfaces.property);
  NoAnswer receiver;
  ProviderCall call(m_impl->broker, "setProperty", path, receiver);
  const CMPIData data =
      call.borrow(fittedToProperty(m_impl->broker, path.className, name, value, "setProperty"));
  const bool hasSecondForm = m_impl->interfaces.property.edition >= kEditionWithOrigin;
  if (mi.ft->setProperty == nullptr && hasSecondForm && mi.ft->setPropertyWithOrigin != nullptr) {
    // The one function of a provider whose path is declared without const.
    call(mi.ft->setPropertyWithOrigin, &mi, call.context(), call.result(),
         const_cast<CMPIObjectPath*>(call.path()), name.c_str(), data,
         static_cast<const char*>(nullptr));
    return;
  }
  call(mi.ft->setProperty, &mi, call.context(), call.result(), call.path(), name.c_str(), data);
}

TCIMValue Provider::getProperty(const ObjectPath& path, const std::string& name) {
  const CallPin pin(m_impl->pins, m_impl->name);
  CMPIPropertyMI& mi = m_impl->interfaces.use(m_impl->interfaces.property);
  OneValue receiver(m_impl->broker);
  ProviderCall call(m_impl->broker, "getProperty", path, receiver);
  call(mi.ft->getProperty, &mi, call.context(), call.result(), call.path(), name.c_str());
  if (receiver.isTaken) {
    return answered([&] {
      return fittedToProperty(m_impl->broker, path.className, name, receiver.taken, "getProperty");
    });
  }
  throw TVORException(TVORStatusCode(
      NZELVOR20::eVORNoSuchProperty,
      "provider " + m_impl->name + ", getProperty: no value was returned for " + name));
}

}  // namespace cmpinsp
