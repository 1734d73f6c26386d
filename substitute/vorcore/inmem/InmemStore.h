#pragma once

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <shared_mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "framework/TCIMReference.h"
#include "framework/TInmemInstance.h"
#include "substitute/vorcore/inmem/InstanceList.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace vorcore {

class InmemClass;

/// The classes and instances of an in-memory namespace. Stored instances are never written to:
/// whoever is given one copies it, which shares its values. Safe to use from several threads.
class InmemStore {
 public:
  using ClassPtr = boost::shared_ptr<InmemClass>;
  using InstancePtr = boost::shared_ptr<const NZELVOR20::TInmemInstance>;

  /// Throws `TVORException`: already exists, or invalid class when the superclass is unknown.
  void addClass(const ClassPtr& added);
  /// The class (name without case), or an empty handle.
  ClassPtr findClass(const std::string& name) const;
  std::vector<ClassPtr> rootClasses() const;
  /// Subclasses in the order in which they were made, each before its own when `deep`.
  std::vector<ClassPtr> subclasses(const std::string& name, bool deep) const;

  /// Stores `instance`, whose class must be one of this store, in the place of the one with the
  /// same key values.
  void put(const NZELVOR20::TInmemInstance& instance);
  /// The instance with the class and keys of `reference`, or an empty handle.
  InstancePtr find(const NZELVOR20::TCIMReference& reference) const;
  /// False where there is no such instance.
  bool erase(const NZELVOR20::TCIMReference& reference);
  void clear();
  /// The instances of a class, those of subclasses too when `deep`, in the order in which they were
  /// first stored.
  std::vector<InstancePtr> instances(const std::string& className, bool deep) const;

 private:
  struct ClassEntry {
    ClassPtr theClass;
    std::vector<ClassEntry*> subclasses;
    InstanceList instances;  ///< by the number of their first storing
  };
  struct Location {
    ClassEntry* entry;
    std::uint64_t number;
    InstancePtr instance;
  };

  /// By the hash of the key: a key is longer than what it finds, and can be made again from that.
  using Locations = std::unordered_multimap<std::size_t, Location>;

  ClassEntry* findEntry(const std::string& name) const;
  static void collect(const ClassEntry& entry, std::vector<const ClassEntry*>& found);
  static std::vector<InstancePtr> inOrder(const std::vector<const ClassEntry*>& entries);
  static std::string keyOf(const NZELVOR20::TInmemInstance& instance);
  std::string keyOf(const NZELVOR20::TCIMReference& reference) const;
  Locations::const_iterator locate(const std::string& key) const;

  mutable std::shared_mutex m_mutex;
  std::unordered_map<std::string, std::unique_ptr<ClassEntry>> m_classes;
  std::vector<ClassEntry*> m_roots;
  Locations m_locations;
  std::uint64_t m_nextNumber = 0;
};

}  // namespace vorcore
