#include "substitute/cmpi.nsp/broker/lifetime/Broker.h"

#include <boost/make_shared.hpp>
#include <utility>

#include "substitute/cmpi.nsp/broker/lifetime/Failure.h"
#include "substitute/cmpi.nsp/broker/lifetime/ThreadState.h"

namespace cmpinsp::broker {
Broker::Broker(std::string providerName, const std::string& libraryPath, IUpcalls& upcalls)
    : m_library(LibraryBroker::join(libraryPath, upcalls, *this)),
      m_providerName(std::move(providerName)),
      m_upcalls(&upcalls) {}

Broker& Broker::make(std::string providerName, const std::string& libraryPath, IUpcalls& upcalls) {
  return *new Broker(std::move(providerName), libraryPath, upcalls);
}

Broker::Upcalls::Upcalls(Broker& broker) : m_pin(broker.m_pins), m_upcalls(broker.m_upcalls) {
  if (!m_pin) throw Failure(CMPI_RC_ERR_FAILED, "the broker is going down");
}

void Broker::retire() {
  m_pins.closeAndWait();
  m_library.leave(*this);
}

boost::shared_ptr<const ClassShape> Broker::shapeOf(const std::string& className) {
  ThreadState& thread = threadState();
  if (thread.shapeBroker == this && thread.shapeClass == className) return thread.shape;
  boost::shared_ptr<const ClassShape> shape = shapeOf(Upcalls(*this)->classes().find(className));
  thread.shapeClass = className;
  thread.shape = shape;
  thread.shapeBroker = this;
  return shape;
}

boost::shared_ptr<const ClassShape> Broker::shapeOf(
    const vorcore::ClassDeclarationPtr& declaration) {
  if (!declaration) return {};
  const std::lock_guard<std::mutex> lock(m_mutex);
  boost::shared_ptr<const ClassShape>& shape = m_shapes[declaration.get()];
  if (!shape) shape = boost::make_shared<ClassShape>(declaration);
  return shape;
}

std::vector<std::string> Broker::knownKeys(const std::string& className) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  const auto known = m_knownKeys.find(vorcore::nameKey(className));
  return known == m_knownKeys.end() ? std::vector<std::string>() : known->second;
}

void Broker::learnKeys(const ObjectPath& path) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  std::vector<std::string>& names = m_knownKeys[vorcore::nameKey(path.className)];
  if (!names.empty()) return;
  for (const auto& key : path.keys) names.push_back(key.first);
}

boost::shared_ptr<NZELVOR20::ICIMNamespace> Broker::namespaceHandle() {
  return Upcalls(*this)->namespaceHandle();
}

}  // namespace cmpinsp::broker
