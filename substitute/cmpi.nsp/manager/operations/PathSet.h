#pragma once

#include <string>
#include <unordered_set>

#include "substitute/cmpi.nsp/model/ObjectPath.h"

namespace cmpinsp {

/// Remembers which paths were seen. Names count without case, keys in any order, integers by value,
/// references by the paths that they stand for.
class PathSet {
 public:
  /// True for a path that is new.
  bool insert(const ObjectPath& path) { return m_seen.insert(keyOf(path)).second; }

  /// What all spellings of one path have in common.
  static std::string keyOf(const ObjectPath& path);

 private:
  static std::string textOf(const NZELVOR20::TCIMValue& key, const std::string& nameSpace);

  std::unordered_set<std::string> m_seen;
};

}  // namespace cmpinsp
