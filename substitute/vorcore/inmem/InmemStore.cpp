#include "substitute/vorcore/inmem/InmemStore.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <functional>
#include <mutex>
#include <utility>

#include "framework/TVORException.h"
#include "substitute/vorcore/inmem/InmemClass.h"

namespace vorcore {

using namespace NZELVOR20;

namespace {

/// Each value has its length in front, so that no two lists of values give the same key.
void appendKeyValue(std::string& key, const TCIMValue& value) {
  key += ',';
  if (value.IsNull()) return;
  const std::string text = value.ToString(10);
  key += std::to_string(text.size());
  key += ':';
  key += text;
}

const TCIMValue* findKey(const std::map<std::string, TCIMValue>& keys, const std::string& name) {
  const auto exact = keys.find(name);
  if (exact != keys.end()) return &exact->second;
  const auto found = std::find_if(keys.begin(), keys.end(),
                                  [&](const auto& key) { return equalNames(key.first, name); });
  return found != keys.end() ? &found->second : nullptr;
}

}  // namespace

InmemStore::ClassEntry* InmemStore::findEntry(const std::string& name) const {
  const auto found = m_classes.find(nameKey(name));
  return found != m_classes.end() ? found->second.get() : nullptr;
}

void InmemStore::addClass(const ClassPtr& added) {
  const ClassDeclarationPtr declaration = added->GetDeclaration();
  const std::unique_lock<std::shared_mutex> lock(m_mutex);
  if (findEntry(declaration->name) != nullptr) {
    throw TVORException(TVORStatusCode(eVORAlreadyExists, "class " + declaration->name));
  }
  std::vector<ClassEntry*>* siblings = &m_roots;
  if (!declaration->superclass.empty()) {
    ClassEntry* const superclass = findEntry(declaration->superclass);
    if (superclass == nullptr) {
      throw TVORException(
          TVORStatusCode(eVORInvalidClass, "superclass " + declaration->superclass));
    }
    siblings = &superclass->subclasses;
  }
  auto entry = std::make_unique<ClassEntry>();
  entry->theClass = added;
  siblings->push_back(entry.get());
  m_classes.emplace(nameKey(declaration->name), std::move(entry));
}

InmemStore::ClassPtr InmemStore::findClass(const std::string& name) const {
  const std::shared_lock<std::shared_mutex> lock(m_mutex);
  const ClassEntry* const entry = findEntry(name);
  return entry != nullptr ? entry->theClass : ClassPtr();
}

std::vector<InmemStore::ClassPtr> InmemStore::rootClasses() const {
  const std::shared_lock<std::shared_mutex> lock(m_mutex);
  std::vector<ClassPtr> classes;
  for (const ClassEntry* entry : m_roots) classes.push_back(entry->theClass);
  return classes;
}

void InmemStore::collect(const ClassEntry& entry, std::vector<const ClassEntry*>& found) {
  for (const ClassEntry* subclass : entry.subclasses) {
    found.push_back(subclass);
    collect(*subclass, found);
  }
}

std::vector<InmemStore::ClassPtr> InmemStore::subclasses(const std::string& name, bool deep) const {
  const std::shared_lock<std::shared_mutex> lock(m_mutex);
  std::vector<ClassPtr> classes;
  const ClassEntry* const entry = findEntry(name);
  if (entry == nullptr) return classes;
  std::vector<const ClassEntry*> found(entry->subclasses.begin(), entry->subclasses.end());
  if (deep) {
    found.clear();
    collect(*entry, found);
  }
  for (const ClassEntry* subclass : found) classes.push_back(subclass->theClass);
  return classes;
}

std::string InmemStore::keyOf(const TInmemInstance& instance) {
  const ClassDeclaration& declaration = *instance.m_declaration;
  std::string key = nameKey(declaration.name);
  for (std::size_t position = 0; position < declaration.properties.size(); ++position) {
    if (declaration.properties[position].isKey)
      appendKeyValue(key, instance.m_values.get()[position]);
  }
  return key;
}

/// To be called with the lock held.
InmemStore::Locations::const_iterator InmemStore::locate(const std::string& key) const {
  const auto range = m_locations.equal_range(std::hash<std::string>()(key));
  const auto found = std::find_if(range.first, range.second, [&](const auto& each) {
    return keyOf(*each.second.instance) == key;
  });
  return found != range.second ? found : m_locations.end();
}

void InmemStore::put(const TInmemInstance& instance) {
  const std::string key = keyOf(instance);
  const InstancePtr stored = boost::make_shared<TInmemInstance>(instance);
  const std::unique_lock<std::shared_mutex> lock(m_mutex);
  const auto known = locate(key);
  if (known == m_locations.end()) {
    ClassEntry* const entry = findEntry(instance.m_declaration->name);
    const std::uint64_t number = m_nextNumber++;
    entry->instances.add(number, stored);
    m_locations.emplace(std::hash<std::string>()(key), Location{entry, number, stored});
  } else {
    known->second.entry->instances.replace(known->second.number, stored);
    auto node = m_locations.extract(known);
    node.mapped().instance = stored;
    m_locations.insert(std::move(node));
  }
}

/// The key under which `put` stores, or the empty text where the class or a key value does not fit.
std::string InmemStore::keyOf(const TCIMReference& reference) const {
  const ClassPtr found = findClass(reference.GetClassName());
  if (!found) return std::string();
  const ClassDeclarationPtr declaration = found->GetDeclaration();
  const std::map<std::string, TCIMValue> keys = reference.GetKeys();
  std::string key = nameKey(declaration->name);
  for (const PropertyDeclaration& property : declaration->properties) {
    if (!property.isKey) continue;
    const TCIMValue* const value = findKey(keys, property.name);
    try {
      appendKeyValue(
          key, convertTo(value != nullptr ? *value : TCIMValue(), property.type, property.isArray));
    } catch (const TVORException&) {
      return std::string();
    }
  }
  return key;
}

InmemStore::InstancePtr InmemStore::find(const TCIMReference& reference) const {
  const std::string key = keyOf(reference);
  const std::shared_lock<std::shared_mutex> lock(m_mutex);
  const auto location = locate(key);
  return location == m_locations.end() ? InstancePtr() : location->second.instance;
}

bool InmemStore::erase(const TCIMReference& reference) {
  const std::string key = keyOf(reference);
  const std::unique_lock<std::shared_mutex> lock(m_mutex);
  const auto location = locate(key);
  if (location == m_locations.end()) return false;
  location->second.entry->instances.erase(location->second.number);
  m_locations.erase(location);
  return true;
}

void InmemStore::clear() {
  const std::unique_lock<std::shared_mutex> lock(m_mutex);
  for (const auto& entry : m_classes) entry.second->instances.clear();
  m_locations.clear();
}

std::vector<InmemStore::InstancePtr> InmemStore::instances(const std::string& className,
                                                           bool deep) const {
  const std::shared_lock<std::shared_mutex> lock(m_mutex);
  const ClassEntry* const entry = findEntry(className);
  std::vector<InstancePtr> found;
  if (entry == nullptr) return found;
  std::vector<const ClassEntry*> entries = {entry};
  if (deep) collect(*entry, entries);
  if (entries.size() > 1) return inOrder(entries);
  found.reserve(entry->instances.size());
  entry->instances.forEach(
      [&](std::uint64_t, const InstancePtr& instance) { found.push_back(instance); });
  return found;
}

/// The instances of several classes.
std::vector<InmemStore::InstancePtr> InmemStore::inOrder(
    const std::vector<const ClassEntry*>& entries) {
  std::vector<std::pair<std::uint64_t, InstancePtr>> numbered;
  for (const ClassEntry* each : entries) {
    each->instances.forEach([&](std::uint64_t number, const InstancePtr& instance) {
      numbered.emplace_back(number, instance);
    });
  }
  std::sort(numbered.begin(), numbered.end(),
            [](const auto& left, const auto& right) { return left.first < right.first; });
  std::vector<InstancePtr> found;
  found.reserve(numbered.size());
  for (auto& each : numbered) found.push_back(std::move(each.second));
  return found;
}

}  // namespace vorcore
