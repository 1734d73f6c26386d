#include "substitute/cmpi.nsp/broker/lifetime/LibraryBroker.h"

#include <algorithm>
#include <mutex>
#include <utility>

#include "substitute/cmpi.nsp/broker/lifetime/Broker.h"
#include "substitute/cmpi.nsp/broker/lifetime/Failure.h"
#include "substitute/cmpi.nsp/broker/lifetime/Scope.h"

namespace cmpinsp::broker {
namespace {

/// Every library's broker of this process.
struct LibraryList {
  std::mutex mutex;
  std::vector<LibraryBroker*> libraries;
};

LibraryList& libraryList() {
  static auto* const list = new LibraryList;
  return *list;
}

}  // namespace

LibraryBroker::LibraryBroker(std::string libraryPath, const IUpcalls& upcalls)
    : m_handle{this, const_cast<CMPIBrokerFT*>(&kBrokerTable),
               const_cast<CMPIBrokerEncFT*>(&kBrokerEncTable),
               const_cast<CMPIBrokerExtFT*>(&kBrokerExtTable),
               const_cast<CMPIBrokerMemFT*>(&kBrokerMemTable)},
      m_libraryPath(std::move(libraryPath)),
      m_upcalls(&upcalls) {}

LibraryBroker& LibraryBroker::join(const std::string& libraryPath, const IUpcalls& upcalls,
                                   Broker& member) {
  LibraryList& list = libraryList();
  const std::lock_guard<std::mutex> lock(list.mutex);
  const auto found =
      std::find_if(list.libraries.begin(), list.libraries.end(), [&](const LibraryBroker* library) {
        return library->m_libraryPath == libraryPath && library->m_upcalls == &upcalls &&
               !library->m_members.empty();
      });
  if (found != list.libraries.end()) {
    (*found)->add(member);
    return **found;
  }
  list.libraries.reserve(list.libraries.size() + 1);
  auto* const library = new LibraryBroker(libraryPath, upcalls);
  list.libraries.push_back(library);
  library->add(member);
  return *library;
}

void LibraryBroker::add(Broker& member) {
  // So that none of them fails to leave.
  m_left.reserve(m_left.size() + m_members.size() + 1);
  m_members.push_back(&member);
}

void LibraryBroker::leave(const Broker& member) noexcept {
  {
    const std::lock_guard<std::mutex> lock(libraryList().mutex);
    const auto left = std::find(m_members.begin(), m_members.end(), &member);
    if (left == m_members.end()) return;
    m_left.push_back(*left);
    m_members.erase(left);
    if (!m_members.empty() || !m_usedElsewhere.empty()) return;
  }
  m_memory.releaseAll();
}

void LibraryBroker::setUsedElsewhere(const void* mi, bool isUsed) {
  const std::lock_guard<std::mutex> lock(libraryList().mutex);
  if (isUsed) {
    m_usedElsewhere.insert(mi);
  } else {
    m_usedElsewhere.erase(mi);
  }
}

/// Some wrappers keep a copy of the handle and pass that, so its address says nothing; what it
/// holds does, whichever copy it is. That is compared alone, never followed: it may be a
/// stranger's.
Broker& LibraryBroker::brokerOf(const CMPIBroker* handle) {
  const void* const owner = handle == nullptr ? nullptr : handle->hdl;
  Broker* const current = currentBroker();
  if (current != nullptr && owner == &current->library()) return *current;
  LibraryList& list = libraryList();
  const std::lock_guard<std::mutex> lock(list.mutex);
  for (LibraryBroker* library : list.libraries) {
    if (library != owner) continue;
    return library->m_members.empty() ? *library->m_left.back() : *library->m_members.front();
  }
  throw Failure(CMPI_RC_ERR_INVALID_HANDLE, "this is not the broker's own handle");
}

}  // namespace cmpinsp::broker
