#include "substitute/cmpi.nsp/broker/calls/InterfaceUsers.h"

#include <cstddef>
#include <mutex>
#include <unordered_map>

namespace cmpinsp::broker {
namespace {

struct UserCounts {
  std::mutex mutex;
  std::unordered_map<const void*, std::size_t> byInterface;
};

/// Never destroyed: a host may clean its providers up as late as in its own static destructors.
UserCounts& userCounts() {
  static auto* const counts = new UserCounts;
  return *counts;
}

}  // namespace

void addInterfaceUser(const void* mi) {
  UserCounts& counts = userCounts();
  const std::lock_guard<std::mutex> lock(counts.mutex);
  ++counts.byInterface[mi];
}

bool removeInterfaceUser(const void* mi) noexcept {
  UserCounts& counts = userCounts();
  const std::lock_guard<std::mutex> lock(counts.mutex);
  const auto found = counts.byInterface.find(mi);
  if (found == counts.byInterface.end()) return true;
  if (--found->second > 0) return false;
  counts.byInterface.erase(found);
  return true;
}

}  // namespace cmpinsp::broker
