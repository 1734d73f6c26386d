#include "substitute/cmpi.nsp/broker/calls/ProviderCall.h"

#include <utility>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/Log.h"
#include "substitute/cmpi.nsp/broker/Limits.h"
#include "substitute/cmpi.nsp/broker/lifetime/ThreadState.h"
#include "substitute/cmpi.nsp/broker/objects/InstanceObject.h"
#include "substitute/cmpi.nsp/broker/objects/Status.h"
#include "substitute/cmpi.nsp/broker/objects/Values.h"

namespace cmpinsp::broker {

using namespace NZELVOR20;

namespace {

/// `path` with the declared types for its keys: providers read `value.uint32` without a look at the
/// type. A key that does not fit stays as it is, for the provider to judge.
ObjectPath withDeclaredTypes(Broker& broker, ObjectPath path) {
  const auto shape = path.keys.empty() ? nullptr : broker.shapeOf(path.className);
  if (!shape) return path;
  const vorcore::ClassDeclaration& declaration = *shape->declaration();
  for (auto& key : path.keys) {
    const std::size_t position = declaration.findProperty(key.first);
    if (position >= declaration.properties.size()) continue;
    const vorcore::PropertyDeclaration& property = declaration.properties[position];
    if (property.type == key.second.GetType()) continue;
    try {
      key.second = vorcore::convertTo(key.second, property.type, property.isArray);
    } catch (const TVORException&) {
      continue;
    }
  }
  return path;
}

}  // namespace

ProviderCall::ProviderCall(Broker& broker, const char* operation, const ObjectPath& path,
                           Receiver& receiver)
    : m_scope(Scope::Reason::kCall, &broker),
      m_broker(broker),
      m_operation(operation),
      m_delivery(std::make_shared<Delivery>()) {
  m_delivery->receiver = &receiver;
  m_delivery->thread = &threadState();
  m_delivery->broker = &broker;
  m_delivery->operation = operation;
  m_delivery->nameSpace = path.nameSpace;
  m_delivery->askedClass = path.className;
  m_context =
      makeObject(Ownership::kBorrowed, &broker, std::make_unique<ContextBody>(path.nameSpace));
  m_result = makeObject(Ownership::kBorrowed, &broker, std::make_unique<ResultBody>(m_delivery));
  m_path = makeObject(Ownership::kBorrowed, &broker,
                      std::make_unique<ObjectPathBody>(withDeclaredTypes(broker, path)));
  m_isOuterTextRepaired = std::exchange(threadState().isTextRepaired, false);
}

ProviderCall::~ProviderCall() {
  m_delivery->receiver = nullptr;
  threadState().isTextRepaired = m_isOuterTextRepaired;
}

const CMPIInstance* ProviderCall::borrow(const InstanceDataPtr& instance) {
  return makeObject(Ownership::kBorrowed, &m_broker, std::make_unique<InstanceBody>(instance));
}

CMPIArgs* ProviderCall::borrow(NamedValues arguments) {
  return makeObject(Ownership::kBorrowed, &m_broker,
                    std::make_unique<ArgsBody>(std::move(arguments)));
}

CMPIData ProviderCall::borrow(const TCIMValue& value) {
  Handle& owner =
      makeObject(Kind::kArgs, Ownership::kBorrowed, &m_broker, std::make_unique<ArgsBody>());
  return dataOf(owner, value);
}

/// A line for each text would make a slow provider of one that is merely old.
void ProviderCall::remarkRepairs() const {
  if (!threadState().isTextRepaired) return;
  logLine(1, "provider " + m_broker.providerName() + ", " + m_operation +
                 ": gave text that is no UTF-8; it is read as Latin-1");
}

void ProviderCall::judge(const CMPIStatus& status) const {
  remarkRepairs();
  if (m_delivery->failure) std::rethrow_exception(m_delivery->failure);
  if (m_delivery->isOverLimit) {
    const std::string text = "more than " + std::to_string(answerLimit()) + " answers";
    logLine(0, "provider " + m_broker.providerName() + ", " + m_operation + ": " + text);
    throwFailed(CMPI_RC_ERR_SERVER_LIMITS_EXCEEDED, text);
  }
  if (!m_delivery->fault.empty()) {
    logLine(0,
            "provider " + m_broker.providerName() + ", " + m_operation + ": " + m_delivery->fault);
  }
  if (m_delivery->isStopped) return;
  if (m_delivery->errorCode != 0) throwFailed(m_delivery->errorCode, m_delivery->error);
  const int code = codeOf(status);
  if (code == CMPI_RC_OK && m_delivery->fault.empty()) return;
  if (code == CMPI_RC_OK) throwFailed(CMPI_RC_ERR_FAILED, m_delivery->fault);
  if (code == CMPI_RC_ERR_NOT_FOUND && m_mayFindNothing) return;
  throwFailed(code, describe(status));
}

void ProviderCall::throwNotOffered() const {
  throwFailed(CMPI_RC_ERR_NOT_SUPPORTED, "the provider leaves this function out");
}

void ProviderCall::throwThrown(const std::string& what) const {
  const std::string text = "provider " + m_broker.providerName() + ", " + what;
  logLine(0, text);
  tellThrown(m_broker.providerName().c_str(), what.c_str());
  throw TVORException(TVORStatusCode(eVORProviderFailed, text));
}

void ProviderCall::throwFailed(int code, const std::string& text) const {
  throw ProviderFailure(code,
                        "provider " + m_broker.providerName() + ", " + m_operation + ": " + text);
}

}  // namespace cmpinsp::broker
