#include <utility>

#include "providers/disk/finding/MachineDisks.h"

namespace providers::disk {

FreshDisks::FreshDisks(FindDisks find, std::function<double()> clock, double freshSeconds)
    : m_find(std::move(find)), m_clock(std::move(clock)), m_freshSeconds(freshSeconds) {}

std::vector<Disk> FreshDisks::get() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  const double now = m_clock();
  if (!m_foundAt || now - *m_foundAt > m_freshSeconds) {
    m_disks = m_find();
    m_foundAt = now;
  }
  return m_disks;
}

}  // namespace providers::disk
