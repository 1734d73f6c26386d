#include <numeric>
#include <utility>

#include "diagsrunner/DiagsRunner.h"
#include "runner/AssociationWalk.h"
#include "runner/CoreLog.h"

std::string DiagsRunner::EnumerateDiagTests(std::string) {
  diagsrunner::logTrace("DiagsRunner::EnumerateDiagTests");
  if (!m_testList.empty()) {
    return m_testList;
  }
  const NZELVOR20::TCIMValue family("cmpi");
  NZELVOR20::TCIMReference ref1({}, {});
  NZELVOR20::TCIMReference ref2({}, {});
  std::vector<std::string> ids;
  if (GetCIMData(ref1, ref2, diagsrunner::kAvailableDiagnosticService, "ServiceProvided",
                 "UserOfService", "", "", "", "", ids, EENUMTEST, family)) {
    m_testList.reserve(std::accumulate(
        ids.begin(), ids.end(), std::size_t{0},
        [](std::size_t size, const std::string& id) { return size + id.size() + 1; }));
    for (std::string& id : ids) {
      if (!id.empty()) {
        const auto listed = m_diagNS.try_emplace(std::move(id), family).first;
        m_testList.append(listed->first).append("|");
      }
    }
  }
  if (m_testList.empty()) {
    m_testList = "No matching diagnostic test or device found.\n";
  }
  return m_testList;
}
