#pragma once

#include <cstddef>
#include <string>

#include "framework/Export.h"
#include "framework/ICIMProperty.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace vorcore {

/// A declared property together with one value for it.
class VORCORE_API InmemProperty final : public NZELVOR20::ICIMProperty {
 public:
  /// `position` is the property's position in `declaration`.
  InmemProperty(ClassDeclarationPtr declaration, std::size_t position, NZELVOR20::TCIMValue value);

  std::string GetName() const override { return declared().name; }
  NZELVOR20::TCIMValue GetValue(NZELVOR20::TOptionsMap) override { return m_value; }
  std::string ToString() override { return renderValue(m_value, declared().qualifiers); }
  NZELVOR20::ECIMType GetType() const override { return declared().type; }
  bool IsArray() const override { return declared().isArray; }
  /// "Key" is answered from the declaration, whether or not it is among the qualifiers.
  NZELVOR20::TCIMValue GetQualifier(std::string name, NZELVOR20::TOptionsMap options) override;

 private:
  const PropertyDeclaration& declared() const { return m_declaration->properties[m_position]; }

  ClassDeclarationPtr m_declaration;
  std::size_t m_position;
  NZELVOR20::TCIMValue m_value;
};

}  // namespace vorcore
