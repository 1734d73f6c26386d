#pragma once

#include <expat.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace kfrxmlparser {

/// The attributes of the element that is being started, in name order. Nodes and texts are used
/// again from element to element, so that a long document costs no allocation per attribute.
class AttributeMap {
 public:
  using Map = std::map<std::string, std::string>;

  /// Holds exactly the pairs of Expat's list, which ends with a null pointer.
  const Map& assign(const XML_Char** pairs) {
    while (!m_map.empty()) m_spare.push_back(m_map.extract(m_map.begin()));
    for (; *pairs != nullptr; pairs += 2) add(pairs[0], pairs[1]);
    return m_map;
  }

 private:
  void add(const XML_Char* name, const XML_Char* value) {
    if (m_spare.empty()) {
      m_map.emplace(name, value);
      return;
    }
    Map::node_type node = std::move(m_spare.back());
    m_spare.pop_back();
    node.key().assign(name);
    node.mapped().assign(value);
    m_map.insert(std::move(node));
  }

  Map m_map;
  std::vector<Map::node_type> m_spare;
};

}  // namespace kfrxmlparser
