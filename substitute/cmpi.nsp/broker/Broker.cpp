#include "substitute/cmpi.nsp/broker/Broker.h"

#include <boost/make_shared.hpp>
#include <cstdlib>
#include <new>
#include <utility>

#include "substitute/cmpi.nsp/broker/Status.h"
#include "substitute/cmpi.nsp/broker/ThreadState.h"

namespace cmpinsp::broker {
namespace {

/// Every broker of this process, newest first.
struct BrokerList {
  std::mutex mutex;
  std::vector<Broker*> brokers;
};

BrokerList& brokerList() {
  static auto* const list = new BrokerList;
  return *list;
}

Broker* find(const CMPIBroker* broker) {
  BrokerList& list = brokerList();
  const std::lock_guard<std::mutex> lock(list.mutex);
  for (Broker* known : list.brokers) {
    if (known->handle() == broker) return known;
  }
  return nullptr;
}

/// Memory that was asked for outside any provider's account.
struct CommonMemory {
  std::mutex mutex;
  std::unordered_set<void*> blocks;
};

CommonMemory& commonMemory() {
  static auto* const memory = new CommonMemory;
  return *memory;
}

}  // namespace

Broker::Broker(std::string providerName, IUpcalls& upcalls)
    : m_handle{this, const_cast<CMPIBrokerFT*>(&kBrokerTable),
               const_cast<CMPIBrokerEncFT*>(&kBrokerEncTable),
               const_cast<CMPIBrokerExtFT*>(&kBrokerExtTable),
               const_cast<CMPIBrokerMemFT*>(&kBrokerMemTable)},
      m_providerName(std::move(providerName)),
      m_upcalls(&upcalls) {}

Broker& Broker::make(std::string providerName, IUpcalls& upcalls) {
  BrokerList& list = brokerList();
  const std::lock_guard<std::mutex> lock(list.mutex);
  list.brokers.reserve(list.brokers.size() + 1);
  list.brokers.push_back(new Broker(std::move(providerName), upcalls));
  return *list.brokers.back();
}

Broker& Broker::of(const CMPIBroker* broker) {
  ThreadState& thread = threadState();
  if (broker == nullptr || broker != thread.verifiedBroker) {
    if (find(broker) == nullptr) {
      throw Failure(CMPI_RC_ERR_INVALID_HANDLE, "this is not the broker's own handle");
    }
    thread.verifiedBroker = broker;
  }
  return *static_cast<Broker*>(broker->hdl);
}

Broker::Upcalls::Upcalls(Broker& broker) : m_pin(broker.m_pins), m_upcalls(broker.m_upcalls) {
  if (!m_pin) throw Failure(CMPI_RC_ERR_FAILED, "the broker is going down");
}

void Broker::retire() { m_pins.closeAndWait(); }

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

void Broker::learnKeys(const std::string& className, const NamedValues& keys) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  std::vector<std::string>& names = m_knownKeys[vorcore::nameKey(className)];
  if (!names.empty()) return;
  for (const auto& key : keys) names.push_back(key.first);
}

boost::shared_ptr<NZELVOR20::ICIMNamespace> Broker::namespaceHandle() {
  return Upcalls(*this)->namespaceHandle();
}

void* Broker::allocate(Broker* broker, std::size_t size) {
  return reallocate(broker, nullptr, size);
}

void* Broker::reallocate(Broker* broker, void* memory, std::size_t size) {
  std::mutex& mutex = broker != nullptr ? broker->m_mutex : commonMemory().mutex;
  auto& blocks = broker != nullptr ? broker->m_memory : commonMemory().blocks;
  const std::lock_guard<std::mutex> lock(mutex);
  if (memory != nullptr && blocks.count(memory) == 0) {
    throw Failure(CMPI_RC_ERR_INVALID_HANDLE, "this memory was not given out by the broker");
  }
  blocks.reserve(blocks.size() + 1);
  auto node = memory == nullptr ? std::unordered_set<void*>::node_type() : blocks.extract(memory);
  void* const moved = std::realloc(memory, size == 0 ? 1 : size);
  if (moved == nullptr) {
    if (!node.empty()) blocks.insert(std::move(node));
    throw std::bad_alloc();
  }
  if (node.empty()) {
    blocks.insert(moved);
  } else {
    node.value() = moved;
    blocks.insert(std::move(node));
  }
  return moved;
}

void Broker::release(Broker* broker, void* memory) noexcept {
  std::mutex& mutex = broker != nullptr ? broker->m_mutex : commonMemory().mutex;
  auto& blocks = broker != nullptr ? broker->m_memory : commonMemory().blocks;
  {
    const std::lock_guard<std::mutex> lock(mutex);
    if (blocks.erase(memory) != 0) {
      std::free(memory);
      return;
    }
  }
  if (broker != nullptr) release(nullptr, memory);
}

void Broker::releaseAllMemory() noexcept {
  const std::lock_guard<std::mutex> lock(m_mutex);
  for (void* memory : m_memory) std::free(memory);
  m_memory.clear();
}

}  // namespace cmpinsp::broker
