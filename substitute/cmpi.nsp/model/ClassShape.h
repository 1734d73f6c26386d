#pragma once

#include <string>
#include <vector>

#include "framework/TCIMValue.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp::broker {

/// What the broker wants to know of a declared class, worked out once. Immutable.
class ClassShape {
 public:
  explicit ClassShape(vorcore::ClassDeclarationPtr declaration);

  const vorcore::ClassDeclarationPtr& declaration() const noexcept { return m_declaration; }
  /// One null value of the declared type for each property.
  const std::vector<NZELVOR20::TCIMValue>& nulls() const noexcept { return m_nulls; }
  std::size_t keyCount() const noexcept { return m_keyCount; }

 private:
  vorcore::ClassDeclarationPtr m_declaration;
  std::vector<NZELVOR20::TCIMValue> m_nulls;
  std::size_t m_keyCount = 0;
};

}  // namespace cmpinsp::broker
