#include "providers/disk/reading/SingleRead.h"

namespace providers::disk {

SingleRead::Result SingleRead::read(const Extent& extent) const {
  constexpr double kGlance = 0.25;  // how often it is looked whether the read is stuck
  const double begin = m_clock();
  m_source.start(0, extent);
  std::vector<ReadAnswer> ended;
  while (ended.empty()) {
    m_source.collect(ended, kGlance);
    if (!ended.empty()) break;
    if (m_clock() - begin >= m_stuckSeconds) throw StuckRead{extent};
    if (m_leaves()) throw LeftRead{extent};
  }
  const ReadAnswer& answer = ended.front();
  Result result{answer.bytes, answer.error, m_clock() - begin};
  if (answer.error == ReadError::None && answer.bytes < extent.bytes)
    result.error = ReadError::Short;
  return result;
}

}  // namespace providers::disk
