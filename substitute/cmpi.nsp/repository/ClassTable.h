#pragma once

#include <string>
#include <unordered_map>
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

/// The class repository in memory.
class ClassTable final : public ClassRepository {
 public:
  /// Adds a class, after its superclass. False when there is one of this name.
  bool add(const vorcore::ClassDeclarationPtr& declaration);

  vorcore::ClassDeclarationPtr find(const std::string& className) const override;
  bool isA(const std::string& className, const std::string& ancestor) const override;
  std::vector<std::string> subclasses(const std::string& className, bool deep) const override;
  std::vector<std::string> rootClasses() const override;

  std::size_t size() const noexcept { return m_entries.size(); }

 private:
  struct Entry {
    vorcore::ClassDeclarationPtr declaration;
    const Entry* superclass = nullptr;
    std::vector<const Entry*> subclasses;
  };

  static void collect(const Entry& entry, bool deep, std::vector<std::string>& names);

  std::unordered_map<std::string, Entry, NameHash, NameEqual> m_entries;
};

}  // namespace cmpinsp
