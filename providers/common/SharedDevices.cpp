#include "providers/common/SharedDevices.h"

#include <utility>

namespace providers {

SharedDevices::SharedDevices(Reader read, Clock clock, double freshSeconds)
    : m_read(std::move(read)), m_clock(std::move(clock)), m_freshSeconds(freshSeconds) {}

std::vector<Device> SharedDevices::get() const {
  const std::lock_guard<std::mutex> lock(m_mutex);
  const double now = m_clock();
  if (!m_readAt || now - *m_readAt >= m_freshSeconds) {
    m_devices = m_read();
    m_readAt = now;
  }
  return m_devices;
}

}  // namespace providers
