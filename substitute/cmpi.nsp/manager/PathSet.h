#pragma once

#include <string>
#include <unordered_set>

#include "substitute/cmpi.nsp/model/ObjectPath.h"

namespace cmpinsp {

/// Remembers which paths were seen. Names count without case, keys in any order, integers by value.
class PathSet {
 public:
  /// True for a path that is new.
  bool insert(const ObjectPath& path) { return m_seen.insert(keyOf(path)).second; }

 private:
  static std::string keyOf(const ObjectPath& path);

  std::unordered_set<std::string> m_seen;
};

}  // namespace cmpinsp
