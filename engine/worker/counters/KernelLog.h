#pragma once

#include <string>
#include <vector>

namespace engine::counters {

/// What the kernel says from now on, in its log (/dev/kmsg). Its reader needs a right to it that
/// few users have. What programs write into the log is left out.
class KernelLog {
 public:
  /// Opens it at its end. Nothing but the kernel's own device, or a plain file that stands for it,
  /// is opened for reading: elsewhere a terminal may hide behind the name.
  explicit KernelLog(const std::string& path);
  KernelLog(const KernelLog&) = delete;
  KernelLog& operator=(const KernelLog&) = delete;
  ~KernelLog();

  bool isThere() const { return m_file >= 0; }

  /// The messages that came since, each without what stands in front of it; none where the file was
  /// closed by somebody else meanwhile. To be called once.
  std::vector<std::string> messages() const;

 private:
  bool isStillOurs() const;
  std::string readAll() const;

  int m_file = -1;
  unsigned long long m_device = 0;
  unsigned long long m_node = 0;
};

}  // namespace engine::counters
