#include "substitute/cmpi.nsp/registration/Registration.h"

#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

namespace {

struct InterfaceName {
  unsigned value;
  const char* name;
};

constexpr InterfaceName kInterfaces[] = {
    {kInstanceInterface, "instance"},     {kAssociationInterface, "association"},
    {kMethodInterface, "method"},         {kPropertyInterface, "property"},
    {kIndicationInterface, "indication"},
};

}  // namespace

std::vector<std::string> interfaceNames(unsigned interfaces) {
  std::vector<std::string> names;
  for (const InterfaceName& known : kInterfaces) {
    if ((interfaces & known.value) != 0) names.emplace_back(known.name);
  }
  return names;
}

unsigned interfaceNamed(const std::string& word) {
  for (const InterfaceName& known : kInterfaces) {
    if (vorcore::equalNames(word, known.name)) return known.value;
  }
  return 0;
}

std::string Place::toText() const {
  std::string text = file + ":" + std::to_string(line);
  return column == 0 ? text : text + ":" + std::to_string(column);
}

}  // namespace cmpinsp
