#include "substitute/vorcore/values/ClassDeclaration.h"

namespace vorcore {

/// FNV-1a over the letters without case.
std::size_t NameTable::hashOf(const std::string& name) noexcept {
  std::uint64_t hash = 0xcbf29ce484222325U;
  for (const char letter : name) {
    // Folds the upper-case letters onto the lower-case ones, and a few signs onto others.
    hash = (hash ^ (static_cast<unsigned char>(letter) | 0x20U)) * 0x100000001b3U;
  }
  return static_cast<std::size_t>(hash ^ (hash >> 32U));
}

bool NameTable::isSame(const std::string& left, const std::string& right) noexcept {
  return equalNames(left, right);
}

void NameTable::put(std::size_t hash, std::size_t position) noexcept {
  const std::size_t mask = m_slots.size() - 1;
  std::size_t slot = hash & mask;
  while (m_slots[slot] != 0) slot = (slot + 1) & mask;
  m_slots[slot] = static_cast<std::uint32_t>(position + 1);
}

std::size_t ClassDeclaration::findProperty(const std::string& propertyName) const {
  const std::size_t position = properties.find(propertyName);
  return position < properties.size() ? position : kNoProperty;
}

const MethodDeclaration* ClassDeclaration::findMethod(const std::string& methodName) const {
  const std::size_t position = methods.find(methodName);
  return position < methods.size() ? &methods[position] : nullptr;
}

const NZELVOR20::TCIMValue* findQualifier(const std::vector<Qualifier>& qualifiers,
                                          const std::string& name) {
  for (const Qualifier& qualifier : qualifiers) {
    if (equalNames(qualifier.name, name)) return &qualifier.value;
  }
  return nullptr;
}

}  // namespace vorcore
