#include "substitute/cmpi.nsp/broker/objects/PropertyListObject.h"

#include <algorithm>

#include "substitute/cmpi.nsp/broker/objects/Release.h"
#include "substitute/cmpi.nsp/broker/text/Text.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp::broker {

std::vector<std::string> namesOf(const char* const* names) {
  std::vector<std::string> result;
  for (; names != nullptr && *names != nullptr; ++names) result.push_back(repaired(*names));
  return result;
}

bool PropertyListBody::lists(const char* name) const {
  return m_isAll || std::any_of(m_names.begin(), m_names.end(), [&](const std::string& one) {
           return vorcore::equalNames(one, name);
         });
}

void PropertyListBody::point() {
  for (const std::string& name : m_names) m_pointers.push_back(name.c_str());
  m_pointers.push_back(nullptr);
}

namespace {

CMPIBoolean isPropertyInList(const CMPIPropertyList* pl, const char* name,
                             CMPIStatus* st) noexcept {
  return answer(st, CMPI_false, [&] {
    const PropertyListBody& body = bodyOf<PropertyListBody>(pl);
    return body.lists(required(name, "the property's name")) ? CMPI_true : CMPI_false;
  });
}

const char** getProperties(const CMPIPropertyList* pl, CMPIStatus* st) noexcept {
  return answer(st, static_cast<const char**>(nullptr),
                [&] { return bodyOf<PropertyListBody>(pl).pointers(); });
}

}  // namespace

const CMPIPropertyListFT kPropertyListTable = {CMPICurrentVersion, release<PropertyListBody>,
                                               clone<PropertyListBody>, isPropertyInList,
                                               getProperties};

}  // namespace cmpinsp::broker
