#include <sched.h>
#include <sys/mman.h>

#include <csignal>
#include <cstddef>
#include <vector>

#include "providers/processor/topology/CpuAffinity.h"

namespace providers {
namespace {

/// The stack on which signals of this thread are handled.
class SignalStack {
 public:
  SignalStack() {
    stack_t present = {};
    const bool hasOne = sigaltstack(nullptr, &present) != 0 ||
                        (static_cast<unsigned>(present.ss_flags) & SS_DISABLE) == 0;
    if (hasOne) return;
    m_room = mmap(nullptr, kSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_STACK,
                  -1, 0);
    stack_t own = {};
    own.ss_sp = m_room;
    own.ss_size = kSize;
    if (m_room != MAP_FAILED) sigaltstack(&own, nullptr);
  }
  SignalStack(const SignalStack&) = delete;
  SignalStack& operator=(const SignalStack&) = delete;
  ~SignalStack() {
    if (m_room == MAP_FAILED) return;
    stack_t none = {};
    none.ss_flags = SS_DISABLE;
    if (sigaltstack(&none, nullptr) == 0) munmap(m_room, kSize);
  }

 private:
  static constexpr std::size_t kSize = 256 * 1024;
  void* m_room = MAP_FAILED;
};

}  // namespace

bool bindToCpu(unsigned cpu) {
  thread_local const SignalStack stack;
  constexpr std::size_t kBits = 8 * sizeof(unsigned long);
  std::vector<unsigned long> mask(cpu / kBits + 1);
  auto* set = reinterpret_cast<cpu_set_t*>(mask.data());
  const std::size_t bytes = mask.size() * sizeof(unsigned long);
  CPU_SET_S(cpu, bytes, set);
  return sched_setaffinity(0, bytes, set) == 0;
}

}  // namespace providers
