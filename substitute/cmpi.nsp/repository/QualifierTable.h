#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "framework/TCIMQualifierDecl.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

/// The declared qualifiers. It starts with those of the CIM schema, so that classes can be read
/// without the file that declares them.
class QualifierTable {
 public:
  QualifierTable();

  /// Adds a declaration, or replaces the one of the same name.
  void declare(NZELVOR20::TCIMQualifierDecl declaration);

  /// The declaration (name without case), or null.
  const NZELVOR20::TCIMQualifierDecl* find(const std::string& name) const;

  /// Every declaration, in name order.
  std::vector<const NZELVOR20::TCIMQualifierDecl*> all() const;

 private:
  std::unordered_map<std::string, NZELVOR20::TCIMQualifierDecl> m_byKey;
};

}  // namespace cmpinsp
