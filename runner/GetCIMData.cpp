#include <cstddef>
#include <iterator>
#include <utility>

#include "diagsrunner/DiagsRunner.h"
#include "framework/TVORException.h"
#include "runner/AssociationWalk.h"
#include "runner/CoreLog.h"

bool DiagsRunner::GetCIMData(NZELVOR20::TCIMReference&, NZELVOR20::TCIMReference&,
                             std::string assocClass, std::string role1, std::string role2,
                             std::string, std::string, std::string, std::string,
                             std::vector<std::string>& ids, int retType,
                             NZELVOR20::TCIMValue nspKind) {
  const std::size_t known = ids.size();
  try {
    diagsrunner::logTrace("DiagsRunner::GetCIMData");
    const diagsrunner::AssociationQuery query{std::move(assocClass), std::move(role1),
                                              std::move(role2), retType == EENUMTEST,
                                              std::move(nspKind)};
    diagsrunner::AssociationWalk walk(query, m_excludedTests, m_diagPegasusNS, ids);
    diagsrunner::logTrace("DiagsRunner::GetCIMData:Looking for ", query.associationClass, " with ",
                          query.family.ToString(10));
    diagsrunner::AssociationWalk::Instances associations;
    if (!walk.collect(m_namespace, associations)) {
      return false;
    }
    if (query.isTestEnumeration) {
      filterDiagsItems(associations);
    }
    ids.reserve(ids.size() + associations.size());
    for (const auto& association : associations) {
      walk.visit(association);
    }
    if (query.associationClass == diagsrunner::kAvailableDiagnosticService) {
      m_testInstances.insert(m_testInstances.end(), std::make_move_iterator(associations.begin()),
                             std::make_move_iterator(associations.end()));
    }
  } catch (const NZELVOR20::TVORException&) {
    diagsrunner::tryLogError("DiagsRunner::GetCIMData, caught vor exception");
  } catch (...) {
    diagsrunner::tryLogError("DiagsRunner::GetCIMData, caught exception");
  }
  return ids.size() > known;
}
