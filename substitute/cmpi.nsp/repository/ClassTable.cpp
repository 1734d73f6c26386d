#include "substitute/cmpi.nsp/repository/ClassTable.h"

#include <algorithm>

namespace cmpinsp {

namespace {

void sortNames(std::vector<std::string>& names) {
  std::sort(names.begin(), names.end(), vorcore::lessName);
}

}  // namespace

/// FNV-1a over the letters without case; folding with 0x20 lets some signs collide, which is all
/// right for a hash.
std::size_t NameHash::operator()(const std::string& name) const noexcept {
  unsigned long long hash = 0xCBF29CE484222325ULL;
  for (const char letter : name) {
    hash = (hash ^ (static_cast<unsigned char>(letter) | 0x20U)) * 0x100000001B3ULL;
  }
  return static_cast<std::size_t>(hash ^ (hash >> 32U));
}

bool ClassTable::add(const vorcore::ClassDeclarationPtr& declaration) {
  const auto inserted = m_entries.emplace(declaration->name, Entry());
  if (!inserted.second) return false;
  Entry& entry = inserted.first->second;
  entry.declaration = declaration;
  const auto superclass = m_entries.find(declaration->superclass);
  if (superclass != m_entries.end()) {
    entry.superclass = &superclass->second;
    superclass->second.subclasses.push_back(&entry);
  }
  return true;
}

vorcore::ClassDeclarationPtr ClassTable::find(const std::string& className) const {
  const auto found = m_entries.find(className);
  return found == m_entries.end() ? vorcore::ClassDeclarationPtr() : found->second.declaration;
}

bool ClassTable::isA(const std::string& className, const std::string& ancestor) const {
  if (vorcore::equalNames(className, ancestor)) return true;
  const auto found = m_entries.find(className);
  if (found == m_entries.end()) return false;
  for (const Entry* entry = found->second.superclass; entry != nullptr; entry = entry->superclass) {
    if (vorcore::equalNames(entry->declaration->name, ancestor)) return true;
  }
  return false;
}

void ClassTable::collect(const Entry& entry, bool deep, std::vector<std::string>& names) {
  std::vector<const Entry*> open(entry.subclasses);
  while (!open.empty()) {
    const Entry* next = open.back();
    open.pop_back();
    names.push_back(next->declaration->name);
    if (deep) open.insert(open.end(), next->subclasses.begin(), next->subclasses.end());
  }
}

std::vector<std::string> ClassTable::subclasses(const std::string& className, bool deep) const {
  std::vector<std::string> names;
  const auto found = m_entries.find(className);
  if (found != m_entries.end()) collect(found->second, deep, names);
  sortNames(names);
  return names;
}

std::vector<std::string> ClassTable::rootClasses() const {
  std::vector<std::string> names;
  for (const auto& entry : m_entries) {
    if (entry.second.superclass == nullptr) names.push_back(entry.second.declaration->name);
  }
  sortNames(names);
  return names;
}

}  // namespace cmpinsp
