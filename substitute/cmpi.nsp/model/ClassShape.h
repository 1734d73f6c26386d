#pragma once

#include <string>
#include <vector>

#include "framework/TCIMValue.h"
#include "substitute/cmpi.nsp/model/ObjectPath.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp::broker {

/// What the broker wants to know of a declared class, worked out once. Immutable.
class ClassShape {
 public:
  explicit ClassShape(vorcore::ClassDeclarationPtr declaration);

  const vorcore::ClassDeclarationPtr& declaration() const noexcept { return m_declaration; }
  /// One null value of the declared type for each property.
  const std::vector<NZELVOR20::TCIMValue>& nulls() const noexcept { return m_nulls; }
  std::size_t keyCount() const noexcept { return m_keys.size(); }

  /// Whether the keys of `path` are spelt as the class declares them.
  bool spellsKeysOf(const ObjectPath& path) const;
  /// Spells them so; what it does not declare stays as it is.
  void spellKeysOf(ObjectPath& path) const;

 private:
  /// The key as it is declared; null where none of that name is.
  const std::string* declaredKey(const std::string& name) const;

  vorcore::ClassDeclarationPtr m_declaration;
  std::vector<NZELVOR20::TCIMValue> m_nulls;
  std::vector<std::size_t> m_keys;  ///< positions
};

}  // namespace cmpinsp::broker
