#pragma once

#include <string>
#include <vector>

namespace cmpinsp {

/// What an element of a data file may hold. Element names are in lower case: the runner reads them
/// without case, attribute names with.
struct ElementRule {
  std::string name;
  std::vector<std::string> parents;  ///< none for the document's root, "" for a root of any name
  std::vector<std::string> required;
  std::vector<std::string> optional;
};

struct DataFileRules {
  std::string fileName;
  std::string root;  ///< empty where the root may have any name
  std::vector<ElementRule> elements;
};

/// The rules of the three data files.
const std::vector<DataFileRules>& dataFileRules();

}  // namespace cmpinsp
