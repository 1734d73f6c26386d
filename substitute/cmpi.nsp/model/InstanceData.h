#pragma once

#include <boost/shared_ptr.hpp>
#include <string>
#include <utility>
#include <vector>

#include "framework/TCIMValue.h"
#include "substitute/cmpi.nsp/model/ObjectPath.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

/// An instance as plain data: what a provider handed out, independent of the call that made it.
struct InstanceData {
  ObjectPath path;
  vorcore::ClassDeclarationPtr declaration;  ///< empty for a class that nobody declared
  /// One value per declared property, by its position in the declaration.
  std::vector<NZELVOR20::TCIMValue> values;
  /// Properties that the declaration does not have; all of them where there is no declaration.
  std::vector<std::pair<std::string, NZELVOR20::TCIMValue>> extras;

  const NZELVOR20::TCIMValue* find(const std::string& name) const;
};

using InstanceDataPtr = boost::shared_ptr<InstanceData>;

}  // namespace cmpinsp
