#pragma once

#include <boost/shared_ptr.hpp>
#include <string>
#include <unordered_map>
#include <vector>

#include "framework/ICIMNamespace.h"
#include "substitute/cmpi.nsp/Problem.h"
#include "substitute/cmpi.nsp/model/InstanceData.h"
#include "substitute/cmpi.nsp/repository/ClassTable.h"
#include "substitute/cmpi.nsp/repository/MofSyntax.h"

namespace cmpinsp {

/// The instances that MOF files declare, for classes that no provider serves. Read-only once built.
class StaticInstances {
 public:
  /// The instances of exactly this class.
  const std::vector<InstanceDataPtr>& of(const std::string& className) const;

  /// Adds the instance, unless one with its path is there already. The answer is the one that
  /// stays. Those that lack a key cannot be told apart: all of them stay.
  InstanceDataPtr add(const InstanceDataPtr& instance);

 private:
  std::unordered_map<std::string, InstanceDataPtr> m_byPath;  ///< by `PathSet::keyOf`
  std::unordered_map<std::string, std::vector<InstanceDataPtr>, NameHash, NameEqual> m_byClass;
};

/// True where the instance is in this namespace; an empty name stands for any.
bool isIn(const InstanceDataPtr& instance, const std::string& nameSpace);

/// Builds the instances of `units`, those of registration classes apart; `ns` is what their
/// references ask. Faulty instances are reported and left out; so are those that repeat the path of
/// an earlier one with other values, and without a report those with the same ones. Those of
/// another server's registration, whose classes nobody declares, are passed over: a line of `notes`
/// for each of these classes.
StaticInstances buildStaticInstances(const std::vector<CompilationUnit>& units,
                                     const ClassRepository& classes,
                                     const boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns,
                                     std::vector<substitute::Problem>& problems,
                                     std::vector<substitute::Problem>& notes);

}  // namespace cmpinsp
