#pragma once

#include <memory>
#include <string>

#include "substitute/cmpi.nsp/broker/WatchedCall.h"
#include "substitute/cmpi.nsp/broker/lifetime/Broker.h"
#include "substitute/cmpi.nsp/broker/lifetime/Scope.h"
#include "substitute/cmpi.nsp/broker/objects/ArgsObject.h"
#include "substitute/cmpi.nsp/broker/objects/ContextObject.h"
#include "substitute/cmpi.nsp/broker/objects/ObjectPathObject.h"
#include "substitute/cmpi.nsp/broker/objects/ResultObject.h"
#include "substitute/cmpi.nsp/broker/services/CallGuard.h"
#include "substitute/cmpi.nsp/model/InstanceData.h"

namespace cmpinsp::broker {

/// One call into a provider: the objects that it is given, which live as long as this, and the
/// judgement of what it answered.
class ProviderCall {
 public:
  ProviderCall(Broker& broker, const char* operation, const ObjectPath& path, Receiver& receiver);
  ProviderCall(const ProviderCall&) = delete;
  ProviderCall& operator=(const ProviderCall&) = delete;
  ~ProviderCall();

  const CMPIContext* context() const noexcept { return m_context; }
  const CMPIResult* result() const noexcept { return m_result; }
  const CMPIObjectPath* path() const noexcept { return m_path; }
  const CMPIInstance* borrow(const InstanceDataPtr& instance);
  CMPIArgs* borrow(NamedValues arguments);
  /// `value` by itself, as it is passed by value.
  CMPIData borrow(const NZELVOR20::TCIMValue& value);

  /// Calls `function` of the provider. Throws `TVORException` that names the provider and the
  /// operation where it fails, and what the receiver threw.
  template <typename Function, typename... Parameters>
  void operator()(Function function, Parameters... parameters) {
    if (function == nullptr) throwNotOffered();
    CMPIStatus status{CMPI_RC_OK, nullptr};
    try {
      const WatchedCall watched(m_broker.providerName().c_str(), m_operation);
      status = guardedCall(m_operation, [&] { return function(parameters...); });
    } catch (const Failure& failure) {
      throwThrown(failure.what());
    }
    judge(status);
  }

  /// For enumerations, where nothing found is an empty answer.
  void allowNotFound() noexcept { m_mayFindNothing = true; }

 private:
  void judge(const CMPIStatus& status) const;
  void remarkRepairs() const;
  [[noreturn]] void throwNotOffered() const;
  [[noreturn]] void throwThrown(const std::string& what) const;
  [[noreturn]] void throwFailed(int code, const std::string& text) const;

  Scope m_scope;
  Broker& m_broker;
  const char* m_operation;
  std::shared_ptr<Delivery> m_delivery;
  CMPIContext* m_context;
  CMPIResult* m_result;
  CMPIObjectPath* m_path;
  bool m_mayFindNothing = false;
  bool m_isOuterTextRepaired;  ///< what the thread knew of the call that this one is within
};

}  // namespace cmpinsp::broker
