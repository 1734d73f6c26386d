#pragma once

#include <string>

#include "framework/ICIMProperty.h"
#include "substitute/cmpi.nsp/model/InstanceData.h"

namespace cmpinsp {

/// A property of an instance; shares the instance's data and is one allocation.
class CmpiProperty final : public NZELVOR20::ICIMProperty {
 public:
  /// `position` counts the declared values first, then the undeclared ones.
  CmpiProperty(InstanceDataPtr data, std::size_t position) noexcept
      : m_data(std::move(data)), m_position(position) {}

  /// Makes it the property at that position; for whoever holds the only handle.
  void moveTo(std::size_t position) noexcept { m_position = position; }

  std::string GetName() const override;
  NZELVOR20::TCIMValue GetValue(NZELVOR20::TOptionsMap options) override;
  std::string ToString() override;
  NZELVOR20::ECIMType GetType() const override;
  bool IsArray() const override;
  NZELVOR20::TCIMValue GetQualifier(std::string name, NZELVOR20::TOptionsMap options) override;

 private:
  const vorcore::PropertyDeclaration* declaration() const noexcept;
  const NZELVOR20::TCIMValue& value() const noexcept;

  InstanceDataPtr m_data;
  std::size_t m_position;
};

/// A property that a class declares; its value is the default.
class CmpiPropertyDeclaration final : public NZELVOR20::ICIMProperty {
 public:
  CmpiPropertyDeclaration(vorcore::ClassDeclarationPtr owner, std::size_t position) noexcept
      : m_class(std::move(owner)), m_position(position) {}

  std::string GetName() const override { return declaration().name; }
  NZELVOR20::TCIMValue GetValue(NZELVOR20::TOptionsMap options) override;
  std::string ToString() override;
  NZELVOR20::ECIMType GetType() const override { return declaration().type; }
  bool IsArray() const override { return declaration().isArray; }
  NZELVOR20::TCIMValue GetQualifier(std::string name, NZELVOR20::TOptionsMap options) override;

 private:
  const vorcore::PropertyDeclaration& declaration() const noexcept {
    return m_class->properties[m_position];
  }

  vorcore::ClassDeclarationPtr m_class;
  std::size_t m_position;
};

}  // namespace cmpinsp
