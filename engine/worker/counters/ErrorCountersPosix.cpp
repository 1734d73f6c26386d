#include <utility>

#include "engine/worker/counters/ErrorCounters.h"
#include "engine/worker/counters/KernelLog.h"
#include "engine/worker/counters/KernelMessages.h"

namespace engine::counters {
namespace {

/// More say no more.
constexpr std::size_t kMostParts = 64;

}  // namespace

struct ErrorCounters::Former {
  explicit Former(const std::string& path)
      : root(path), log(path + "/dev/kmsg"), reading(readAll(root)) {}

  SystemFolder root;
  KernelLog log;
  Reading reading;
};

ErrorCounters::ErrorCounters(const std::string& root)
    : m_former(std::make_unique<const Former>(root)) {}

ErrorCounters::~ErrorCounters() = default;

std::vector<Finding> ErrorCounters::findings() const {
  std::vector<Finding> all = findingsIn(m_former->log.messages());
  for (const RisenPart& risen : risesBetween(m_former->reading, readAll(m_former->root))) {
    if (all.size() == kMostParts) break;
    all.push_back(findingOf(m_former->root, risen, m_former->log.isThere()));
  }
  return all;
}

}  // namespace engine::counters
