#pragma once

#include <vector>

#include "substitute/cmpi.nsp/broker/IUpcalls.h"

namespace cmpinsp::broker {

/// Property names as providers get them: an array ended by a null, or null for all.
class NamePointers {
 public:
  explicit NamePointers(PropertyNames names) : m_isAll(names == nullptr) {
    if (m_isAll) return;
    for (const std::string& name : *names) m_pointers.push_back(name.c_str());
    m_pointers.push_back(nullptr);
  }

  const char** get() noexcept { return m_isAll ? nullptr : m_pointers.data(); }

 private:
  std::vector<const char*> m_pointers;
  bool m_isAll;
};

}  // namespace cmpinsp::broker
