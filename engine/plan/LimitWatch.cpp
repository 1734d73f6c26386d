#include "engine/plan/LimitWatch.h"

#include <utility>

namespace engine {
namespace {

constexpr std::size_t kMostComplaints = 100;

}  // namespace

LimitWatch::LimitWatch(const std::vector<Limit>* limits) : m_limits(limits) {
  if (limits != nullptr) m_unmet = *limits;
}

Measurement LimitWatch::take(Measurement measurement) {
  static const std::vector<Limit> kNone;
  if (!m_unmet.empty()) m_unmet = unmetLimits(m_unmet, {measurement.name});
  CheckedMeasurement result =
      checked(std::move(measurement), m_limits == nullptr ? kNone : *m_limits);
  if (isOutside(result.compliance) && m_broken++ < kMostComplaints) {
    m_complaints.push_back(complaintAbout(result));
  }
  return std::move(result.measurement);
}

std::vector<std::string> LimitWatch::complaints() const {
  std::vector<std::string> all = m_complaints;
  if (m_broken == kMostComplaints + 1) {
    all.emplace_back("1 more measurement is outside of its limits");
  } else if (m_broken > kMostComplaints) {
    all.push_back(std::to_string(m_broken - kMostComplaints) +
                  " more measurements are outside of their limits");
  }
  return all;
}

}  // namespace engine
