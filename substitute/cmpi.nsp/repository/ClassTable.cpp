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

ClassTable::Entry& ClassTable::entryOf(const std::string& name) {
  const auto inserted = m_entries.try_emplace(name);
  if (inserted.second) inserted.first->second.name = &inserted.first->first;
  return inserted.first->second;
}

ClassTable::Entry* ClassTable::insert(const std::string& name, const std::string& superclass) {
  const auto inserted = m_entries.try_emplace(name);
  if (!inserted.second) return nullptr;
  Entry& entry = inserted.first->second;
  entry.name = &inserted.first->first;
  entry.isDeclared = true;
  ++m_size;
  if (superclass.empty()) return &entry;
  Entry& above = entryOf(superclass);
  entry.superclass = &above;
  above.subclasses.push_back(&entry);
  return &entry;
}

bool ClassTable::add(const vorcore::ClassDeclarationPtr& declaration) {
  Entry* const entry = insert(declaration->name, declaration->superclass);
  if (entry == nullptr) return false;
  entry->declaration = declaration;
  entry->isLoaded = true;
  return true;
}

bool ClassTable::addLater(const std::string& name, const std::string& superclass,
                          std::uint32_t place, bool open) {
  const bool isCircle = vorcore::equalNames(name, superclass);
  const bool lacksSuperclass = !superclass.empty() && !open && !knows(superclass);
  Entry* const entry = isCircle || lacksSuperclass ? nullptr : insert(name, superclass);
  if (entry == nullptr) return false;
  entry->place = place;
  return true;
}

bool ClassTable::knows(const std::string& className) const {
  const auto found = m_entries.find(className);
  return found != m_entries.end() && found->second.isDeclared;
}

std::string ClassTable::superclassOf(const std::string& className) const {
  const auto found = m_entries.find(className);
  const bool isBelow = found != m_entries.end() && found->second.superclass != nullptr;
  return isBelow ? *found->second.superclass->name : std::string();
}

void ClassTable::load(const Entry& entry) const {
  const std::lock_guard<std::mutex> lock(m_loading);
  if (entry.isLoaded.load(std::memory_order_relaxed)) return;
  entry.declaration = m_source->load(*entry.name, entry.place);
  entry.isLoaded.store(true, std::memory_order_release);
}

vorcore::ClassDeclarationPtr ClassTable::find(const std::string& className) const {
  const auto found = m_entries.find(className);
  if (found == m_entries.end()) return vorcore::ClassDeclarationPtr();
  const Entry& entry = found->second;
  if (!entry.isDeclared) return vorcore::ClassDeclarationPtr();
  if (!entry.isLoaded.load(std::memory_order_acquire)) load(entry);
  return entry.declaration;
}

bool ClassTable::isA(const std::string& className, const std::string& ancestor) const {
  if (vorcore::equalNames(className, ancestor)) return true;
  const auto found = m_entries.find(className);
  if (found == m_entries.end()) return false;
  for (const Entry* entry = found->second.superclass; entry != nullptr; entry = entry->superclass) {
    if (vorcore::equalNames(*entry->name, ancestor)) return true;
  }
  return false;
}

void ClassTable::collect(const Entry& entry, bool deep, std::vector<std::string>& names) {
  std::vector<const Entry*> open(entry.subclasses);
  while (!open.empty()) {
    const Entry* next = open.back();
    open.pop_back();
    names.push_back(*next->name);
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
    const Entry* above = entry.second.superclass;
    const bool isTop = above == nullptr || !above->isDeclared;
    if (entry.second.isDeclared && isTop) names.push_back(entry.first);
  }
  sortNames(names);
  return names;
}

}  // namespace cmpinsp
