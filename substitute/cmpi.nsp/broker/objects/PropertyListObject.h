#pragma once

#include <string>
#include <vector>

#include "substitute/cmpi.nsp/broker/lifetime/Objects.h"

namespace cmpinsp::broker {

/// The names of a NULL-terminated array; null gives none.
std::vector<std::string> namesOf(const char* const* names);

class PropertyListBody final : public Body {
 public:
  using Object = CMPIPropertyList;
  static constexpr Kind kKind = Kind::kPropertyList;

  /// Null `names` list every property.
  explicit PropertyListBody(const char* const* names)
      : m_names(namesOf(names)), m_isAll(names == nullptr) {
    point();
  }
  PropertyListBody(const PropertyListBody& other)
      : Body(), m_names(other.m_names), m_isAll(other.m_isAll) {
    point();
  }

  bool lists(const char* name) const;
  /// The names, ended by a null; null where all are listed.
  const char** pointers() noexcept { return m_isAll ? nullptr : m_pointers.data(); }

 private:
  void point();

  std::vector<std::string> m_names;
  std::vector<const char*> m_pointers;
  bool m_isAll;
};

}  // namespace cmpinsp::broker
