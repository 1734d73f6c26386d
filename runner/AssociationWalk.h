#pragma once

#include <boost/shared_ptr.hpp>
#include <map>
#include <string>
#include <vector>

#include "framework/ICIMInstance.h"
#include "framework/ICIMNamespace.h"
#include "framework/Options.h"
#include "framework/TCIMReference.h"

namespace diagsrunner {

/// What one walk over an association class is asked to do.
struct AssociationQuery {
  std::string associationClass;
  std::string serviceRole;
  std::string elementRole;
  bool isTestEnumeration = false;
  NZELVOR20::TCIMValue family;
};

/// Turns the instances of an association class into test identifiers, one after the other.
class AssociationWalk {
 public:
  using Instances = std::vector<boost::shared_ptr<NZELVOR20::ICIMInstance>>;

  /// Identifiers go to `ids`, the namespace texts of Pegasus tests to `pegasusNamespaces`.
  /// Everything is borrowed for the life of the walk.
  AssociationWalk(const AssociationQuery& query, const std::vector<std::string>& excludedTests,
                  std::map<std::string, NZELVOR20::TCIMValue>& pegasusNamespaces,
                  std::vector<std::string>& ids);

  /// Collects the instances of the association class from `ns`, which may be empty. False, and a
  /// log line, when there is no such class.
  bool collect(const boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns, Instances& associations);

  /// Names the test behind `association`, unless it is excluded or one of its ends cannot be
  /// fetched, which is logged. Throws when a role cannot be read.
  void visit(const boost::shared_ptr<NZELVOR20::ICIMInstance>& association);

 private:
  struct Ends;

  Ends readEnds(const boost::shared_ptr<NZELVOR20::ICIMInstance>& association) const;
  void nameTest(const boost::shared_ptr<NZELVOR20::ICIMInstance>& association,
                const boost::shared_ptr<NZELVOR20::ICIMInstance>& service,
                const boost::shared_ptr<NZELVOR20::ICIMInstance>& element);
  void registerPegasusTest(const boost::shared_ptr<NZELVOR20::ICIMInstance>& association,
                           const std::string& identifier);

  const AssociationQuery& m_query;
  const NZELVOR20::TOptionsMap m_options;
  const bool m_isPegasus;  ///< the tests' namespace texts are kept
  const std::vector<std::string>& m_excludedTests;
  std::map<std::string, NZELVOR20::TCIMValue>& m_pegasusNamespaces;
  std::vector<std::string>& m_ids;
};

/// The association that ties a diagnostic service to the element it tests.
inline constexpr const char* kAvailableDiagnosticService = "CIM_AvailableDiagnosticService";

}  // namespace diagsrunner
