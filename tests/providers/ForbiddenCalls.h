#pragma once

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

#include <cstddef>
#include <functional>
#include <thread>
#include <vector>

namespace providers {

/// Lets a thread of its own do the work, whose calls of these kinds fail with the error, as in a
/// sandbox. False, and nothing is done, where the system does not allow that.
inline bool runWithout(const std::vector<unsigned>& calls, unsigned error,
                       const std::function<void()>& work) {
  std::vector<sock_filter> rules{
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<unsigned>(offsetof(seccomp_data, nr)))};
  for (const unsigned call : calls) {
    rules.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 1));
    rules.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | error));
  }
  rules.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
  bool forbidden = false;
  std::thread([&] {
    const sock_fprog program{static_cast<unsigned short>(rules.size()), rules.data()};
    forbidden = prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
                prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
    if (forbidden) work();
  }).join();
  return forbidden;
}

}  // namespace providers
