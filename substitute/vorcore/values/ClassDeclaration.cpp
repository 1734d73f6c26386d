#include "substitute/vorcore/values/ClassDeclaration.h"

#include <limits>

namespace vorcore {
namespace {

/// Below this many properties a scan is as fast as the index.
constexpr std::size_t kFewProperties = 4;

/// FNV-1a over the letters without case.
std::size_t hashOf(const std::string& name) noexcept {
  std::uint64_t hash = 0xcbf29ce484222325U;
  for (const char letter : name) {
    // Folds the upper-case letters onto the lower-case ones, and a few signs onto others.
    hash = (hash ^ (static_cast<unsigned char>(letter) | 0x20U)) * 0x100000001b3U;
  }
  return static_cast<std::size_t>(hash ^ (hash >> 32U));
}

}  // namespace

void PropertyIndex::build(const std::vector<PropertyDeclaration>& properties) {
  m_slots.clear();
  m_first = nullptr;
  m_count = properties.size();
  if (m_count <= kFewProperties || m_count >= std::numeric_limits<std::uint16_t>::max()) return;
  std::size_t size = 8;
  while (size < 2 * m_count) size *= 2;
  m_slots.assign(size, 0);
  for (std::size_t position = 0; position < m_count; ++position) {
    std::size_t slot = hashOf(properties[position].name) & (size - 1);
    while (m_slots[slot] != 0) slot = (slot + 1) & (size - 1);
    m_slots[slot] = static_cast<std::uint16_t>(position + 1);
  }
  m_first = properties.data();
}

bool PropertyIndex::covers(const std::vector<PropertyDeclaration>& properties) const noexcept {
  return m_first != nullptr && m_first == properties.data() && m_count == properties.size();
}

std::size_t PropertyIndex::find(const std::vector<PropertyDeclaration>& properties,
                                const std::string& name) const noexcept {
  const std::size_t mask = m_slots.size() - 1;
  for (std::size_t slot = hashOf(name) & mask; m_slots[slot] != 0; slot = (slot + 1) & mask) {
    const std::size_t position = m_slots[slot] - 1U;
    if (equalNames(properties[position].name, name)) return position;
  }
  return properties.size();
}

std::size_t ClassDeclaration::findProperty(const std::string& propertyName) const {
  if (propertyIndex.covers(properties)) {
    const std::size_t position = propertyIndex.find(properties, propertyName);
    return position < properties.size() ? position : kNoProperty;
  }
  for (std::size_t position = 0; position < properties.size(); ++position) {
    if (equalNames(properties[position].name, propertyName)) return position;
  }
  return kNoProperty;
}

const MethodDeclaration* ClassDeclaration::findMethod(const std::string& methodName) const {
  for (const MethodDeclaration& method : methods) {
    if (equalNames(method.name, methodName)) return &method;
  }
  return nullptr;
}

const NZELVOR20::TCIMValue* findQualifier(const std::vector<Qualifier>& qualifiers,
                                          const std::string& name) {
  for (const Qualifier& qualifier : qualifiers) {
    if (equalNames(qualifier.name, name)) return &qualifier.value;
  }
  return nullptr;
}

}  // namespace vorcore
