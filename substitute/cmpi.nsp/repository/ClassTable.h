#pragma once

#include <atomic>
#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <mutex>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "substitute/cmpi.nsp/repository/ClassRepository.h"

namespace cmpinsp {

/// Hash and equality of CIM names, without case.
struct NameHash {
  std::size_t operator()(const std::string& name) const noexcept;
};
struct NameEqual {
  bool operator()(const std::string& left, const std::string& right) const noexcept {
    return vorcore::equalNames(left, right);
  }
};

/// Makes the declarations of classes that a table knows by name; from any thread, one at a time.
class ClassSource {
 public:
  virtual ~ClassSource() = default;
  /// The class, or an empty handle where it turns out that there is none. `place` is what the table
  /// was given with the name.
  virtual vorcore::ClassDeclarationPtr load(const std::string& name, std::uint32_t place) const = 0;
};

/// The class repository in memory.
class ClassTable final : public ClassRepository {
 public:
  /// Adds a class, after its superclass if that is declared. False when there is one of this name.
  bool add(const vorcore::ClassDeclarationPtr& declaration);

  /// Adds a class that `source` makes when it is first asked for; after its superclass, which must
  /// be there where it has one and is not `open`. False when there is one of this name, or no such
  /// superclass.
  bool addLater(const std::string& name, const std::string& superclass, std::uint32_t place,
                bool open = false);
  /// Makes room for so many classes, so that they need not be sorted in anew as they come.
  void reserve(std::size_t classes) { m_entries.reserve(classes); }
  void setSource(boost::shared_ptr<const ClassSource> source) { m_source = std::move(source); }

  vorcore::ClassDeclarationPtr find(const std::string& className) const override;
  bool knows(const std::string& className) const override;
  std::string superclassOf(const std::string& className) const override;
  bool isA(const std::string& className, const std::string& ancestor) const override;
  std::vector<std::string> subclasses(const std::string& className, bool deep) const override;
  std::vector<std::string> rootClasses() const override;

  /// How many classes there are.
  std::size_t size() const noexcept { return m_size; }

 private:
  struct Entry {
    const std::string* name = nullptr;  ///< the key, as the class writes it
    const Entry* superclass = nullptr;
    std::vector<const Entry*> subclasses;
    std::uint32_t place = 0;
    bool isDeclared = false;  ///< else it is only named as a superclass
    /// Set once; the declaration does not change from then on.
    mutable std::atomic<bool> isLoaded{false};
    mutable vorcore::ClassDeclarationPtr declaration;
  };

  Entry& entryOf(const std::string& name);
  Entry* insert(const std::string& name, const std::string& superclass);
  void load(const Entry& entry) const;
  static void collect(const Entry& entry, bool deep, std::vector<std::string>& names);

  std::unordered_map<std::string, Entry, NameHash, NameEqual> m_entries;
  std::size_t m_size = 0;
  boost::shared_ptr<const ClassSource> m_source;
  mutable std::mutex m_loading;
};

}  // namespace cmpinsp
